#include "platform/win32/windows_dark_mode.h"

#include <gtest/gtest.h>

namespace corvina {
namespace {

TEST(WindowsDarkModeTest, ComparesByNumbersAndWithoutCase) {
    const WindowsDarkMode mode;
    EXPECT_TRUE(mode.EqualIgnoringCase(L"ImmersiveColorSet", L"IMMERSIVEcolorset"));
    EXPECT_FALSE(mode.EqualIgnoringCase(L"ImmersiveColorSet", L"ImmersiveColorSe"));
    EXPECT_FALSE(mode.EqualIgnoringCase(L"", L"ImmersiveColorSet"));
    EXPECT_TRUE(mode.EqualIgnoringCase(L"\xD800", L"\xD800"));
    EXPECT_FALSE(mode.EqualIgnoringCase(L"stra\u00DFe", L"strasse"));
}

TEST(WindowsDarkModeTest, FunctionsAreThereOnlyAfterTheLibraryIs) {
    WindowsDarkMode mode;
    EXPECT_FALSE(mode.Has(ThemeFunction::ShouldAppsUseDarkMode));
    mode.LoadThemeFunctions();
    mode.LoadThemeFunctions();
    if (mode.Has(ThemeFunction::ShouldAppsUseDarkMode)) {
        EXPECT_EQ(mode.ShouldAppsUseDarkMode(), mode.ShouldAppsUseDarkMode());
    }
    EXPECT_FALSE(mode.Has(static_cast<ThemeFunction>(60000)));
}

TEST(WindowsDarkModeTest, WindowsCanBeMarkedOnAnySystem) {
    WindowsDarkMode mode;
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    mode.SetWindowProperty(window, L"UseImmersiveDarkModeColors", true);
    EXPECT_EQ(GetPropW(window, L"UseImmersiveDarkModeColors"), reinterpret_cast<HANDLE>(1));
    mode.SetWindowProperty(window, L"UseImmersiveDarkModeColors", false);
    EXPECT_EQ(GetPropW(window, L"UseImmersiveDarkModeColors"), nullptr);
    mode.SetDwmAttribute(window, 20, 0x505050);
    mode.SetCompositionAttribute(window, 26, true);
    DestroyWindow(window);
}

}  // namespace
}  // namespace corvina
