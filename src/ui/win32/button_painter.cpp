#include "ui/win32/button_painter.h"

#include <algorithm>
#include <array>

#include "ui/win32/fonts.h"

namespace corvina::ui {
namespace {

// Sizes at 96 dots per inch.
constexpr int BoxSize = 15;
constexpr int BoxGap = 7;  // between a box and its text
constexpr int ButtonMargin = 12;
constexpr int SmallestButton = 84;
constexpr int FocusInset = 3;
constexpr int TabLine = 3;
constexpr int ArrowHeight = 6;

bool HasBox(ButtonKind kind) {
    return kind == ButtonKind::CheckBox || kind == ButtonKind::RadioButton;
}

bool IsArrow(ButtonKind kind) {
    return kind == ButtonKind::UpArrow || kind == ButtonKind::DownArrow;
}

// A pen and a brush that are selected as long as the object lives.
class Tools {
  public:
    Tools(HDC device, COLORREF pen, int width, COLORREF brush)
        : device_(device),
          pen_(CreatePen(PS_SOLID, width, pen)),
          brush_(CreateSolidBrush(brush)),
          previousPen_(SelectObject(device, pen_)),
          previousBrush_(SelectObject(device, brush_)) {}
    ~Tools() {
        SelectObject(device_, previousPen_);
        SelectObject(device_, previousBrush_);
        DeleteObject(pen_);
        DeleteObject(brush_);
    }
    Tools(const Tools&) = delete;
    Tools& operator=(const Tools&) = delete;

  private:
    HDC device_;
    HPEN pen_;
    HBRUSH brush_;
    HGDIOBJ previousPen_;
    HGDIOBJ previousBrush_;
};

RECT BoxIn(const RECT& area, Scale scale) {
    const int size = scale.Pixels(BoxSize);
    const LONG top = (area.top + area.bottom - size) / 2;
    return {area.left + 1, top, area.left + 1 + size, top + size};
}

void DrawCheckMark(HDC device, const RECT& box, COLORREF color, Scale scale) {
    const Tools tools(device, color, std::max(scale.Pixels(2), 2), color);
    const bool isMirrored = (GetLayout(device) & LAYOUT_RTL) != 0;
    const auto at = [&box, isMirrored](int x, int y) {
        // Of a box divided into 15 parts. The mark looks the same whichever way its window is laid out.
        x = isMirrored ? 14 - x : x;
        return POINT{box.left + (box.right - box.left) * x / 15, box.top + (box.bottom - box.top) * y / 15};
    };
    const std::array points = {at(3, 7), at(6, 10), at(12, 4)};
    Polyline(device, points.data(), static_cast<int>(points.size()));
}

void DrawSquare(HDC device, const RECT& box, bool checked, const ButtonColors& colors, Scale scale) {
    FillArea(device, box, colors.Face);
    DrawFrame(device, box, colors.Frame, std::max(scale.Pixels(1), 1));
    if (checked) {
        DrawCheckMark(device, box, colors.Mark, scale);
    }
}

void DrawCircle(HDC device, const RECT& box, bool checked, const ButtonColors& colors, Scale scale) {
    {
        const Tools tools(device, colors.Frame, std::max(scale.Pixels(1), 1), colors.Face);
        Ellipse(device, box.left, box.top, box.right, box.bottom);
    }
    if (checked) {
        const Tools tools(device, colors.Mark, 1, colors.Mark);
        const int inset = scale.Pixels(4);
        Ellipse(device, box.left + inset, box.top + inset, box.right - inset, box.bottom - inset);
    }
}

void DrawBox(HDC device, const RECT& area, const ButtonPicture& button, const ButtonColors& colors, Scale scale) {
    const RECT box = BoxIn(area, scale);
    if (button.Kind == ButtonKind::CheckBox) {
        DrawSquare(device, box, button.State.Checked, colors, scale);
    } else {
        DrawCircle(device, box, button.State.Checked, colors, scale);
    }
}

void DrawFace(HDC device, const RECT& area, const ButtonPicture& button, const ButtonColors& colors, Scale scale) {
    const int line = std::max(scale.Pixels(1), 1);
    FillArea(device, area, colors.Face);
    DrawFrame(device, area, colors.Frame, button.Kind == ButtonKind::DefaultPush ? 2 * line : line);
    if (button.Kind == ButtonKind::Tab && button.State.Checked) {
        FillArea(device, {area.left, area.bottom - scale.Pixels(TabLine), area.right, area.bottom}, colors.Mark);
    }
}

void DrawArrow(HDC device, const RECT& area, bool isUp, COLORREF color, Scale scale) {
    const LONG x = (area.left + area.right) / 2;
    const LONG half = scale.Pixels(ArrowHeight);  // of its base
    const LONG top = (area.top + area.bottom - half) / 2;
    const LONG tip = isUp ? top : top + half;
    const LONG base = isUp ? top + half : top;
    const Tools tools(device, color, 1, color);
    const std::array corners = {POINT{x, tip}, POINT{x - half, base}, POINT{x + half, base}};
    Polygon(device, corners.data(), static_cast<int>(corners.size()));
}

RECT TextArea(const RECT& area, const ButtonPicture& button, Scale scale) {
    RECT text = area;
    if (HasBox(button.Kind)) {
        text.left = BoxIn(area, scale).right + scale.Pixels(BoxGap);
    } else {
        text.left += scale.Pixels(FocusInset + 1);
        text.right -= scale.Pixels(FocusInset + 1);
    }
    return text;
}

void DrawCaption(HDC device, const RECT& area, const ButtonPicture& button, COLORREF color, Scale scale) {
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, color);
    RECT text = TextArea(area, button, scale);
    const UINT place = HasBox(button.Kind) ? DT_LEFT : DT_CENTER;
    const UINT mnemonics = button.ShowsMnemonics ? 0U : DT_HIDEPREFIX;
    DrawTextW(device, button.Text.c_str(), -1, &text, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | place | mnemonics);
}

RECT FocusArea(HDC device, const RECT& area, const ButtonPicture& button, Scale scale) {
    RECT focus = area;
    if (HasBox(button.Kind)) {
        RECT text = TextArea(area, button, scale);
        DrawTextW(device, button.Text.c_str(), -1, &text, DT_SINGLELINE | DT_CALCRECT);
        focus.left = text.left - scale.Pixels(3);
        focus.right = std::min(text.right + scale.Pixels(3), area.right);
    } else {
        InflateRect(&focus, -scale.Pixels(FocusInset), -scale.Pixels(FocusInset));
        focus.bottom -= button.Kind == ButtonKind::Tab ? scale.Pixels(TabLine) - 1 : 0;
    }
    return focus;
}

}  // namespace

