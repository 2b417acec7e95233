#include "eventlog/log_loader.h"

#include <algorithm>
#include <array>
#include <new>

#include "base/format_text.h"
#include "eventlog/channel_config.h"
#include "eventlog/log_information.h"
#include "eventlog/log_tree_builder.h"
#include "eventlog/system_properties_reader.h"

namespace corvina {

namespace {

constexpr int EventCountText = 2;
constexpr int LoadingText = 3;
constexpr int NoEventsText = 4;

constexpr DWORD NewestFirst = EvtQueryReverseDirection | EvtQueryTolerateQueryErrors;

// Waiting messages are dispatched before every 101st event.
constexpr std::int32_t EventsBetweenPumps = 100;

constexpr std::size_t BatchSize = 10;

// Up to ten events of a result set; closes what it holds.
class EventBatch {
  public:
    // Returns 0 or the error that ends the result set.
    std::uint32_t Next(EventLogApi& api, EVT_HANDLE query) {
        EVT_HANDLE handles[BatchSize] = {};
        DWORD count = 0;
        if (!api.EvtNext(query, static_cast<DWORD>(BatchSize), handles, INFINITE, 0, &count)) {
            return api.GetLastError();
        }
        count_ = std::min<std::size_t>(count, BatchSize);
        for (std::size_t index = 0; index < count_; ++index) {
            events_[index] = EvtHandle(api, handles[index]);
        }
        // A successful call without events would otherwise be repeated for ever.
        return count_ == 0 ? error::NoMoreItems : error::Success;
    }

    EvtHandle* begin() { return events_.data(); }
    EvtHandle* end() { return events_.data() + count_; }

