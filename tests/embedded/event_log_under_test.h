// The event log that tests of its operations run over: the embedded event log itself or, where the environment variable
// CORVINA_TEST_EVENT_LOG is "system", the system's event log with the double of wevtapi.dll in the system's place.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/event_log_api.h"

namespace corvina::test {

struct EventLogUnderTest {
    std::unique_ptr<EventLogApi> Log;
    std::function<std::size_t()> OpenHandleCount;
};

// Opens the store in a folder, this computer having that name. On the system's road only the store that was opened last
// is there.
EventLogUnderTest OpenEventLogUnderTest(const std::filesystem::path& folder, const std::wstring& computerName);

}  // namespace corvina::test
