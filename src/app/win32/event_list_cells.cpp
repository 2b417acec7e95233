// What the event list answers while it draws, is searched by typing and shows tips.
#include <algorithm>
#include <array>
#include <string>

#include "app/win32/cell_text.h"
#include "app/win32/event_list_control.h"
#include "base/text_direction.h"
#include "ui/win32/fonts.h"
#include "ui/win32/layout_direction.h"

namespace corvina {
namespace {

// The beginning of a cell's text that is given marks of its direction; nothing behind it is drawn.
constexpr std::size_t LongestMarkedText = 250;

// The longest tip that still looks like one.
constexpr std::size_t LongestTip = 1'000;

struct LevelColor {
    COLORREF OnLight;
    COLORREF OnDark;
};

// Text colours by level icon; no colour of its own for information and successful audits.
constexpr std::array<std::optional<LevelColor>, 7> LevelColors = {std::nullopt,
                                                                  LevelColor{RGB(138, 90, 0), RGB(255, 204, 92)},
                                                                  LevelColor{RGB(176, 24, 16), RGB(255, 125, 115)},
                                                                  std::nullopt,
                                                                  LevelColor{RGB(138, 90, 0), RGB(255, 204, 92)},
                                                                  LevelColor{RGB(140, 0, 20), RGB(255, 90, 100)},
                                                                  LevelColor{RGB(96, 104, 112), RGB(160, 170, 182)}};

}  // namespace

void EventListControl::FillItem(LVITEMW& item) const {
    const auto row = static_cast<std::size_t>(item.iItem);
    if ((item.mask & LVIF_IMAGE) != 0 && item.iSubItem == 0) {
        item.iImage = static_cast<int>(owner_.RowImage(row));
    }
    if ((item.mask & LVIF_TEXT) == 0) {
        return;
    }
    const std::wstring_view text = owner_.CellText(row, static_cast<std::size_t>(item.iSubItem));
    if (ui::IsMirrored(handle_) && NeedsDirectionMarks(text)) {
        if (item.pszText != nullptr && item.cchTextMax > 0) {
            const std::wstring marked =
                LeftToRightMark + std::wstring(text.substr(0, LongestMarkedText)) + LeftToRightMark;
            CopyCellText(marked, item.pszText, static_cast<std::size_t>(item.cchTextMax));
        }
    } else if (FitsCell(text)) {
        // The text lives as long as its row, which is longer than the control looks at it. The control only reads it.
        static constexpr wchar_t Nothing[] = L"";
        item.pszText = const_cast<wchar_t*>(text.empty() ? Nothing : text.data());
    } else if (item.pszText != nullptr && item.cchTextMax > 0) {
        CopyCellText(text, item.pszText, static_cast<std::size_t>(item.cchTextMax));
    }
}

int EventListControl::FindByPrefix(const NMLVFINDITEMW& search) const {
    constexpr int NotFound = -1;
    const std::size_t count = RowCount();
    if (count == 0 || (search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || search.lvfi.psz == nullptr) {
        return NotFound;
    }
    const std::wstring_view wanted(search.lvfi.psz);
    const std::size_t start = search.iStart < 0 ? 0 : static_cast<std::size_t>(search.iStart) % count;
    const bool wraps = (search.lvfi.flags & LVFI_WRAP) != 0;
    const std::size_t tried = wraps ? count : count - start;
    for (std::size_t i = 0; i < tried; ++i) {
        const std::size_t row = (start + i) % count;
        if (BeginsWith(owner_.CellText(row, 0), wanted)) {
            return static_cast<int>(row);
        }
    }
    return NotFound;
}

void EventListControl::FillInfoTip(NMLVGETINFOTIPW& tip) const {
    LVHITTESTINFO place{};
    GetCursorPos(&place.pt);
    ScreenToClient(handle_, &place.pt);
    if (Send(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&place)) < 0 || tip.pszText == nullptr ||
        tip.cchTextMax < 1) {
        return;
    }
    const std::wstring_view text =
        owner_.CellText(static_cast<std::size_t>(place.iItem), static_cast<std::size_t>(place.iSubItem));
    // A tip helps only where the cell cannot show everything.
    const auto font = reinterpret_cast<HFONT>(Send(WM_GETFONT, 0, 0));
    const auto width = ColumnWidth(static_cast<std::size_t>(place.iSubItem));
    const bool isCut = !FitsCell(text) || (width && ui::TextExtent(handle_, font, text).cx + 12 > *width);
    CopyBeginning(isCut ? text.substr(0, LongestTip) : std::wstring_view(), tip.pszText,
                  static_cast<std::size_t>(tip.cchTextMax));
}

LRESULT EventListControl::PaintRow(NMLVCUSTOMDRAW& painting) const {
    if (painting.nmcd.dwDrawStage == CDDS_PREPAINT) {
        return isDark_ || owner_.ColorsRowsByLevel() ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
    }
    if (painting.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) {
        return CDRF_DODEFAULT;
    }
    const std::size_t row = painting.nmcd.dwItemSpec;
    if (isDark_ && IsSelected(row)) {
        // The system marks selected rows in light colours, on which the scheme's light texts cannot be read.
        painting.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
        painting.clrText = textColor_;
        painting.clrTextBk = GetFocus() == handle_ ? ui::DarkSelection : ui::DarkSelectionWithoutFocus;
    } else if (owner_.ColorsRowsByLevel()) {
        const auto& color = LevelColors[std::min<std::size_t>(owner_.RowImage(row), LevelColors.size() - 1)];
        painting.clrText = !color ? textColor_ : isDark_ ? color->OnDark : color->OnLight;
    }
    return CDRF_NEWFONT;
}

}  // namespace corvina
