// What publishers and their events say of themselves, in the platform's types. Property identifiers and types: the
// public documentation of EVT_PUBLISHER_METADATA_PROPERTY_ID and EVT_EVENT_METADATA_PROPERTY_ID.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "embedded/publisher/publisher_manifest.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

// The lists that a publisher's metadata gives out as object arrays.
enum class PublisherList : std::uint8_t { Channels, Levels, Tasks, Opcodes, Keywords };

// The list that a property of a publisher stands for; none for any other property.
std::optional<PublisherList> ListOfProperty(EVT_PUBLISHER_METADATA_PROPERTY_ID property);

std::size_t ListSize(const publisher::Publisher& publisher, PublisherList list);

// Each writes one value into the caller's buffer when it is large enough; `used` receives the needed size in bytes
// either way. They return an error code: error::InvalidParameter for properties that are not of this object and for
// places beyond the end of a list.

// A property of a publisher that is no list. Texts that the publisher does not state are null, a missing identifier is
// the GUID of zeros.
std::uint32_t WritePublisherProperty(const publisher::Publisher& publisher, EVT_PUBLISHER_METADATA_PROPERTY_ID property,
                                     DWORD bufferSize, void* buffer, DWORD* used);

// A property of one member of a list. An opcode's value holds the opcode in its high word and the task that it belongs
// to, 0 for any, in its low word.
std::uint32_t WriteListProperty(const publisher::Publisher& publisher, PublisherList list, DWORD property,
                                std::size_t index, DWORD bufferSize, void* buffer, DWORD* used);

// A property of an event's definition.
std::uint32_t WriteEventDefinitionProperty(const publisher::EventDefinition& event,
                                           EVT_EVENT_METADATA_PROPERTY_ID property, DWORD bufferSize, void* buffer,
                                           DWORD* used);

}  // namespace corvina::embedded
