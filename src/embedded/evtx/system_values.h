// The values of an event's System part, and the other pieces that readers of an event ask for without its XML.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/identifiers.h"

namespace corvina::evtx {

// One object is filled again and again while a log is read, so that its texts keep their memory.
struct SystemValues {
    std::wstring ProviderName;  // empty when absent, like all texts here
    std::optional<GuidBytes> ProviderGuid;
    std::wstring EventSourceName;
    std::optional<std::uint16_t> EventId;
    std::optional<std::uint16_t> Qualifiers;
    std::optional<std::uint8_t> Version;
    std::optional<std::uint8_t> Level;
    std::optional<std::uint16_t> Task;
    std::optional<std::uint8_t> Opcode;
    std::optional<std::uint64_t> Keywords;
    std::optional<std::uint64_t> TimeCreated;  // file time, UTC
    std::optional<std::uint64_t> EventRecordId;
    std::optional<GuidBytes> ActivityId;
    std::optional<GuidBytes> RelatedActivityId;
    std::optional<std::uint32_t> ProcessId;
    std::optional<std::uint32_t> ThreadId;
    std::wstring Channel;
    std::wstring Computer;
    std::vector<std::byte> UserSid;  // binary form, empty when absent

    // Back to "nothing present"; memory is kept.
    void Clear();
};

// One data value of an event: a Data element of EventData, or a leaf of UserData, in the order of the document.
struct DataValue {
    std::wstring Name;  // the Name attribute, or the element's name in UserData; may be empty
    std::wstring Text;
};

// What the computer that forwarded an event has already written of its texts (element RenderingInfo).
struct RenderingInfo {
    std::wstring Culture;
    std::wstring Message;
    std::wstring Level;
    std::wstring Task;
    std::wstring Opcode;
    std::wstring Channel;
    std::wstring Provider;
    std::vector<std::wstring> Keywords;
};

}  // namespace corvina::evtx
