#include "eventlog/event_renderer.h"

#include <new>
#include <unordered_map>
#include <vector>

#include "base/letter_case.h"
#include "eventlog/event_xml.h"
#include "eventlog/row_text_source.h"
#include "eventlog/system_properties_reader.h"

namespace corvina {

namespace {

constexpr std::uint64_t AuditSuccessKeywords = 0x8020000000000000;
constexpr std::uint8_t AuditSuccessLevel = 3;
constexpr std::uint8_t AuditFailureLevel = 4;

std::uint32_t ImageOfLevel(std::uint8_t level) {
    switch (level) {
        case 0:
        case 4:
            return 0;
        case 1:
            return 5;
        case 2:
            return 2;
        case 5:
            return 6;
        default:
            return 1;
    }
}

}  // namespace

// The state of one load.
class EventRenderer::Load {
  public:
    Load(const Parts& parts, const TextConditions& conditions, EVT_HANDLE session)
        : parts_(parts),
          conditions_(conditions),
          reader_(parts.Api, parts.Debug),
          texts_({parts.Rows, parts.Metadata, parts.Messages, parts.Language, parts.AccountNames}, session) {}

    std::uint32_t Render(EVT_HANDLE event) {
        if (const std::uint32_t error = reader_.Read(event); error != 0) {
            return error;
        }
        const SystemProperties properties = reader_.Properties();
        RowTextSource::Provider& provider = texts_.ProviderOf(properties.Text(EvtSystemProviderName));
        // Before any text is made: the texts of a rejected event would stay in the row store's pool.
        if (!MeetsConditions(provider.Metadata, event)) {
            return 0;
        }
        EventRow row;
        TakeNumbers(properties, row);
        row.ProviderName = provider.Name;
        row.VersionText = texts_.Decimal(row.Version);
        row.EventIdText = texts_.EventId(static_cast<std::uint16_t>(row.EventId));
        // Kept even when its column is hidden: the details are fetched from the log that it names.
        row.ChannelName = texts_.Text(properties.Text(EvtSystemChannel));
        const bool isAudit = IsSecurityLog(row.ChannelName, properties.Text(EvtSystemChannel));
        if (isAudit) {
            // The images of audit results have the numbers that stand in for the level.
            row.Level = row.Keywords == AuditSuccessKeywords ? AuditSuccessLevel : AuditFailureLevel;
            row.LevelImage = row.Level;
        }
        for (std::size_t column = 0; column < ColumnCount; ++column) {
            if (parts_.Rows.Columns()[column]) {
                FillColumn(static_cast<Column>(column), {properties, provider, event, isAudit}, row);
            }
        }
        parts_.Rows.Append(row);
        return 0;
    }

  private:
    struct Event {
        const SystemProperties& Properties;
        RowTextSource::Provider& Provider;
        EVT_HANDLE Handle;
        bool IsAudit;
    };

    static void TakeNumbers(const SystemProperties& properties, EventRow& row) {
        row.EventId = properties.Number<std::uint16_t>(EvtSystemEventID);
        row.Version = properties.Number<std::uint8_t>(EvtSystemVersion);
        row.Level = properties.Number<std::uint8_t>(EvtSystemLevel);
        row.LevelImage = ImageOfLevel(row.Level);
        row.Task = properties.Number<std::uint16_t>(EvtSystemTask);
        row.Opcode = properties.Number<std::uint8_t>(EvtSystemOpcode);
        row.Keywords = properties.Number(EvtSystemKeywords);
        row.RecordId = properties.Number(EvtSystemEventRecordId);
        row.ProcessId = properties.Number<std::uint32_t>(EvtSystemProcessID);
        row.ThreadId = properties.Number<std::uint32_t>(EvtSystemThreadID);
    }

