#include "embedded/decoded_event.h"

namespace corvina::embedded {
namespace {

// Memory for texts is kept from event to event, up to this many characters.
constexpr std::size_t KeptXmlLength = std::size_t{256} * 1024;

}  // namespace

void DecodedEvent::Select(EVT_HANDLE handle, const EventPlace& place) {
    if (handle == handle_) {
        return;
    }
    Clear();
    handle_ = handle;
    place_ = place;
}

void DecodedEvent::Forget(EVT_HANDLE handle) {
    if (handle == handle_) {
        Clear();
    }
}

void DecodedEvent::Clear() {
    if (xml_.capacity() > KeptXmlLength) {
        xml_ = std::wstring();
    }
    handle_ = nullptr;
    place_.Chunk = nullptr;
    systemState_ = PartState::Unknown;
    dataState_ = PartState::Unknown;
    renderingState_ = PartState::Unknown;
    xmlState_ = PartState::Unknown;
}

const evtx::SystemValues* DecodedEvent::System() {
    if (systemState_ == PartState::Unknown) {
        systemState_ = place_.Chunk->ReadSystem(place_.Record, system_) ? PartState::Present : PartState::Absent;
    }
    return systemState_ == PartState::Present ? &system_ : nullptr;
}

const std::vector<evtx::DataValue>* DecodedEvent::Data() {
    if (dataState_ == PartState::Unknown) {
        dataState_ = place_.Chunk->ReadData(place_.Record, data_) ? PartState::Present : PartState::Absent;
    }
    return dataState_ == PartState::Present ? &data_ : nullptr;
}

const evtx::RenderingInfo* DecodedEvent::Rendering() {
    if (renderingState_ == PartState::Unknown) {
        rendering_ = {};
        renderingState_ =
            place_.Chunk->ReadRenderingInfo(place_.Record, rendering_) ? PartState::Present : PartState::Absent;
    }
    return renderingState_ == PartState::Present ? &rendering_ : nullptr;
}

const std::wstring* DecodedEvent::Xml() {
    if (xmlState_ == PartState::Unknown) {
        xml_.clear();
        xmlState_ = place_.Chunk->AppendXml(place_.Record, xml_) ? PartState::Present : PartState::Absent;
    }
    return xmlState_ == PartState::Present ? &xml_ : nullptr;
}

}  // namespace corvina::embedded
