// The system's message formatter with the buffer that it allocates.
#pragma once

#include <windows.h>

#include <string>

namespace corvina {

// The text of a message from a message table, empty when there is none. `flags` say where it is looked for
// (FORMAT_MESSAGE_FROM_SYSTEM, FORMAT_MESSAGE_FROM_HMODULE with `module`) and how it is broken into lines; insertion
// marks are never replaced, since no values are given.
std::wstring FormatSystemMessage(DWORD flags, HMODULE module, DWORD messageId);

}  // namespace corvina
