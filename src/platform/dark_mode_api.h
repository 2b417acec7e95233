// The port to the system's machinery for dark windows. Most of it is not documented: functions of the theme library
// that have a number but no name, a window attribute without a header, a window property. The port only carries calls;
// when each may be made is decided in theme/dark_mode.h.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvina {

// A window of the platform (HWND).
using NativeWindow = void*;

// Functions of the theme library by their numbers in its export table.
enum class ThemeFunction : std::uint16_t {
    OpenNonClientThemeData = 49,
    RefreshColorPolicy = 104,
    IsHighContrastInUse = 106,
    ShouldAppsUseDarkMode = 132,
    AllowDarkModeForWindow = 133,
    SetAppMode = 135,  // another function with other arguments from build 18362 on
    IsDarkModeAllowedForWindow = 137,
};

class DarkModeApi {
  public:
    virtual ~DarkModeApi() = default;

    // Loads the theme library from the system folder and looks its functions up. Nothing else of the port but
    // IsHighContrast, SetDwmAttribute and EqualIgnoringCase may be called before.
    virtual void LoadThemeFunctions() = 0;
    virtual bool Has(ThemeFunction function) const = 0;
    // SetWindowCompositionAttribute of the window library.
    virtual bool HasCompositionAttribute() const = 0;

    // The theme library's functions; each may only be called when the library has it.
    virtual void RefreshColorPolicy() = 0;
    virtual bool RefreshHighContrast() = 0;
    virtual bool ShouldAppsUseDarkMode() const = 0;
    virtual void AllowDarkModeForWindow(NativeWindow window, bool allow) = 0;
    virtual bool IsDarkModeAllowedForWindow(NativeWindow window) const = 0;
    virtual void AllowDarkModeForApp(bool allow) = 0;  // number 135 below build 18362
    virtual void SetPreferredAppMode(int mode) = 0;    // number 135 from there on

    // The three ways to mark a window; attribute numbers are the platform's. `name` ends with a zero character.
    virtual void SetWindowProperty(NativeWindow window, const wchar_t* name, bool value) = 0;
    virtual void SetCompositionAttribute(NativeWindow window, std::uint32_t attribute, bool value) = 0;
    virtual void SetDwmAttribute(NativeWindow window, std::uint32_t attribute, std::uint32_t value) = 0;

    // Whether the user has chosen a scheme of high contrast.
    virtual bool IsHighContrast() const = 0;

    // Makes the controls library open dark scroll bars in place of light ones. False when the place in its memory where
    // it keeps the theme library's function was not found.
    virtual bool RedirectScrollBarThemes() = 0;

    // Compares two texts by their numbers alone, without regard to case.
    virtual bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) const = 0;
};

}  // namespace corvina
