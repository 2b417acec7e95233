// Everything about one event, fetched anew from its log by its record identifier.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "eventlog/event_description.h"
#include "eventlog/event_log_session.h"
#include "eventlog/message_resolver.h"
#include "eventlog/system_error_report.h"
#include "i18n/language.h"
#include "platform/debug_log.h"
#include "platform/settings_store.h"

namespace corvina {

struct EventTexts {
    std::wstring LeftProperties;
    std::wstring RightProperties;
    std::wstring Description;
    std::wstring Xml;  // as the event log renders it, on one line
};

enum class EventSource { Channel, SavedLogFile };

enum class FetchResult {
    Found,
    NotFound,    // the log has no such event any more
    LogNotRead,  // the log itself cannot be queried, which has been shown to the user
};

class EventDetails {
  public:
    struct Parts {
        EventLogSession& Session;
        const SystemErrorReport& Errors;
        MessageResolver& Messages;
        EventDescriber& Descriptions;
        const SettingsStore& Settings;
        const i18n::Language& Language;
        DebugLog& Debug;
    };

    explicit EventDetails(const Parts& parts) : parts_(parts) {}

    // Fetches the event with a record identifier. `log` is a channel path of the current computer or the settings key
    // of a saved log; identifiers above 2147483647 are asked for as negative numbers and find nothing.
    // `texts.Description` is cleared first; on failure the other texts keep what they hold.
    FetchResult FetchEventByRecordId(std::wstring_view log, EventSource source, const std::wstring& provider,
                                     std::uint32_t recordId, EventTexts& texts);

    // The system properties as lines "label: value\n"; a value that the event lacks leaves its line without one. Both
    // texts are empty when the event cannot be rendered. Returns the event's identifier.
    std::uint32_t RenderSystemProperties(EVT_HANDLE event, EVT_HANDLE metadata, std::wstring& left,
                                         std::wstring& right);

  private:
    void ReportQueryFailure(std::uint32_t error);
    EvtHandle OpenMetadata(EVT_HANDLE session, const std::wstring& provider);
    void ReadEvent(EVT_HANDLE event, EVT_HANDLE metadata, const std::wstring& provider, EventTexts& texts);

    Parts parts_;
};

}  // namespace corvina
