#include "eventlog/log_tree.h"

#include <algorithm>

namespace corvina {

std::wstring_view CaptionBaseName(std::wstring_view caption) {
    const std::size_t count = caption.find(L" (");
    return count == std::wstring_view::npos || count == 0 ? caption : caption.substr(0, count);
}

NodeId LogTree::Insert(NodeId parent, LogTreeNode node) {
    if (parent != NodeId::None && nodes_.find(parent) == nodes_.end()) {
        return NodeId::None;
    }
    node.Id = NodeId{++lastId_};
    node.Parent = parent;
    node.Children.clear();
    const NodeId id = node.Id;
    const LogTreeNode& inserted = nodes_.emplace(id, std::move(node)).first->second;
    (parent == NodeId::None ? roots_ : nodes_.find(parent)->second.Children).push_back(id);
    if (view_ != nullptr) {
        view_->NodeInserted(inserted);
    }
    return id;
}

void LogTree::Remove(NodeId node) {
    const auto place = nodes_.find(node);
    if (place == nodes_.end()) {
        return;
    }
    const NodeId parent = place->second.Parent;
    std::vector<NodeId>& siblings = parent == NodeId::None ? roots_ : nodes_.find(parent)->second.Children;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), node), siblings.end());

    std::vector<NodeId> waiting{node};
    while (!waiting.empty()) {
        const auto next = nodes_.find(waiting.back());
        waiting.pop_back();
        waiting.insert(waiting.end(), next->second.Children.begin(), next->second.Children.end());
        if (next->first == selected_) {
            selected_ = NodeId::None;
        }
        nodes_.erase(next);
    }
    if (view_ != nullptr) {
        view_->NodeRemoved(node);
    }
}

void LogTree::Clear() {
    nodes_.clear();
    roots_.clear();
    selected_ = NodeId::None;
    if (view_ != nullptr) {
        view_->TreeCleared();
    }
}

void LogTree::SetCaption(NodeId node, std::wstring caption) {
    const auto place = nodes_.find(node);
    if (place == nodes_.end()) {
        return;
    }
    place->second.Caption = std::move(caption);
    if (view_ != nullptr) {
        view_->NodeCaptionChanged(place->second);
    }
}

void LogTree::Expand(NodeId node) {
    if (view_ != nullptr && Find(node) != nullptr) {
        view_->NodeExpanded(node);
    }
}

void LogTree::Select(NodeId node) {
    if (Find(node) == nullptr) {
        return;
    }
    selected_ = node;
    if (view_ != nullptr) {
        view_->NodeSelected(node);
    }
}

const LogTreeNode* LogTree::Find(NodeId node) const {
    const auto place = nodes_.find(node);
    return place == nodes_.end() ? nullptr : &place->second;
}

NodeId LogTree::RootOf(NodeId node) const {
    const LogTreeNode* place = Find(node);
    while (place != nullptr && place->Parent != NodeId::None) {
        place = Find(place->Parent);
    }
    return place == nullptr ? NodeId::None : place->Id;
}

NodeId LogTree::FindChildByCaption(NodeId parent, std::wstring_view caption) const {
    const LogTreeNode* place = Find(parent);
    if (place == nullptr) {
        return NodeId::None;
    }
    for (const NodeId child : place->Children) {
        if (Find(child)->Caption == caption) {
            return child;
        }
    }
    return NodeId::None;
}

NodeId LogTree::FindByPath(std::wstring_view path) const {
    if (roots_.empty()) {
        return NodeId::None;
    }
    // Captions may hold "/" themselves, so that several children can begin the same path: each of them is tried.
    struct Step {
        NodeId Node;
        std::wstring_view Rest;
    };
    std::vector<Step> waiting{{roots_.front(), path}};
    while (!waiting.empty()) {
        const Step step = waiting.back();
        waiting.pop_back();
        const std::vector<NodeId>& children = Find(step.Node)->Children;
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            const std::wstring_view name = CaptionBaseName(Find(*child)->Caption);
            if (step.Rest == name) {
                return *child;
            }
            if (step.Rest.size() > name.size() && step.Rest.substr(0, name.size()) == name &&
                step.Rest[name.size()] == L'/') {
                waiting.push_back({*child, step.Rest.substr(name.size() + 1)});
            }
        }
    }
    return NodeId::None;
}

}  // namespace corvina