  private:
    std::array<EvtHandle, BatchSize> events_;
    std::size_t count_ = 0;
};

void ReportFetchEnd(DebugLog& debug, std::uint32_t error) {
    if (error != error::NoMoreItems) {
        debug.Write(FormatText(L"EvtNext failed with %lu\n", {error}));
    }
}

}  // namespace

std::uint32_t LogLoader::LoadChannel(const std::wstring& path, LoadKind kind, NodeId node,
                                     const std::wstring& savedLogKey) {
    if (loading_) {
        return error::Success;
    }
    Load({kind, path, savedLogKey, node}, {}, [&] {
        if (kind == LoadKind::SavedLogFile) {
            FetchSavedLog(path, savedLogKey);
        } else {
            FetchChannel(path);
        }
    });
    ShowResult();
    return error::Success;
}

std::uint32_t LogLoader::LoadQuery(const std::wstring& queryText, const std::wstring& viewName, NodeId node,
                                   const TextConditions& conditions) {
    if (loading_) {
        return error::Success;
    }
    Load({LoadKind::Query, viewName, {}, node}, conditions, [&] {
        FetchQuery(parts_.Session.CurrentSession(), nullptr, queryText.c_str(), EvtQueryChannelPath | NewestFirst);
    });
    return error::Success;
}

void LogLoader::LoadNothing(const std::wstring& viewName, NodeId node) {
    if (!loading_) {
        Load({LoadKind::Query, viewName, {}, node}, {}, [] {});
    }
}

void LogLoader::Load(LoadedView view, const TextConditions& conditions, const std::function<void()>& fetch) {
    // A handler that runs inside the message pump may leave the computer or the program: the session of the load stays
    // open until the load has ended.
    const auto session =
        view.Kind == LoadKind::SavedLogFile ? parts_.Session.HoldLocalSession() : parts_.Session.HoldCurrentSession();
    loading_ = true;
    stopRequested_ = false;
    parts_.View.SetStatusText(parts_.Language.Text(LoadingText));
    parts_.View.LockUpdates();
    view_ = std::move(view);
    parts_.Rows.Reset(columns_);
    parts_.Renderer.SetConditions(conditions);
    try {
        fetch();
    } catch (const std::bad_alloc&) {
        parts_.Debug.Write(L"malloc failed\n");
    }
    parts_.Renderer.EndLoad();
    parts_.Metadata.Clear();
    parts_.View.UnlockUpdates();
    parts_.View.SetStatusText({});
    loading_ = false;
}

void LogLoader::FetchChannel(const std::wstring& path) {
    EVT_HANDLE session = parts_.Session.CurrentSession();
    if (session != nullptr) {
        PrepareChannel(path);
    }
    FetchQuery(session, path.c_str(), nullptr, EvtQueryChannelPath | NewestFirst);
}

void LogLoader::PrepareChannel(const std::wstring& path) {
    EventLogApi& api = parts_.Session.Api();
    const EvtHandle config(api, api.EvtOpenChannelConfig(parts_.Session.CurrentSession(), path.c_str(), 0));
    if (!config) {
        parts_.Debug.Write(FormatText(L"EvtOpenChannelConfig failed with %lu.\n", {api.GetLastError()}));
        return;
    }
    ChannelConfig snapshot;
    ReadChannelConfig(api, parts_.Debug, config.Get(), snapshot);
}

void LogLoader::FetchSavedLog(const std::wstring& path, const std::wstring& key) {
    const std::wstring file = key.empty() ? path : parts_.Settings.ReadSetting(SavedLogsSection, key, path);
    CollectPublishers(file);
    parts_.Renderer.BeginLoad(nullptr);
    RunQuery(parts_.Session.LocalSession(), file.c_str(), nullptr, EvtQueryFilePath | NewestFirst);
}

// A saved log brings the metadata of its publishers along, so all of it is opened from the file before its events are
// shown.
void LogLoader::CollectPublishers(const std::wstring& filePath) {
    parts_.Metadata.Clear();
    EventLogApi& api = parts_.Session.Api();
    const EvtHandle query(
        api, api.EvtQuery(nullptr, filePath.c_str(), nullptr, EvtQueryFilePath | EvtQueryTolerateQueryErrors));
    if (!query) {
        return;  // the query for the events themselves reports it
    }
    SystemPropertiesReader reader(api, parts_.Debug);
    for (;;) {
        EventBatch batch;
        if (const std::uint32_t error = batch.Next(api, query.Get()); error != error::Success) {
            ReportFetchEnd(parts_.Debug, error);
            return;
        }
        for (EvtHandle& event : batch) {
            if (reader.Read(event.Get()) != error::Success) {
                return;
            }
            const std::wstring_view publisher = reader.Properties().Text(EvtSystemProviderName);
            if (!publisher.empty()) {
                parts_.Metadata.FindOrOpen(parts_.Session.LocalSession(), publisher, filePath.c_str());
            }
            event.Close();
        }
    }
}

void LogLoader::FetchQuery(EVT_HANDLE session, const wchar_t* path, const wchar_t* query, DWORD flags) {
    if (session == nullptr) {
        // Without a session the platform would answer with this computer's events, under another computer's name.
        parts_.Errors.ShowSystemError(parts_.Session.OpenError(), {}, {});
        return;
    }
    parts_.Renderer.BeginLoad(session);
    RunQuery(session, path, query, flags);
}

void LogLoader::RunQuery(EVT_HANDLE session, const wchar_t* path, const wchar_t* query, DWORD flags) {
    EventLogApi& api = parts_.Session.Api();
    const EvtHandle result(api, api.EvtQuery(session, path, query, flags));
    if (!result) {
        parts_.Errors.ShowSystemError(api.GetLastError(), {}, {});
        return;
    }
    if (parts_.Session.CheckQueryStatus(result.Get()) == error::Success) {
        FetchEvents(result.Get());
    }
}

std::uint32_t LogLoader::FetchEvents(EVT_HANDLE query) {
    EventLogApi& api = parts_.Session.Api();
    for (;;) {
        EventBatch batch;
        if (const std::uint32_t error = batch.Next(api, query); error != error::Success) {
            ReportFetchEnd(parts_.Debug, error);
            return error;
        }
        for (EvtHandle& event : batch) {
            DispatchMessages();
            if (stopRequested_) {
                return error::Success;
            }
            if (const std::uint32_t error = parts_.Renderer.RenderEventRow(event.Get()); error != error::Success) {
                return error;
            }
            event.Close();
        }
    }
}

void LogLoader::DispatchMessages() {
    if (++pumpCounter_ > EventsBetweenPumps) {
        pumpCounter_ = 0;
        parts_.Pump.DispatchPending();
    }
}

void LogLoader::ShowResult() {
    parts_.View.ClearList();
    RefreshNodeCaption();
    const std::size_t rows = parts_.Rows.Size();
    parts_.View.SetListCaption(FormatText(parts_.Language.Text(EventCountText), {view_.ChannelName, rows}));
    parts_.View.SetRowCount(rows);
    if (stopRequested_) {
        return;  // another load follows at once: its first row is the one to show
    }
    if (rows > 0) {
        parts_.View.SelectRow(0);
    } else {
        parts_.ShowNoEvents(parts_.Language.Text(NoEventsText));
    }
}

void LogLoader::RefreshNodeCaption() {
    const LogTreeNode* node = parts_.Tree.Find(view_.Node);
    if (view_.Kind != LoadKind::Channel || node == nullptr) {
        return;
    }
    const std::wstring baseName(CaptionBaseName(node->Caption));
    if (baseName.size() == node->Caption.size()) {
        return;  // no count behind the name
    }
    const std::uint64_t records =
        NumberOfLogRecords(parts_.Session.Api(), parts_.Session.CurrentSession(), view_.ChannelName);
    parts_.Tree.SetCaption(view_.Node, FormatText(L"%s (%I64u)", {baseName, records}));
}

void LogLoader::ShowNothing(std::wstring_view caption) {
    if (loading_) {
        return;
    }
    view_ = {};
    parts_.Rows.Reset(columns_);
    parts_.View.ClearList();
    parts_.View.SetListCaption(caption);
    parts_.View.SetRowCount(0);
}

}  // namespace corvina
