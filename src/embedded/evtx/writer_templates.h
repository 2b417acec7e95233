// The two templates that an event is written with: one for its System part and one for its data, each shared by all
// events of the same shape. The data's instance is a value of the System template, which is how the platform nests
// them.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/evtx/log_file_writer.h"
#include "embedded/evtx/writer_xml.h"

namespace corvina::evtx {

// The slots of the System template. All events have all of them; those without a value are null.
enum class SystemSlot : std::uint16_t {
    Level,
    Opcode,
    Task,
    EventId,
    Qualifiers,
    Keywords,
    TimeCreated,
    ActivityId,
    ProcessId,
    ThreadId,
    EventRecordId,
    Version,
    UserId,
    RelatedActivityId,
    ProviderName,
    ProviderGuid,
    EventSourceName,
    Channel,
    Computer,
    EventData,
    Count,
};

// One bit for each slot that has a value. The record identifier always has one: the writer gives it.
std::uint32_t PresentSlots(const SystemValues& values);

// The type that a slot's value, or a data value, is stored with.
ValueType TypeOf(SystemSlot slot);
ValueType TypeOf(WriterValue::Kind kind);

// Two events with equal keys share a template.
void SystemTemplateKey(std::uint32_t slots, std::string& key);
void DataTemplateKey(const std::vector<WriterValue>& data, std::string& key);

// The same key gives the same identifier in every file, as a template of the platform has the same one everywhere.
GuidBytes TemplateIdentifier(const std::string& key);

// The content of the definitions, between their fragment's header and end.
void WriteSystemDefinition(BinaryXmlWriter& xml, std::uint32_t slots);
void WriteDataDefinition(BinaryXmlWriter& xml, const std::vector<WriterValue>& data);

}  // namespace corvina::evtx
