#include "eventlog/log_tree_builder.h"

#include <algorithm>

#include "base/format_text.h"
#include "eventlog/log_information.h"

namespace corvina {

namespace {

// Slots of the language table.
constexpr int WindowsLogsText = 5;
constexpr int ApplicationLogsText = 6;
constexpr int CustomViewText = 7;
constexpr int SavedLogsText = 159;
constexpr int ExtrasText = 212;
constexpr int MergeAllChannelsText = 213;
constexpr int AdministrativeEventsText = 214;

constexpr std::wstring_view ClassicLogs[] = {L"Application", L"Security", L"Setup", L"System", L"ForwardedEvents"};

bool IsClassicLog(std::wstring_view path) {
    return std::find(std::begin(ClassicLogs), std::end(ClassicLogs), path) != std::end(ClassicLogs);
}

struct Halves {
    std::wstring_view Before;
    std::wstring_view After;
};

// Splits at the first separator; none when there is no separator or nothing stands before it.
std::optional<Halves> Split(std::wstring_view text, wchar_t separator) {
    const std::size_t place = text.find(separator);
    if (place == std::wstring_view::npos || place == 0) {
        return std::nullopt;
    }
    return Halves{text.substr(0, place), text.substr(place + 1)};
}

std::wstring LeafCaption(std::wstring_view name, std::uint64_t records) {
    return FormatText(L"%s (%I64u)", {name, records});
}

}  // namespace

LogTreeBuilder::LogTreeBuilder(EventLogSession& session, ChannelLists& channels, ChannelRegistrar& registrar,
                               LogTree& tree, RowStore& rows, LoadView& view, const SettingsStore& settings,
                               const i18n::Language& language)
    : session_(session),
      channels_(channels),
      registrar_(registrar),
      tree_(tree),
      rows_(rows),
      view_(view),
      settings_(settings),
      language_(language) {}

NodeId LogTreeBuilder::BuildLocalTree(std::wstring_view computerName) {
    tree_.Clear();
    nodes_.clear();
    nextComputerIndex_ = 0;
    session_.SetCurrentComputer(computerName);
    session_.ConnectToComputer(computerName, 0, std::nullopt,
                               [this](const std::wstring& path) { registrar_.RegisterChannel(path); });
    session_.RememberLocalSession();
    return BuildComputerTree(computerName);
}

NodeId LogTreeBuilder::BuildRemoteTree(std::wstring_view computerName, const std::optional<Credentials>& credentials) {
    session_.ConnectToComputer(computerName, nextComputerIndex_, credentials,
                               [this](const std::wstring& path) { registrar_.RegisterChannel(path); });
    if (session_.CurrentComputerIndex() != nextComputerIndex_) {
        return NodeId::None;  // the previous computer is current again
    }
    return BuildComputerTree(computerName);
}

NodeId LogTreeBuilder::BuildComputerTree(std::wstring_view computerName) {
    InsertFixedNodes(computerName);
    const ComputerNodes nodes = nodes_[nextComputerIndex_];
    for (const auto& [key, path] : settings_.ReadSection(SavedLogsSection)) {
        AddSavedLogNode(nextComputerIndex_, key);
    }
    BuildChannelNodes();
    ++nextComputerIndex_;
    for (const NodeId node :
         {nodes.Root, nodes.CustomViews, nodes.Extras, nodes.WindowsLogs, nodes.ApplicationLogs, nodes.SavedLogs}) {
        tree_.Expand(node);
    }
    tree_.Select(nodes.Root);
    EmptyList();
    return nodes.Root;
}

void LogTreeBuilder::InsertFixedNodes(std::wstring_view computerName) {
    ComputerNodes& nodes = nodes_[nextComputerIndex_];
    LogTreeNode root;
    root.Kind = NodeKind::Computer;
    root.Icon = NodeIcon::Computer;
    root.Caption = computerName;
    root.Key = computerName;
    root.ComputerIndex = nextComputerIndex_;
    nodes.Root = tree_.Insert(NodeId::None, std::move(root));
    view_.SetListCaption(computerName);

    const auto folder = [&](NodeId parent, NodeKind kind, int slot) {
        return InsertNode(parent, kind, NodeIcon::Folder, language_.Text(slot));
    };
    nodes.Extras = folder(nodes.Root, NodeKind::Extras, ExtrasText);
    nodes.MergedChannels =
        InsertNode(nodes.Extras, NodeKind::MergedChannels, NodeIcon::Log, language_.Text(MergeAllChannelsText));
    nodes.AdministrativeEvents = InsertNode(nodes.Extras, NodeKind::AdministrativeEvents, NodeIcon::Log,
                                            language_.Text(AdministrativeEventsText));
    nodes.CustomViews = folder(nodes.Root, NodeKind::CustomViews, CustomViewText);
    nodes.SavedLogs = folder(nodes.Root, NodeKind::SavedLogs, SavedLogsText);
    nodes.WindowsLogs = folder(nodes.Root, NodeKind::Folder, WindowsLogsText);
    nodes.ApplicationLogs = folder(nodes.Root, NodeKind::Folder, ApplicationLogsText);
    const NodeId microsoft = FolderBelow(nodes.ApplicationLogs, L"Microsoft");
    FolderBelow(microsoft, L"Windows");
}

void LogTreeBuilder::RenameFixedNodes() {
    for (const auto& [computer, nodes] : nodes_) {
        const std::pair<NodeId, int> fixed[] = {{nodes.Extras, ExtrasText},
                                                {nodes.MergedChannels, MergeAllChannelsText},
                                                {nodes.AdministrativeEvents, AdministrativeEventsText},
                                                {nodes.CustomViews, CustomViewText},
                                                {nodes.SavedLogs, SavedLogsText},
                                                {nodes.WindowsLogs, WindowsLogsText},
                                                {nodes.ApplicationLogs, ApplicationLogsText}};
        for (const auto& [node, slot] : fixed) {
            tree_.SetCaption(node, std::wstring(language_.Text(slot)));
        }
    }
}

void LogTreeBuilder::BuildChannelNodes() {
    const ComputerNodes nodes = nodes_[nextComputerIndex_];
    const std::vector<ChannelRecord>& channels = channels_.Of(nextComputerIndex_);
    for (std::size_t index = 0; index < channels.size(); ++index) {
        const std::wstring& path = channels[index].Path;
        InsertChannelNode(nodes, path, static_cast<std::int32_t>(index),
                          NumberOfLogRecords(session_.Api(), session_.CurrentSession(), path));
    }
}

void LogTreeBuilder::InsertChannelNode(const ComputerNodes& nodes, const std::wstring& path, std::int32_t channelIndex,
                                       std::uint64_t records) {
    NodeId folder = nodes.ApplicationLogs;
    std::wstring_view name = path;
    if (IsClassicLog(path)) {
        folder = nodes.WindowsLogs;
    } else if (path.find(L'-') != std::wstring::npos) {
        // Vendor-Product-Component/Log. A path that does not split completely gets no node: it stays in the list of
        // channels but is not shown.
        const std::size_t dash = path.find(L'-');
        const std::wstring_view vendor = std::wstring_view(path).substr(0, dash);
        const std::optional<Halves> source = Split(std::wstring_view(path).substr(dash + 1), L'/');
        const std::optional<Halves> product = source ? Split(source->Before, L'-') : std::nullopt;
        if (!product) {
            return;
        }
        folder = FolderBelow(FolderBelow(FolderBelow(folder, vendor), product->Before), product->After);
        name = source->After;
    } else if (const std::optional<Halves> parts = Split(path, L'/')) {
        folder = FolderBelow(folder, parts->Before);
        name = parts->After;
    }
    InsertNode(folder, NodeKind::Channel, NodeIcon::Log, LeafCaption(name, records), channelIndex);
}

NodeId LogTreeBuilder::FolderBelow(NodeId parent, std::wstring_view caption) {
    const NodeId present = tree_.FindChildByCaption(parent, caption);
    return present != NodeId::None ? present : InsertNode(parent, NodeKind::Folder, NodeIcon::Folder, caption);
}

NodeId LogTreeBuilder::InsertNode(NodeId parent, NodeKind kind, NodeIcon icon, std::wstring_view caption,
                                  std::int32_t channelIndex) {
    LogTreeNode node;
    node.Kind = kind;
    node.Icon = icon;
    node.Caption = caption;
    node.ChannelIndex = channelIndex;
    return tree_.Insert(parent, std::move(node));
}

NodeId LogTreeBuilder::AddSavedLogNode(std::uint32_t computerIndex, const std::wstring& key) {
    const ComputerNodes* nodes = NodesOf(computerIndex);
    if (nodes == nullptr) {
        return NodeId::None;
    }
    LogTreeNode node;
    node.Kind = NodeKind::SavedLog;
    node.Icon = NodeIcon::Log;
    node.Caption = key;
    node.Key = key;
    return tree_.Insert(nodes->SavedLogs, std::move(node));
}

const ComputerNodes* LogTreeBuilder::NodesOf(std::uint32_t computerIndex) const {
    const auto nodes = nodes_.find(computerIndex);
    return nodes == nodes_.end() ? nullptr : &nodes->second;
}

void LogTreeBuilder::EmptyList() {
    rows_.Reset(rows_.Columns());
    view_.ClearList();
}

}  // namespace corvina
