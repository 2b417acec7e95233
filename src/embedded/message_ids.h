// Message identifiers. The platform's message compiler gives every text of a manifest a number, made from what the text
// belongs to and its value; the same numbers serve here, since manifests do not store any.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::embedded {

// The upper four bits say what a message belongs to.
inline constexpr std::uint32_t KeywordMessages = 0x10000000;   // low bits: number of the keyword's bit plus one
inline constexpr std::uint32_t OpcodeMessages = 0x30000000;    // low bits: opcode, above it the task
inline constexpr std::uint32_t LevelMessages = 0x50000000;     // low bits: level
inline constexpr std::uint32_t TaskMessages = 0x70000000;      // low bits: task
inline constexpr std::uint32_t ProviderMessages = 0x90000000;  // low bits: 1
inline constexpr std::uint32_t EventMessages = 0xB0000000;     // low bits: event id, above it the version
inline constexpr std::uint32_t MessageClassMask = 0xF0000000;

// The text with this identifier as the manifest has it, with its inserts; none when there is no such text.
std::optional<std::wstring> MessageById(const publisher::Publisher& publisher, std::uint32_t messageId);

}  // namespace corvina::embedded
