#include "details/win32/details_box.h"

#include <richedit.h>
#include <string>

#include "details/win32/field_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/reading_direction.h"

namespace corvina {
namespace {

constexpr int BoxMargin = 6;  // between a box's edge and its text, at 96 dots per inch

LRESULT CALLBACK BoxProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier, DWORD_PTR) {
    switch (message) {
        case WM_GETDLGCODE:
            // The field would take all keys, and close its window on Escape as if that were the close box.
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_RBUTTONUP: {
            // Fields of some versions ask for no menu by themselves.
            POINT place{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
            ClientToScreen(box, &place);
            SendMessageW(GetParent(box), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(box), MAKELPARAM(place.x, place.y));
            return 0;
        }
        case WM_CONTEXTMENU:
            return SendMessageW(GetParent(box), message, wParam, lParam);
        case WM_NCDESTROY:
            RemoveWindowSubclass(box, BoxProcedure, identifier);
            break;
        default:
            break;
    }
    return DefSubclassProc(box, message, wParam, lParam);
}

void SetTextColor(HWND box, WPARAM range, const ui::PaletteBrushes& brushes) {
    CHARFORMATW format{};
    format.cbSize = sizeof(format);
    format.dwMask = CFM_COLOR;
    format.crTextColor = brushes.Colors().Text;
    SendMessageW(box, EM_SETCHARFORMAT, range, reinterpret_cast<LPARAM>(&format));
}

void SetParagraphDirection(HWND box, bool rightToLeft) {
    PARAFORMAT2 format{};
    format.cbSize = sizeof(format);
    format.dwMask = PFM_RTLPARA | PFM_ALIGNMENT;
    format.wEffects = rightToLeft ? PFE_RTLPARA : 0;
    format.wAlignment = rightToLeft ? PFA_RIGHT : PFA_LEFT;
    SendMessageW(box, EM_SETSEL, 0, -1);
    SendMessageW(box, EM_SETPARAFORMAT, 0, reinterpret_cast<LPARAM>(&format));
    SendMessageW(box, EM_SETSEL, 0, 0);
}

}  // namespace

HWND CreateDetailsBox(HWND parent, HINSTANCE instance, int identifier, bool hasRichEdit) {
    const HWND box =
        CreateWindowExW(0, hasRichEdit ? MSFTEDIT_CLASS : L"EDIT", L"Type here",
                        WS_CHILD | WS_VSCROLL | WS_GROUP | WS_TABSTOP | ES_MULTILINE | ES_READONLY, 0, 0, 0, 0, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), instance, nullptr);
    SetWindowSubclass(box, BoxProcedure, 1, 0);
    if (hasRichEdit) {
        ui::SetMirrored(box, false);  // its paragraphs have directions
        ui::KeepScrollBarSide(box);
    }
    // Each line break of what is shown counts twice.
    SendMessageW(box, EM_EXLIMITTEXT, 0, static_cast<LPARAM>(4 * LongestFieldText));
    return box;
}

void SetDetailsBoxText(HWND box, std::wstring_view text, const ui::PaletteBrushes& brushes) {
    std::wstring shown = FieldText(text);
    if (shown.starts_with(L"{\\") || shown.starts_with(L"{urtf")) {
        // The field would read it as formatted text, and an event's message is nothing to be interpreted.
        shown.insert(shown.begin(), L' ');
    }
    SetWindowTextW(box, shown.c_str());
    SetTextColor(box, SCF_ALL, brushes);
    SetParagraphDirection(box, ui::ReadsFromTheRight(GetParent(box), text));
}

void PlaceDetailsBox(HWND box, const RECT& place, ui::Scale scale) {
    SetWindowPos(box, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    RECT inside{};
    GetClientRect(box, &inside);
    const LONG margin = scale.Pixels(BoxMargin);
    inside.left += margin;
    inside.top += margin / 2;
    inside.right = std::max(inside.right - margin, inside.left);
    SendMessageW(box, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&inside));
    // The margin keeps what was drawn there before.
    InvalidateRect(box, nullptr, TRUE);
}

void ColorDetailsBox(HWND box, const ui::PaletteBrushes& brushes) {
    SendMessageW(box, EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(brushes.Colors().ControlBack));
    SetTextColor(box, SCF_DEFAULT, brushes);
    SetTextColor(box, SCF_ALL, brushes);
}

}  // namespace corvina
