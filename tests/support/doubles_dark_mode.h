// The system's machinery for dark windows as a test sets it: which functions it has, what they answer, and the calls
// that were made.
#pragma once

#include <algorithm>
#include <cwctype>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dark_mode_api.h"

namespace corvina::test {

class FakeDarkMode final : public DarkModeApi {
  public:
    // A system of today that has everything.
    void HaveAll() {
        Functions = {ThemeFunction::OpenNonClientThemeData,    ThemeFunction::RefreshColorPolicy,
                     ThemeFunction::IsHighContrastInUse,       ThemeFunction::ShouldAppsUseDarkMode,
                     ThemeFunction::AllowDarkModeForWindow,    ThemeFunction::SetAppMode,
                     ThemeFunction::IsDarkModeAllowedForWindow};
        HasComposition = true;
    }

    void LoadThemeFunctions() override { Calls.push_back(L"Load"); }
    bool Has(ThemeFunction function) const override { return Functions.contains(function); }
    bool HasCompositionAttribute() const override { return HasComposition; }
    void RefreshColorPolicy() override { Note(ThemeFunction::RefreshColorPolicy, L"RefreshColorPolicy"); }
    bool RefreshHighContrast() override {
        Note(ThemeFunction::IsHighContrastInUse, L"RefreshHighContrast");
        return HighContrast;
    }
    bool ShouldAppsUseDarkMode() const override { return AsksForDark; }
    void AllowDarkModeForWindow(NativeWindow, bool allow) override {
        Note(ThemeFunction::AllowDarkModeForWindow, L"AllowDarkModeForWindow " + Text(allow));
    }
    bool IsDarkModeAllowedForWindow(NativeWindow) const override { return WindowIsAllowed; }
    void AllowDarkModeForApp(bool allow) override {
        Note(ThemeFunction::SetAppMode, L"AllowDarkModeForApp " + Text(allow));
    }
    void SetPreferredAppMode(int mode) override {
        Note(ThemeFunction::SetAppMode, L"SetPreferredAppMode " + std::to_wstring(mode));
    }
    void SetWindowProperty(NativeWindow, const wchar_t* name, bool value) override {
        Calls.push_back(L"Property " + std::wstring(name) + L" " + Text(value));
    }
    void SetCompositionAttribute(NativeWindow, std::uint32_t attribute, bool value) override {
        Calls.push_back((HasComposition ? L"Composition " : L"missing Composition ") + std::to_wstring(attribute) +
                        L" " + Text(value));
    }
    void SetDwmAttribute(NativeWindow, std::uint32_t attribute, std::uint32_t value) override {
        Calls.push_back(L"Dwm " + std::to_wstring(attribute) + L" " + std::to_wstring(value));
    }
    bool IsHighContrast() const override { return HighContrast; }
    bool RedirectScrollBarThemes() override {
        Calls.push_back(L"RedirectScrollBarThemes");
        return true;
    }
    bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) const override {
        return std::ranges::equal(left, right,
                                  [](wchar_t a, wchar_t b) { return std::towlower(a) == std::towlower(b); });
    }

    // The calls since the last time.
    std::vector<std::wstring> TakeCalls() { return std::exchange(Calls, {}); }

    std::set<ThemeFunction> Functions;
    bool HasComposition = false;
    bool AsksForDark = false;
    bool HighContrast = false;
    bool WindowIsAllowed = true;
    std::vector<std::wstring> Calls;

  private:
    static std::wstring Text(bool value) { return value ? L"1" : L"0"; }
    // A call through a function that is not there would end the real program.
    void Note(ThemeFunction function, const std::wstring& call) {
        Calls.push_back(Has(function) ? call : L"missing " + call);
    }
};

}  // namespace corvina::test
