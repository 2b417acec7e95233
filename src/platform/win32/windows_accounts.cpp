#include "platform/win32/windows_accounts.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <sddl.h>

namespace corvina {
namespace {

constexpr std::size_t MostNames = 4096;
constexpr std::uint64_t LongestUse = 5 * 60 * 1000;  // so that a renamed account or a server that is back is noticed
constexpr std::size_t LongestName = 259;

// Whether the bytes hold the whole identifier that their own count of parts announces.
bool IsComplete(std::span<const std::byte> sid) {
    constexpr std::size_t HeaderSize = 8;
    return sid.size() >= HeaderSize && sid.size() >= HeaderSize + 4 * std::to_integer<std::size_t>(sid[1]);
}

std::optional<std::wstring> LookUpName(std::string sid) {
    constexpr DWORD BufferSize = 1024;
    wchar_t name[BufferSize] = {};
    wchar_t domain[BufferSize] = {};
    DWORD nameSize = BufferSize;
    DWORD domainSize = BufferSize;
    SID_NAME_USE use{};
    if (!IsValidSid(sid.data()) ||
        !LookupAccountSidW(nullptr, sid.data(), name, &nameSize, domain, &domainSize, &use)) {
        return std::nullopt;
    }
    std::wstring text(name);
    text.resize(std::min(text.size(), LongestName));
    return text;
}

}  // namespace

std::optional<std::wstring> WindowsAccounts::AccountName(std::span<const std::byte> sid) {
    if (!IsComplete(sid)) {
        return std::nullopt;
    }
    const std::uint64_t now = GetTickCount64();
    if (names_.empty() || names_.size() >= MostNames || now - collectedSince_ > LongestUse) {
        names_.clear();
        collectedSince_ = now;
    }
    std::string key(reinterpret_cast<const char*>(sid.data()), sid.size());
    const auto known = names_.find(key);
    if (known != names_.end()) {
        return known->second;
    }
    std::optional<std::wstring> name = LookUpName(key);
    names_.emplace(std::move(key), name);
    return name;
}

std::optional<std::wstring> WindowsAccounts::AccountSid(std::wstring_view name) {
    // The look-up reads names to their first zero character, so that a text with one would stand for another account.
    if (name.find(L'\0') != std::wstring_view::npos) {
        return std::nullopt;
    }
    constexpr DWORD BufferSize = 1024;
    alignas(SID) BYTE sid[SECURITY_MAX_SID_SIZE] = {};
    wchar_t domain[BufferSize] = {};
    DWORD sidSize = sizeof sid;
    DWORD domainSize = BufferSize;
    SID_NAME_USE use{};
    wchar_t* text = nullptr;
    if (!LookupAccountNameW(nullptr, std::wstring(name).c_str(), sid, &sidSize, domain, &domainSize, &use) ||
        !ConvertSidToStringSidW(sid, &text)) {
        return std::nullopt;
    }
    const std::unique_ptr<wchar_t, decltype(&LocalFree)> owner(text, &LocalFree);
    return std::wstring(text);
}

}  // namespace corvina
