// Dark windows, asked of Windows.
#pragma once

#include <optional>

#include "platform/dark_mode_api.h"
#include "platform/win32/system_library.h"

namespace corvina {

class WindowsDarkMode : public DarkModeApi {
  public:
    void LoadThemeFunctions() override;
    bool Has(ThemeFunction function) const override;
    bool HasCompositionAttribute() const override;
    void RefreshColorPolicy() override;
    bool RefreshHighContrast() override;
    bool ShouldAppsUseDarkMode() const override;
    void AllowDarkModeForWindow(NativeWindow window, bool allow) override;
    bool IsDarkModeAllowedForWindow(NativeWindow window) const override;
    void AllowDarkModeForApp(bool allow) override;
    void SetPreferredAppMode(int mode) override;
    void SetWindowProperty(NativeWindow window, const wchar_t* name, bool value) override;
    void SetCompositionAttribute(NativeWindow window, std::uint32_t attribute, bool value) override;
    void SetDwmAttribute(NativeWindow window, std::uint32_t attribute, std::uint32_t value) override;
    bool IsHighContrast() const override;
    bool RedirectScrollBarThemes() override;
    bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) const override;

  private:
    // The theme library stays loaded in any program with visual styles; it is taken when it is first needed.
    std::optional<SystemLibrary> theme_;
    std::optional<SystemLibrary> windowManager_;
};

}  // namespace corvina
