// The functions that the double of wevtapi.dll has beside the platform's: what a test asks it for and tells it.
#pragma once

#include <windows.h>

#include <cstdint>

namespace corvina::test {

// The folder of the store that the double reads. It is looked at in every call: with another folder, all handles of the
// one before are gone. While it is not set the double says of every operation that it is not implemented.
inline constexpr wchar_t StoreVariable[] = L"CORVINA_TEST_STORE";
// This computer's name; the system's own name when it is not set.
inline constexpr wchar_t ComputerVariable[] = L"CORVINA_TEST_COMPUTER";

// One call as it arrived.
struct RecordedCall {
    char Operation[48];  // its exported name
    DWORD ArgumentCount;
    std::uint64_t Arguments[10];  // pointers and handles in full, everything else as 32 bits without a sign
};

// The next operation is not carried out: it answers with this result (the low 32 bits of it where it is a BOOL) and
// sets the thread's last error.
using AnswerNextCallFunction = void(WINAPI*)(std::uint64_t result, DWORD lastError);
inline constexpr char AnswerNextCallName[] = "CorvinaAnswerNextCall";

// The operation that was called last.
using GetLastCallFunction = void(WINAPI*)(RecordedCall* call);
inline constexpr char GetLastCallName[] = "CorvinaGetLastCall";

// How many handles are open in the present store.
using OpenHandleCountFunction = DWORD(WINAPI*)();
inline constexpr char OpenHandleCountName[] = "CorvinaOpenHandleCount";

}  // namespace corvina::test
