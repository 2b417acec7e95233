// The one place that knows how results of unknown length are fetched from the event log: ask with the buffer at hand,
// and when it is too small (error 122) grow it to the reported size and ask once more. The buffer is kept for the next
// call and never shrinks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/error_codes.h"
#include "platform/event_log_api.h"

namespace corvina {

enum class FillResult { Filled, Failed, OutOfMemory };

class PropertyBuffer {
  public:
    // Sizes above this are refused as if memory had run out; no answer of the event log comes near it.
    static constexpr std::size_t MaximumBytes = std::size_t{512} << 20;

    // `call(DWORD bytes, void* buffer, DWORD* used)` answers like the platform's property functions: sizes in bytes.
    // The first call is made with no buffer and size 0. Error() has the reason after FillResult::Failed.
    template <typename Call>
    FillResult FillBytes(const EventLogApi& api, Call&& call) {
        return Fill(api, 1, [&](DWORD size, DWORD* used) { return call(size, Data(), used); });
    }

    // The same for functions that count characters: `call(DWORD characters, wchar_t* buffer, DWORD* used)`.
    template <typename Call>
    FillResult FillText(const EventLogApi& api, Call&& call) {
        return Fill(api, sizeof(wchar_t),
                    [&](DWORD size, DWORD* used) { return call(size, static_cast<wchar_t*>(Data()), used); });
    }

    std::uint32_t Error() const { return error_; }

    // What the last successful call left: as values, or as text up to its first zero character.
    const EVT_VARIANT* Values() const { return static_cast<const EVT_VARIANT*>(Data()); }
    // The number of values that the buffer has room for; what lies beyond must not be read.
    std::size_t ValueCapacity() const { return capacity_ / sizeof(EVT_VARIANT); }
    std::wstring_view Text() const;

  private:
    void* Data() const { return data_.get(); }
    bool Grow(std::size_t bytes);

    template <typename Call>
    FillResult Fill(const EventLogApi& api, std::size_t unit, Call&& call) {
        const auto units = [&] { return static_cast<DWORD>(capacity_ / unit); };
        DWORD used = 0;
        if (call(units(), &used)) {
            return FillResult::Filled;
        }
        error_ = api.GetLastError();
        if (error_ != error::InsufficientBuffer) {
            return FillResult::Failed;
        }
        if (!Grow(std::size_t{used} * unit)) {
            return FillResult::OutOfMemory;
        }
        if (call(units(), &used)) {
            return FillResult::Filled;
        }
        error_ = api.GetLastError();
        return FillResult::Failed;
    }

    std::unique_ptr<std::byte[]> data_;
    std::size_t capacity_ = 0;
    std::uint32_t error_ = 0;
};

}  // namespace corvina
