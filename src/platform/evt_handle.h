// A handle of the event log that closes itself.
#pragma once

#include <utility>

#include "platform/event_log_api.h"

namespace corvina {

class EvtHandle {
  public:
    EvtHandle() = default;
    EvtHandle(EventLogApi& api, EVT_HANDLE handle) : api_(&api), handle_(handle) {}
    EvtHandle(EvtHandle&& other) noexcept
        : api_(std::exchange(other.api_, nullptr)), handle_(std::exchange(other.handle_, nullptr)) {}
    EvtHandle& operator=(EvtHandle&& other) noexcept {
        if (this != &other) {
            Close();
            api_ = std::exchange(other.api_, nullptr);
            handle_ = std::exchange(other.handle_, nullptr);
        }
        return *this;
    }
    EvtHandle(const EvtHandle&) = delete;
    EvtHandle& operator=(const EvtHandle&) = delete;
    ~EvtHandle() { Close(); }

    explicit operator bool() const { return handle_ != nullptr; }
    EVT_HANDLE Get() const { return handle_; }

    void Close() {
        if (handle_ != nullptr) {
            api_->EvtClose(std::exchange(handle_, nullptr));
        }
    }

  private:
    EventLogApi* api_ = nullptr;
    EVT_HANDLE handle_ = nullptr;
};

}  // namespace corvina
