#include "embedded/publisher_properties.h"

#include <span>
#include <string_view>

#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

using publisher::ChannelReference;
using publisher::EventDefinition;
using publisher::NamedValue;
using publisher::Publisher;

constexpr std::uint32_t ImportedChannel = 1;  // a flag of a channel reference
constexpr GuidBytes NoGuid{};

void SetTextIfAny(VariantRow<1>& row, std::wstring_view text) {
    if (!text.empty()) {
        row.SetText(0, text);
    }
}

// A manifest's value keeps the opcode below its task; the platform has them the other way round.
std::uint32_t PlatformOpcode(std::uint64_t value) {
    return static_cast<std::uint32_t>((value & 0xFFFF) << 16 | (value >> 16 & 0xFFFF));
}

// Each of these sets the value of one member of a list and returns whether there is such a property.
bool SetChannelProperty(VariantRow<1>& row, const ChannelReference& channel, DWORD property, std::size_t index) {
    switch (property) {
        case EvtPublisherMetadataChannelReferencePath:
            row.SetText(0, channel.Path);
            return true;
        case EvtPublisherMetadataChannelReferenceIndex:
            row.SetUInt32(0, static_cast<std::uint32_t>(index));
            return true;
        case EvtPublisherMetadataChannelReferenceID:
            row.SetUInt32(0, channel.Id);
            return true;
        case EvtPublisherMetadataChannelReferenceFlags:
            row.SetUInt32(0, channel.Imported ? ImportedChannel : 0);
            return true;
        case EvtPublisherMetadataChannelReferenceMessageID:
            row.SetUInt32(0, channel.MessageId);
            return true;
        default:
            return false;
    }
}

bool SetLevelProperty(VariantRow<1>& row, const NamedValue& level, DWORD property) {
    switch (property) {
        case EvtPublisherMetadataLevelName:
            row.SetText(0, level.Name);
            return true;
        case EvtPublisherMetadataLevelValue:
            row.SetUInt32(0, static_cast<std::uint32_t>(level.Value));
            return true;
        case EvtPublisherMetadataLevelMessageID:
            row.SetUInt32(0, level.MessageId);
            return true;
        default:
            return false;
    }
}

bool SetTaskProperty(VariantRow<1>& row, const NamedValue& task, DWORD property) {
    switch (property) {
        case EvtPublisherMetadataTaskName:
            row.SetText(0, task.Name);
            return true;
        case EvtPublisherMetadataTaskEventGuid:
            row.SetGuid(0, task.Guid ? *task.Guid : NoGuid);
            return true;
        case EvtPublisherMetadataTaskValue:
            row.SetUInt32(0, static_cast<std::uint32_t>(task.Value));
            return true;
        case EvtPublisherMetadataTaskMessageID:
            row.SetUInt32(0, task.MessageId);
            return true;
        default:
            return false;
    }
}

bool SetOpcodeProperty(VariantRow<1>& row, const NamedValue& opcode, DWORD property) {
    switch (property) {
        case EvtPublisherMetadataOpcodeName:
            row.SetText(0, opcode.Name);
            return true;
        case EvtPublisherMetadataOpcodeValue:
            row.SetUInt32(0, PlatformOpcode(opcode.Value));
            return true;
        case EvtPublisherMetadataOpcodeMessageID:
            row.SetUInt32(0, opcode.MessageId);
            return true;
        default:
            return false;
    }
}

bool SetKeywordProperty(VariantRow<1>& row, const NamedValue& keyword, DWORD property) {
    switch (property) {
        case EvtPublisherMetadataKeywordName:
            row.SetText(0, keyword.Name);
            return true;
        case EvtPublisherMetadataKeywordValue:
            row.SetUInt64(0, keyword.Value);
            return true;
        case EvtPublisherMetadataKeywordMessageID:
            row.SetUInt32(0, keyword.MessageId);
            return true;
        default:
            return false;
    }
}

bool SetListProperty(VariantRow<1>& row, const Publisher& publisher, PublisherList list, DWORD property,
                     std::size_t index) {
    switch (list) {
        case PublisherList::Channels:
            return SetChannelProperty(row, publisher.Channels[index], property, index);
        case PublisherList::Levels:
            return SetLevelProperty(row, publisher.Levels[index], property);
        case PublisherList::Tasks:
            return SetTaskProperty(row, publisher.Tasks[index], property);
        case PublisherList::Opcodes:
            return SetOpcodeProperty(row, publisher.Opcodes[index], property);
        case PublisherList::Keywords:
            return SetKeywordProperty(row, publisher.Keywords[index], property);
    }
    return false;
}

}  // namespace

