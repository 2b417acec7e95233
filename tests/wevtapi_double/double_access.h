// How a test program reaches the double of wevtapi.dll that stands in the system folder.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/win32/system_event_log.h"
#include "wevtapi_double/double_control.h"

namespace corvina::test {

// Whether this run of a test program is to use the system's event log, which must then be the double.
inline bool IsDoubleAskedFor() {
    wchar_t text[16] = {};
    GetEnvironmentVariableW(L"CORVINA_TEST_EVENT_LOG", text, 16);
    return std::wstring_view(text) == L"system";
}

// The store and the name of this computer for every call from now on.
inline void SetDoubleStore(const std::wstring& folder, const std::wstring& computerName) {
    SetEnvironmentVariableW(StoreVariable, folder.c_str());
    SetEnvironmentVariableW(ComputerVariable, computerName.c_str());
}

// One of the double's own functions; null when the system's event log is not the double, or is not loaded.
template <typename Function>
Function FindDoubleFunction(const char* name) {
    const HMODULE module = GetModuleHandleW(L"wevtapi.dll");
    return module == nullptr ? nullptr
                             : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Handles that are open in the double; the largest number when the double is not there.
inline std::size_t DoubleOpenHandleCount() {
    const auto count = FindDoubleFunction<OpenHandleCountFunction>(OpenHandleCountName);
    return count == nullptr ? static_cast<std::size_t>(-1) : count();
}

// The system's event log, for as long as it is kept.
inline std::unique_ptr<SystemEventLog> OpenSystemEventLog(const std::wstring& folder,
                                                          const std::wstring& computerName) {
    SetDoubleStore(folder, computerName);
    return std::make_unique<SystemEventLog>();
}

}  // namespace corvina::test
