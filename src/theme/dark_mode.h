// Dark windows of the system: whether it has them, whether it asks for them now, and how a window is marked for them.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/dark_mode_api.h"
#include "platform/system_services.h"

namespace corvina {

enum class DisplayMode : int { White = 0, Black = 1, FollowSystem = 2 };

class DarkMode {
  public:
    explicit DarkMode(DarkModeApi& api) : api_(api) {}

    // Looks for the system's functions and turns them on; to be called once, before any window exists. A version of
    // zeros (the system cannot tell) and versions before 10.0.17631 are not asked. On a system that lacks a function
    // everything below does nothing, and nothing is dark.
    void Init(const WindowsVersion& version);

    bool IsSupported() const { return isSupported_; }
    // Whether the system asked programs to be dark when it was last looked at, and high contrast was off.
    bool IsSystemDark() const { return isSystemDark_; }
    bool IsHighContrast() const { return api_.IsHighContrast(); }

    // Lets a control be dark or keeps it light; its colours change with the next WM_THEMECHANGED.
    void AllowDarkForControl(NativeWindow control, bool allow);

    // Marks a top-level window so that its frame and menus have the colours that the system asks for.
    void AllowDarkForWindow(NativeWindow window);

    // Colours the title bar for one of the two fixed schemes; following the system leaves it alone.
    void SetDarkTitleBar(NativeWindow window, DisplayMode mode);

    // Takes back what SetDarkTitleBar has asked for; the title bar is the system's again.
    void ResetTitleBar(NativeWindow window);

    // Whether the text of a WM_SETTINGCHANGE speaks of the colours.
    bool IsColorChange(std::wstring_view changed) const;

    // Takes over what the user has changed: the colour policy, the state of high contrast, whether to be dark.
    void SystemColorsChanged();

  private:
    bool HasAllFunctions() const;
    bool AsksForDark() const;

    DarkModeApi& api_;
    std::uint32_t build_ = 0;
    bool isSupported_ = false;
    bool isSystemDark_ = false;
};

}  // namespace corvina
