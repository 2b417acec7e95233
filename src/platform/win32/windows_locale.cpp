#include "platform/win32/windows_locale.h"

#include <windows.h>

#include <algorithm>

namespace corvina {
namespace {

// The system counts in int; longer texts differ long before their end.
int LengthOf(std::wstring_view text) {
    constexpr std::size_t Longest = 1 << 20;
    return static_cast<int>(std::min(text.size(), Longest));
}

}  // namespace

std::uint64_t WindowsLocale::ToLocalTime(std::uint64_t utc) const {
    FILETIME universal{static_cast<DWORD>(utc), static_cast<DWORD>(utc >> 32)};
    FILETIME local{};
    if (!FileTimeToLocalFileTime(&universal, &local)) {
        return utc;
    }
    return std::uint64_t{local.dwHighDateTime} << 32 | local.dwLowDateTime;
}

std::uint64_t WindowsLocale::ToUniversalTime(std::uint64_t local) const {
    FILETIME here{static_cast<DWORD>(local), static_cast<DWORD>(local >> 32)};
    FILETIME universal{};
    if (!LocalFileTimeToFileTime(&here, &universal)) {
        return local;
    }
    return std::uint64_t{universal.dwHighDateTime} << 32 | universal.dwLowDateTime;
}

int WindowsLocale::CompareIgnoringCase(std::wstring_view left, std::wstring_view right) const {
    if (left.empty() || right.empty()) {
        return static_cast<int>(!left.empty()) - static_cast<int>(!right.empty());
    }
    const int order = CompareStringEx(LOCALE_NAME_USER_DEFAULT, NORM_IGNORECASE, left.data(), LengthOf(left),
                                      right.data(), LengthOf(right), nullptr, nullptr, 0);
    return order == 0 ? left.compare(right) : order - CSTR_EQUAL;
}

}  // namespace corvina
