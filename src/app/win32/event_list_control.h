// The virtual list of events: it holds a number of rows only and asks its owner for what it draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/main_window_view.h"
#include "ui/win32/gdi_objects.h"
#include "ui/win32/header_painter.h"
#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina {

// Where the list takes its contents from and what it tells.
class EventListOwner {
  public:
    virtual ~EventListOwner() = default;

    // The text of a cell by row and position among the shown columns, ending with a zero character behind its end;
    // empty for a row that is gone.
    virtual std::wstring_view CellText(std::size_t row, std::size_t position) const = 0;
    // The index of a row's level icon.
    virtual std::uint32_t RowImage(std::size_t row) const = 0;
    virtual bool ColorsRowsByLevel() const = 0;

    // Never called from inside a notification of the control, since it may take long.
    virtual void SelectionChanged() = 0;
    virtual void HeaderClicked(std::size_t position) = 0;
    virtual void RowActivated() = 0;  // by a double click or Enter
};

class EventListControl {
  public:
    explicit EventListControl(EventListOwner& owner) : owner_(owner) {}

    // `selectionMessage` is a message of the parent's own; the parent answers it with DeliverSelection.
    bool Create(HWND parent, HINSTANCE instance, UINT selectionMessage);
    HWND Handle() const { return handle_; }
    HWND Header() const;

    void SetColumns(std::span<const ListColumn> columns);
    std::optional<int> ColumnWidth(std::size_t position) const;
    void ScaleColumns(ui::Scale from, ui::Scale to);
    void SetExtendedStyles();
    void SetGridLines(bool on);

    void Clear();
    // The number of rows; at most 100,000,000, which is what the control can hold.
    void SetRowCount(std::size_t count);
    void SelectOnly(std::size_t row);
    void SelectAll();
    bool IsSelected(std::size_t row) const;
    std::optional<std::size_t> FirstSelected() const;
    std::vector<std::size_t> SelectedRows() const;

    // Tells the owner of a change of the selection that is waiting.
    void DeliverSelection();

    // A notification of the control for its parent; the answer is the message's result.
    LRESULT NotificationReceived(const NMHDR& notification, LPARAM lParam);

    // Where the menu of the selected row opens from the keyboard, on the screen.
    POINT SelectionPlace() const;

    void SetIcons(HINSTANCE instance, ui::Scale scale);
    void SetColors(const ui::PaletteBrushes& brushes);

  private:
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const;
    std::optional<std::size_t> NextSelected(int after) const;
    std::size_t RowCount() const;
    void SelectionMayHaveChanged();
    void FillItem(LVITEMW& item) const;
    int FindByPrefix(const NMLVFINDITEMW& search) const;
    void FillInfoTip(NMLVGETINFOTIPW& tip) const;
    LRESULT PaintRow(NMLVCUSTOMDRAW& painting) const;
    void KeyPressed(const NMLVKEYDOWN& key);

    EventListOwner& owner_;
    HWND handle_ = nullptr;
    UINT selectionMessage_ = 0;
    ui::HeaderPainter headerPainter_;
    ui::UniqueImageList icons_;
    COLORREF textColor_ = 0;
    bool isDark_ = false;
    bool programChanges_ = false;
    bool selectionWaits_ = false;
    bool gridLines_ = false;
};

}  // namespace corvina
