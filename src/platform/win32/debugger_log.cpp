#include "platform/win32/debugger_log.h"

#include <windows.h>

#include <string>

namespace corvina {

void DebuggerLog::Write(std::wstring_view text) {
    // Writing a diagnostic line must not change the error code that it may be about.
    const DWORD lastError = GetLastError();
    OutputDebugStringW(std::wstring(text).c_str());
    SetLastError(lastError);
}

}  // namespace corvina
