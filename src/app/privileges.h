// The privileges that the program asks for at start: without them some logs cannot be read. A privilege that the user
// does not hold is simply not used.
#pragma once

#include <string_view>

#include "platform/debug_log.h"
#include "platform/system_services.h"

namespace corvina {

// Enables one privilege of the opened token and says in the debug log how that went; true when it is now enabled.
bool EnablePrivilege(PrivilegeToken& token, std::wstring_view name, DebugLog& debug);

// Enables every privilege that the program can use, one after the other, whatever becomes of the others.
void EnableProgramPrivileges(PrivilegeToken& token, DebugLog& debug);

}  // namespace corvina
