// Where the program's files are: everything stands beside the executable, so that a copy of the folder is a copy of the
// program with all its settings.
#pragma once

#include <string>
#include <string_view>

namespace corvina {

// Names under which the filter machinery stores the user's filter and the filter of the file in view.
inline constexpr std::wstring_view UserFilterName = L"UserDefinedEventFilter";
inline constexpr std::wstring_view FileFilterName = L"CurrEventFilePathFilter";

// The folder of an executable: its path before the last "\" or "/", the whole path when there is neither.
std::wstring BaseFolderOf(std::wstring_view modulePath);

class ProgramFolders {
  public:
    ProgramFolders() = default;
    explicit ProgramFolders(std::wstring_view modulePath);

    const std::wstring& Base() const { return base_; }
    std::wstring Settings() const;   // the settings file's folder
    std::wstring Xml() const;        // saved queries and custom views
    std::wstring Temporary() const;  // files of the moment
    std::wstring Update() const;     // where an update is unpacked
    std::wstring SettingsFile() const;
    std::wstring ExecutablePath() const;  // what a restart of the program starts

  private:
    std::wstring base_;
};

}  // namespace corvina
