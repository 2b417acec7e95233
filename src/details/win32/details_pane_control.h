// The details pane's four read-only fields: the properties side by side, below them the description and the event's
// XML.
#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string_view>

#include "details/details_pane_view.h"
#include "ui/win32/reading_direction.h"
#include "ui/win32/scaling.h"

namespace corvina {

enum class DetailsField { LeftProperties, RightProperties, Description, Xml };

class DetailsPaneControl : public DetailsPaneView {
  public:
    // The fields become children of `parent`, which answers their WM_CTLCOLORSTATIC messages; fields that were made
    // before make room for them.
    bool Create(HWND parent, HINSTANCE instance);

    void ShowDetails(std::wstring_view leftProperties, std::wstring_view rightProperties, std::wstring_view description,
                     std::wstring_view xml) override;

    void SetFont(HFONT font, ui::Scale scale);
    // Places the fields in an area of the parent.
    void Place(const RECT& area, ui::Scale scale);
    void SetRedraw(bool on);

    HWND Field(DetailsField field) const { return fields_[static_cast<std::size_t>(field)]; }
    std::optional<DetailsField> FieldOf(HWND window) const;

  private:
    void SetText(DetailsField field, std::wstring_view text);
    int PropertiesHeight(const RECT& area, ui::Scale scale) const;

    std::array<HWND, 4> fields_{};
    std::array<ui::ReadingDirection, 4> directions_{};
};

}  // namespace corvina
