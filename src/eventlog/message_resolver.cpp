#include "eventlog/message_resolver.h"

#include <algorithm>
#include <new>

#include "base/format_text.h"
#include "platform/error_codes.h"

namespace corvina {

namespace {

constexpr std::size_t MaximumCategoryLength = 260;
constexpr std::wstring_view WhiteSpace = L" \t\r\n\v\f";

std::wstring WithoutTrailingSpace(std::wstring text) {
    const std::size_t last = text.find_last_not_of(WhiteSpace);
    text.resize(last == std::wstring::npos ? 0 : last + 1);
    return text;
}

}  // namespace

bool MessageResolver::Reserve(std::size_t capacity) {
    if (capacity > MaximumCapacity) {
        return false;
    }
    std::unique_ptr<wchar_t[]> larger(new (std::nothrow) wchar_t[capacity]);
    if (larger == nullptr) {
        return false;
    }
    larger[0] = L'\0';
    buffer_ = std::move(larger);
    capacity_ = capacity;
    return true;
}

std::wstring_view MessageResolver::FormatEventPart(EVT_HANDLE metadata, EVT_HANDLE event,
                                                   EVT_FORMAT_MESSAGE_FLAGS kind) {
    if (capacity_ == 0 && !Reserve(FirstCapacity)) {
        return {};
    }
    for (;;) {
        DWORD used = 0;
        if (api_.EvtFormatMessage(metadata, event, 0, 0, nullptr, kind, static_cast<DWORD>(capacity_), buffer_.get(),
                                  &used)) {
            const wchar_t* end = std::find(buffer_.get(), buffer_.get() + capacity_, L'\0');
            return {buffer_.get(), static_cast<std::size_t>(end - buffer_.get())};
        }
        // The size that the call reports is of no use for some providers, so growth is by a fixed factor.
        if (api_.GetLastError() != error::InsufficientBuffer || !Reserve(capacity_ * 10)) {
            return {};
        }
    }
}

std::optional<std::wstring> MessageResolver::FormatMessageById(EVT_HANDLE metadata, std::uint32_t messageId) {
    DWORD needed = 0;
    if (!api_.EvtFormatMessage(metadata, nullptr, messageId, 0, nullptr, EvtFormatMessageId, 0, nullptr, &needed) &&
        api_.GetLastError() == error::InsufficientBuffer) {
        const std::size_t size = needed;
        std::unique_ptr<wchar_t[]> text(size > MaximumCapacity ? nullptr : new (std::nothrow) wchar_t[size + 1]());
        if (text == nullptr) {
            debug_.Write(L"malloc failed\n");
            return std::nullopt;
        }
        if (api_.EvtFormatMessage(metadata, nullptr, messageId, 0, nullptr, EvtFormatMessageId, needed, text.get(),
                                  &needed)) {
            return std::wstring(text.get());
        }
    }
    debug_.Write(FormatText(L"EvtFormatMessage failed with %u\n", {api_.GetLastError()}));
    return std::nullopt;
}

bool MessageResolver::HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName) {
    return categories_.HasCategoryMessageFile(logName, sourceName);
}

std::optional<std::wstring> MessageResolver::CategoryText(std::wstring_view logName, std::wstring_view sourceName,
                                                          std::uint16_t category) {
    const std::wstring files = categories_.CategoryMessageFileList(logName, sourceName).value_or(std::wstring());
    std::wstring_view rest = files;
    while (!rest.empty()) {
        const std::size_t separator = std::min(rest.find(L';'), rest.size());
        const std::wstring_view path = rest.substr(0, separator);
        rest.remove_prefix(std::min(separator + 1, rest.size()));
        if (path.empty()) {
            continue;
        }
        std::wstring text = WithoutTrailingSpace(categories_.MessageFromFile(path, category));
        if (!text.empty()) {
            text.resize(std::min(text.size(), MaximumCategoryLength));
            return text;
        }
    }
    return category == 0 ? std::nullopt : std::optional(FormatText(L"(%lu)", {category}));
}

void MessageResolver::ReleaseMemory() {
    if (capacity_ > FirstCapacity) {
        buffer_.reset();
        capacity_ = 0;
    }
}

}  // namespace corvina
