// Providers' instrumentation manifests: the texts of messages, levels, tasks, opcodes and keywords.
// Format: the platform's published event manifest schema (instrumentationManifest / instrumentation / events /
// provider).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/identifiers.h"

namespace corvina::publisher {

// The largest manifest that is read, in bytes. The platform's own have a few megabytes at most; hostile XML takes some
// twenty times its size in memory.
inline constexpr std::size_t LargestManifest = std::size_t{16} << 20;

// In place of a message identifier: there is no message.
inline constexpr std::uint32_t NoMessage = 0xFFFF'FFFF;

// Each display text comes with its message identifier: that of the provider's message table, for manifests the one that
// the platform's message compiler gives (see message_ids.h). Without a text the identifier is NoMessage; only a program
// file may name one that its message table lacks.
struct NamedValue {
    std::wstring Name;  // the symbolic name, "win:Error" or "Vendor:Work"
    std::uint64_t Value = 0;
    std::wstring Message;
    std::uint32_t MessageId = NoMessage;
    std::optional<GuidBytes> Guid;  // tasks only: the identifier of the task's events in traces
};

struct EventDefinition {
    std::uint32_t Id = 0;
    std::uint8_t Version = 0;
    std::uint8_t Level = 0;
    std::uint16_t Task = 0;
    std::uint8_t Opcode = 0;
    std::uint64_t Keywords = 0;
    std::uint8_t ChannelId = 0;  // the ChannelReference's Id; 0 when the event has no channel
    std::wstring Channel;        // the channel's path
    bool HasMessage = false;     // false also when the message that the provider names is not there
    std::wstring Message;        // with %1 ... %99, unexpanded
    std::uint32_t MessageId = NoMessage;
    std::wstring Template;  // the names and types of the event's values: a "template" element; empty when there is none
};

struct ChannelReference {
    std::wstring Path;
    std::wstring Type;  // "Admin", "Operational", "Analytic", "Debug"
    bool Enabled = false;
    bool Imported = false;  // defined by another provider
    std::uint8_t Id = 0;    // by which the provider's events name the channel
    std::wstring Message;
    std::uint32_t MessageId = NoMessage;
};

class MessageTables;

// One provider, ready for look-ups.
class Publisher {
  public:
    std::wstring Name;
    std::optional<GuidBytes> Guid;
    std::wstring MessageFileName;
    std::wstring ResourceFileName;
    std::wstring ParameterFileName;
    std::wstring HelpLink;
    std::wstring Message;  // the provider's display name
    std::uint32_t MessageId = NoMessage;
    std::vector<ChannelReference> Channels;
    // Sorted by value, which the look-ups rely on.
    std::vector<NamedValue> Levels;
    std::vector<NamedValue> Tasks;
    std::vector<NamedValue> Opcodes;  // Value: opcode in the low 16 bits, the owning task (0 for any) above them
    std::vector<NamedValue> Keywords;
    std::vector<EventDefinition> Events;  // sorted by id, then version
    // The message tables of the provider's program files, with its classic events' texts too; null for manifests.
    std::shared_ptr<const MessageTables> Messages;
    // The texts that "%%1842" in an event's values stands for; null when the provider names no file with such texts.
    std::shared_ptr<const MessageTables> Parameters;

    // Puts the lists in the order that the look-ups rely on. Of equal definitions the first one will count.
    void SortDefinitions();

    // Display texts; none when the provider and the platform's standard values have none. An event is looked for with
    // its version first, then with the nearest older one, then with the nearest newer one. The texts of keywords stand
    // in the order of the provider's masks, then the standard ones.
    const EventDefinition* FindEvent(std::uint32_t id, std::uint8_t version) const;
    std::optional<std::wstring> LevelText(std::uint8_t level) const;
    std::optional<std::wstring> TaskText(std::uint16_t task) const;
    std::optional<std::wstring> OpcodeText(std::uint8_t opcode, std::uint16_t task) const;
    std::vector<std::wstring> KeywordTexts(std::uint64_t mask) const;
};

// The texts of the standard values, which the platform knows without any provider's metadata.
std::optional<std::wstring> StandardLevelText(std::uint8_t level);
std::optional<std::wstring> StandardOpcodeText(std::uint8_t opcode);
std::vector<std::wstring> StandardKeywordTexts(std::uint64_t mask);

// Reads a manifest in UTF-8 or UTF-16, of at most LargestManifest bytes. Anything larger, not XML or not a manifest
// gives no publishers. Texts are taken from the culture en-US, those that it lacks from the others in order. `problems`
// receives a line for each message reference without a text and the like (at most 1,000); it may be null.
std::vector<Publisher> ReadManifest(std::span<const std::byte> bytes, std::vector<std::wstring>* problems);

// Fills %1 to %99 (with or without a "!format!"), %n, %t, %r, %b, %0, %%, %. and %! of a message. `missing` is set when
// a value that the message names is not there: its place is then left as it stands ("%7"). `missing` is cleared
// otherwise. Results end after 16 Mi characters.
std::wstring ExpandMessage(std::wstring_view message, std::span<const std::wstring> values, bool& missing);

}  // namespace corvina::publisher
