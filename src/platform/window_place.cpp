#include "platform/window_place.h"

#include <algorithm>
#include <array>

#include "base/format_text.h"
#include "base/number_text.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

struct PlaceKey {
    std::wstring_view Name;
    int WindowPlace::*Value;
};

constexpr std::array Keys = {PlaceKey{L"MainWindowLeft", &WindowPlace::Left},
                             PlaceKey{L"MainWindowTop", &WindowPlace::Top},
                             PlaceKey{L"MainWindowWidth", &WindowPlace::Width},
                             // Spelled like this in every settings file that exists.
                             PlaceKey{L"MainWindowHeigth", &WindowPlace::Height}};

}  // namespace

WindowPlace ReadWindowPlace(const SettingsStore& settings, std::wstring_view section, const WindowPlace& ifMissing) {
    WindowPlace place = ifMissing;
    std::for_each(Keys.rbegin(), Keys.rend(), [&](const PlaceKey& key) {
        const std::wstring defaultText = FormatText(L"%i", {place.*key.Value});
        place.*key.Value = IntegerFromFloatingText(ReadSettingOrDefault(settings, section, key.Name, defaultText));
    });
    return place;
}

void WriteWindowPlace(SettingsStore& settings, std::wstring_view section, const WindowPlace& place) {
    for (const auto& [name, value] : Keys) {
        settings.WriteSetting(section, name, FormatText(L"%i", {place.*value}));
    }
}

}  // namespace corvina
