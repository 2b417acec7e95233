// Asking for messages as the platform's callers do.
#pragma once

#include <string>
#include <vector>

#include "embedded/embedded_log_test.h"

namespace corvina::test {

class MessageAskingTest : public EmbeddedLogTest {
  protected:
    // The whole text of a message without its closing zero. `expectedError` may be that of a missing value.
    std::wstring Text(EVT_HANDLE metadata, EVT_HANDLE event, DWORD kind, std::uint32_t expectedError = 0,
                      DWORD messageId = 0) {
        std::vector<wchar_t> text = Filled<wchar_t>(
            [&](DWORD size, LPWSTR buffer, DWORD* used) {
                return Log->EvtFormatMessage(metadata, event, messageId, 0, nullptr, kind, size, buffer, used);
            },
            expectedError);
        if (text.empty() || text.back() != L'\0') {
            ADD_FAILURE() << "no closing zero";
            return {};
        }
        return std::wstring(text.begin(), text.end() - 1);
    }

    std::uint32_t ErrorOf(EVT_HANDLE metadata, EVT_HANDLE event, DWORD kind, DWORD messageId = 0) {
        DWORD used = 0;
        wchar_t buffer[64];
        EXPECT_EQ(Log->EvtFormatMessage(metadata, event, messageId, 0, nullptr, kind, 64, buffer, &used), FALSE);
        return Log->GetLastError();
    }
};

}  // namespace corvina::test
