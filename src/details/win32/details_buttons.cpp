#include "details/win32/details_buttons.h"

#include <array>

namespace corvina {
namespace {

// Half-way between two colours, channel by channel.
COLORREF Between(COLORREF one, COLORREF other) {
    return RGB((GetRValue(one) + GetRValue(other)) / 2, (GetGValue(one) + GetGValue(other)) / 2,
               (GetBValue(one) + GetBValue(other)) / 2);
}

void Fill(HDC device, const RECT& area, COLORREF color) {
    const ui::UniqueBrush brush(CreateSolidBrush(color));
    FillRect(device, &area, brush.get());
}

void Frame(HDC device, const RECT& area, COLORREF color) {
    const ui::UniqueBrush brush(CreateSolidBrush(color));
    FrameRect(device, &area, brush.get());
}

void DrawTab(const DRAWITEMSTRUCT& drawing, bool isSelected, const Palette& colors, ui::Scale scale) {
    if (isSelected) {
        RECT line = drawing.rcItem;
        line.top = line.bottom - scale.Pixels(3);
        Fill(drawing.hDC, line, Between(colors.Text, colors.Panel));
    }
    wchar_t caption[128] = {};
    GetWindowTextW(drawing.hwndItem, caption, 128);
    SetBkMode(drawing.hDC, TRANSPARENT);
    SetTextColor(drawing.hDC, colors.Text);
    RECT area = drawing.rcItem;
    DrawTextW(drawing.hDC, caption, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void DrawArrow(const DRAWITEMSTRUCT& drawing, bool isUp, COLORREF color, ui::Scale scale) {
    const RECT& area = drawing.rcItem;
    const LONG x = (area.left + area.right) / 2;
    const LONG y = (area.top + area.bottom) / 2;
    const LONG half = scale.Pixels(6);
    const LONG tip = isUp ? y - half / 2 : y + half / 2;
    const LONG base = isUp ? tip + half : tip - half;
    const std::array<POINT, 3> corners = {POINT{x, tip}, POINT{x - half, base}, POINT{x + half, base}};
    const HGDIOBJ brush = SelectObject(drawing.hDC, GetStockObject(DC_BRUSH));
    const HGDIOBJ pen = SelectObject(drawing.hDC, GetStockObject(DC_PEN));
    SetDCBrushColor(drawing.hDC, color);
    SetDCPenColor(drawing.hDC, color);
    Polygon(drawing.hDC, corners.data(), static_cast<int>(corners.size()));
    SelectObject(drawing.hDC, pen);
    SelectObject(drawing.hDC, brush);
}

}  // namespace

void DrawDetailsButton(const DRAWITEMSTRUCT& drawing, DetailsButton button, bool isOn,
                       const ui::PaletteBrushes& brushes, ui::Scale scale) {
    const Palette& colors = brushes.Colors();
    const bool isPressed = (drawing.itemState & ODS_SELECTED) != 0;
    const bool isTab = button == DetailsButton::GeneralTab || button == DetailsButton::DetailsTab;
    Fill(drawing.hDC, drawing.rcItem, isPressed || (isTab && isOn) ? colors.Panel : colors.ControlBack);
    Frame(drawing.hDC, drawing.rcItem, Between(colors.Border, colors.Panel));
    if (isTab) {
        DrawTab(drawing, isOn, colors, scale);
    } else {
        const COLORREF color = isOn ? colors.Text : Between(colors.Text, colors.ControlBack);
        DrawArrow(drawing, button == DetailsButton::Previous, color, scale);
    }
    if ((drawing.itemState & ODS_FOCUS) != 0) {
        RECT inside = drawing.rcItem;
        InflateRect(&inside, -1, -1);
        Frame(drawing.hDC, inside, colors.Text);
    }
}

}  // namespace corvina
