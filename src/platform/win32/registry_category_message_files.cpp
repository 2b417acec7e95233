#include "platform/win32/registry_category_message_files.h"

#include <windows.h>

#include <utility>

#include "platform/win32/message_text.h"
#include "platform/win32/system_library.h"

namespace corvina {
namespace {

constexpr wchar_t ValueName[] = L"CategoryMessageFile";
constexpr std::size_t LongestPath = 260;  // characters with the closing zero

class RegistryKey {
  public:
    RegistryKey(HKEY parent, const std::wstring& path, REGSAM access) {
        if (RegOpenKeyExW(parent, path.c_str(), 0, access | KEY_WOW64_64KEY, &key_) != ERROR_SUCCESS) {
            key_ = nullptr;
        }
    }
    RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
    RegistryKey& operator=(RegistryKey&&) = delete;
    ~RegistryKey() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }

    explicit operator bool() const { return key_ != nullptr; }
    HKEY Get() const { return key_; }

  private:
    HKEY key_ = nullptr;
};

// The key of a source; not open when the names are empty or their path is too long. An empty name must not open the key
// above, whose values belong to somebody else.
std::optional<RegistryKey> OpenSource(std::wstring_view logName, std::wstring_view sourceName, REGSAM access) {
    const std::wstring logPath = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\" + std::wstring(logName);
    if (logName.empty() || sourceName.empty() || logPath.size() >= LongestPath) {
        return std::nullopt;
    }
    const RegistryKey log(HKEY_LOCAL_MACHINE, logPath, KEY_READ);
    if (!log) {
        return std::nullopt;
    }
    RegistryKey source(log.Get(), std::wstring(sourceName), access);
    if (!source) {
        return std::nullopt;
    }
    return source;
}

std::optional<std::wstring> ReadText(const RegistryKey& key) {
    wchar_t text[LongestPath + 1] = {};  // one more than is read: the stored text need not end with a zero
    DWORD size = LongestPath * sizeof(wchar_t);
    DWORD type = REG_NONE;
    if (RegQueryValueExW(key.Get(), ValueName, nullptr, &type, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
        return std::nullopt;
    }
    return std::wstring(text);
}

}  // namespace

bool RegistryCategoryMessageFiles::HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName) {
    const auto source = OpenSource(logName, sourceName, KEY_READ);
    return source && RegQueryValueExW(source->Get(), ValueName, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

std::optional<std::wstring> RegistryCategoryMessageFiles::CategoryMessageFileList(std::wstring_view logName,
                                                                                  std::wstring_view sourceName) {
    const auto source = OpenSource(logName, sourceName, KEY_QUERY_VALUE);
    const auto text = source ? ReadText(*source) : std::nullopt;
    if (!text) {
        return std::nullopt;
    }
    wchar_t expanded[LongestPath] = {};
    const DWORD length = ExpandEnvironmentStringsW(text->c_str(), expanded, LongestPath);
    if (length == 0 || length > LongestPath) {
        return std::nullopt;
    }
    return std::wstring(expanded);
}

std::wstring RegistryCategoryMessageFiles::MessageFromFile(std::wstring_view path, std::uint32_t messageId) {
    if (path.empty()) {
        return {};
    }
    const bool hasFolder = path.find_first_of(L"\\/:") != std::wstring_view::npos;
    const std::wstring fullPath = hasFolder ? std::wstring(path) : SystemFilePath(path);
    const HMODULE module = LoadLibraryExW(fullPath.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (module == nullptr) {
        return {};
    }
    std::wstring text =
        FormatSystemMessage(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_MAX_WIDTH_MASK, module, messageId);
    FreeLibrary(module);
    return text;
}

}  // namespace corvina
