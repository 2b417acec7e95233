// What the main window does at the request of the program behind it.
#include <objbase.h>

#include "app/win32/about_box.h"
#include "app/win32/column_chooser.h"
#include "app/win32/main_window.h"
#include "app/win32/options_dialog.h"
#include "ui/win32/layout_direction.h"

namespace corvina {

void MainWindow::InitializeCom() {
    comIsReady_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
}

void MainWindow::CreateToolTip() {
    toolTip_.Create(Handle(), arguments_.Instance);
}

void MainWindow::SetTexts() {
    const std::wstring previousFace = look_.Face;
    const bool wasMirrored = ui::IsMirrored(Handle());
    UseScriptOfLanguage();
    const bool isMirrored = ui::IsMirrored(Handle());
    if (isMirrored != wasMirrored) {
        ui::SetMirrored(toolTip_.Handle(), isMirrored);
        // Text fields cannot be turned round; new ones are.
        CreateDetails();
        list_.SetExtendedStyles();
    }
    if (isMirrored != wasMirrored || look_.Face != previousFace) {
        UseScale(scale_);
        UseColors();
        Layout();
    }
    menuBar_.Attach(Handle(), arguments_.Instance, application_->CurrentLanguage());
    ColorMenuBar();
}

void MainWindow::SetTitle(std::wstring_view text) {
    SetWindowTextW(Handle(), std::wstring(text).c_str());
}

void MainWindow::SetVersionText(std::wstring_view text) {
    SetWindowTextW(version_, std::wstring(text).c_str());
    Layout();
}

void MainWindow::SetListColumns(std::span<const ListColumn> columns) {
    list_.SetColumns(columns);
}

std::optional<int> MainWindow::ListColumnWidth(std::size_t position) const {
    return list_.ColumnWidth(position);
}

void MainWindow::SetGridLines(bool on) {
    list_.SetExtendedStyles();
    list_.SetGridLines(on);
}

bool MainWindow::IsRowSelected(std::size_t row) const {
    return list_.IsSelected(row);
}

std::vector<std::size_t> MainWindow::SelectedRows() const {
    return list_.SelectedRows();
}

std::optional<std::size_t> MainWindow::SelectedRow() const {
    return list_.FirstSelected();
}

WindowPlacement MainWindow::Placement() const {
    WindowPlacement placement;
    if (IsIconic(Handle())) {
        placement.State = WindowState::Minimized;
    } else if (IsZoomed(Handle())) {
        placement.State = WindowState::Maximized;
    }
    RECT place{};
    GetWindowRect(Handle(), &place);
    placement.Rectangle = {static_cast<int>(place.left), static_cast<int>(place.top),
                           static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
    return placement;
}

void MainWindow::MoveTo(const WindowPlace& rectangle) {
    SetWindowPos(Handle(), nullptr, rectangle.Left, rectangle.Top, rectangle.Width, rectangle.Height,
                 SWP_NOZORDER | SWP_SHOWWINDOW);
}

void MainWindow::Maximize() {
    ShowWindow(Handle(), SW_SHOWMAXIMIZED);
}

void MainWindow::SetSplitters(int vertical, int horizontal) {
    splitters_ = {vertical, horizontal};
    Layout();
}

HWND MainWindow::StationWindow(FocusStation station) const {
    switch (station) {
        case FocusStation::Tree:
            return tree_.Handle();
        case FocusStation::List:
            return list_.Handle();
        case FocusStation::LeftProperties:
            return details_.Field(DetailsField::LeftProperties);
        case FocusStation::RightProperties:
            return details_.Field(DetailsField::RightProperties);
        case FocusStation::Description:
            return details_.Field(DetailsField::Description);
        case FocusStation::Xml:
            return details_.Field(DetailsField::Xml);
    }
    return nullptr;
}

std::optional<FocusStation> MainWindow::StationOf(HWND window) const {
    for (const FocusStation station : {FocusStation::Tree, FocusStation::List, FocusStation::LeftProperties,
                                       FocusStation::RightProperties, FocusStation::Description, FocusStation::Xml}) {
        if (window != nullptr && StationWindow(station) == window) {
            return station;
        }
    }
    return std::nullopt;
}

void MainWindow::Focus(FocusStation station) {
    lastStation_ = station;
    if (const HWND window = StationWindow(station); window != nullptr) {
        SetFocus(window);
    }
}

std::optional<FocusStation> MainWindow::FocusedStation() const {
    return StationOf(GetFocus());
}

void MainWindow::ApplyTheme() {
    UseColors();
}

void MainWindow::Repaint() {
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

std::optional<std::vector<bool>> MainWindow::ChooseColumns(std::span<const ListColumn> columns,
                                                           const std::vector<bool>& visible) {
    return ColumnChooser(application_->CurrentLanguage())
        .Choose(Handle(), arguments_.Instance, application_->Scheme(), columns, visible);
}

std::optional<OptionValues> MainWindow::EditOptions(const OptionOffer& offer) {
    return OptionsDialog(application_->CurrentLanguage(), offer)
        .Edit(Handle(), arguments_.Instance, application_->Scheme());
}

void MainWindow::ShowAbout(const AboutTexts& texts) {
    AboutBox(texts).Show(Handle(), arguments_.Instance, application_->Scheme());
}

void MainWindow::RequestClose() {
    SendMessageW(Handle(), WM_CLOSE, 0, 0);
}

void MainWindow::LockUpdates() {
    if (locks_++ > 0) {
        return;
    }
    // What the user has just done must be seen before the load begins. The children are locked rather than the window
    // itself: a locked top-level window counts as hidden, and the mouse would reach the windows behind it.
    for (const HWND control : {tree_.Handle(), list_.Handle()}) {
        UpdateWindow(control);
        SendMessageW(control, WM_SETREDRAW, FALSE, 0);
    }
    details_.SetRedraw(false);
}

void MainWindow::UnlockUpdates() {
    if (locks_ == 0 || --locks_ > 0) {
        return;
    }
    for (const HWND control : {tree_.Handle(), list_.Handle()}) {
        SendMessageW(control, WM_SETREDRAW, TRUE, 0);
    }
    details_.SetRedraw(true);
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void MainWindow::SetListCaption(std::wstring_view text) {
    SetWindowTextW(caption_, std::wstring(text).c_str());
}

void MainWindow::SetStatusText(std::wstring_view text) {
    SetWindowTextW(status_, std::wstring(text).c_str());
    // A load that follows keeps the window from painting for a while.
    UpdateWindow(status_);
}

void MainWindow::ClearList() {
    list_.Clear();
}

void MainWindow::SetRowCount(std::size_t count) {
    list_.SetRowCount(count);
}

void MainWindow::SelectRow(std::size_t row) {
    list_.SelectOnly(row);
}

}  // namespace corvina
