#include "details/event_details.h"

#include "base/calendar.h"
#include "base/format_text.h"
#include "base/identifiers.h"
#include "eventlog/event_xml.h"
#include "eventlog/log_tree_builder.h"
#include "eventlog/system_properties_reader.h"

namespace corvina {

namespace {

constexpr int ErrorTitle = 11;

// The labels of the system properties in the language table.
constexpr int VendorNameLabel = 81;
constexpr int VendorGuidLabel = 82;
constexpr int EventIdLabel = 83;
constexpr int VersionLabel = 84;
constexpr int LevelLabel = 85;
constexpr int TaskLabel = 86;
constexpr int OpcodeLabel = 87;
constexpr int KeywordsLabel = 88;
constexpr int CreationTimeLabel = 89;
constexpr int RecordIdLabel = 90;
constexpr int ActivityIdLabel = 91;
constexpr int RelatedActivityIdLabel = 92;
constexpr int ProcessIdLabel = 93;
constexpr int ThreadIdLabel = 94;
constexpr int ChannelLabel = 95;
constexpr int ComputerLabel = 96;
constexpr int UserIdLabel = 97;

constexpr std::uint64_t NanosecondsPerTick = 100;

class PropertyLines {
  public:
    explicit PropertyLines(const i18n::Language& language) : language_(language) {}

    template <typename... Values>
    void Add(int label, std::wstring_view valueFormat, const Values&... values) {
        std::wstring format = L"%s: ";
        format += valueFormat;
        format += L'\n';
        text_ += FormatText(format, {language_.Text(label), values...});
    }

    std::wstring Take() { return std::move(text_); }

