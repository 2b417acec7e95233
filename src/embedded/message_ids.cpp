#include "embedded/message_ids.h"

#include <vector>

namespace corvina::embedded {
namespace {

std::optional<std::wstring> TextOf(const std::vector<publisher::NamedValue>& values, std::uint64_t value) {
    for (const publisher::NamedValue& named : values) {
        if (named.Value == value && !named.Message.empty()) {
            return named.Message;
        }
    }
    return std::nullopt;
}

std::optional<std::wstring> KeywordText(const publisher::Publisher& publisher, std::uint32_t bitPlusOne) {
    if (bitPlusOne == 0 || bitPlusOne > 64) {
        return std::nullopt;
    }
    const std::uint64_t mask = std::uint64_t{1} << (bitPlusOne - 1);
    if (auto text = TextOf(publisher.Keywords, mask)) {
        return text;
    }
    std::vector<std::wstring> texts = publisher.KeywordTexts(mask);
    return texts.empty() ? std::nullopt : std::optional(std::move(texts.front()));
}

std::optional<std::wstring> OpcodeText(const publisher::Publisher& publisher, std::uint32_t value) {
    if (auto text = TextOf(publisher.Opcodes, value)) {
        return text;
    }
    return publisher.OpcodeText(static_cast<std::uint8_t>(value & 0xFF), static_cast<std::uint16_t>(value >> 16));
}

std::optional<std::wstring> EventText(const publisher::Publisher& publisher, std::uint32_t value) {
    for (const publisher::EventDefinition& event : publisher.Events) {
        if (event.HasMessage && (event.Id & 0xFFFF) == (value & 0xFFFF) && event.Version == value >> 16) {
            return event.Message;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::wstring> MessageById(const publisher::Publisher& publisher, std::uint32_t messageId) {
    const std::uint32_t value = messageId & ~MessageClassMask;
    switch (messageId & MessageClassMask) {
        case KeywordMessages:
            return KeywordText(publisher, value);
        case OpcodeMessages:
            return OpcodeText(publisher, value);
        case LevelMessages:
            return value > 0xFF ? std::nullopt : publisher.LevelText(static_cast<std::uint8_t>(value));
        case TaskMessages:
            return value > 0xFFFF ? std::nullopt : publisher.TaskText(static_cast<std::uint16_t>(value));
        case ProviderMessages:
            return value != 1 || publisher.Message.empty() ? std::nullopt : std::optional(publisher.Message);
        case EventMessages:
            return EventText(publisher, value);
        default:
            return std::nullopt;
    }
}

}  // namespace corvina::embedded
