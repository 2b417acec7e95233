// The probe of the system, the marking of windows and the display modes, on every kind of system.
#include "theme/dark_mode.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/doubles_dark_mode.h"
#include "theme/theme.h"

namespace corvina {
namespace {

using Calls = std::vector<std::wstring>;

class DarkModeTest : public testing::Test {
  protected:
    DarkModeTest() {
        api_.HaveAll();
        api_.AsksForDark = true;
    }
    DarkMode Init(const WindowsVersion& version) {
        DarkMode mode(api_);
        mode.Init(version);
        return mode;
    }

    test::FakeDarkMode api_;
    int window_ = 0;
};

TEST_F(DarkModeTest, OnlyNewEnoughSystemsAreAsked) {
    const std::vector<std::pair<WindowsVersion, bool>> cases = {
        {{0, 0, 0}, false},     {{6, 3, 99999}, false}, {{10, 0, 17630}, false}, {{10, 0, 17631}, true},
        {{10, 0, 22631}, true}, {{10, 1, 1}, true},     {{11, 0, 1}, true}};
    for (const auto& [version, isDark] : cases) {
        api_.Calls.clear();
        const DarkMode mode = Init(version);
        EXPECT_EQ(mode.IsSupported(), isDark) << version.Major << '.' << version.Minor << '.' << version.Build;
        EXPECT_EQ(mode.IsSystemDark(), isDark);
        EXPECT_EQ(api_.Calls.empty(), !isDark) << "an old system must be left alone";
    }
}

TEST_F(DarkModeTest, TheProgramAllowsDarknessInTheWayOfItsBuild) {
    Init({10, 0, 18361});
    EXPECT_EQ(api_.TakeCalls(),
              (Calls{L"Load", L"AllowDarkModeForApp 1", L"RefreshColorPolicy", L"RedirectScrollBarThemes"}));
    Init({10, 0, 18362});
    EXPECT_EQ(api_.TakeCalls(),
              (Calls{L"Load", L"SetPreferredAppMode 1", L"RefreshColorPolicy", L"RedirectScrollBarThemes"}));
}

TEST_F(DarkModeTest, WithoutOneOfTheFunctionsNothingIsCalled) {
    const std::set<ThemeFunction> all = api_.Functions;
    for (const ThemeFunction missing : all) {
        api_.Functions = all;
        api_.Functions.erase(missing);
        api_.Calls.clear();
        DarkMode mode = Init({10, 0, 19045});
        const bool canDoWithout = missing == ThemeFunction::IsHighContrastInUse;
        EXPECT_EQ(mode.IsSupported(), canDoWithout) << static_cast<int>(missing);
        mode.AllowDarkForControl(&window_, true);
        mode.AllowDarkForWindow(&window_);
        mode.SystemColorsChanged();
        for (const std::wstring& call : api_.Calls) {
            EXPECT_FALSE(call.starts_with(L"missing")) << testing::PrintToString(call);
            EXPECT_TRUE(canDoWithout || call == L"Load") << testing::PrintToString(call);
        }
    }
}

TEST_F(DarkModeTest, WindowsAreMarkedInTheWayOfTheBuild) {
    DarkMode old = Init({10, 0, 18361});
    DarkMode today = Init({10, 0, 18362});
    const auto marks = [&](DarkMode& mode) {
        api_.Calls.clear();
        mode.AllowDarkForWindow(&window_);
        return api_.TakeCalls();
    };
    EXPECT_EQ(marks(old), Calls{L"Property UseImmersiveDarkModeColors 1"});
    EXPECT_EQ(marks(today), Calls{L"Composition 26 1"});
    for (bool* const reason : {&api_.HighContrast, &api_.AsksForDark, &api_.WindowIsAllowed}) {
        *reason = !*reason;
        EXPECT_EQ(marks(old), Calls{L"Property UseImmersiveDarkModeColors 0"});
        EXPECT_EQ(marks(today), Calls{L"Composition 26 0"});
        *reason = !*reason;
    }
    api_.HasComposition = false;
    EXPECT_TRUE(marks(today).empty());
}

TEST_F(DarkModeTest, TitleBarsOfTheFixedSchemes) {
    DarkMode mode = Init({10, 0, 19045});
    api_.Calls.clear();
    mode.SetDarkTitleBar(&window_, DisplayMode::Black);
    EXPECT_EQ(api_.TakeCalls(), Calls{L"Dwm 20 5263440"});
    mode.SetDarkTitleBar(&window_, DisplayMode::White);
    EXPECT_EQ(api_.TakeCalls(), (Calls{L"Dwm 20 16777215", L"Composition 26 1"}));
    mode.SetDarkTitleBar(&window_, DisplayMode::FollowSystem);
    EXPECT_TRUE(api_.TakeCalls().empty());
    mode.ResetTitleBar(&window_);
    EXPECT_EQ(api_.TakeCalls(), Calls{L"Dwm 20 0"});
    DarkMode unsupported = Init({6, 1, 7601});
    unsupported.SetDarkTitleBar(&window_, DisplayMode::White);
    EXPECT_EQ(api_.TakeCalls(), Calls{L"Dwm 20 16777215"});
}

TEST_F(DarkModeTest, ModesPickTheirColours) {
    Theme theme(api_);
    EXPECT_EQ(theme.Mode(), DisplayMode::Black);
    theme.System().Init({10, 0, 19045});
    for (const int number : {-1, 3, 9}) {  // no such mode: the built-in one stays
        theme.Apply(number);
        EXPECT_EQ(theme.Mode(), DisplayMode::Black);
        EXPECT_EQ(theme.Colors().Text, DarkPalette.Text);
    }
    theme.Apply(0);
    EXPECT_EQ(theme.Colors().Text, LightPalette.Text);
    EXPECT_FALSE(theme.IsDark());
    theme.Apply(2);
    EXPECT_EQ(theme.Mode(), DisplayMode::FollowSystem);
    EXPECT_EQ(theme.Colors().WindowFill, DarkPalette.WindowFill);
}

TEST_F(DarkModeTest, FollowingTheSystemTakesEveryChangeOver) {
    Theme theme(api_);
    api_.AsksForDark = false;
    theme.System().Init({10, 0, 19045});
    theme.Apply(2);
    EXPECT_FALSE(theme.IsDark());
    api_.AsksForDark = true;
    api_.Calls.clear();
    for (const wchar_t* other : {L"", L"Policy", L"ImmersiveColorSe", L"ImmersiveColorSets"}) {
        EXPECT_FALSE(theme.SettingChanged(other));
        EXPECT_FALSE(theme.IsDark());
    }
    EXPECT_TRUE(theme.SettingChanged(L"immersivecolorSET"));
    EXPECT_TRUE(theme.IsDark());
    EXPECT_EQ(api_.TakeCalls(), (Calls{L"RefreshColorPolicy", L"RefreshHighContrast"}));
    api_.HighContrast = true;
    EXPECT_TRUE(theme.SettingChanged(L"ImmersiveColorSet"));
    EXPECT_FALSE(theme.IsDark());
    EXPECT_EQ(theme.Colors().Text, LightPalette.Text);
}

TEST_F(DarkModeTest, FixedSchemesStayWhateverTheSystemDoes) {
    Theme theme(api_);
    theme.System().Init({10, 0, 19045});
    for (const int fixed : {0, 1}) {
        theme.Apply(fixed);
        for (const bool asks : {false, true}) {
            api_.AsksForDark = asks;
            EXPECT_TRUE(theme.SettingChanged(L"ImmersiveColorSet"));
            EXPECT_EQ(theme.IsDark(), fixed == 1);
        }
    }
}

}  // namespace
}  // namespace corvina
