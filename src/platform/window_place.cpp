#include "platform/window_place.h"

#include <ranges>

#include "base/format_text.h"
#include "base/number_text.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

struct PlaceKey {
    std::wstring_view Name;
    int WindowPlace::*Value;
};

constexpr PlaceKey Keys[] = {{L"MainWindowLeft", &WindowPlace::Left},
                             {L"MainWindowTop", &WindowPlace::Top},
                             {L"MainWindowWidth", &WindowPlace::Width},
                             // Spelled like this in every settings file that exists.
                             {L"MainWindowHeigth", &WindowPlace::Height}};

}  // namespace

WindowPlace ReadWindowPlace(const SettingsStore& settings, std::wstring_view section, const WindowPlace& ifMissing) {
    WindowPlace place = ifMissing;
    for (const auto& [name, value] : Keys | std::views::reverse) {
        const std::wstring defaultText = FormatText(L"%i", {place.*value});
        place.*value = IntegerFromFloatingText(ReadSettingOrDefault(settings, section, name, defaultText));
    }
    return place;
}

void WriteWindowPlace(SettingsStore& settings, std::wstring_view section, const WindowPlace& place) {
    for (const auto& [name, value] : Keys) {
        settings.WriteSetting(section, name, FormatText(L"%i", {place.*value}));
    }
}

}  // namespace corvina
