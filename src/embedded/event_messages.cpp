#include "embedded/event_messages.h"

#include <optional>
#include <vector>

#include "base/letter_case.h"
#include "embedded/publisher/message_ids.h"
#include "embedded/publisher/message_table.h"
#include "embedded/publisher/parameter_text.h"
#include "embedded/rendering_xml.h"
#include "embedded/variant_text.h"
#include "platform/error_codes.h"

namespace corvina::embedded {
namespace {

using publisher::Publisher;

// A text of the forwarding computer; none when the event was not forwarded with texts or lacks this one.
std::optional<std::wstring> Forwarded(DecodedEvent& event, std::wstring evtx::RenderingInfo::*part) {
    const evtx::RenderingInfo* const info = event.Rendering();
    return info == nullptr || (info->*part).empty() ? std::nullopt : std::optional(info->*part);
}

std::uint32_t Result(std::optional<std::wstring> found, const Publisher* publisher, std::wstring& text) {
    if (!found) {
        return publisher == nullptr ? error::MessageNotFound : error::MessageIdNotFound;
    }
    text = std::move(*found);
    return error::Success;
}

std::optional<std::wstring> DefinedMessage(const Publisher& publisher, std::uint32_t id, std::uint8_t version) {
    const publisher::EventDefinition* const definition = publisher.FindEvent(id, version);
    return definition != nullptr && definition->HasMessage ? std::optional(definition->Message) : std::nullopt;
}

std::optional<std::wstring> TableMessage(const Publisher& publisher, std::uint32_t id) {
    return publisher.Messages != nullptr ? publisher.Messages->Find(id) : std::nullopt;
}

// The text of an event with the places of its values; none when there is no such text. That of a classic event is known
// by the whole identifier, the qualifiers above the id: in message tables, and in manifests made from them. The numbers
// of a table mean nothing for events that the provider's definitions describe.
std::optional<std::wstring> MessageOf(const Publisher& publisher, const evtx::SystemValues& system) {
    const std::uint32_t id = system.EventId.value_or(0);
    const std::uint8_t version = system.Version.value_or(0);
    const std::uint32_t qualifiers = system.Qualifiers.value_or(0);
    std::optional<std::wstring> message;
    if (qualifiers != 0) {
        const std::uint32_t wholeId = qualifiers << 16 | id;
        message = DefinedMessage(publisher, wholeId, version);
        if (!message) {
            message = TableMessage(publisher, wholeId);
        }
    }
    if (!message) {
        message = DefinedMessage(publisher, id, version);
    }
    const bool mayBeClassic = system.Qualifiers.has_value() || publisher.Events.empty();
    if (!message && qualifiers == 0 && mayBeClassic) {
        message = TableMessage(publisher, id);
    }
    return message;
}

std::uint32_t EventText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                        std::wstring& text) {
    std::optional<std::wstring> message;
    if (publisher != nullptr) {
        message = MessageOf(*publisher, system);
    }
    if (!message) {
        return Result(Forwarded(event, &evtx::RenderingInfo::Message), publisher, text);
    }
    std::vector<std::wstring> values;
    if (const std::vector<evtx::DataValue>* const data = event.Data()) {
        values.reserve(data->size());
        for (const evtx::DataValue& value : *data) {
            values.push_back(value.Text);
        }
    }
    bool missing = false;
    text = publisher::ExpandMessage(*message, values, missing);
    publisher::ExpandParameters(*publisher, text);
    return missing ? error::UnresolvedValueInsert : error::Success;
}

std::uint32_t LevelText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                        std::wstring& text) {
    const std::uint8_t level = system.Level.value_or(0);
    std::optional<std::wstring> found =
        publisher == nullptr ? publisher::StandardLevelText(level) : publisher->LevelText(level);
    if (!found) {
        found = Forwarded(event, &evtx::RenderingInfo::Level);
    }
    return Result(std::move(found), publisher, text);
}

std::uint32_t TaskText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                       std::wstring& text) {
    std::optional<std::wstring> found;
    if (publisher != nullptr) {
        found = publisher->TaskText(system.Task.value_or(0));
    }
    if (!found) {
        found = Forwarded(event, &evtx::RenderingInfo::Task);
    }
    return Result(std::move(found), publisher, text);
}

// Without a manifest the forwarding computer's text is the better one: the standard texts do not know the provider's
// own.
std::uint32_t OpcodeText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                         std::wstring& text) {
    const std::uint8_t opcode = system.Opcode.value_or(0);
    std::optional<std::wstring> found;
    if (publisher != nullptr) {
        found = publisher->OpcodeText(opcode, system.Task.value_or(0));
    }
    if (!found) {
        found = Forwarded(event, &evtx::RenderingInfo::Opcode);
    }
    if (!found) {
        found = publisher::StandardOpcodeText(opcode);
    }
    return Result(std::move(found), publisher, text);
}

