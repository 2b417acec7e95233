#include "embedded/event_log_under_test.h"

#include "embedded/embedded_event_log.h"

#ifdef _WIN32
#include "wevtapi_double/double_access.h"
#endif

namespace corvina::test {

EventLogUnderTest OpenEventLogUnderTest(const std::filesystem::path& folder, const std::wstring& computerName) {
#ifdef _WIN32
    if (IsDoubleAskedFor()) {
        return {OpenSystemEventLog(folder.wstring(), computerName), [] { return DoubleOpenHandleCount(); }};
    }
#endif
    auto log = std::make_unique<embedded::EmbeddedEventLog>(folder, computerName);
    const auto* const opened = log.get();
    return {std::move(log), [opened] { return opened->OpenHandleCount(); }};
}

}  // namespace corvina::test
