// Operations of the embedded event log that list publishers and what they define. The metadata of a publisher itself is
// opened together with its messages.
#include "embedded/embedded_state.h"
#include "embedded/publisher_properties.h"
#include "embedded/variant_row.h"

namespace corvina::embedded {

EVT_HANDLE EmbeddedEventLog::EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        std::shared_ptr<ComputerFolder> computer;
        if (const std::uint32_t error = state_->FindComputer(session, computer)) {
            return error;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        object = std::make_unique<PublisherEnumerationObject>(state_->Publishers.Names(computer->PublishersFolder()));
        return error::Success;
    });
}

BOOL EmbeddedEventLog::EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer,
                                          DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        auto* const enumeration = state_->Handles.Find<PublisherEnumerationObject>(publisherEnum);
        if (enumeration == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr) {
            return error::InvalidParameter;
        }
        if (enumeration->Next >= enumeration->Names.size()) {
            return error::NoMoreItems;
        }
        const std::uint32_t error = WriteText(enumeration->Names[enumeration->Next], bufferSize, buffer, bufferUsed);
        if (error == error::Success) {
            ++enumeration->Next;
        }
        return error;
    });
}

// Channels, levels, tasks, opcodes and keywords come as handles of object arrays, each to be closed by the caller. An
// array stays valid after the metadata that it came from is closed.
BOOL EmbeddedEventLog::EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata,
                                                       EVT_PUBLISHER_METADATA_PROPERTY_ID property, DWORD flags,
                                                       DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const metadata = state_->Handles.Find<PublisherMetadataObject>(publisherMetadata);
        if (metadata == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        const std::optional<PublisherList> list = ListOfProperty(property);
        if (!list) {
            return WritePublisherProperty(*metadata->Subject, property, bufferSize, buffer, bufferUsed);
        }
        *bufferUsed = sizeof(EVT_VARIANT);
        if (buffer == nullptr || bufferSize < sizeof(EVT_VARIANT)) {
            return error::InsufficientBuffer;
        }
        VariantRow<1> row;
        const EVT_HANDLE array = state_->Handles.Add(std::make_unique<PublisherListObject>(metadata->Subject, *list));
        if (array == nullptr) {
            return error::OutOfMemory;
        }
        row.SetHandle(0, array);
        return row.Write(bufferSize, buffer, bufferUsed);
    });
}

BOOL EmbeddedEventLog::EvtGetObjectArraySize(EVT_HANDLE objectArray, DWORD* arraySize) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const array = state_->Handles.Find<PublisherListObject>(objectArray);
        if (array == nullptr) {
            return error::InvalidHandle;
        }
        if (arraySize == nullptr) {
            return error::InvalidParameter;
        }
        *arraySize = static_cast<DWORD>(ListSize(*array->Subject, array->List));
        return error::Success;
    });
}

// Places beyond the end are refused as invalid parameters: unlike an enumeration, the array has told its size.
BOOL EmbeddedEventLog::EvtGetObjectArrayProperty(EVT_HANDLE objectArray, DWORD property, DWORD arrayIndex, DWORD flags,
                                                 DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const array = state_->Handles.Find<PublisherListObject>(objectArray);
        if (array == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        return WriteListProperty(*array->Subject, array->List, property, arrayIndex, bufferSize, buffer, bufferUsed);
    });
}

EVT_HANDLE EmbeddedEventLog::EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        const auto* const metadata = state_->Handles.Find<PublisherMetadataObject>(publisherMetadata);
        if (metadata == nullptr) {
            return error::InvalidHandle;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        object = std::make_unique<EventMetadataEnumerationObject>(metadata->Subject);
        return error::Success;
    });
}

EVT_HANDLE EmbeddedEventLog::EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        auto* const enumeration = state_->Handles.Find<EventMetadataEnumerationObject>(eventMetadataEnum);
        if (enumeration == nullptr) {
            return error::InvalidHandle;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        if (enumeration->Next >= enumeration->Subject->Events.size()) {
            return error::NoMoreItems;
        }
        object = std::make_unique<EventMetadataObject>(enumeration->Subject, enumeration->Next);
        ++enumeration->Next;
        return error::Success;
    });
}

BOOL EmbeddedEventLog::EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property,
                                                   DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                   DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const metadata = state_->Handles.Find<EventMetadataObject>(eventMetadata);
        if (metadata == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        return WriteEventDefinitionProperty(metadata->Subject->Events[metadata->Index], property, bufferSize, buffer,
                                            bufferUsed);
    });
}

}  // namespace corvina::embedded
