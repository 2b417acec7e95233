// Reading the event log's variants without trusting their types: a value of another type than the expected one counts
// as absent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/event_log_types.h"

namespace corvina {

// The text of a string value, empty for any other.
std::wstring_view TextValue(const EVT_VARIANT& value);
// Any unsigned, signed or hexadecimal integer and any file time; 0 for any other.
std::uint64_t NumberValue(const EVT_VARIANT& value);
bool BooleanValue(const EVT_VARIANT& value);
// "{...}" in upper case; none for any other value.
std::optional<std::wstring> GuidValueText(const EVT_VARIANT& value);
// The bytes of a valid security identifier; empty for any other value.
std::span<const std::byte> SidValue(const EVT_VARIANT& value);

// The system properties of an event as they stand in a buffer of rendered values: valid as long as that buffer.
struct SystemProperties {
    // `values` holds all system properties, indexed by EVT_SYSTEM_PROPERTY_ID.
    explicit SystemProperties(const EVT_VARIANT* values) : values_(values) {}

    const EVT_VARIANT& operator[](EVT_SYSTEM_PROPERTY_ID property) const { return values_[property]; }
    std::wstring_view Text(EVT_SYSTEM_PROPERTY_ID property) const { return TextValue(values_[property]); }
    template <typename Integer = std::uint64_t>
    Integer Number(EVT_SYSTEM_PROPERTY_ID property) const {
        return static_cast<Integer>(NumberValue(values_[property]));
    }

  private:
    const EVT_VARIANT* values_;
};

}  // namespace corvina
