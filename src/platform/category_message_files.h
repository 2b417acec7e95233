// The port to the message files of classic event sources, which the registry names below
// "SYSTEM\CurrentControlSet\Services\EventLog\<log>\<source>".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvina {

class CategoryMessageFiles {
  public:
    virtual ~CategoryMessageFiles() = default;

    // Whether the source registers a category message file (value "CategoryMessageFile").
    virtual bool HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName) = 0;

    // The value "CategoryMessageFile" with environment variables expanded: file paths separated by ";".
    virtual std::optional<std::wstring> CategoryMessageFileList(std::wstring_view logName,
                                                                std::wstring_view sourceName) = 0;

    // The text of a message in one file, empty when the file cannot be loaded or lacks the message.
    virtual std::wstring MessageFromFile(std::wstring_view path, std::uint32_t messageId) = 0;
};

}  // namespace corvina
