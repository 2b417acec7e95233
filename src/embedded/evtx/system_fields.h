// The values of an event's System part by name, and how each is taken from a typed value or a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "embedded/evtx/system_values.h"
#include "embedded/evtx/value.h"

namespace corvina::evtx {

enum class SystemField : std::uint8_t {
    ProviderName,
    ProviderGuid,
    EventSourceName,
    EventId,
    Qualifiers,
    Version,
    Level,
    Task,
    Opcode,
    Keywords,
    TimeCreated,
    EventRecordId,
    ActivityId,
    RelatedActivityId,
    ProcessId,
    ThreadId,
    Channel,
    Computer,
    UserSid,
};

// The field that is the content of a child element of System, or one of its attributes; none for others. Names are
// UTF-16.
std::optional<SystemField> SystemFieldOf(std::span<const std::byte> element);
std::optional<SystemField> SystemFieldOf(std::span<const std::byte> element, std::span<const std::byte> attribute);

// Sets a field from a typed value. A null value, or one that is not of the field's kind or range, leaves it absent.
void SetSystemField(SystemField field, std::span<const std::byte> chunk, const Value& value, SystemValues& values);

// Sets a field from its text.
void SetSystemField(SystemField field, std::wstring_view text, SystemValues& values);

}  // namespace corvina::evtx
