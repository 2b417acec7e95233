#include "eventlog/win32/log_tree_control.h"

#include <array>
#include <cstring>
#include <string>

#include "resource_ids.h"
#include "ui/win32/focus_keys.h"
#include "ui/win32/image_lists.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

constexpr std::array NodeIcons = {CORVINA_ICON_LOG, CORVINA_ICON_FOLDER, CORVINA_ICON_COMPUTER};

}  // namespace

class LogTreeControl::ProgramChange {
  public:
    explicit ProgramChange(LogTreeControl& control) : control_(control) { ++control_.programChanges_; }
    ~ProgramChange() { --control_.programChanges_; }
    ProgramChange(const ProgramChange&) = delete;
    ProgramChange& operator=(const ProgramChange&) = delete;

  private:
    LogTreeControl& control_;
};

bool LogTreeControl::Create(HWND parent, HINSTANCE instance, UINT selectionMessage) {
    selectionMessage_ = selectionMessage;
    handle_ = CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_INFOTIP, 0, 0,
        0, 0, parent, nullptr, instance, nullptr);
    if (handle_ == nullptr) {
        return false;
    }
    Send(TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
    ui::KeepFocusKeys(handle_);
    return true;
}

LRESULT LogTreeControl::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(handle_, message, wParam, lParam);
}

HTREEITEM LogTreeControl::ItemOf(NodeId node) const {
    const auto found = items_.find(node);
    return found == items_.end() ? nullptr : found->second;
}

NodeId LogTreeControl::NodeOf(HTREEITEM item) const {
    TVITEMW description{};
    description.mask = TVIF_PARAM;
    description.hItem = item;
    if (item == nullptr || Send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&description)) == FALSE) {
        return NodeId::None;
    }
    return static_cast<NodeId>(static_cast<std::uint32_t>(description.lParam));
}

HTREEITEM LogTreeControl::SelectedItem() const {
    return reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET, 0));
}

void LogTreeControl::NodeInserted(const LogTreeNode& node) {
    const ProgramChange change(*this);
    std::wstring caption = node.Caption;
    TVINSERTSTRUCTW insertion{};
    insertion.hParent = node.Parent == NodeId::None ? TVI_ROOT : ItemOf(node.Parent);
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    insertion.item.pszText = caption.data();
    insertion.item.lParam = static_cast<LPARAM>(node.Id);
    insertion.item.iImage = static_cast<int>(node.Icon);
    insertion.item.iSelectedImage = insertion.item.iImage;
    const auto item = reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insertion)));
    if (item != nullptr) {
        items_[node.Id] = item;
    }
}

void LogTreeControl::NodeCaptionChanged(const LogTreeNode& node) {
    std::wstring caption = node.Caption;
    TVITEMW description{};
    description.mask = TVIF_TEXT;
    description.hItem = ItemOf(node.Id);
    description.pszText = caption.data();
    if (description.hItem != nullptr) {
        Send(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&description));
    }
}

void LogTreeControl::NodeRemoved(NodeId node) {
    const HTREEITEM item = ItemOf(node);
    if (item == nullptr) {
        return;
    }
    const ProgramChange change(*this);
    // The control would select a neighbour, which the program knows nothing of.
    for (HTREEITEM above = SelectedItem(); above != nullptr;
         above = reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_PARENT, reinterpret_cast<LPARAM>(above)))) {
        if (above == item) {
            Send(TVM_SELECTITEM, TVGN_CARET, 0);
            selectionWaits_ = false;
            break;
        }
    }
    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(item));
}

void LogTreeControl::NodeExpanded(NodeId node) {
    if (const HTREEITEM item = ItemOf(node); item != nullptr) {
        const ProgramChange change(*this);
        Send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
    }
}

void LogTreeControl::NodeSelected(NodeId node) {
    const ProgramChange change(*this);
    selectionWaits_ = false;
    Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(ItemOf(node)));
}

void LogTreeControl::TreeCleared() {
    const ProgramChange change(*this);
    selectionWaits_ = false;
    Send(TVM_SELECTITEM, TVGN_CARET, 0);
    Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    items_.clear();
}

void LogTreeControl::DeliverSelection() {
    if (!selectionWaits_) {
        return;
    }
    selectionWaits_ = false;
    const NodeId node = NodeOf(SelectedItem());
    if (node != NodeId::None) {
        selected_(node);
    }
}

LRESULT LogTreeControl::NotificationReceived(const NMHDR& notification, LPARAM lParam) {
    switch (notification.code) {
        case TVN_SELCHANGEDW:
            if (programChanges_ == 0 && !selectionWaits_) {
                selectionWaits_ = true;
                PostMessageW(GetParent(handle_), selectionMessage_, 0, 0);
            }
            return 0;
        case TVN_DELETEITEMW:
            items_.erase(static_cast<NodeId>(
                static_cast<std::uint32_t>(reinterpret_cast<const NMTREEVIEWW*>(lParam)->itemOld.lParam)));
            return 0;
        case NM_CUSTOMDRAW:
            return PaintItem(*reinterpret_cast<NMTVCUSTOMDRAW*>(lParam));
        default:
            return 0;
    }
}

LRESULT LogTreeControl::PaintItem(NMTVCUSTOMDRAW& painting) const {
    if (painting.nmcd.dwDrawStage == CDDS_PREPAINT) {
        return isDark_ ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
    }
    if (painting.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && (painting.nmcd.uItemState & CDIS_SELECTED) != 0) {
        // The system marks selected items in light colours, on which the scheme's light texts cannot be read.
        painting.clrText = textColor_;
        painting.clrTextBk = GetFocus() == handle_ ? ui::DarkSelection : ui::DarkSelectionWithoutFocus;
    }
    return CDRF_DODEFAULT;
}

bool LogTreeControl::SelectAt(POINT screenPlace) {
    TVHITTESTINFO place{};
    place.pt = screenPlace;
    ScreenToClient(handle_, &place.pt);
    const auto item = reinterpret_cast<HTREEITEM>(Send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&place)));
    if (item == nullptr) {
        return false;
    }
    if (item != SelectedItem()) {
        Send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
    }
    return true;
}

POINT LogTreeControl::SelectionPlace() const {
    RECT area{};
    // The control takes the item in the same memory in which it answers.
    const HTREEITEM item = SelectedItem();
    std::memcpy(&area, &item, sizeof(item));
    if (item == nullptr || Send(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&area)) == FALSE) {
        return ui::KeyboardMenuPlace(handle_);
    }
    POINT place{area.left, area.bottom};
    ClientToScreen(handle_, &place);
    return place;
}

void LogTreeControl::SetIcons(HINSTANCE instance, ui::Scale scale) {
    ui::UniqueImageList icons = ui::LoadSmallIcons(instance, NodeIcons, scale);
    Send(TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(icons.get()));
    icons_ = std::move(icons);
    Send(TVM_SETITEMHEIGHT, static_cast<WPARAM>(scale.Pixels(20)), 0);
}

void LogTreeControl::SetColors(const ui::PaletteBrushes& brushes) {
    textColor_ = brushes.Colors().Text;
    isDark_ = brushes.IsDark();
    Send(TVM_SETBKCOLOR, 0, static_cast<LPARAM>(brushes.Colors().ControlBack));
    Send(TVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(brushes.Colors().Text));
}

}  // namespace corvina
