#include "embedded/variant_row.h"

#include <algorithm>

namespace corvina::embedded {
namespace {

EVT_VARIANT ArrayRecord(EVT_VARIANT_TYPE itemType, std::size_t count) {
    EVT_VARIANT record{};
    record.Type = static_cast<DWORD>(itemType) | static_cast<DWORD>(EVT_VARIANT_TYPE_ARRAY);
    record.Count = static_cast<DWORD>(count);
    return record;
}

}  // namespace

std::uint32_t WriteTextArray(std::span<const std::wstring> texts, DWORD bufferSize, void* buffer, DWORD* used) {
    const std::size_t tableSize = texts.size() * sizeof(wchar_t*);
    std::size_t size = sizeof(EVT_VARIANT) + tableSize;
    for (const std::wstring& text : texts) {
        size += (text.size() + 1) * sizeof(wchar_t);
    }
    *used = static_cast<DWORD>(size);
    if (buffer == nullptr || bufferSize < size) {
        return error::InsufficientBuffer;
    }
    BYTE* const table = static_cast<BYTE*>(buffer) + sizeof(EVT_VARIANT);
    EVT_VARIANT record = ArrayRecord(EvtVarTypeString, texts.size());
    record.BinaryVal = table;
    std::memcpy(buffer, &record, sizeof record);
    BYTE* place = table + tableSize;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const std::size_t textSize = (texts[index].size() + 1) * sizeof(wchar_t);
        std::memcpy(place, texts[index].c_str(), textSize);
        std::memcpy(table + index * sizeof(wchar_t*), &place, sizeof place);
        place += textSize;
    }
    return error::Success;
}

std::uint32_t WriteUInt32Array(std::span<const std::uint32_t> numbers, DWORD bufferSize, void* buffer, DWORD* used) {
    const std::size_t size = sizeof(EVT_VARIANT) + numbers.size_bytes();
    *used = static_cast<DWORD>(size);
    if (buffer == nullptr || bufferSize < size) {
        return error::InsufficientBuffer;
    }
    EVT_VARIANT record = ArrayRecord(EvtVarTypeUInt32, numbers.size());
    record.BinaryVal = static_cast<BYTE*>(buffer) + sizeof(EVT_VARIANT);
    std::memcpy(buffer, &record, sizeof record);
    if (!numbers.empty()) {
        std::memcpy(record.BinaryVal, numbers.data(), numbers.size_bytes());
    }
    return error::Success;
}

std::uint32_t WriteText(std::wstring_view text, DWORD bufferSize, LPWSTR buffer, DWORD* used) {
    *used = static_cast<DWORD>(text.size() + 1);
    if (buffer == nullptr || bufferSize < text.size() + 1) {
        return error::InsufficientBuffer;
    }
    std::copy(text.begin(), text.end(), buffer);
    buffer[text.size()] = L'\0';
    return error::Success;
}

}  // namespace corvina::embedded