std::vector<std::wstring> Keywords(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system) {
    const std::uint64_t mask = system.Keywords.value_or(0);
    std::vector<std::wstring> keywords;
    if (publisher != nullptr) {
        keywords = publisher->KeywordTexts(mask);
    }
    const evtx::RenderingInfo* const info = keywords.empty() ? event.Rendering() : nullptr;
    if (info != nullptr) {
        keywords = info->Keywords;
    }
    return keywords.empty() ? publisher::StandardKeywordTexts(mask) : keywords;
}

std::uint32_t KeywordText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                          std::wstring& text) {
    const std::vector<std::wstring> keywords = Keywords(publisher, event, system);
    text.clear();
    for (const std::wstring& keyword : keywords) {
        text += keyword;
        text += L'\0';
    }
    return !keywords.empty() ? error::Success : Result(std::nullopt, publisher, text);
}

std::uint32_t ChannelText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                          std::wstring& text) {
    std::optional<std::wstring> found = Forwarded(event, &evtx::RenderingInfo::Channel);
    if (!found && publisher != nullptr) {
        for (const publisher::ChannelReference& channel : publisher->Channels) {
            if (!channel.Message.empty() && EqualIgnoringCase(channel.Path, system.Channel)) {
                found = channel.Message;
            }
        }
    }
    if (!found && !system.Channel.empty()) {
        found = system.Channel;
    }
    return Result(std::move(found), nullptr, text);
}

std::uint32_t ProviderText(const Publisher* publisher, DecodedEvent* event, std::wstring& text) {
    std::optional<std::wstring> found;
    if (publisher != nullptr) {
        found = publisher->Message.empty() ? publisher->Name : publisher->Message;
    } else if (event != nullptr) {
        found = Forwarded(*event, &evtx::RenderingInfo::Provider);
    }
    return Result(std::move(found), publisher, text);
}

std::uint32_t XmlText(const Publisher* publisher, DecodedEvent& event, const evtx::SystemValues& system,
                      std::wstring& text) {
    const std::wstring* const xml = event.Xml();
    if (xml == nullptr) {
        return error::EventLogFileCorrupt;
    }
    if (event.Rendering() != nullptr) {
        text = *xml;
        return error::Success;
    }
    evtx::RenderingInfo info;
    info.Culture = L"en-US";
    // A text that cannot be formed is left empty, as one of a value that is not there.
    EventText(publisher, event, system, info.Message);
    LevelText(publisher, event, system, info.Level);
    TaskText(publisher, event, system, info.Task);
    OpcodeText(publisher, event, system, info.Opcode);
    ChannelText(publisher, event, system, info.Channel);
    ProviderText(publisher, &event, info.Provider);
    info.Keywords = Keywords(publisher, event, system);
    text = WithRenderingInfo(*xml, info);
    return error::Success;
}

}  // namespace

std::uint32_t FormatEventText(EVT_FORMAT_MESSAGE_FLAGS kind, const Publisher* publisher, DecodedEvent* event,
                              std::wstring& text) {
    if (kind == EvtFormatMessageProvider && (publisher != nullptr || event != nullptr)) {
        return ProviderText(publisher, event, text);
    }
    if (event == nullptr) {
        return error::InvalidParameter;
    }
    const evtx::SystemValues* const system = event->System();
    if (system == nullptr) {
        return error::EventLogFileCorrupt;
    }
    switch (kind) {
        case EvtFormatMessageEvent:
            return EventText(publisher, *event, *system, text);
        case EvtFormatMessageLevel:
            return LevelText(publisher, *event, *system, text);
        case EvtFormatMessageTask:
            return TaskText(publisher, *event, *system, text);
        case EvtFormatMessageOpcode:
            return OpcodeText(publisher, *event, *system, text);
        case EvtFormatMessageKeyword:
            return KeywordText(publisher, *event, *system, text);
        case EvtFormatMessageChannel:
            return ChannelText(publisher, *event, *system, text);
        case EvtFormatMessageXml:
            return XmlText(publisher, *event, *system, text);
        default:
            return error::InvalidParameter;
    }
}

std::uint32_t FormatMessageById(const Publisher& publisher, std::uint32_t messageId,
                                std::span<const EVT_VARIANT> values, std::wstring& text) {
    const std::optional<std::wstring> message = publisher::MessageById(publisher, messageId);
    if (!message) {
        return error::MessageIdNotFound;
    }
    std::vector<std::wstring> texts;
    texts.reserve(values.size());
    for (const EVT_VARIANT& value : values) {
        texts.push_back(VariantText(value));
    }
    bool missing = false;
    text = publisher::ExpandMessage(*message, texts, missing);
    return missing && !values.empty() ? error::UnresolvedValueInsert : error::Success;
}

}  // namespace corvina::embedded
