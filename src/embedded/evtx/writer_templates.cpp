#include "embedded/evtx/writer_templates.h"

#include "base/utf.h"

namespace corvina::evtx {
namespace {

constexpr std::wstring_view EventNamespace = L"http://schemas.microsoft.com/win/2004/08/events/event";

constexpr std::uint32_t Bit(SystemSlot slot) {
    return 1U << static_cast<unsigned>(slot);
}

// Writes System elements for the slots that are present, each left out by readers when its slot is null.
class SystemElements {
  public:
    SystemElements(BinaryXmlWriter& xml, std::uint32_t slots) : xml_(xml), slots_(slots) {}

    bool Has(SystemSlot slot) const { return (slots_ & Bit(slot)) != 0; }

    void Substitution(SystemSlot slot) { xml_.Substitution(static_cast<std::uint16_t>(slot), TypeOf(slot), true); }

    void Leaf(std::string_view name, SystemSlot slot) {
        if (Has(slot)) {
            const auto element = xml_.Open(name, false, static_cast<std::uint16_t>(slot));
            xml_.CloseStart(element);
            Substitution(slot);
            xml_.End(element);
        }
    }

    struct AttributeSlot {
        std::string_view Name;
        SystemSlot Slot;
    };

    // Opens an element with those of the attributes that are present.
    BinaryXmlWriter::Element OpenWith(std::string_view name, std::initializer_list<AttributeSlot> attributes) {
        std::size_t left = 0;
        for (const AttributeSlot& attribute : attributes) {
            left += Has(attribute.Slot) ? 1 : 0;
        }
        const auto element = xml_.Open(name, left != 0);
        for (const AttributeSlot& attribute : attributes) {
            if (Has(attribute.Slot)) {
                --left;
                xml_.Attribute(attribute.Name, left != 0);
                Substitution(attribute.Slot);
            }
        }
        return element;
    }

    void Empty(std::string_view name, std::initializer_list<AttributeSlot> attributes) {
        xml_.CloseEmpty(OpenWith(name, attributes));
    }

    void EventIdentifier() {
        if (Has(SystemSlot::EventId)) {
            const auto element = OpenWith("EventID", {{"Qualifiers", SystemSlot::Qualifiers}});
            xml_.CloseStart(element);
            Substitution(SystemSlot::EventId);
            xml_.End(element);
        }
    }

  private:
    BinaryXmlWriter& xml_;
    std::uint32_t slots_;
};

void WriteSystemElement(BinaryXmlWriter& xml, std::uint32_t slots) {
    SystemElements elements(xml, slots);
    const auto system = xml.Open("System", false);
    xml.CloseStart(system);
    elements.Empty("Provider", {{"Name", SystemSlot::ProviderName},
                                {"Guid", SystemSlot::ProviderGuid},
                                {"EventSourceName", SystemSlot::EventSourceName}});
    elements.EventIdentifier();
    elements.Leaf("Version", SystemSlot::Version);
    elements.Leaf("Level", SystemSlot::Level);
    elements.Leaf("Task", SystemSlot::Task);
    elements.Leaf("Opcode", SystemSlot::Opcode);
    elements.Leaf("Keywords", SystemSlot::Keywords);
    if (elements.Has(SystemSlot::TimeCreated)) {
        elements.Empty("TimeCreated", {{"SystemTime", SystemSlot::TimeCreated}});
    }
    elements.Leaf("EventRecordID", SystemSlot::EventRecordId);
    // The platform writes Correlation, even when it is empty, for every event that knows its process.
    const bool hasProcess = elements.Has(SystemSlot::ProcessId) || elements.Has(SystemSlot::ThreadId);
    if (hasProcess || elements.Has(SystemSlot::ActivityId) || elements.Has(SystemSlot::RelatedActivityId)) {
        elements.Empty("Correlation",
                       {{"ActivityID", SystemSlot::ActivityId}, {"RelatedActivityID", SystemSlot::RelatedActivityId}});
    }
    if (hasProcess) {
        elements.Empty("Execution", {{"ProcessID", SystemSlot::ProcessId}, {"ThreadID", SystemSlot::ThreadId}});
    }
    elements.Leaf("Channel", SystemSlot::Channel);
    elements.Leaf("Computer", SystemSlot::Computer);
    elements.Empty("Security", {{"UserID", SystemSlot::UserId}});
    xml.End(system);
}

bool IsBinaryElement(const WriterValue& value) {
    return value.Type == WriterValue::Kind::Binary && value.Name.empty();
}

// FNV-1a with a start value of one's own, so that two runs give independent halves.
std::uint64_t HashOf(const std::string& key, std::uint64_t start) {
    std::uint64_t hash = start;
    for (const char character : key) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x00000100000001B3;
    }
    // The last bytes of the key have reached only a few bits by now.
    hash = (hash ^ hash >> 32) * 0x9E3779B97F4A7C15;
    return hash ^ hash >> 29;
}

}  // namespace

