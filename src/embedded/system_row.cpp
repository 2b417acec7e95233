#include "embedded/system_row.h"

#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

using SystemRow = VariantRow<EvtSystemPropertyIdEND>;

void SetTextUnlessEmpty(SystemRow& row, EVT_SYSTEM_PROPERTY_ID property, const std::wstring& text) {
    if (!text.empty()) {
        row.SetText(property, text);
    }
}

// Calls one of the row's setters with a value that is there.
template <typename Value, typename Parameter>
void SetIfPresent(SystemRow& row, void (SystemRow::*set)(std::size_t, Parameter), EVT_SYSTEM_PROPERTY_ID property,
                  const std::optional<Value>& value) {
    if (value) {
        (row.*set)(property, *value);
    }
}

}  // namespace

std::uint32_t WriteSystemRow(const evtx::SystemValues& values, DWORD bufferSize, void* buffer, DWORD* used) {
    SystemRow row;
    SetTextUnlessEmpty(row, EvtSystemProviderName, values.ProviderName);
    SetIfPresent(row, &SystemRow::SetGuid, EvtSystemProviderGuid, values.ProviderGuid);
    SetIfPresent(row, &SystemRow::SetUInt16, EvtSystemEventID, values.EventId);
    SetIfPresent(row, &SystemRow::SetUInt16, EvtSystemQualifiers, values.Qualifiers);
    SetIfPresent(row, &SystemRow::SetByte, EvtSystemLevel, values.Level);
    SetIfPresent(row, &SystemRow::SetUInt16, EvtSystemTask, values.Task);
    SetIfPresent(row, &SystemRow::SetByte, EvtSystemOpcode, values.Opcode);
    SetIfPresent(row, &SystemRow::SetHexInt64, EvtSystemKeywords, values.Keywords);
    SetIfPresent(row, &SystemRow::SetFileTime, EvtSystemTimeCreated, values.TimeCreated);
    SetIfPresent(row, &SystemRow::SetUInt64, EvtSystemEventRecordId, values.EventRecordId);
    SetIfPresent(row, &SystemRow::SetGuid, EvtSystemActivityID, values.ActivityId);
    SetIfPresent(row, &SystemRow::SetGuid, EvtSystemRelatedActivityID, values.RelatedActivityId);
    SetIfPresent(row, &SystemRow::SetUInt32, EvtSystemProcessID, values.ProcessId);
    SetIfPresent(row, &SystemRow::SetUInt32, EvtSystemThreadID, values.ThreadId);
    SetTextUnlessEmpty(row, EvtSystemChannel, values.Channel);
    SetTextUnlessEmpty(row, EvtSystemComputer, values.Computer);
    if (!values.UserSid.empty()) {
        row.SetSid(EvtSystemUserID, values.UserSid);
    }
    SetIfPresent(row, &SystemRow::SetByte, EvtSystemVersion, values.Version);
    return row.Write(bufferSize, buffer, used);
}

}  // namespace corvina::embedded
