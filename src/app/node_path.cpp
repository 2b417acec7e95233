#include "app/node_path.h"

namespace corvina {
namespace {

constexpr int ExtrasSlot = 212;
// Folders below a computer: windows logs, application and service logs, custom views, saved logs, extras.
constexpr int FolderSlots[] = {5, 6, 7, 159, ExtrasSlot};
// What stands below the extras: all channels merged, administrative events.
constexpr int ExtraSlots[] = {213, 214};

}  // namespace

std::wstring NodePathInLanguage(std::wstring_view path, const i18n::Language& language) {
    const i18n::Language english(i18n::English);
    const std::size_t slash = path.find(L'/');
    const std::wstring_view first = path.substr(0, slash);
    const std::wstring_view rest = slash == std::wstring_view::npos ? std::wstring_view() : path.substr(slash);
    for (const int folder : FolderSlots) {
        if (first != english.Text(folder)) {
            continue;
        }
        const std::wstring translated(language.Text(folder));
        for (const int extra : ExtraSlots) {
            if (folder == ExtrasSlot && !rest.empty() && rest.substr(1) == english.Text(extra)) {
                return translated + L'/' + std::wstring(language.Text(extra));
            }
        }
        return translated + std::wstring(rest);
    }
    return std::wstring(path);
}

}  // namespace corvina
