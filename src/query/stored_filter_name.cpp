#include "query/stored_filter_name.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/xml_escape.h"

namespace corvina {
namespace {

// A value of the settings holds 259 characters, and the longest name of a file is 255 characters or, on some systems,
// bytes. This leaves room for a number, the extension and the ending of a temporary name.
constexpr std::size_t MostNameCharacters = 60;
constexpr std::size_t MostFileNameCharacters = 200;

constexpr std::wstring_view Forbidden = L"\\/:*?\"<>|";
constexpr std::wstring_view NotAtTheEnd = L". ";

// Devices have these names in every folder, with any extension. Source: the naming conventions for files of Windows.
constexpr std::array<std::wstring_view, 7> DeviceNames = {L"con",    L"prn",     L"aux",   L"nul",
                                                          L"conin$", L"conout$", L"clock$"};
constexpr std::array<std::wstring_view, 2> NumberedDeviceNames = {L"com", L"lpt"};
constexpr std::wstring_view DeviceDigits = L"0123456789\xB9\xB2\xB3";

bool IsForbidden(std::wstring_view name, std::size_t index) {
    const wchar_t character = name[index];
    return character < L' ' || character == 0x7F || Forbidden.find(character) != std::wstring_view::npos ||
           !CanStandInXml(name, index);
}

bool IsForbiddenAtTheEnd(wchar_t character) {
    return NotAtTheEnd.find(character) != std::wstring_view::npos;
}

bool IsDeviceName(std::wstring_view name) {
    std::wstring stem(name.substr(0, name.find(L'.')));
    stem.erase(stem.find_last_not_of(L' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](wchar_t letter) { return letter >= L'A' && letter <= L'Z' ? letter - L'A' + L'a' : letter; });
    if (std::find(DeviceNames.begin(), DeviceNames.end(), stem) != DeviceNames.end()) {
        return true;
    }
    return stem.size() == 4 && DeviceDigits.find(stem.back()) != std::wstring_view::npos &&
           std::find(NumberedDeviceNames.begin(), NumberedDeviceNames.end(), stem.substr(0, 3)) !=
               NumberedDeviceNames.end();
}

// Pairs of surrogates are not cut in two.
std::wstring_view Beginning(std::wstring_view name) {
    std::wstring_view beginning = name.substr(0, MostNameCharacters);
    if (!beginning.empty() && !CanStandInXml(beginning, beginning.size() - 1)) {
        beginning.remove_suffix(1);
    }
    return beginning;
}

}  // namespace

bool IsPlainFileName(std::wstring_view name) {
    if (name.empty() || name.size() > MostFileNameCharacters || name.front() == L' ' ||
        IsForbiddenAtTheEnd(name.back()) || IsDeviceName(name)) {
        return false;
    }
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (IsForbidden(name, index)) {
            return false;
        }
    }
    return true;
}

std::wstring StoredFilterFileName(std::wstring_view filterName, unsigned number) {
    std::wstring whole(filterName);
    for (std::size_t index = 0; index < whole.size(); ++index) {
        if (IsForbidden(filterName, index)) {
            whole[index] = L'_';
        }
    }
    std::wstring name(Beginning(whole));
    name.erase(0, std::min(name.find_first_not_of(L' '), name.size()));
    while (!name.empty() && IsForbiddenAtTheEnd(name.back())) {
        name.pop_back();
    }
    if (name.empty()) {
        name = L"Filter";
    }
    if (IsDeviceName(name)) {
        name.insert(name.begin(), L'_');
    }
    if (number > 1) {
        name += L' ' + std::to_wstring(number);
    }
    name += StoredFilterExtension;
    return name;
}

}  // namespace corvina
