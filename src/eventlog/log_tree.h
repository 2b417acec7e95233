// The tree of computers and their logs, as a plain structure that a tree control mirrors. Logic reads and changes this
// structure only; the control learns of every change through LogTreeView.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvina {

// Identifies a node for as long as it exists; never used again for another one.
enum class NodeId : std::uint32_t { None = 0 };

enum class NodeKind {
    Computer,
    Extras,
    MergedChannels,
    AdministrativeEvents,
    CustomViews,
    SavedLogs,
    Folder,
    Channel,
    SavedLog,
    CustomView
};

enum class NodeIcon { Log = 0, Folder = 1, Computer = 2 };

struct LogTreeNode {
    NodeId Id = NodeId::None;
    NodeId Parent = NodeId::None;
    std::vector<NodeId> Children;
    NodeKind Kind = NodeKind::Folder;
    NodeIcon Icon = NodeIcon::Folder;
    std::wstring Caption;
    std::wstring Key;                 // computer: its name; saved log: its key in the settings; otherwise empty
    std::int32_t ChannelIndex = -1;   // channel: index of its record in its computer's list
    std::uint32_t ComputerIndex = 0;  // computer: index of its channel list
};

// What shows the tree. All calls come from LogTree.
class LogTreeView {
  public:
    virtual ~LogTreeView() = default;
    virtual void NodeInserted(const LogTreeNode& node) = 0;  // as the last child of its parent
    virtual void NodeCaptionChanged(const LogTreeNode& node) = 0;
    virtual void NodeRemoved(NodeId node) = 0;  // with everything below it
    virtual void NodeExpanded(NodeId node) = 0;
    virtual void NodeSelected(NodeId node) = 0;
    virtual void TreeCleared() = 0;
};

class LogTree {
  public:
    // `view` may be null; it must outlive the tree.
    explicit LogTree(LogTreeView* view) : view_(view) {}

    // Inserts a node as the last child of `parent` (NodeId::None for a root). `node.Id`, `Parent` and `Children` are
    // set here.
    NodeId Insert(NodeId parent, LogTreeNode node);
    void Remove(NodeId node);
    void Clear();
    void SetCaption(NodeId node, std::wstring caption);
    void Expand(NodeId node);
    void Select(NodeId node);  // by the program: the view follows
    void SelectionChangedByUser(NodeId node) { selected_ = node; }

    const LogTreeNode* Find(NodeId node) const;  // null when it does not exist (any more)
    NodeId Selected() const { return selected_; }
    const std::vector<NodeId>& Roots() const { return roots_; }
    NodeId RootOf(NodeId node) const;

    // The first direct child whose caption equals the text exactly, or none.
    NodeId FindChildByCaption(NodeId parent, std::wstring_view caption) const;

    // The node that a path of captions such as "Windows Logs/System" names below the first computer; the counts behind
    // log names are left out, and a caption may hold "/" itself. None when there is no such node.
    NodeId FindByPath(std::wstring_view path) const;

  private:
    LogTreeView* view_;
    std::unordered_map<NodeId, LogTreeNode> nodes_;
    std::vector<NodeId> roots_;
    NodeId selected_ = NodeId::None;
    std::uint32_t lastId_ = 0;
};

// A caption without the count behind it: the text before " (" when that stands after the first character.
std::wstring_view CaptionBaseName(std::wstring_view caption);

}  // namespace corvina
