// Message identifiers. The platform's message compiler gives every text of a manifest a number, made from what the text
// belongs to and its value. A manifest does not store these numbers, so they are made here in the same way.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

// The upper four bits say what a message belongs to.
inline constexpr std::uint32_t KeywordMessages = 0x10000000;   // low bits: number of the keyword's bit plus one
inline constexpr std::uint32_t OpcodeMessages = 0x30000000;    // low bits: opcode, above it the task
inline constexpr std::uint32_t LevelMessages = 0x50000000;     // low bits: level
inline constexpr std::uint32_t TaskMessages = 0x70000000;      // low bits: task
inline constexpr std::uint32_t ProviderMessages = 0x90000000;  // low bits: 1, and from 2 on the provider's channels
inline constexpr std::uint32_t EventMessages = 0xB0000000;     // low bits: event id, above it the version
inline constexpr std::uint32_t MessageClassMask = 0xF0000000;

// The numbers that the message compiler gives. A keyword of several bits has that of its lowest one.
std::uint32_t KeywordMessageId(std::uint64_t mask);
std::uint32_t LevelMessageId(std::uint64_t level);
std::uint32_t TaskMessageId(std::uint64_t task);
// `value` as in Publisher::Opcodes.
std::uint32_t OpcodeMessageId(std::uint64_t value);
// An id above 65,535 is that of a classic message file, with severity and facility, and its own message's number.
std::uint32_t EventMessageId(std::uint32_t id, std::uint8_t version);

// The text with this identifier as the provider's description has it, with its inserts; none when there is no such
// text. The standard levels, opcodes and keywords have one in every provider.
std::optional<std::wstring> MessageById(const Publisher& publisher, std::uint32_t messageId);

}  // namespace corvina::publisher
