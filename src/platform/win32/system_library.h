// Libraries of the system, loaded at run time from the system folder and from nowhere else. A file of the same name
// beside the program is never taken, so that a folder of downloads cannot lend the program its code.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace corvina {

// Makes the system folder the only place where libraries are looked for. To be called first in the program.
void HardenLibrarySearch();

// The full path of a file in the system folder; empty when the folder is not known.
std::wstring SystemFilePath(std::wstring_view fileName);

class SystemLibrary {
  public:
    // Loads "name.dll" from the system folder; test the object for success.
    explicit SystemLibrary(std::wstring_view fileName);
    ~SystemLibrary();
    SystemLibrary(const SystemLibrary&) = delete;
    SystemLibrary& operator=(const SystemLibrary&) = delete;

    explicit operator bool() const { return module_ != nullptr; }
    HMODULE Get() const { return module_; }

    // The address of a function as the pointer type asked for; null when the library or the function is missing.
    template <typename Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(FindAddress(name));
    }

  private:
    void* FindAddress(const char* name) const;

    HMODULE module_ = nullptr;
};

}  // namespace corvina