    void FillColumn(Column column, const Event& event, EventRow& row) {
        switch (column) {
            case Column::Type:
                row.LevelText = event.IsAudit ? texts_.AuditResult(row.Level == AuditSuccessLevel)
                                              : texts_.Level(event.Provider, event.Handle, row);
                break;
            case Column::Date:
                row.LocalTime = parts_.Locale.ToLocalTime(event.Properties.Number(EvtSystemTimeCreated));
                row.DateText = texts_.Date(row.LocalTime);
                break;
            case Column::Source:
                break;  // always there
            case Column::TaskCategory:
                row.TaskText = texts_.Task(event.Provider, event.Handle, row);
                row.TaskColumnText = row.TaskText;
                break;
            case Column::EventId:
                break;  // always there
            case Column::User:
                row.UserText = texts_.User(SidValue(event.Properties[EvtSystemUserID]));
                break;
            case Column::Computer:
                row.ComputerText = texts_.Text(event.Properties.Text(EvtSystemComputer));
                break;
            case Column::Keywords:
                row.KeywordsText = texts_.Keywords(event.Provider, event.Handle, row);
                break;
            case Column::ProcessCode:
                row.OpcodeText = texts_.Opcode(event.Provider, event.Handle, row);
                break;
            case Column::Protocol:
                break;  // always there
            case Column::ProcessId:
                row.ProcessIdText = texts_.Decimal(row.ProcessId);
                break;
            case Column::ThreadId:
                row.ThreadIdText = texts_.Decimal(row.ThreadId);
                break;
            case Column::CorrelationId:
                row.ActivityIdText = texts_.Guid(event.Properties[EvtSystemActivityID]);
                break;
            case Column::RelativeCorrelationId:
                row.RelatedActivityIdText = texts_.Guid(event.Properties[EvtSystemRelatedActivityID]);
                break;
            case Column::EventRecordId:
                row.RecordIdText = texts_.Decimal(row.RecordId);
                break;
            case Column::Message:
                row.MessageText = texts_.Text(parts_.Descriptions.Describe(
                    event.Provider.Metadata, event.Handle, row.EventId, parts_.Rows.Text(event.Provider.Name)));
                break;
            case Column::VendorGuid:
                row.ProviderGuidText = texts_.Guid(event.Properties[EvtSystemProviderGuid]);
                break;
            case Column::SecurityUserId:
                row.UserSidText = texts_.Sid(SidValue(event.Properties[EvtSystemUserID]));
                break;
        }
    }

    bool MeetsConditions(EVT_HANDLE metadata, EVT_HANDLE event) {
        if (!conditions_.InDescription.empty() &&
            !ContainsIgnoringCase(parts_.Descriptions.DescribeForCondition(metadata, event),
                                  conditions_.InDescription)) {
            return false;
        }
        return conditions_.InXml.empty() ||
               ContainsIgnoringCase(IndentedXml(parts_.Messages.FormatEventPart(metadata, event, EvtFormatMessageXml)),
                                    conditions_.InXml);
    }

    // In logs that pass the text matcher against "security", the result of the audit stands in for the level. The
    // matcher's options are those of the last search, also when they change during the load.
    bool IsSecurityLog(TextReference reference, std::wstring_view channel) {
        if (!(parts_.Matcher.Options() == matchOptions_)) {
            matchOptions_ = parts_.Matcher.Options();
            securityLogs_.clear();
        }
        const auto [place, isNew] = securityLogs_.try_emplace(static_cast<std::uint32_t>(reference), false);
        if (isNew) {
            place->second = parts_.Matcher.Matches(channel, L"security");
        }
        return place->second;
    }

    const Parts& parts_;
    const TextConditions& conditions_;
    SystemPropertiesReader reader_;
    RowTextSource texts_;
    TextMatchOptions matchOptions_;
    std::unordered_map<std::uint32_t, bool> securityLogs_;
};

EventRenderer::EventRenderer(const Parts& parts) : parts_(parts) {}
EventRenderer::~EventRenderer() = default;

void EventRenderer::BeginLoad(EVT_HANDLE session) {
    load_ = std::make_unique<Load>(parts_, conditions_, session);
}

std::uint32_t EventRenderer::RenderEventRow(EVT_HANDLE event) {
    try {
        if (load_ == nullptr) {
            BeginLoad(nullptr);
        }
        return load_->Render(event);
    } catch (const std::bad_alloc&) {
        parts_.Debug.Write(L"malloc failed\n");
        return error::OutOfMemory;
    }
}

void EventRenderer::EndLoad() {
    load_.reset();
    parts_.Messages.ReleaseMemory();
}

const TextConditions& EventRenderer::Conditions() const {
    return conditions_;
}

void EventRenderer::SetConditions(TextConditions conditions) {
    conditions_ = std::move(conditions);
}

}  // namespace corvina
