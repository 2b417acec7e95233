// The tree control that mirrors the tree of computers and logs.
#pragma once

#include <functional>
#include <unordered_map>

#include "eventlog/log_tree.h"
#include "ui/win32/gdi_objects.h"
#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina {

class LogTreeControl : public LogTreeView {
  public:
    // Called after the user has selected another node; never from inside the control's own notification, because what
    // follows may take long and may change the tree.
    using SelectionHandler = std::function<void(NodeId)>;

    explicit LogTreeControl(SelectionHandler selected) : selected_(std::move(selected)) {}

    // `selectionMessage` is a message of the parent's own; the parent answers it with DeliverSelection.
    bool Create(HWND parent, HINSTANCE instance, UINT selectionMessage);
    HWND Handle() const { return handle_; }

    void NodeInserted(const LogTreeNode& node) override;
    void NodeCaptionChanged(const LogTreeNode& node) override;
    void NodeRemoved(NodeId node) override;
    void NodeExpanded(NodeId node) override;
    void NodeSelected(NodeId node) override;
    void TreeCleared() override;

    // Hands a selection of the user that is waiting to the handler.
    void DeliverSelection();

    // A notification of the control for its parent; the answer is the message's result.
    LRESULT NotificationReceived(const NMHDR& notification, LPARAM lParam);

    // Selects the node at a place of the screen, as the left button would; false when there is none.
    bool SelectAt(POINT screenPlace);
    // Where the menu of the selected node opens from the keyboard, on the screen.
    POINT SelectionPlace() const;

    void SetIcons(HINSTANCE instance, ui::Scale scale);
    void SetColors(const ui::PaletteBrushes& brushes);

  private:
    // Keeps the control's notifications from counting as choices of the user.
    class ProgramChange;

    LRESULT PaintItem(NMTVCUSTOMDRAW& painting) const;
    HTREEITEM ItemOf(NodeId node) const;
    NodeId NodeOf(HTREEITEM item) const;
    HTREEITEM SelectedItem() const;
    LRESULT Send(UINT message, WPARAM wParam, LPARAM lParam) const;

    SelectionHandler selected_;
    HWND handle_ = nullptr;
    UINT selectionMessage_ = 0;
    std::unordered_map<NodeId, HTREEITEM> items_;
    ui::UniqueImageList icons_;
    COLORREF textColor_ = 0;
    bool isDark_ = false;
    int programChanges_ = 0;
    bool selectionWaits_ = false;
};

}  // namespace corvina