std::uint32_t PresentSlots(const SystemValues& values) {
    std::uint32_t slots = Bit(SystemSlot::EventRecordId) | Bit(SystemSlot::EventData);
    const auto add = [&slots](bool present, SystemSlot slot) { slots |= present ? Bit(slot) : 0; };
    add(values.Level.has_value(), SystemSlot::Level);
    add(values.Opcode.has_value(), SystemSlot::Opcode);
    add(values.Task.has_value(), SystemSlot::Task);
    add(values.EventId.has_value(), SystemSlot::EventId);
    add(values.Qualifiers.has_value(), SystemSlot::Qualifiers);
    add(values.Keywords.has_value(), SystemSlot::Keywords);
    add(values.TimeCreated.has_value(), SystemSlot::TimeCreated);
    add(values.ActivityId.has_value(), SystemSlot::ActivityId);
    add(values.ProcessId.has_value(), SystemSlot::ProcessId);
    add(values.ThreadId.has_value(), SystemSlot::ThreadId);
    add(values.Version.has_value(), SystemSlot::Version);
    add(!values.UserSid.empty(), SystemSlot::UserId);
    add(values.RelatedActivityId.has_value(), SystemSlot::RelatedActivityId);
    add(!values.ProviderName.empty(), SystemSlot::ProviderName);
    add(values.ProviderGuid.has_value(), SystemSlot::ProviderGuid);
    add(!values.EventSourceName.empty(), SystemSlot::EventSourceName);
    add(!values.Channel.empty(), SystemSlot::Channel);
    add(!values.Computer.empty(), SystemSlot::Computer);
    return slots;
}

ValueType TypeOf(SystemSlot slot) {
    switch (slot) {
        case SystemSlot::Level:
        case SystemSlot::Opcode:
        case SystemSlot::Version:
            return ValueType::UInt8;
        case SystemSlot::Task:
        case SystemSlot::EventId:
        case SystemSlot::Qualifiers:
            return ValueType::UInt16;
        case SystemSlot::ProcessId:
        case SystemSlot::ThreadId:
            return ValueType::UInt32;
        case SystemSlot::EventRecordId:
            return ValueType::UInt64;
        case SystemSlot::Keywords:
            return ValueType::HexInt64;
        case SystemSlot::TimeCreated:
            return ValueType::FileTime;
        case SystemSlot::ActivityId:
        case SystemSlot::RelatedActivityId:
        case SystemSlot::ProviderGuid:
            return ValueType::Guid;
        case SystemSlot::UserId:
            return ValueType::Sid;
        case SystemSlot::ProviderName:
        case SystemSlot::EventSourceName:
        case SystemSlot::Channel:
        case SystemSlot::Computer:
            return ValueType::Text;
        case SystemSlot::EventData:
            return ValueType::BinaryXml;
        case SystemSlot::Count:
            break;
    }
    return ValueType::Null;
}

ValueType TypeOf(WriterValue::Kind kind) {
    switch (kind) {
        case WriterValue::Kind::Text:
            return ValueType::Text;
        case WriterValue::Kind::UInt32:
            return ValueType::UInt32;
        case WriterValue::Kind::UInt64:
            return ValueType::UInt64;
        case WriterValue::Kind::Int32:
            return ValueType::Int32;
        case WriterValue::Kind::HexInt32:
            return ValueType::HexInt32;
        case WriterValue::Kind::HexInt64:
            return ValueType::HexInt64;
        case WriterValue::Kind::Boolean:
            return ValueType::Boolean;
        case WriterValue::Kind::Guid:
            return ValueType::Guid;
        case WriterValue::Kind::Sid:
            return ValueType::Sid;
        case WriterValue::Kind::FileTime:
            return ValueType::FileTime;
        case WriterValue::Kind::Binary:
            return ValueType::Binary;
    }
    return ValueType::Null;
}

void SystemTemplateKey(std::uint32_t slots, std::string& key) {
    key.assign(1, 'S');
    AppendInteger(key, slots, 4);
}

void DataTemplateKey(const std::vector<WriterValue>& data, std::string& key) {
    key.assign(1, 'D');
    for (const WriterValue& value : data) {
        AppendInteger(key, static_cast<std::uint8_t>(value.Type), 1);
        AppendInteger(key, value.Name.size(), 4);
        AppendUtf16Bytes(value.Name, key);
    }
}

GuidBytes TemplateIdentifier(const std::string& key) {
    const std::uint64_t halves[] = {HashOf(key, 0xCBF29CE484222325), HashOf(key, 0x6C62272E07BB0142)};
    GuidBytes identifier{};
    for (std::size_t index = 0; index < identifier.size(); ++index) {
        identifier[index] = static_cast<std::byte>(halves[index / 8] >> (8 * (index % 8)) & 0xFF);
    }
    return identifier;
}

void WriteSystemDefinition(BinaryXmlWriter& xml, std::uint32_t slots) {
    const auto event = xml.Open("Event", true);
    xml.Attribute("xmlns", false);
    xml.Text(EventNamespace);
    xml.CloseStart(event);
    WriteSystemElement(xml, slots);
    xml.Substitution(static_cast<std::uint16_t>(SystemSlot::EventData), ValueType::BinaryXml, true);
    xml.End(event);
}

void WriteDataDefinition(BinaryXmlWriter& xml, const std::vector<WriterValue>& data) {
    const auto eventData = xml.Open("EventData", false);
    xml.CloseStart(eventData);
    std::uint16_t slot = 0;
    for (const WriterValue& value : data) {
        const bool named = !value.Name.empty();
        const auto element = xml.Open(IsBinaryElement(value) ? "Binary" : "Data", named);
        if (named) {
            xml.Attribute("Name", false);
            xml.Text(value.Name);
        }
        xml.CloseStart(element);
        xml.Substitution(slot++, TypeOf(value.Type), false);
        xml.End(element);
    }
    xml.End(eventData);
}

}  // namespace corvina::evtx
