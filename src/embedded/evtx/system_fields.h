// How the values of an event's System part are named in it, and how each is taken from a typed value or a text.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "embedded/evtx/system_field.h"
#include "embedded/evtx/system_values.h"
#include "embedded/evtx/value.h"

namespace corvina::evtx {

// The field that is the content of a child element of System, or one of its attributes; none for others. Names are
// UTF-16.
std::optional<SystemField> SystemFieldOf(std::span<const std::byte> element);
std::optional<SystemField> SystemFieldOf(std::span<const std::byte> element, std::span<const std::byte> attribute);

// Which of the child elements of System that hold fields this is, counted from 0; none for others.
inline constexpr std::size_t SystemElementCount = 19;
std::optional<std::size_t> SystemElementOf(std::span<const std::byte> element);

// Back to "absent".
void ClearSystemField(SystemField field, SystemValues& values);

// Sets a field from a typed value. A null value, or one that is not of the field's kind or range, leaves it absent. Of
// an array the first item counts: it repeats its element, and System values are single.
void SetSystemField(SystemField field, std::span<const std::byte> chunk, const Value& value, SystemValues& values);

// Sets a field from its text.
void SetSystemField(SystemField field, std::wstring_view text, SystemValues& values);

}  // namespace corvina::evtx
