// What a load shows of itself in the main window.
#pragma once

#include <cstddef>
#include <string_view>

namespace corvina {

class LoadView {
  public:
    virtual ~LoadView() = default;

    // Painting of the main window is put off between these two; calls do not nest.
    virtual void LockUpdates() = 0;
    virtual void UnlockUpdates() = 0;

    // The label above the event list.
    virtual void SetListCaption(std::wstring_view text) = 0;

    // The status field at the lower edge.
    virtual void SetStatusText(std::wstring_view text) = 0;

    // Empties the list control: no items, no selection, no focus.
    virtual void ClearList() = 0;

    // The number of rows of the virtual list; it is repainted.
    virtual void SetRowCount(std::size_t count) = 0;

    // Selects and focuses one row and no other, which fills the details pane through the list's own notification.
    virtual void SelectRow(std::size_t row) = 0;
};

}  // namespace corvina
