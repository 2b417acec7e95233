#include "eventlog/property_buffer.h"

#include <algorithm>
#include <new>

namespace corvina {

std::wstring_view PropertyBuffer::Text() const {
    const wchar_t* text = static_cast<const wchar_t*>(Data());
    const wchar_t* end = text + capacity_ / sizeof(wchar_t);
    return {text, static_cast<std::size_t>(std::find(text, end, L'\0') - text)};
}

bool PropertyBuffer::Grow(std::size_t bytes) {
    if (bytes <= capacity_) {
        return true;
    }
    if (bytes > MaximumBytes) {
        return false;
    }
    std::unique_ptr<std::byte[]> larger(new (std::nothrow) std::byte[bytes]());
    if (larger == nullptr) {
        return false;
    }
    data_ = std::move(larger);
    capacity_ = bytes;
    return true;
}

}  // namespace corvina