  private:
    const i18n::Language& language_;
    std::wstring text_;
};

std::wstring LeftProperties(const SystemProperties& properties, std::wstring_view opcodeName,
                            const i18n::Language& language) {
    PropertyLines lines(language);
    lines.Add(VendorNameLabel, L"%s", properties.Text(EvtSystemProviderName));
    lines.Add(VendorGuidLabel, L"%s", GuidValueText(properties[EvtSystemProviderGuid]).value_or(L"NULL"));
    lines.Add(EventIdLabel, L"%lu", properties.Number<std::uint16_t>(EvtSystemEventID));
    lines.Add(VersionLabel, L"%u", properties.Number<std::uint8_t>(EvtSystemVersion));
    lines.Add(LevelLabel, L"%u", properties.Number<std::uint8_t>(EvtSystemLevel));
    lines.Add(TaskLabel, L"%hu", properties.Number<std::uint16_t>(EvtSystemTask));
    if (opcodeName.empty()) {
        lines.Add(OpcodeLabel, L"%u", properties.Number<std::uint8_t>(EvtSystemOpcode));
    } else {
        lines.Add(OpcodeLabel, L"%s", opcodeName);
    }
    lines.Add(KeywordsLabel, L"0x%I64x", properties.Number(EvtSystemKeywords));
    return lines.Take();
}

std::wstring RightProperties(const SystemProperties& properties, const i18n::Language& language) {
    PropertyLines lines(language);
    const CalendarTime time = CalendarFromFileTime(properties.Number(EvtSystemTimeCreated));
    // The closing bracket has no opening one: readers of copied texts expect the line as it always was.
    lines.Add(CreationTimeLabel, L"%02d/%02d/%02d %02d:%02d:%02d.%I64u)", time.Month, time.Day, time.Year, time.Hour,
              time.Minute, time.Second, time.Ticks * NanosecondsPerTick);
    lines.Add(RecordIdLabel, L"%I64u", properties.Number(EvtSystemEventRecordId));
    lines.Add(ActivityIdLabel, L"%s", GuidValueText(properties[EvtSystemActivityID]).value_or(L""));
    lines.Add(RelatedActivityIdLabel, L"%s", GuidValueText(properties[EvtSystemRelatedActivityID]).value_or(L""));
    lines.Add(ProcessIdLabel, L"%lu", properties.Number<std::uint32_t>(EvtSystemProcessID));
    lines.Add(ThreadIdLabel, L"%lu", properties.Number<std::uint32_t>(EvtSystemThreadID));
    lines.Add(ChannelLabel, L"%s", properties.Text(EvtSystemChannel));
    lines.Add(ComputerLabel, L"%s", properties.Text(EvtSystemComputer));
    lines.Add(UserIdLabel, L"%s", SidText(SidValue(properties[EvtSystemUserID])).value_or(L""));
    return lines.Take();
}

}  // namespace

FetchResult EventDetails::FetchEventByRecordId(std::wstring_view log, EventSource source, const std::wstring& provider,
                                               std::uint32_t recordId, EventTexts& texts) {
    texts.Description.clear();
    EventLogApi& api = parts_.Session.Api();
    const std::wstring filter = FormatText(L"Event/System[EventRecordID=%i]", {recordId});
    const bool isFile = source == EventSource::SavedLogFile;
    const std::wstring path = isFile ? parts_.Settings.ReadSetting(SavedLogsSection, log, {}) : std::wstring(log);
    EVT_HANDLE session = isFile ? parts_.Session.LocalSession() : parts_.Session.CurrentSession();
    if (session == nullptr && !isFile) {
        // Without a session the platform would look in this computer's log instead.
        ReportQueryFailure(parts_.Session.OpenError());
        return FetchResult::LogNotRead;
    }
    // Closed in the order event, query, metadata.
    const EvtHandle metadata = OpenMetadata(session, provider);
    const EvtHandle query(
        api, api.EvtQuery(session, path.c_str(), filter.c_str(), isFile ? EvtQueryFilePath : EvtQueryChannelPath));
    if (!query) {
        ReportQueryFailure(api.GetLastError());
        return FetchResult::LogNotRead;
    }
    EVT_HANDLE handle = nullptr;
    DWORD count = 0;
    if (!api.EvtNext(query.Get(), 1, &handle, INFINITE, 0, &count)) {
        parts_.Debug.Write(FormatText(L"EvtNext failed with %lu\n", {api.GetLastError()}));
        return FetchResult::NotFound;
    }
    const EvtHandle event(api, handle);
    if (count != 1 || !event) {
        return FetchResult::NotFound;
    }
    ReadEvent(event.Get(), metadata.Get(), provider, texts);
    return FetchResult::Found;
}

void EventDetails::ReportQueryFailure(std::uint32_t error) {
    parts_.Errors.ShowSystemError(error,
                                  error == error::ChannelNotFound ? L"Channel was not found" : L"EvtQuery failed",
                                  parts_.Language.Text(ErrorTitle));
}

// A log of another computer holds events of publishers that are unknown here. They are shown without metadata.
EvtHandle EventDetails::OpenMetadata(EVT_HANDLE session, const std::wstring& provider) {
    EventLogApi& api = parts_.Session.Api();
    EvtHandle metadata(api, api.EvtOpenPublisherMetadata(session, provider.c_str(), nullptr, 0, 0));
    if (!metadata) {
        parts_.Debug.Write(FormatText(L"EvtOpenPublisherMetadata failed with %d\n", {api.GetLastError()}));
    }
    return metadata;
}

void EventDetails::ReadEvent(EVT_HANDLE event, EVT_HANDLE metadata, const std::wstring& provider, EventTexts& texts) {
    const std::uint32_t eventId = RenderSystemProperties(event, metadata, texts.LeftProperties, texts.RightProperties);
    PropertyBuffer buffer;
    texts.Xml = RenderEventXml(parts_.Session.Api(), parts_.Debug, event, buffer);
    texts.Description = parts_.Descriptions.Describe(metadata, event, eventId, provider);
}

std::uint32_t EventDetails::RenderSystemProperties(EVT_HANDLE event, EVT_HANDLE metadata, std::wstring& left,
                                                   std::wstring& right) {
    left.clear();
    right.clear();
    SystemPropertiesReader reader(parts_.Session.Api(), parts_.Debug);
    if (reader.Read(event) != error::Success) {
        return 0;
    }
    const SystemProperties properties = reader.Properties();
    left = LeftProperties(properties, parts_.Messages.FormatEventPart(metadata, event, EvtFormatMessageOpcode),
                          parts_.Language);
    right = RightProperties(properties, parts_.Language);
    return properties.Number<std::uint16_t>(EvtSystemEventID);
}

}  // namespace corvina
