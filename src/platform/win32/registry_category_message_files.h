// The category message files of classic event sources, as this computer's registry names them.
#pragma once

#include "platform/category_message_files.h"

namespace corvina {

class RegistryCategoryMessageFiles : public CategoryMessageFiles {
  public:
    bool HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName) override;

    // None as well when the value is longer than 520 bytes or longer than 260 characters once expanded.
    std::optional<std::wstring> CategoryMessageFileList(std::wstring_view logName,
                                                        std::wstring_view sourceName) override;

    // The file is mapped as data: nothing in it runs. A path without a folder means the system folder.
    std::wstring MessageFromFile(std::wstring_view path, std::uint32_t messageId) override;
};

}  // namespace corvina
