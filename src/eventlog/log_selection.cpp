#include "eventlog/log_selection.h"

#include <algorithm>

#include "base/xml_escape.h"
#include "eventlog/channel_config.h"
#include "eventlog/log_tree_builder.h"

namespace corvina {

namespace {

constexpr int InformationTitle = 13;

constexpr std::wstring_view AllEvents = L"*";
constexpr std::wstring_view AdministrativeCondition = L"*[System[(Level=1 or Level=2 or Level=3)]]";

}  // namespace

std::wstring QueryOfChannels(const std::vector<std::wstring>& channels, std::wstring_view condition) {
    if (channels.empty()) {
        return {};
    }
    std::wstring query = L"<QueryList>  <Query Id=\"0\" Path=\"";
    AppendXmlEscaped(channels.front(), L'"', query);
    query += L"\">";
    for (const std::wstring& channel : channels) {
        query += L"  <Select Path=\"";
        AppendXmlEscaped(channel, L'"', query);
        query += L"\">";
        query += condition;
        query += L"</Select>";
    }
    query += L"  </Query></QueryList>";
    return query;
}

void LogSelection::NodeSelected(NodeId node) {
    Perform({Action::Select, node});
}

void LogSelection::Reload() {
    Perform({Action::ReloadChannel, parts_.Tree.Selected()});
}

void LogSelection::RepeatLoad() {
    Perform({lastAction_, parts_.Loader.View().Node});
}

// A request from inside a running load (its message pump lets handlers run) must not touch the rows that the load is
// still appending. It is remembered, and only one that replaces the rows ends the running load early.
void LogSelection::Perform(const Request& request) {
    if (running_) {
        if (LoadsEvents(request)) {
            nextLoad_ = request;
            nextSwitch_.reset();
            parts_.Loader.StopLoading();
        } else {
            nextSwitch_ = request;
        }
        return;
    }
    running_ = true;
    Carry(request);
    while (nextLoad_ || nextSwitch_) {
        std::optional<Request>& next = nextLoad_ ? nextLoad_ : nextSwitch_;
        const Request remembered = *next;
        next.reset();
        Carry(remembered);
    }
    running_ = false;
}

bool LogSelection::LoadsEvents(const Request& request) const {
    const LogTreeNode* node = parts_.Tree.Find(request.Node);
    if (node == nullptr) {
        return false;
    }
    switch (node->Kind) {
        case NodeKind::Channel:
            return true;
        case NodeKind::SavedLog:
        case NodeKind::MergedChannels:
        case NodeKind::AdministrativeEvents:
            return request.What == Action::Select;
        default:
            return false;
    }
}

void LogSelection::Carry(const Request& request) {
    const LogTreeNode* selected = parts_.Tree.Find(request.Node);
    if (selected == nullptr || (request.What == Action::ReloadChannel && selected->Kind != NodeKind::Channel)) {
        return;
    }
    // Copies: an error box lets other handlers run, which may remove nodes.
    const LogTreeNode node = *selected;
    const LogTreeNode root = *parts_.Tree.Find(parts_.Tree.RootOf(request.Node));
    const bool loads = LoadsEvents(request);
    const bool leavesComputer = root.Key != parts_.Session.SessionComputer();
    parts_.View.LockUpdates();
    parts_.Session.SwitchToComputer(root.Key, root.ComputerIndex);
    parts_.View.UnlockUpdates();
    if (loads) {
        lastAction_ = request.What;
        LoadNode(node, root.ComputerIndex, request.What == Action::Select);
    } else if (leavesComputer) {
        // The rows of the other computer would be looked up in this one's logs when their details are shown.
        parts_.Loader.ShowNothing(root.Caption);
    }
}

void LogSelection::LoadNode(const LogTreeNode& node, std::uint32_t computerIndex, bool withStoredFilter) {
    switch (node.Kind) {
        case NodeKind::Channel:
            if (const ChannelRecord* record = parts_.Channels.Find(computerIndex, node.ChannelIndex)) {
                LoadChannelNode(node.Id, record->Path, withStoredFilter);
            }
            break;
        case NodeKind::SavedLog:
            LoadSavedLog(node.Id, node.Key);
            break;
        case NodeKind::MergedChannels:
            LoadStructured(node.Id, QueryOfChannels(EnabledChannels(computerIndex), AllEvents), node.Caption);
            break;
        case NodeKind::AdministrativeEvents:
            LoadStructured(node.Id, QueryOfChannels(AdministrativeChannels(computerIndex), AdministrativeCondition),
                           node.Caption);
            break;
        default:
            break;
    }
}

void LogSelection::LoadChannelNode(NodeId node, const std::wstring& path, bool withStoredFilter) {
    if (withStoredFilter) {
        std::wstring key = path;
        std::replace(key.begin(), key.end(), L'/', L'#');
        const std::wstring filter = parts_.Settings.ReadSetting(parts_.Session.FilterSection(), key, {});
        if (!filter.empty()) {
            LoadStoredFilter(node, filter, path);
            return;
        }
    }
    parts_.Loader.LoadChannel(path, LoadKind::Channel, node);
}

// Without its filter the channel would show events under its name that the user wants hidden, so it shows none.
void LogSelection::LoadStoredFilter(NodeId node, const std::wstring& filter, const std::wstring& path) {
    if (const std::optional<std::wstring> query = parts_.Filters.QueryOf(filter, path)) {
        LoadStructured(node, *query, path);
    } else {
        parts_.Loader.LoadNothing(path, node);
        parts_.Loader.ShowResult();
    }
}

void LogSelection::LoadSavedLog(NodeId node, const std::wstring& key) {
    const std::wstring path = parts_.Settings.ReadSetting(SavedLogsSection, key, {});
    if (!path.empty() && parts_.System.FileExists(path)) {
        parts_.Loader.LoadChannel(path, LoadKind::SavedLogFile, node, key);
        return;
    }
    parts_.Boxes.ShowInformation(L"File not found. Delete Entry now!", parts_.Language.Text(InformationTitle));
    parts_.Tree.Remove(node);
}

void LogSelection::LoadStructured(NodeId node, const std::wstring& queryText, const std::wstring& viewName) {
    parts_.Loader.LoadQuery(queryText, viewName, node);
    parts_.Loader.ShowResult();
}

std::vector<std::wstring> LogSelection::EnabledChannels(std::uint32_t computerIndex) const {
    std::vector<std::wstring> paths;
    for (const ChannelRecord& record : parts_.Channels.Of(computerIndex)) {
        paths.push_back(record.Path);
    }
    return paths;
}

// The kind of a channel is asked for only now, since building the tree reads no more than the tree needs.
std::vector<std::wstring> LogSelection::AdministrativeChannels(std::uint32_t computerIndex) const {
    std::vector<std::wstring> paths = EnabledChannels(computerIndex);
    std::erase_if(paths, [&](const std::wstring& path) {
        return ReadChannelType(parts_.Session.Api(), parts_.Session.CurrentSession(), path) !=
               std::uint32_t{EvtChannelTypeAdmin};
    });
    return paths;
}

}  // namespace corvina