std::optional<PublisherList> ListOfProperty(EVT_PUBLISHER_METADATA_PROPERTY_ID property) {
    switch (property) {
        case EvtPublisherMetadataChannelReferences:
            return PublisherList::Channels;
        case EvtPublisherMetadataLevels:
            return PublisherList::Levels;
        case EvtPublisherMetadataTasks:
            return PublisherList::Tasks;
        case EvtPublisherMetadataOpcodes:
            return PublisherList::Opcodes;
        case EvtPublisherMetadataKeywords:
            return PublisherList::Keywords;
        default:
            return std::nullopt;
    }
}

std::size_t ListSize(const Publisher& publisher, PublisherList list) {
    switch (list) {
        case PublisherList::Channels:
            return publisher.Channels.size();
        case PublisherList::Levels:
            return publisher.Levels.size();
        case PublisherList::Tasks:
            return publisher.Tasks.size();
        case PublisherList::Opcodes:
            return publisher.Opcodes.size();
        case PublisherList::Keywords:
            return publisher.Keywords.size();
    }
    return 0;
}

std::uint32_t WritePublisherProperty(const Publisher& publisher, EVT_PUBLISHER_METADATA_PROPERTY_ID property,
                                     DWORD bufferSize, void* buffer, DWORD* used) {
    VariantRow<1> row;
    switch (static_cast<int>(property)) {
        case EvtPublisherMetadataPublisherGuid:
            row.SetGuid(0, publisher.Guid ? *publisher.Guid : NoGuid);
            break;
        case EvtPublisherMetadataResourceFilePath:
            SetTextIfAny(row, publisher.ResourceFileName);
            break;
        case EvtPublisherMetadataParameterFilePath:
            SetTextIfAny(row, publisher.ParameterFileName);
            break;
        case EvtPublisherMetadataMessageFilePath:
            SetTextIfAny(row, publisher.MessageFileName);
            break;
        case EvtPublisherMetadataHelpLink:
            SetTextIfAny(row, publisher.HelpLink);
            break;
        case EvtPublisherMetadataPublisherMessageID:
            row.SetUInt32(0, publisher.MessageId);
            break;
        default:
            return error::InvalidParameter;
    }
    return row.Write(bufferSize, buffer, used);
}

std::uint32_t WriteListProperty(const Publisher& publisher, PublisherList list, DWORD property, std::size_t index,
                                DWORD bufferSize, void* buffer, DWORD* used) {
    VariantRow<1> row;
    if (index >= ListSize(publisher, list) || !SetListProperty(row, publisher, list, property, index)) {
        return error::InvalidParameter;
    }
    return row.Write(bufferSize, buffer, used);
}

std::uint32_t WriteEventDefinitionProperty(const EventDefinition& event, EVT_EVENT_METADATA_PROPERTY_ID property,
                                           DWORD bufferSize, void* buffer, DWORD* used) {
    VariantRow<1> row;
    switch (static_cast<int>(property)) {
        case EventMetadataEventID:
            row.SetUInt32(0, event.Id);
            break;
        case EventMetadataEventVersion:
            row.SetUInt32(0, event.Version);
            break;
        case EventMetadataEventChannel:
            row.SetUInt32(0, event.ChannelId);
            break;
        case EventMetadataEventLevel:
            row.SetUInt32(0, event.Level);
            break;
        case EventMetadataEventOpcode:
            row.SetUInt32(0, event.Opcode);
            break;
        case EventMetadataEventTask:
            row.SetUInt32(0, event.Task);
            break;
        case EventMetadataEventKeyword:
            row.SetUInt64(0, event.Keywords);
            break;
        case EventMetadataEventMessageID:
            row.SetUInt32(0, event.MessageId);
            break;
        case EventMetadataEventTemplate:
            row.SetText(0, event.Template);
            break;
        default:
            return error::InvalidParameter;
    }
    return row.Write(bufferSize, buffer, used);
}

}  // namespace corvina::embedded
