// What the user does in the main window: keys, menus and the list.
#include "app/command_ids.h"
#include "app/win32/main_window.h"
#include "ui/win32/popup_menu.h"

namespace corvina {

void MainWindow::KeyReleased(const MSG& message) {
    if (message.wParam == VK_APPS) {
        // The system makes a context menu out of this key only when its release reaches a window.
        const HWND focused = GetFocus();
        SendMessageW(focused, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(focused), -1);
        return;
    }
    if (application_ != nullptr) {
        application_->KeyReleased({.VirtualKey = static_cast<std::uint32_t>(message.wParam),
                                   .Control = GetKeyState(VK_CONTROL) < 0,
                                   .Shift = GetKeyState(VK_SHIFT) < 0});
    }
}

void MainWindow::OnContextMenu(HWND control, POINT place) {
    const bool fromKeyboard = place.x == -1 && place.y == -1;
    if (application_ == nullptr || !hasControls_) {
        return;
    }
    if (control == tree_.Handle()) {
        ShowTreeMenu(place, fromKeyboard);
        return;
    }
    RECT header{};
    GetWindowRect(list_.Header(), &header);
    const bool onHeader = control == list_.Header() || (!fromKeyboard && PtInRect(&header, place));
    if (control == list_.Handle() || control == list_.Header()) {
        // The menu is about the rows that are selected now.
        list_.DeliverSelection();
        ShowPopup(onHeader ? CORVINA_ID_MENU_HEADER : CORVINA_ID_MENU_LIST,
                  fromKeyboard ? list_.SelectionPlace() : place);
    }
}

void MainWindow::ShowTreeMenu(POINT place, bool fromKeyboard) {
    if (!fromKeyboard && !tree_.SelectAt(place)) {
        return;
    }
    // The menu is about the node below the mouse, so that is selected and loaded first.
    tree_.DeliverSelection();
    const auto menu = application_->MenuOfNode(application_->Tree().Selected());
    if (menu) {
        ShowPopup(*menu, fromKeyboard ? tree_.SelectionPlace() : place);
    }
}

ui::UniqueMenu MainWindow::MakePopup(std::uint32_t menu) {
    ui::UniqueMenu popup = ui::LoadPopup(arguments_.Instance, menu);
    FillPopup(popup.get(), application_->Menu(menu));
    return popup;
}

void MainWindow::ShowPopup(std::uint32_t menu, POINT place) {
    const ui::UniqueMenu popup = MakePopup(menu);
    menus_.Prepare(popup.get(), false);
    ui::TrackPopup(popup.get(), Handle(), place);
}

DetailsWindowSurroundings MainWindow::SurroundingsOfDetails() {
    return {.Owner = Handle(),
            .Instance = arguments_.Instance,
            .Scheme = &application_->Scheme(),
            .MakeMenu = [this] { return MakePopup(CORVINA_ID_MENU_DETAILS); },
            .CopyCommand = CORVINA_ID_COPY_FROM_DETAILS};
}

std::wstring_view MainWindow::CellText(std::size_t row, std::size_t position) const {
    return application_->CellText(row, position);
}

std::uint32_t MainWindow::RowImage(std::size_t row) const {
    return application_->RowImage(row);
}

bool MainWindow::ColorsRowsByLevel() const {
    return application_->ColorsRowsByLevel();
}

void MainWindow::SelectionChanged() {
    application_->RowSelectionChanged();
}

void MainWindow::HeaderClicked(std::size_t position) {
    application_->HeaderClicked(position);
    // Another event may stand in the selected row now.
    application_->RowSelectionChanged();
}

void MainWindow::RowActivated() {
    // Carried out when the control's notification has returned: the window stays open for long.
    PostMessageW(Handle(), WM_COMMAND, CORVINA_ID_EVENT_PROPERTIES, 0);
}

}  // namespace corvina
