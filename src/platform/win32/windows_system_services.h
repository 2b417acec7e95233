// Names, versions and folders, asked of Windows.
#pragma once

#include "platform/system_services.h"

namespace corvina {

class WindowsSystemServices : public SystemServices {
  public:
    std::wstring ModulePath() const override;
    bool FolderExists(std::wstring_view path) const override;
    void CreateFolders(std::wstring_view path) override;
    bool FileExists(std::wstring_view path) const override;
    std::wstring ComputerName() const override;
    std::optional<std::uint16_t> UserInterfaceLanguage() const override;

    // The true version, whatever the program's manifest says that it knows; zeros when it cannot be found.
    WindowsVersion Version() const override;

    void StartProgram(std::wstring_view path) override;
};

}  // namespace corvina
