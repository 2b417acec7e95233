// Fills the event list: opens a query, fetches its events in batches, has each rendered into a row, and shows the
// result.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "eventlog/event_log_session.h"
#include "eventlog/event_renderer.h"
#include "eventlog/load_view.h"
#include "eventlog/log_tree.h"
#include "eventlog/row_store.h"
#include "platform/message_pump.h"
#include "platform/settings_store.h"

namespace corvina {

enum class LoadKind { None = 0, Channel = 1, SavedLogFile = 2, Query = 3 };

// What the list shows.
struct LoadedView {
    LoadKind Kind = LoadKind::None;
    std::wstring ChannelName;    // channel path, file path, or the caption of a structured view
    std::wstring SavedLogKey;    // saved logs: the key in the settings
    NodeId Node = NodeId::None;  // the tree node that was loaded
};

class LogLoader {
  public:
    struct Parts {
        EventLogSession& Session;
        const SystemErrorReport& Errors;
        PublisherMetadataCache& Metadata;
        MessageResolver& Messages;
        EventRenderer& Renderer;
        RowStore& Rows;
        LogTree& Tree;
        LoadView& View;
        const SettingsStore& Settings;
        const i18n::Language& Language;
        MessagePump& Pump;
        DebugLog& Debug;
        // Shows a text in place of an event's details when a load has found no event.
        std::function<void(std::wstring_view)> ShowNoEvents;
    };

    explicit LogLoader(const Parts& parts) : parts_(parts) {}

    // The columns of the views that are loaded from now on.
    void SetVisibleColumns(const VisibleColumns& columns) { columns_ = columns; }

    // Replaces the view with the events of a channel of the current computer or of a saved log file, newest first.
    // Always returns 0: failures are shown. `node` is the tree node whose caption shows the number of records;
    // `savedLogKey` the key of a saved log. A call from inside a running load is refused and changes nothing
    // (LogSelection remembers it instead).
    std::uint32_t LoadChannel(const std::wstring& path, LoadKind kind, NodeId node,
                              const std::wstring& savedLogKey = {});

    // Replaces the rows with the result of a structured query on the current session. Captions and counts are the
    // caller's: ShowResult does what a plain load does.
    std::uint32_t LoadQuery(const std::wstring& queryText, const std::wstring& viewName, NodeId node,
                            const TextConditions& conditions = {});

    // Replaces the rows with none, as a query does that cannot be opened.
    void LoadNothing(const std::wstring& viewName, NodeId node);

    // Shows captions, counts and the first row of what was loaded last.
    void ShowResult();

    // Empties the list, which then shows no log at all; refused during a load.
    void ShowNothing(std::wstring_view caption);

    // Fetches and renders all events of a query. Returns error::NoMoreItems at a normal end, 0 when it was stopped,
    // else the first error.
    std::uint32_t FetchEvents(EVT_HANDLE query);

    bool IsLoading() const { return loading_; }
    // Ends the running load as soon as its message pump returns; what has been loaded stays and is counted.
    void StopLoading() { stopRequested_ = loading_; }

    const LoadedView& View() const { return view_; }

  private:
    void Load(LoadedView view, const TextConditions& conditions, const std::function<void()>& fetch);
    void FetchChannel(const std::wstring& path);
    void PrepareChannel(const std::wstring& path);
    void FetchSavedLog(const std::wstring& path, const std::wstring& key);
    void CollectPublishers(const std::wstring& filePath);
    void FetchQuery(EVT_HANDLE session, const wchar_t* path, const wchar_t* query, DWORD flags);
    void RunQuery(EVT_HANDLE session, const wchar_t* path, const wchar_t* query, DWORD flags);
    void RefreshNodeCaption();
    void DispatchMessages();

    Parts parts_;
    VisibleColumns columns_;
    LoadedView view_;
    std::int32_t pumpCounter_ = 0;  // kept across loads
    bool loading_ = false;
    bool stopRequested_ = false;
};

}  // namespace corvina
