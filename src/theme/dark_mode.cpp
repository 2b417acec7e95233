#include "theme/dark_mode.h"

#include <algorithm>
#include <array>

namespace corvina {
namespace {

// The first build whose theme library has the functions, and the first in which two of them have other arguments.
constexpr std::uint32_t FirstDarkBuild = 17631;
constexpr std::uint32_t FirstAppModeBuild = 18362;

constexpr int AllowDark = 1;  // a preferred app mode

constexpr std::uint32_t UseDarkModeColors = 26;        // a composition attribute
constexpr std::uint32_t UseImmersiveDarkMode = 20;     // an attribute of the desktop window manager
constexpr std::uint32_t TitleBarOfBlack = 0x00505050;  // any value but 0 asks for a dark title bar
constexpr std::uint32_t TitleBarOfWhite = 0x00FFFFFF;

bool MayBeDark(const WindowsVersion& version) {
    return version.Major > 10 || (version.Major == 10 && (version.Minor != 0 || version.Build >= FirstDarkBuild));
}

}  // namespace

void DarkMode::Init(const WindowsVersion& version) {
    if (!MayBeDark(version)) {
        return;
    }
    build_ = version.Build;
    api_.LoadThemeFunctions();
    // All or nothing: other systems of this kind have other functions under some of the numbers.
    if (!HasAllFunctions()) {
        return;
    }
    isSupported_ = true;
    if (build_ < FirstAppModeBuild) {
        api_.AllowDarkModeForApp(true);
    } else {
        api_.SetPreferredAppMode(AllowDark);
    }
    api_.RefreshColorPolicy();
    isSystemDark_ = AsksForDark();
    api_.RedirectScrollBarThemes();
}

bool DarkMode::HasAllFunctions() const {
    constexpr std::array Needed = {ThemeFunction::OpenNonClientThemeData,
                                   ThemeFunction::RefreshColorPolicy,
                                   ThemeFunction::ShouldAppsUseDarkMode,
                                   ThemeFunction::AllowDarkModeForWindow,
                                   ThemeFunction::SetAppMode,
                                   ThemeFunction::IsDarkModeAllowedForWindow};
    return std::ranges::all_of(Needed, [this](ThemeFunction function) { return api_.Has(function); });
}

bool DarkMode::AsksForDark() const {
    return api_.ShouldAppsUseDarkMode() && !api_.IsHighContrast();
}

void DarkMode::AllowDarkForControl(NativeWindow control, bool allow) {
    if (isSupported_) {
        api_.AllowDarkModeForWindow(control, allow);
    }
}

void DarkMode::AllowDarkForWindow(NativeWindow window) {
    if (!isSupported_) {
        return;
    }
    const bool dark = api_.IsDarkModeAllowedForWindow(window) && AsksForDark();
    if (build_ < FirstAppModeBuild) {
        api_.SetWindowProperty(window, L"UseImmersiveDarkModeColors", dark);
    } else if (api_.HasCompositionAttribute()) {
        api_.SetCompositionAttribute(window, UseDarkModeColors, dark);
    }
}

void DarkMode::SetDarkTitleBar(NativeWindow window, DisplayMode mode) {
    switch (mode) {
        case DisplayMode::Black:
            api_.SetDwmAttribute(window, UseImmersiveDarkMode, TitleBarOfBlack);
            break;
        case DisplayMode::White:
            api_.SetDwmAttribute(window, UseImmersiveDarkMode, TitleBarOfWhite);
            AllowDarkForWindow(window);
            break;
        case DisplayMode::FollowSystem:
            break;
    }
}

void DarkMode::ResetTitleBar(NativeWindow window) {
    api_.SetDwmAttribute(window, UseImmersiveDarkMode, 0);
}

bool DarkMode::IsColorChange(std::wstring_view changed) const {
    return api_.EqualIgnoringCase(changed, L"ImmersiveColorSet");
}

void DarkMode::SystemColorsChanged() {
    if (!isSupported_) {
        return;
    }
    api_.RefreshColorPolicy();
    if (api_.Has(ThemeFunction::IsHighContrastInUse)) {
        api_.RefreshHighContrast();
    }
    isSystemDark_ = AsksForDark();
}

}  // namespace corvina
