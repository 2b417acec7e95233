#include "details/win32/details_pane_control.h"

#include <algorithm>
#include <string>

#include "details/win32/field_text.h"
#include "ui/win32/focus_keys.h"
#include "ui/win32/layout_direction.h"

namespace corvina {
namespace {

constexpr int FieldGap = 4;  // between fields, at 96 dots per inch
// Messages line their parts up with tabs; the usual width wastes much of a narrow field. In quarters of a character's
// width.
constexpr DWORD TabWidth = 16;
constexpr int FieldMargin = 4;  // between a field's edge and its text, likewise

void PlaceChild(HWND child, LONG left, LONG top, LONG right, LONG bottom) {
    SetWindowPos(child, nullptr, left, top, std::max<LONG>(right - left, 0), std::max<LONG>(bottom - top, 0),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

bool DetailsPaneControl::Create(HWND parent, HINSTANCE instance) {
    for (HWND& field : fields_) {
        if (field != nullptr) {
            DestroyWindow(field);
        }
        field = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"",
                                WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | ES_MULTILINE | ES_READONLY, 0, 0, 0,
                                0, parent, nullptr, instance, nullptr);
        if (field == nullptr) {
            return false;
        }
        directions_[static_cast<std::size_t>(&field - fields_.data())] = ui::ReadingDirection(field);
        ui::KeepFocusKeys(field);
    }
    return true;
}

void DetailsPaneControl::ShowDetails(std::wstring_view leftProperties, std::wstring_view rightProperties,
                                     std::wstring_view description, std::wstring_view xml) {
    const bool isMirrored = ui::IsMirrored(GetParent(Field(DetailsField::Description)));
    const auto values = [isMirrored](std::wstring_view lines) {
        return isMirrored ? WithDirectionMarks(lines) : std::wstring(lines);
    };
    SetText(DetailsField::LeftProperties, values(leftProperties));
    SetText(DetailsField::RightProperties, values(rightProperties));
    SetText(DetailsField::Description, description);
    SetText(DetailsField::Xml, xml);
}

void DetailsPaneControl::SetText(DetailsField field, std::wstring_view text) {
    // Messages come in the languages of those who wrote them, and markup is read from the left.
    directions_[static_cast<std::size_t>(field)].Set(ui::ReadsFromTheRight(GetParent(Field(field)), text));
    SetWindowTextW(Field(field), FieldText(text).c_str());
}

void DetailsPaneControl::SetFont(HFONT font, ui::Scale scale) {
    const auto margin = static_cast<WORD>(scale.Pixels(FieldMargin));
    for (const HWND field : fields_) {
        SendMessageW(field, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
        SendMessageW(field, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&TabWidth));
        SendMessageW(field, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(margin, margin));
    }
}

int DetailsPaneControl::PropertiesHeight(const RECT& area, ui::Scale scale) const {
    // Nine lines and the edges show all properties; with less room the descriptions keep half of it.
    const int wanted = scale.Pixels(9 * 16 + 8);
    return std::min(wanted, static_cast<int>(area.bottom - area.top) / 2);
}

void DetailsPaneControl::Place(const RECT& area, ui::Scale scale) {
    const LONG gap = scale.Pixels(FieldGap);
    const LONG middle = (area.left + area.right) / 2;
    const LONG edge = area.top + PropertiesHeight(area, scale);
    PlaceChild(Field(DetailsField::LeftProperties), area.left, area.top, middle - gap / 2, edge);
    PlaceChild(Field(DetailsField::RightProperties), middle + gap - gap / 2, area.top, area.right, edge);
    PlaceChild(Field(DetailsField::Description), area.left, edge + gap, middle - gap / 2, area.bottom);
    PlaceChild(Field(DetailsField::Xml), middle + gap - gap / 2, edge + gap, area.right, area.bottom);
}

void DetailsPaneControl::SetRedraw(bool on) {
    for (const HWND field : fields_) {
        SendMessageW(field, WM_SETREDRAW, on ? TRUE : FALSE, 0);
    }
}

std::optional<DetailsField> DetailsPaneControl::FieldOf(HWND window) const {
    const auto found = std::ranges::find(fields_, window);
    if (window == nullptr || found == fields_.end()) {
        return std::nullopt;
    }
    return static_cast<DetailsField>(found - fields_.begin());
}

}  // namespace corvina
