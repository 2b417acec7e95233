// The handles that the embedded event log gives out. A handle is a number, never an address: it names a place in the
// table and the use of that place it was given for, so that a handle that was closed, or comes from elsewhere, is
// recognised.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/event_log_types.h"

namespace corvina::embedded {

enum class ObjectKind : std::uint8_t {
    Session,
    ChannelEnumeration,
    ChannelConfiguration,
    Query,
    Event,
    RenderContext,
    Log,
    PublisherMetadata,
    PublisherEnumeration,
    PublisherList,
    EventMetadataEnumeration,
    EventMetadata
};

// What stands behind a handle. Each kind of object has a class of its own with a constant `Kind`.
class HandleObject {
  public:
    explicit HandleObject(ObjectKind kind) : kind_(kind) {}
    virtual ~HandleObject() = default;
    HandleObject(const HandleObject&) = delete;
    HandleObject& operator=(const HandleObject&) = delete;

    ObjectKind KindOfObject() const { return kind_; }

  private:
    ObjectKind kind_;
};

class HandleTable {
  public:
    HandleTable();

    // Null when the table is full.
    EVT_HANDLE Add(std::unique_ptr<HandleObject> object);

    // The object behind a handle, null when the handle is not open or belongs to an object of another kind.
    template <typename Object>
    Object* Find(EVT_HANDLE handle) const {
        const Slot* const slot = FindSlot(handle);
        return slot != nullptr && slot->Object->KindOfObject() == Object::Kind
                   ? static_cast<Object*>(slot->Object.get())
                   : nullptr;
    }

    // Closes a handle and gives its object back; null when the handle is not open.
    std::unique_ptr<HandleObject> Remove(EVT_HANDLE handle);

    std::size_t OpenCount() const { return openCount_; }

  private:
    struct Slot {
        std::unique_ptr<HandleObject> Object;
        std::uintptr_t Generation = 0;
        std::size_t NextFree = 0;
    };

    const Slot* FindSlot(EVT_HANDLE handle) const;

    std::vector<Slot> slots_;
    std::size_t firstFree_;
    std::size_t openCount_ = 0;
    std::uintptr_t firstGeneration_;
};

}  // namespace corvina::embedded
