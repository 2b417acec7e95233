// Decides what a selected tree node loads, and in which order requests are carried out when they arrive while a load is
// still running.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "eventlog/channel_list.h"
#include "eventlog/event_log_session.h"
#include "eventlog/log_loader.h"
#include "eventlog/log_tree.h"
#include "eventlog/stored_queries.h"
#include "platform/prompts.h"
#include "platform/settings_store.h"
#include "platform/system_services.h"

namespace corvina {

class LogSelection {
  public:
    struct Parts {
        EventLogSession& Session;
        const ChannelLists& Channels;
        LogTree& Tree;
        LogLoader& Loader;
        LoadView& View;
        const SettingsStore& Settings;
        StoredQueries& Filters;
        const SystemServices& System;
        Prompts& Boxes;
        const i18n::Language& Language;
        DebugLog& Debug;
    };

    explicit LogSelection(const Parts& parts) : parts_(parts) {}

    // Switches to the computer of the node and loads the node when it stands for events. During a running load the
    // request is remembered (the latest one counts), the running load ends early, and the request is carried out after
    // it.
    void NodeSelected(NodeId node);

    // Loads the selected channel again, without its stored filter; nothing when no channel is selected.
    void Reload();

    // Loads what the list shows once more, for instance with other columns; nothing when nothing has been loaded yet.
    void RepeatLoad();

  private:
    enum class Action { Select, ReloadChannel };
    struct Request {
        Action What = Action::Select;
        NodeId Node = NodeId::None;
    };

    void Perform(const Request& request);
    void Carry(const Request& request);
    bool LoadsEvents(const Request& request) const;
    void LoadNode(const LogTreeNode& node, std::uint32_t computerIndex, bool withStoredFilter);
    void LoadChannelNode(NodeId node, const std::wstring& path, bool withStoredFilter);
    void LoadStoredFilter(NodeId node, const std::wstring& filter, const std::wstring& path);
    void LoadSavedLog(NodeId node, const std::wstring& key);
    void LoadStructured(NodeId node, const std::wstring& queryText, const std::wstring& viewName);
    std::vector<std::wstring> EnabledChannels(std::uint32_t computerIndex) const;
    std::vector<std::wstring> AdministrativeChannels(std::uint32_t computerIndex) const;

    Parts parts_;
    Action lastAction_ = Action::Select;
    bool running_ = false;
    std::optional<Request> nextLoad_;
    std::optional<Request> nextSwitch_;
};

// The structured query that selects the events of all given channels, newest first; `condition` is "*" or a filter on
// them. Empty without channels.
std::wstring QueryOfChannels(const std::vector<std::wstring>& channels, std::wstring_view condition);

}  // namespace corvina
