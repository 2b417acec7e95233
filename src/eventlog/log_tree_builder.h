// Builds a computer's part of the log tree: its folders, its saved logs and a node for each of its channels.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "eventlog/channel_list.h"
#include "eventlog/channel_registrar.h"
#include "eventlog/event_log_session.h"
#include "eventlog/load_view.h"
#include "eventlog/log_tree.h"
#include "eventlog/row_store.h"
#include "i18n/language.h"
#include "platform/settings_store.h"

namespace corvina {

// The settings section that maps a saved log's key to the path of its file.
inline constexpr std::wstring_view SavedLogsSection = L"AddedFiles";

// The nodes of a computer that always exist.
struct ComputerNodes {
    NodeId Root = NodeId::None;
    NodeId Extras = NodeId::None;
    NodeId MergedChannels = NodeId::None;
    NodeId AdministrativeEvents = NodeId::None;
    NodeId CustomViews = NodeId::None;
    NodeId SavedLogs = NodeId::None;
    NodeId WindowsLogs = NodeId::None;
    NodeId ApplicationLogs = NodeId::None;  // "Application and Service Logs"
};

class LogTreeBuilder {
  public:
    LogTreeBuilder(EventLogSession& session, ChannelLists& channels, ChannelRegistrar& registrar, LogTree& tree,
                   RowStore& rows, LoadView& view, const SettingsStore& settings, const i18n::Language& language);

    // Builds the tree of this computer alone, under its name: all nodes there were are deleted. The root and its
    // folders are inserted even when the computer's event log cannot be read, so that saved logs can still be opened.
    NodeId BuildLocalTree(std::wstring_view computerName);

    // Adds another computer beside those that are there. None when it could not be reached (that has been shown).
    NodeId BuildRemoteTree(std::wstring_view computerName, const std::optional<Credentials>& credentials);

    // Gives the folders of all computers the captions of the language that is current now.
    void RenameFixedNodes();

    // The fixed nodes of a computer; null for an unknown index.
    const ComputerNodes* NodesOf(std::uint32_t computerIndex) const;

    // Inserts the node of a saved log under "Saved Logs" of a computer; its caption is its key.
    NodeId AddSavedLogNode(std::uint32_t computerIndex, const std::wstring& key);

  private:
    NodeId BuildComputerTree(std::wstring_view computerName);
    void InsertFixedNodes(std::wstring_view computerName);
    void BuildChannelNodes();
    void InsertChannelNode(const ComputerNodes& nodes, const std::wstring& path, std::int32_t channelIndex,
                           std::uint64_t records);
    NodeId FolderBelow(NodeId parent, std::wstring_view caption);
    NodeId InsertNode(NodeId parent, NodeKind kind, NodeIcon icon, std::wstring_view caption,
                      std::int32_t channelIndex = -1);
    void EmptyList();

    EventLogSession& session_;
    ChannelLists& channels_;
    ChannelRegistrar& registrar_;
    LogTree& tree_;
    RowStore& rows_;
    LoadView& view_;
    const SettingsStore& settings_;
    const i18n::Language& language_;
    std::map<std::uint32_t, ComputerNodes> nodes_;
    std::uint32_t nextComputerIndex_ = 0;
};

}  // namespace corvina
