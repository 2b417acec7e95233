#include "platform/win32/windows_system_services.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

#include "platform/win32/system_library.h"

namespace corvina {
namespace {

DWORD AttributesOf(std::wstring_view path) {
    return GetFileAttributesW(std::wstring(path).c_str());
}

}  // namespace

std::wstring WindowsSystemServices::ModulePath() const {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH - 1);  // leaves the last zero in place when it cuts the path
    return std::wstring(path);
}

bool WindowsSystemServices::FolderExists(std::wstring_view path) const {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void WindowsSystemServices::CreateFolders(std::wstring_view path) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path), ignored);
}

bool WindowsSystemServices::FileExists(std::wstring_view path) const {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring WindowsSystemServices::ComputerName() const {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    if (!GetComputerNameW(name, &size)) {
        return {};
    }
    return std::wstring(name, size);
}

std::optional<std::uint16_t> WindowsSystemServices::UserInterfaceLanguage() const {
    const LANGID language = GetUserDefaultUILanguage();
    if (language == 0) {
        return std::nullopt;
    }
    return language;
}

WindowsVersion WindowsSystemServices::Version() const {
    // The documented version functions tell old numbers to programs whose manifest does not name the running system.
    using GetNumbers = void(WINAPI*)(DWORD*, DWORD*, DWORD*);
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    const auto getNumbers = reinterpret_cast<GetNumbers>(
        reinterpret_cast<void*>(system == nullptr ? nullptr : GetProcAddress(system, "RtlGetNtVersionNumbers")));
    if (getNumbers == nullptr) {
        return {};
    }
    DWORD major = 0;
    DWORD minor = 0;
    DWORD build = 0;
    getNumbers(&major, &minor, &build);
    return {major, minor, build & 0x0FFFFFFF};
}

void WindowsSystemServices::StartProgram(std::wstring_view path) {
    using Execute = HINSTANCE(WINAPI*)(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT);
    const SystemLibrary shell(L"shell32.dll");
    if (const auto execute = shell.Find<Execute>("ShellExecuteW"); execute != nullptr) {
        execute(nullptr, L"open", std::wstring(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    }
}

}  // namespace corvina