void FillArea(HDC device, const RECT& area, COLORREF color) {
    const UniqueBrush brush(CreateSolidBrush(color));
    FillRect(device, &area, brush.get());
}

void DrawFrame(HDC device, const RECT& area, COLORREF color, int width) {
    const UniqueBrush brush(CreateSolidBrush(color));
    RECT line = area;
    for (int i = 0; i < width; ++i) {
        FrameRect(device, &line, brush.get());
        InflateRect(&line, -1, -1);
    }
}

void DrawCheckBox(HDC device, const RECT& box, bool checked, COLORREF ground, const ControlLook& look) {
    const PaletteBrushes& brushes = *look.Brushes;
    ButtonColors colors = ColorsOfButton(ButtonKind::CheckBox, {}, brushes.Colors(), brushes.IsDark());
    colors.Face = ground;
    DrawSquare(device, box, checked, colors, look.Resolution);
}

void DrawButton(HDC device, const RECT& area, const ButtonPicture& button, const ControlLook& look) {
    const PaletteBrushes& brushes = *look.Brushes;
    const Scale scale = look.Resolution;
    const ButtonColors colors = ColorsOfButton(button.Kind, button.State, brushes.Colors(), brushes.IsDark());
    FillArea(device, area, colors.Ground);
    if (HasBox(button.Kind)) {
        DrawBox(device, area, button, colors, scale);
    } else {
        DrawFace(device, area, button, colors, scale);
    }
    const HGDIOBJ previous = SelectObject(device, button.Font);
    if (IsArrow(button.Kind)) {
        DrawArrow(device, area, button.Kind == ButtonKind::UpArrow, colors.Text, scale);
    } else {
        DrawCaption(device, area, button, colors.Text, scale);
    }
    if (button.ShowsFocus) {
        DrawFrame(device, FocusArea(device, area, button, scale), colors.Text, std::max(scale.Pixels(1), 1));
    }
    SelectObject(device, previous);
}

int ButtonWidth(HWND window, const ButtonPicture& button, const ControlLook& look) {
    const Scale scale = look.Resolution;
    const int text = static_cast<int>(TextExtent(window, button.Font, button.Text).cx);
    if (HasBox(button.Kind)) {
        return text + scale.Pixels(BoxSize + BoxGap + 6);
    }
    return std::max(scale.Pixels(SmallestButton), text + 2 * scale.Pixels(ButtonMargin));
}

}  // namespace corvina::ui
