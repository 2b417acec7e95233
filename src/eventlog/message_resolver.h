// Turns the numeric parts of an event into display texts: through the publisher's metadata, and for the task category
// of classic sources through their category message files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/category_message_files.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"

namespace corvina {

class MessageResolver {
  public:
    MessageResolver(EventLogApi& api, CategoryMessageFiles& categories, DebugLog& debug)
        : api_(api), categories_(categories), debug_(debug) {}

    // The text of one part of an event, empty when nothing could be formatted. `metadata` may be null: standard names
    // then come from the system. Valid until the next call.
    std::wstring_view FormatEventPart(EVT_HANDLE metadata, EVT_HANDLE event, EVT_FORMAT_MESSAGE_FLAGS kind);

    // The text of a message of the metadata; none when it cannot be formatted.
    std::optional<std::wstring> FormatMessageById(EVT_HANDLE metadata, std::uint32_t messageId);

    bool HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName);

    // The category's text of a classic source, at most 260 characters: from the first of its message files that has
    // one, else "(number)"; none for category 0 without a text.
    std::optional<std::wstring> CategoryText(std::wstring_view logName, std::wstring_view sourceName,
                                             std::uint16_t category);

    // Gives back what exceptionally long texts took, at the end of a load.
    void ReleaseMemory();

  private:
    // Texts start with room for 32768 characters; the room is multiplied by 10 as long as the platform finds it too
    // small, but never beyond this bound.
    static constexpr std::size_t FirstCapacity = 32768;
    static constexpr std::size_t MaximumCapacity = std::size_t{64} << 20;
    bool Reserve(std::size_t capacity);

    EventLogApi& api_;
    CategoryMessageFiles& categories_;
    DebugLog& debug_;
    std::unique_ptr<wchar_t[]> buffer_;
    std::size_t capacity_ = 0;
};

}  // namespace corvina
