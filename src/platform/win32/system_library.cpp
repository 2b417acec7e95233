#include "platform/win32/system_library.h"

namespace corvina {

void HardenLibrarySearch() {
    SetDllDirectoryW(L"");
    // Taken at run time because a system without its updates may lack it.
    using SetDirectories = BOOL(WINAPI*)(DWORD);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto setDirectories = reinterpret_cast<SetDirectories>(
        reinterpret_cast<void*>(kernel == nullptr ? nullptr : GetProcAddress(kernel, "SetDefaultDllDirectories")));
    if (setDirectories != nullptr) {
        setDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
}

std::wstring SystemFilePath(std::wstring_view fileName) {
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        return {};
    }
    std::wstring path(folder, length);
    path += L'\\';
    path += fileName;
    return path;
}

SystemLibrary::SystemLibrary(std::wstring_view fileName) {
    const std::wstring path = SystemFilePath(fileName);
    if (!path.empty()) {
        // With the altered search path, what the library itself needs comes from its own folder, too.
        module_ = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    }
}

SystemLibrary::~SystemLibrary() {
    if (module_ != nullptr) {
        FreeLibrary(module_);
    }
}

void* SystemLibrary::FindAddress(const char* name) const {
    return module_ == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(module_, name));
}

}  // namespace corvina
