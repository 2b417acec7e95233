#include "platform/win32/process_token.h"

#include <string>

namespace corvina {

ProcessToken::~ProcessToken() {
    if (token_ != nullptr) {
        CloseHandle(token_);
    }
}

bool ProcessToken::Open() {
    if (token_ == nullptr && !OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token_)) {
        token_ = nullptr;
    }
    return token_ != nullptr;
}

std::uint32_t ProcessToken::LookUpPrivilege(std::wstring_view name, std::uint64_t& value) {
    LUID identifier{};
    if (!LookupPrivilegeValueW(nullptr, std::wstring(name).c_str(), &identifier)) {
        return GetLastError();
    }
    value = std::uint64_t{static_cast<DWORD>(identifier.HighPart)} << 32 | identifier.LowPart;
    return ERROR_SUCCESS;
}

bool ProcessToken::EnablePrivilege(std::uint64_t value, std::uint32_t& error) {
    TOKEN_PRIVILEGES privileges{};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Luid.LowPart = static_cast<DWORD>(value);
    privileges.Privileges[0].Luid.HighPart = static_cast<LONG>(value >> 32);
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    const bool succeeded =
        AdjustTokenPrivileges(token_, FALSE, &privileges, sizeof(privileges), nullptr, nullptr) != FALSE;
    error = GetLastError();
    return succeeded;
}

}  // namespace corvina
