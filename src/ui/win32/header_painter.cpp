#include "ui/win32/header_painter.h"

#include <algorithm>

namespace corvina::ui {
namespace {

constexpr UINT_PTR PainterIdentifier = 2;

void Fill(HDC device, const RECT& area, COLORREF color) {
    const UniqueBrush brush(CreateSolidBrush(color));
    FillRect(device, &area, brush.get());
}

}  // namespace

void HeaderPainter::Install(HWND list) {
    list_ = list;
    SetWindowSubclass(list, &HeaderPainter::Procedure, PainterIdentifier, reinterpret_cast<DWORD_PTR>(this));
}

void HeaderPainter::SetColors(const PaletteBrushes& brushes) {
    darkColors_ = brushes.IsDark() ? std::optional(brushes.Colors()) : std::nullopt;
    InvalidateRect(Header(), nullptr, TRUE);
}

HWND HeaderPainter::Header() const {
    return reinterpret_cast<HWND>(SendMessageW(list_, LVM_GETHEADER, 0, 0));
}

LRESULT CALLBACK HeaderPainter::Procedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR identifier,
                                          DWORD_PTR reference) {
    const auto* painter = reinterpret_cast<const HeaderPainter*>(reference);
    if (message == WM_NOTIFY && painter->darkColors_) {
        const auto* notification = reinterpret_cast<const NMHDR*>(lParam);
        if (notification->code == static_cast<UINT>(NM_CUSTOMDRAW) && notification->hwndFrom == painter->Header()) {
            return painter->Paint(*reinterpret_cast<const NMCUSTOMDRAW*>(lParam));
        }
    }
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(list, &HeaderPainter::Procedure, identifier);
    }
    return DefSubclassProc(list, message, wParam, lParam);
}

LRESULT HeaderPainter::Paint(const NMCUSTOMDRAW& painting) const {
    switch (painting.dwDrawStage) {
        case CDDS_PREPAINT:
            return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
        case CDDS_ITEMPREPAINT:
            DrawItem(painting);
            return CDRF_SKIPDEFAULT;
        case CDDS_POSTPAINT:
            FillRest(painting.hdc);
            return CDRF_DODEFAULT;
        default:
            return CDRF_DODEFAULT;
    }
}

void HeaderPainter::DrawItem(const NMCUSTOMDRAW& painting) const {
    wchar_t text[260] = {};
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = text;
    item.cchTextMax = 260;
    SendMessageW(painting.hdr.hwndFrom, HDM_GETITEMW, painting.dwItemSpec, reinterpret_cast<LPARAM>(&item));

    RECT area = painting.rc;
    const bool isActive = (painting.uItemState & (CDIS_HOT | CDIS_SELECTED)) != 0;
    Fill(painting.hdc, area, isActive ? darkColors_->Frame : darkColors_->Panel);
    const RECT divider{area.right - 1, area.top, area.right, area.bottom};
    Fill(painting.hdc, divider, darkColors_->Frame);

    const int margin = MulDiv(6, GetDeviceCaps(painting.hdc, LOGPIXELSX), USER_DEFAULT_SCREEN_DPI);
    area.left += margin;
    area.right -= margin;
    SetTextColor(painting.hdc, darkColors_->Text);
    SetBkMode(painting.hdc, TRANSPARENT);
    DrawTextW(painting.hdc, text, -1, &area, DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

// The header's part to the right of its last item.
void HeaderPainter::FillRest(HDC device) const {
    const HWND header = Header();
    RECT area{};
    GetClientRect(header, &area);
    const auto count = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        RECT item{};
        SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        area.left = std::max(area.left, item.right);
    }
    Fill(device, area, darkColors_->Panel);
}

}  // namespace corvina::ui
