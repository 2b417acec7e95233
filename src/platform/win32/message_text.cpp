#include "platform/win32/message_text.h"

namespace corvina {

std::wstring FormatSystemMessage(DWORD flags, HMODULE module, DWORD messageId) {
    wchar_t* text = nullptr;
    const DWORD length =
        FormatMessageW(flags | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS, module, messageId,
                       MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    if (length == 0 || text == nullptr) {
        return {};
    }
    std::wstring message(text, length);
    LocalFree(text);
    return message;
}

}  // namespace corvina
