#include "platform/win32/windows_system_errors.h"

#include "platform/win32/message_text.h"

namespace corvina {

std::optional<std::wstring> WindowsSystemErrors::MessageText(std::uint32_t code) const {
    std::wstring text = FormatSystemMessage(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code);
    text.erase(text.find_last_not_of(L"\r\n ") + 1);
    if (text.empty()) {
        return std::nullopt;
    }
    return text;
}

}  // namespace corvina
