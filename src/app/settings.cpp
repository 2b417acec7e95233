#include "app/settings.h"

#include "app/number_text.h"
#include "app/setting_text.h"
#include "base/format_text.h"

namespace corvina {
namespace {

constexpr std::wstring_view Options = L"Options";
constexpr std::wstring_view Window = L"Corvina";
// Spelled like this in every settings file that exists.
constexpr std::wstring_view HeightKey = L"MainWindowHeigth";

int ReadInteger(const SettingsStore& settings, std::wstring_view key, std::wstring_view defaultValue) {
    return IntegerFromText(ReadSettingOrDefault(settings, Options, key, defaultValue));
}

int ReadWindowNumber(const SettingsStore& settings, std::wstring_view key, std::wstring_view defaultValue) {
    return IntegerFromFloatingText(ReadSettingOrDefault(settings, Window, key, defaultValue));
}

void WriteWindowNumber(SettingsStore& settings, std::wstring_view key, int value) {
    settings.WriteSetting(Window, key, FormatText(L"%i", {value}));
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
            WriteWindowNumber(settings, L"MainWindowLeft", placement.Rectangle.Left);
            WriteWindowNumber(settings, L"MainWindowTop", placement.Rectangle.Top);
            WriteWindowNumber(settings, L"MainWindowWidth", placement.Rectangle.Width);
            WriteWindowNumber(settings, HeightKey, placement.Rectangle.Height);
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
    if (ReadWindowNumber(settings, L"MainWindowIsMaximized", L"0") == 1) {
        window.Maximize();
        return;
    }
    WindowRectangle rectangle;
    rectangle.Height = ReadWindowNumber(settings, HeightKey, L"600");
    rectangle.Width = ReadWindowNumber(settings, L"MainWindowWidth", L"800");
    rectangle.Top = ReadWindowNumber(settings, L"MainWindowTop", L"10");
    rectangle.Left = ReadWindowNumber(settings, L"MainWindowLeft", L"10");
    window.MoveTo(rectangle);
}

void SaveMainSettings(SettingsStore& settings, EventListColumns& columns, const MainWindowView& window) {
    columns.SaveColumnWidths(settings, window);
    columns.SaveVisibility(settings);
    SaveWindowPlace(settings, window);
    settings.WriteSetting(Options, L"nVSplitPos", FormatText(L"%I64u", {window.VerticalSplitter()}));
    settings.WriteSetting(Options, L"nHSplitPos", FormatText(L"%I64u", {window.HorizontalSplitter()}));
}

}  // namespace corvina
