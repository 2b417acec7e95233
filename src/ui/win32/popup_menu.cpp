#include "ui/win32/popup_menu.h"

#include "ui/win32/layout_direction.h"

namespace corvina::ui {

void SetPopupEntries(HMENU popup, std::span<const PopupEntry> entries) {
    UINT position = 0;
    for (const PopupEntry& entry : entries) {
        const UINT kind = entry.Command == 0 ? MF_SEPARATOR : MF_STRING | (entry.Enabled ? MF_ENABLED : MF_GRAYED);
        if (position < static_cast<UINT>(GetMenuItemCount(popup))) {
            ModifyMenuW(popup, position, MF_BYPOSITION | kind, entry.Command, entry.Text.c_str());
        } else {
            AppendMenuW(popup, kind, entry.Command, entry.Text.c_str());
        }
        ++position;
    }
    while (GetMenuItemCount(popup) > static_cast<int>(position)) {
        DeleteMenu(popup, position, MF_BYPOSITION);
    }
}

UniqueMenu LoadPopup(HINSTANCE instance, std::uint32_t identifier) {
    // A menu resource is a bar; the popup is its only entry and must be taken out to outlive it.
    const UniqueMenu bar(LoadMenuW(instance, MAKEINTRESOURCEW(identifier)));
    const HMENU popup = bar != nullptr ? GetSubMenu(bar.get(), 0) : nullptr;
    if (popup == nullptr) {
        return UniqueMenu(CreatePopupMenu());
    }
    RemoveMenu(bar.get(), 0, MF_BYPOSITION);
    return UniqueMenu(popup);
}

void TrackPopup(HMENU popup, HWND owner, POINT place) {
    const UINT direction = IsMirrored(owner) ? TPM_LAYOUTRTL : 0U;
    TrackPopupMenuEx(popup, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | direction, place.x, place.y, owner,
                     nullptr);
}

POINT KeyboardMenuPlace(HWND control) {
    RECT area{};
    GetClientRect(control, &area);
    POINT place{area.right / 2, area.bottom / 4};
    ClientToScreen(control, &place);
    return place;
}

}  // namespace corvina::ui
