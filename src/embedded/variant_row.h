// Results as the platform lays them out: EVT_VARIANT records at the front of the caller's buffer, followed by the
// texts, identifiers and arrays that they point to. The needed size is known before anything is written, so a buffer
// that is too small stays untouched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/identifiers.h"
#include "platform/error_codes.h"
#include "platform/event_log_types.h"

namespace corvina::embedded {

// What follows the records starts at multiples of this many bytes: enough for GUIDs, SIDs and wide characters.
inline constexpr std::size_t PayloadAlignment = 4;

constexpr std::size_t AlignedPayload(std::size_t size) {
    return (size + PayloadAlignment - 1) / PayloadAlignment * PayloadAlignment;
}

// A row of values that are written together. Values that are not set are null. Texts, GUIDs and SIDs are borrowed until
// Write.
template <std::size_t Count>
class VariantRow {
  public:
    VariantRow() { std::memset(values_.data(), 0, sizeof(values_)); }

    void SetByte(std::size_t index, std::uint8_t value) { Typed(index, EvtVarTypeByte).ByteVal = value; }
    void SetUInt16(std::size_t index, std::uint16_t value) { Typed(index, EvtVarTypeUInt16).UInt16Val = value; }
    void SetUInt32(std::size_t index, std::uint32_t value) { Typed(index, EvtVarTypeUInt32).UInt32Val = value; }
    void SetUInt64(std::size_t index, std::uint64_t value) { Typed(index, EvtVarTypeUInt64).UInt64Val = value; }
    void SetHexInt64(std::size_t index, std::uint64_t value) { Typed(index, EvtVarTypeHexInt64).UInt64Val = value; }
    void SetFileTime(std::size_t index, std::uint64_t value) { Typed(index, EvtVarTypeFileTime).FileTimeVal = value; }
    void SetBoolean(std::size_t index, bool value) {
        Typed(index, EvtVarTypeBoolean).BooleanVal = value ? TRUE : FALSE;
    }
    void SetHandle(std::size_t index, EVT_HANDLE value) { Typed(index, EvtVarTypeEvtHandle).EvtHandleVal = value; }

    void SetText(std::size_t index, std::wstring_view text) {
        Typed(index, EvtVarTypeString);
        payloads_[index] = {text.data(), text.size() * sizeof(wchar_t), sizeof(wchar_t)};
    }
    void SetGuid(std::size_t index, const GuidBytes& guid) {
        Typed(index, EvtVarTypeGuid);
        payloads_[index] = {guid.data(), guid.size(), 0};
    }
    void SetSid(std::size_t index, std::span<const std::byte> sid) {
        Typed(index, EvtVarTypeSid);
        payloads_[index] = {sid.data(), sid.size(), 0};
    }

    // Bytes that Write needs.
    std::size_t Size() const {
        std::size_t size = sizeof(values_);
        for (const Payload& payload : payloads_) {
            size += AlignedPayload(payload.Size + payload.Zeros);
        }
        return size;
    }

    // Writes the row when the buffer is large enough; `used` receives the needed size either way. Returns an error
    // code.
    std::uint32_t Write(DWORD bufferSize, void* buffer, DWORD* used) const {
        const std::size_t size = Size();
        *used = static_cast<DWORD>(size);
        if (buffer == nullptr || bufferSize < size) {
            return error::InsufficientBuffer;
        }
        // Copied bytewise: a caller's buffer of bytes need not be aligned for the records.
        auto* const records = static_cast<BYTE*>(buffer);
        BYTE* place = records + sizeof(values_);
        std::memcpy(records, values_.data(), sizeof(values_));
        for (std::size_t index = 0; index < Count; ++index) {
            const Payload& payload = payloads_[index];
            if (payload.Size + payload.Zeros == 0) {
                continue;
            }
            if (payload.Size != 0) {
                std::memcpy(place, payload.Data, payload.Size);
            }
            std::memset(place + payload.Size, 0, payload.Zeros);
            // Every member of the union starts at the front of the record, and all its pointers have the same form.
            std::memcpy(records + index * sizeof(EVT_VARIANT), &place, sizeof place);
            place += AlignedPayload(payload.Size + payload.Zeros);
        }
        return error::Success;
    }

  private:
    struct Payload {
        const void* Data = nullptr;
        std::size_t Size = 0;
        std::size_t Zeros = 0;  // bytes of zero after it
    };

    EVT_VARIANT& Typed(std::size_t index, EVT_VARIANT_TYPE type) {
        values_[index].Type = static_cast<DWORD>(type);
        return values_[index];
    }

    std::array<EVT_VARIANT, Count> values_;
    std::array<Payload, Count> payloads_;
};

// One value that is an array, written in the same way.
std::uint32_t WriteTextArray(std::span<const std::wstring> texts, DWORD bufferSize, void* buffer, DWORD* used);
std::uint32_t WriteUInt32Array(std::span<const std::uint32_t> numbers, DWORD bufferSize, void* buffer, DWORD* used);

// Copies a text with a closing zero when the buffer takes it; `used` receives the needed size in characters either way.
std::uint32_t WriteText(std::wstring_view text, DWORD bufferSize, LPWSTR buffer, DWORD* used);

}  // namespace corvina::embedded
