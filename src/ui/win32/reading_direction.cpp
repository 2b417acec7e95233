#include "ui/win32/reading_direction.h"

#include "base/text_direction.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/layout_direction.h"

namespace corvina::ui {
namespace {

constexpr LONG_PTR TextFromTheRight = WS_EX_RIGHT | WS_EX_RTLREADING;
constexpr LONG_PTR FieldFromTheRight = TextFromTheRight | WS_EX_LEFTSCROLLBAR;
constexpr LONG_PTR EveryDirection = FieldFromTheRight | WS_EX_LAYOUTRTL;

constexpr UINT_PTR SideIdentifier = 14;
// What the subclass knows of the system.
constexpr DWORD_PTR SideIsRight = 0;
constexpr DWORD_PTR SideIsTurned = 1;

bool ScrollsAtTheRight(HWND field) {
    return (GetWindowLongPtrW(field, GWL_EXSTYLE) & (WS_EX_LEFTSCROLLBAR | WS_EX_LAYOUTRTL)) == 0;
}

bool HasRoomAtTheLeft(HWND field) {
    RECT outer{};
    GetWindowRect(field, &outer);
    RECT inner{};
    GetClientRect(field, &inner);
    MapWindowPoints(field, nullptr, reinterpret_cast<POINT*>(&inner), 2);
    return inner.left - outer.left > outer.right - inner.right;
}

LRESULT CALLBACK SideProcedure(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                               DWORD_PTR side) {
    if (message == WM_NCCALCSIZE && side == SideIsTurned && ScrollsAtTheRight(field)) {
        // A rectangle is what both forms of the message begin with.
        RECT& area = *reinterpret_cast<RECT*>(lParam);
        const RECT outer = area;
        const LRESULT answer = DefSubclassProc(field, message, wParam, lParam);
        const RECT inner = area;
        area.left = outer.left + (outer.right - inner.right);
        area.right = outer.right - (inner.left - outer.left);
        return answer;
    }
    const LRESULT answer = DefSubclassProc(field, message, wParam, lParam);
    if (message == WM_WINDOWPOSCHANGED && side == SideIsRight && ScrollsAtTheRight(field) && HasRoomAtTheLeft(field)) {
        SetWindowSubclass(field, SideProcedure, identifier, SideIsTurned);
        RedrawWithFrame(field);
    } else if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(field, SideProcedure, identifier);
    }
    return answer;
}

}  // namespace

bool ReadsFromTheRight(HWND window, std::wstring_view text) {
    const TextDirection direction = DirectionOf(text);
    return direction == TextDirection::RightToLeft || (direction == TextDirection::Neutral && IsMirrored(window));
}

// Windows takes the mirroring from a field in a mirrored window when it creates it and sets the flags instead. Systems
// that leave it mirrored tear values apart, so that "HOST-12" reads "12-HOST": there all texts are laid out from the
// left.
ReadingDirection::ReadingDirection(HWND field)
    : field_(field), rightToLeft_(IsMirrored(field) ? TextFromTheRight : FieldFromTheRight) {
    KeepScrollBarSide(field);
    Set(IsMirrored(GetParent(field)));
}

void ReadingDirection::Set(bool rightToLeft) const {
    if (ChangeExtendedStyle(field_, EveryDirection, rightToLeft ? rightToLeft_ : 0)) {
        RedrawWithFrame(field_);
    }
}

void KeepScrollBarSide(HWND field) {
    SetWindowSubclass(field, SideProcedure, SideIdentifier, SideIsRight);
}

}  // namespace corvina::ui
