// The parts of one event, decoded when they are first asked for and kept while the program asks for the next one: a
// list row is made from some seven calls about the same event.
#pragma once

#include <string>
#include <vector>

#include "embedded/log_cursor.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

class DecodedEvent {
  public:
    // Turns to an event. Handles are never given out twice, so the same handle means that what was decoded still holds.
    void Select(EVT_HANDLE handle, const EventPlace& place);

    // Lets go of the event's chunk when the event is closed.
    void Forget(EVT_HANDLE handle);

    // Each is none when the event cannot be decoded or has no such part.
    const evtx::SystemValues* System();
    const std::vector<evtx::DataValue>* Data();
    const evtx::RenderingInfo* Rendering();
    const std::wstring* Xml();

  private:
    void Clear();

    enum class PartState { Unknown, Present, Absent };

    EVT_HANDLE handle_ = nullptr;
    EventPlace place_;
    PartState systemState_ = PartState::Unknown;
    PartState dataState_ = PartState::Unknown;
    PartState renderingState_ = PartState::Unknown;
    PartState xmlState_ = PartState::Unknown;
    evtx::SystemValues system_;
    std::vector<evtx::DataValue> data_;
    evtx::RenderingInfo rendering_;
    std::wstring xml_;
};

}  // namespace corvina::embedded
