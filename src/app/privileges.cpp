#include "app/privileges.h"

#include "base/format_text.h"
#include "platform/error_codes.h"

namespace corvina {

bool EnablePrivilege(PrivilegeToken& token, std::wstring_view name, DebugLog& debug) {
    std::uint64_t value = 0;
    if (const std::uint32_t error = token.LookUpPrivilege(name, value); error != error::Success) {
        debug.Write(FormatText(L"LookupPrivilegeValue error: %u\n", {error}));
        return false;
    }
    std::uint32_t error = error::Success;
    if (!token.EnablePrivilege(value, error)) {
        debug.Write(FormatText(L"AdjustTokenPrivileges error: %u\n", {error}));
        return false;
    }
    if (error == error::NotAllAssigned) {
        debug.Write(L"The token does not have the specified privilege. \n");
        return false;
    }
    debug.Write(L"Get the specified privilege! \n");
    return true;
}

void EnableProgramPrivileges(PrivilegeToken& token, DebugLog& debug) {
    for (const std::wstring_view name : {L"SeChangeNotifyPrivilege", L"SeImpersonatePrivilege", L"SeAuditPrivilege",
                                         L"SeRestorePrivilege", L"SeBackupPrivilege"}) {
        EnablePrivilege(token, name, debug);
    }
}

}  // namespace corvina
