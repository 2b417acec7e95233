// Makes the settings file and the event log of the running program.
#pragma once

#include "app/application.h"

namespace corvina {

class WindowsPortFactory : public PortFactory {
  public:
    std::unique_ptr<SettingsStore> OpenSettings(std::wstring_view path) override;
    std::unique_ptr<EventLogApi> OpenEventLog(std::wstring_view storeFolder, std::wstring_view baseFolder,
                                              std::wstring_view computerName) override;
};

}  // namespace corvina
