#include "app/settings.h"

#include "base/format_text.h"
#include "base/number_text.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

constexpr std::wstring_view Options = L"Options";
constexpr std::wstring_view Window = L"Corvina";

int ReadInteger(const SettingsStore& settings, std::wstring_view key, std::wstring_view defaultValue) {
    return IntegerFromText(ReadSettingOrDefault(settings, Options, key, defaultValue));
}

void SaveWindowPlace(SettingsStore& settings, const MainWindowView& window) {
    const WindowPlacement placement = window.Placement();
    switch (placement.State) {
        case WindowState::Minimized:
            return;
        case WindowState::Maximized:
            settings.WriteSetting(Window, L"MainWindowIsMaximized", L"1");
            return;
        case WindowState::Normal:
            WriteWindowPlace(settings, Window, placement.Rectangle);
            settings.WriteSetting(Window, L"MainWindowIsMaximized", L"0");
            return;
    }
}

}  // namespace

int ReadDisplayMode(const SettingsStore& settings, bool supportsDarkMode) {
    const int mode = ReadInteger(settings, L"CurrTheme", supportsDarkMode ? L"2" : L"0");
    if (mode == static_cast<int>(DisplayMode::FollowSystem) && !supportsDarkMode) {
        return static_cast<int>(DisplayMode::Black);
    }
    return mode;
}

int ReadLanguageIndex(const SettingsStore& settings) {
    return ReadInteger(settings, L"Language", L"0");
}

void ReadSplitters(const SettingsStore& settings, SettingsValues& values) {
    values.VerticalSplitter = ReadInteger(settings, L"nVSplitPos", L"250");
    values.HorizontalSplitter = ReadInteger(settings, L"nHSplitPos", L"250");
}

void ReadGridLinesAndUpdates(const SettingsStore& settings, SettingsValues& values) {
    values.GridLines = ReadInteger(settings, L"GridLines", L"0") != 0;
    values.AutomaticUpdates = ReadInteger(settings, L"autoupdates", L"0") != 0;
}

void ReadColorListView(const SettingsStore& settings, SettingsValues& values) {
    values.ColorListView = settings.ReadSetting(Options, L"ColorListView", L"0") == L"1";
}

void RestoreWindow(const SettingsStore& settings, MainWindowView& window) {
    if (IntegerFromFloatingText(ReadSettingOrDefault(settings, Window, L"MainWindowIsMaximized", L"0")) == 1) {
        window.Maximize();
    } else {
        window.MoveTo(ReadWindowPlace(settings, Window));
    }
}

void SaveMainSettings(SettingsStore& settings, EventListColumns& columns, const MainWindowView& window) {
    columns.SaveColumnWidths(settings, window);
    columns.SaveVisibility(settings);
    SaveWindowPlace(settings, window);
    settings.WriteSetting(Options, L"nVSplitPos", FormatText(L"%I64u", {window.VerticalSplitter()}));
    settings.WriteSetting(Options, L"nHSplitPos", FormatText(L"%I64u", {window.HorizontalSplitter()}));
}

}  // namespace corvina
