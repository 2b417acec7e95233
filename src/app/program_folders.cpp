#include "app/program_folders.h"

#include "base/format_text.h"

namespace corvina {

std::wstring BaseFolderOf(std::wstring_view modulePath) {
    return std::wstring(modulePath.substr(0, modulePath.find_last_of(L"\\/")));
}

ProgramFolders::ProgramFolders(std::wstring_view modulePath) : base_(BaseFolderOf(modulePath)) {}

std::wstring ProgramFolders::Settings() const {
    return base_ + L"\\Settings";
}

std::wstring ProgramFolders::Xml() const {
    return base_ + L"\\XML";
}

std::wstring ProgramFolders::Temporary() const {
    return FormatText(L"%s\\Temp", {base_});
}

std::wstring ProgramFolders::Update() const {
    return FormatText(L"%s\\Update", {base_});
}

std::wstring ProgramFolders::SettingsFile() const {
    return FormatText(L"%s\\Settings\\%s", {base_, L"inifile.ini"});
}

std::wstring ProgramFolders::ExecutablePath() const {
    return FormatText(L"%s\\%s", {base_, L"Corvina.exe"});
}

}  // namespace corvina
