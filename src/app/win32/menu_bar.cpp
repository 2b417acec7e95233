#include "app/win32/menu_bar.h"

#include <string>

#include "app/command_ids.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

constexpr int LogSlot = 27;
constexpr int EventSlot = 22;
constexpr int ExtrasSlot = 212;

}  // namespace

void FillPopup(HMENU popup, const std::vector<MenuEntry>& entries) {
    std::vector<ui::PopupEntry> filled;
    filled.reserve(entries.size());
    for (const MenuEntry& entry : entries) {
        filled.push_back({entry.Command, entry.Text, entry.Enabled});
    }
    ui::SetPopupEntries(popup, filled);
}

void MenuBar::Attach(HWND window, HINSTANCE instance, const i18n::Language& language) {
    popups_ = {{CORVINA_ID_MENU_TREE, LogSlot}, {CORVINA_ID_MENU_LIST, EventSlot}, {CORVINA_ID_MENU_MAIN, ExtrasSlot}};
    ui::UniqueMenu bar(CreateMenu());
    for (Popup& popup : popups_) {
        ui::UniqueMenu loaded = ui::LoadPopup(instance, popup.Menu);
        FillPopup(loaded.get(), entries_(popup.Menu));
        const std::wstring title(language.Text(popup.TitleSlot));
        if (AppendMenuW(bar.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(loaded.get()), title.c_str())) {
            popup.Handle = loaded.release();
        }
    }
    const ui::UniqueMenu previous(GetMenu(window));
    if (SetMenu(window, bar.get())) {
        static_cast<void>(bar.release());
    }
}

bool MenuBar::PopupOpens(HMENU popup) const {
    for (const Popup& own : popups_) {
        if (own.Handle != nullptr && own.Handle == popup) {
            FillPopup(popup, entries_(own.Menu));
            return true;
        }
    }
    return false;
}

}  // namespace corvina
