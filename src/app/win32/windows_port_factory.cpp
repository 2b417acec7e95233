#include "app/win32/windows_port_factory.h"

#include <filesystem>
#include <string>

#include "embedded/embedded_event_log.h"
#include "platform/win32/settings_file.h"
#include "platform/win32/system_event_log.h"

namespace corvina {

std::unique_ptr<SettingsStore> WindowsPortFactory::OpenSettings(std::wstring_view path) {
    return std::make_unique<SettingsFile>(std::wstring(path));
}

std::unique_ptr<EventLogApi> WindowsPortFactory::OpenEventLog(std::wstring_view storeFolder,
                                                              std::wstring_view baseFolder,
                                                              std::wstring_view computerName) {
    const std::wstring computer(computerName);
    if (!storeFolder.empty()) {
        return std::make_unique<embedded::EmbeddedEventLog>(std::filesystem::path(storeFolder), computer);
    }
    auto system = std::make_unique<SystemEventLog>();
    if (system->IsImplemented()) {
        return system;
    }
    // Where the folder does not exist either, the event log has no channels; saved logs can still be opened.
    const std::filesystem::path store(std::wstring(baseFolder) + L"\\Store");
    return std::make_unique<embedded::EmbeddedEventLog>(store, computer);
}

}  // namespace corvina
