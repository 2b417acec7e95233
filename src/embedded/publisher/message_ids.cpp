#include "embedded/publisher/message_ids.h"

#include <bit>
#include <vector>

#include "embedded/publisher/message_table.h"

namespace corvina::publisher {
namespace {

// The first text of a list with this identifier.
template <typename Described>
std::optional<std::wstring> TextOf(const std::vector<Described>& list, std::uint32_t messageId) {
    for (const Described& item : list) {
        if (item.MessageId == messageId) {
            return item.Message;
        }
    }
    return std::nullopt;
}

std::optional<std::wstring> StandardText(std::uint32_t messageId) {
    const std::uint32_t value = messageId & ~MessageClassMask;
    switch (messageId & MessageClassMask) {
        case KeywordMessages: {
            if (value == 0 || value > 64) {
                return std::nullopt;
            }
            std::vector<std::wstring> texts = StandardKeywordTexts(std::uint64_t{1} << (value - 1));
            return texts.empty() ? std::nullopt : std::optional(std::move(texts.front()));
        }
        case OpcodeMessages:
            return StandardOpcodeText(static_cast<std::uint8_t>(value & 0xFF));
        case LevelMessages:
            return value > 0xFF ? std::nullopt : StandardLevelText(static_cast<std::uint8_t>(value));
        default:
            return std::nullopt;
    }
}

}  // namespace

std::uint32_t KeywordMessageId(std::uint64_t mask) {
    return mask == 0 ? NoMessage : KeywordMessages | static_cast<std::uint32_t>(std::countr_zero(mask) + 1);
}

std::uint32_t LevelMessageId(std::uint64_t level) {
    return LevelMessages | static_cast<std::uint32_t>(level);
}

std::uint32_t TaskMessageId(std::uint64_t task) {
    return TaskMessages | static_cast<std::uint32_t>(task);
}

std::uint32_t OpcodeMessageId(std::uint64_t value) {
    return OpcodeMessages | static_cast<std::uint32_t>(value & ~std::uint64_t{MessageClassMask});
}

std::uint32_t EventMessageId(std::uint32_t id, std::uint8_t version) {
    return id > 0xFFFF ? id : EventMessages | static_cast<std::uint32_t>(version) << 16 | id;
}

std::optional<std::wstring> MessageById(const Publisher& publisher, std::uint32_t messageId) {
    if (messageId == NoMessage) {
        return std::nullopt;
    }
    if (publisher.Messages != nullptr) {
        std::optional<std::wstring> text = publisher.Messages->Find(messageId);
        return text ? text : StandardText(messageId);
    }
    if (publisher.MessageId == messageId) {
        return publisher.Message;
    }
    std::optional<std::wstring> text = TextOf(publisher.Events, messageId);
    for (const std::vector<NamedValue>* const values :
         {&publisher.Levels, &publisher.Tasks, &publisher.Opcodes, &publisher.Keywords}) {
        if (!text) {
            text = TextOf(*values, messageId);
        }
    }
    if (!text) {
        text = TextOf(publisher.Channels, messageId);
    }
    return text ? text : StandardText(messageId);
}

}  // namespace corvina::publisher
