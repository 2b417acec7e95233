#include "ui/win32/drop_down.h"

#include <algorithm>
#include <array>
#include <memory>

#include "theme/button_colors.h"
#include "ui/win32/button_painter.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/painted_control.h"

namespace corvina::ui {
namespace {

// Sizes at 96 dots per inch.
constexpr int TextMargin = 6;
constexpr int ArrowWidth = 9;

std::wstring EntryText(HWND dropDown, LRESULT entry) {
    const LRESULT length = SendMessageW(dropDown, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry), 0);
    if (entry < 0 || length == CB_ERR) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(dropDown, CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void DrawEntry(HDC device, RECT area, const std::wstring& text, COLORREF color, Scale scale) {
    area.left += scale.Pixels(TextMargin);
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, color);
    DrawTextW(device, text.c_str(), -1, &area, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

class PaintedDropDown final : public PaintedControl {
  public:
    PaintedDropDown(HWND control, const ControlLook& look) : PaintedControl(control, look) {}

  private:
    void Draw(HDC device, const RECT& area) const override {
        const Scale scale = Look().Resolution;
        const PaletteBrushes& brushes = *Look().Brushes;
        const ButtonState state{.Hot = IsHot(),
                                .Pressed = SendMessageW(Handle(), CB_GETDROPPEDSTATE, 0, 0) != FALSE,
                                .Disabled = !IsWindowEnabled(Handle())};
        const ButtonColors colors = ColorsOfButton(ButtonKind::Push, state, brushes.Colors(), brushes.IsDark());
        const int line = std::max(scale.Pixels(1), 1);
        FillArea(device, area, colors.Face);
        DrawFrame(device, area, colors.Frame, line);
        RECT text = area;
        text.right -= scale.Pixels(2 * TextMargin + ArrowWidth);
        const HGDIOBJ previous = SelectObject(device, Font());
        DrawEntry(device, text, EntryText(Handle(), SendMessageW(Handle(), CB_GETCURSEL, 0, 0)), colors.Text, scale);
        SelectObject(device, previous);
        DrawArrow(device, area, colors.Text, scale);
        if (ShowsFocus()) {
            RECT inside = area;
            InflateRect(&inside, -3 * line, -3 * line);
            DrawFrame(device, inside, colors.Text, line);
        }
    }

    static void DrawArrow(HDC device, const RECT& area, COLORREF color, Scale scale) {
        const int width = scale.Pixels(ArrowWidth);
        const LONG left = area.right - scale.Pixels(TextMargin) - width;
        const LONG top = (area.top + area.bottom - width / 2) / 2;
        const std::array points = {POINT{left, top}, POINT{left + width / 2, top + width / 2},
                                   POINT{left + 2 * (width / 2), top}};
        const HPEN pen = CreatePen(PS_SOLID, std::max(scale.Pixels(1), 1) + 1, color);
        const HGDIOBJ previous = SelectObject(device, pen);
        Polyline(device, points.data(), static_cast<int>(points.size()));
        SelectObject(device, previous);
        DeleteObject(pen);
    }
};

}  // namespace

HWND CreateDropDown(const DropDownArguments& arguments) {
    constexpr DWORD Style = WS_CHILD | WS_VISIBLE | WS_GROUP | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST |
                            CBS_OWNERDRAWFIXED | CBS_HASSTRINGS;
    const HWND control = CreateWindowExW(0, L"COMBOBOX", L"", Style, 0, 0, 0, 0, arguments.Parent,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(arguments.Identifier)),
                                         arguments.Instance, nullptr);
    if (control == nullptr) {
        return nullptr;
    }
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(arguments.Font), FALSE);
    for (const std::wstring& entry : arguments.Entries) {
        SendMessageW(control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    }
    SendMessageW(control, CB_SETCURSEL, arguments.Selected, 0);
    PaintedControl::Install(std::make_unique<PaintedDropDown>(control, *arguments.Look));
    return control;
}

bool DrawDropDownItem(const DRAWITEMSTRUCT& drawing, const ControlLook& look) {
    if (drawing.CtlType != ODT_COMBOBOX) {
        return false;
    }
    const PaletteBrushes& brushes = *look.Brushes;
    const bool selected = (drawing.itemState & (ODS_SELECTED | ODS_COMBOBOXEDIT)) == ODS_SELECTED;
    COLORREF ground = brushes.Colors().ControlBack;
    COLORREF text = brushes.Colors().Text;
    if (selected) {
        ground = brushes.IsDark() ? DarkSelection : GetSysColor(COLOR_HIGHLIGHT);
        text = brushes.IsDark() ? text : GetSysColor(COLOR_HIGHLIGHTTEXT);
    }
    FillArea(drawing.hDC, drawing.rcItem, ground);
    DrawEntry(drawing.hDC, drawing.rcItem, EntryText(drawing.hwndItem, static_cast<int>(drawing.itemID)), text,
              look.Resolution);
    return true;
}

std::optional<std::size_t> SelectedEntry(HWND dropDown) {
    const LRESULT selected = SendMessageW(dropDown, CB_GETCURSEL, 0, 0);
    return selected < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(selected));
}

void PlaceDropDown(HWND dropDown, int left, int top, int width, int height) {
    constexpr int Edges = 6;  // what the control adds to the height that it is told
    constexpr LRESULT MostShown = 16;
    SendMessageW(dropDown, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max(height - Edges, 1));
    SendMessageW(dropDown, CB_SETITEMHEIGHT, 0, std::max(height - Edges, 1));
    const LRESULT entries = std::clamp<LRESULT>(SendMessageW(dropDown, CB_GETCOUNT, 0, 0), 1, MostShown);
    // The height of this control is that of the open one.
    MoveWindow(dropDown, left, top, width, height + static_cast<int>(entries) * height + 2, TRUE);
}

}  // namespace corvina::ui
