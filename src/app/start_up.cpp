#include "app/start_up.h"

#include "app/privileges.h"
#include "app/version.h"
#include "base/format_text.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

constexpr std::wstring_view OptionsSection = L"Options";
constexpr std::wstring_view LanguageKey = L"Language";
constexpr int DefaultSplitter = 250;  // pixels

constexpr int EventViewerSlot = 0;
constexpr int VersionSlot = sizeof(void*) == 8 ? 245 : 246;

std::wstring WideVersion() {
    const std::string_view version = CORVINA_VERSION_TEXT;
    return std::wstring(version.begin(), version.end());
}

}  // namespace

void StartUp::Run() {
    CreateFolders();
    ProbeDarkMode();
    OpenSettings();
    ChooseTheme();
    state_.Values.VerticalSplitter = DefaultSplitter;
    state_.Values.HorizontalSplitter = DefaultSplitter;
    ChooseLanguage();
    ReadSplitters(*state_.Settings, state_.Values);
    state_.Columns.LoadColumnSettings(*state_.Settings, state_.Language);
    state_.Shown.Window.InitializeCom();
    state_.Shown.Window.CreateToolTip();
    ReadGridLinesAndUpdates(*state_.Settings, state_.Values);
    CreateControls();
    OpenEventLog();
    if (EnablePrivileges()) {
        FinishWindow();
    }
    state_.IsStarted = true;
}

void StartUp::CreateFolders() {
    SystemServices& system = state_.System.System;
    state_.Folders = ProgramFolders(system.ModulePath());
    const ProgramFolders& folders = state_.Folders;
    for (const std::wstring& folder : {folders.Settings(), folders.Xml(), folders.Temporary(), folders.Update()}) {
        if (!system.FolderExists(folder)) {
            system.CreateFolders(folder);
        }
    }
}

void StartUp::ProbeDarkMode() {
    state_.Scheme.System().Init(state_.System.System.Version());
}

void StartUp::OpenSettings() {
    state_.Settings = state_.System.Factory.OpenSettings(state_.Folders.SettingsFile());
}

void StartUp::ChooseTheme() {
    state_.Values.CurrTheme = ReadDisplayMode(*state_.Settings, state_.Scheme.System().IsSupported());
    state_.Scheme.Apply(state_.Values.CurrTheme);
}

void StartUp::ChooseLanguage() {
    SettingsStore& settings = *state_.Settings;
    const std::wstring stored = settings.ReadSetting(OptionsSection, LanguageKey, L"-1");
    const bool isFirstRun = stored.empty() || stored == L"-1";
    if (stored.empty()) {
        // A key without a value counts as missing; the choice below would take it for the number 0.
        settings.RemoveSetting(OptionsSection, LanguageKey);
    }
    state_.Language.SetIndex(i18n::ChooseLanguage(settings, state_.System.System.UserInterfaceLanguage()));
    if (isFirstRun) {
        settings.WriteSetting(OptionsSection, LanguageKey, FormatText(L"%i", {state_.Language.Index()}));
    }
    // The number that options show. Where settings cannot be written it differs from the language that is spoken.
    state_.Values.LanguageIndex = ReadLanguageIndex(settings);
}

void StartUp::CreateControls() {
    MainWindowView& window = state_.Shown.Window;
    window.SetSplitters(state_.Values.VerticalSplitter, state_.Values.HorizontalSplitter);
    window.CreateControls();
    window.SetListColumns(state_.Columns.Shown());
    state_.HasControls = true;
}

void StartUp::OpenEventLog() {
    const std::wstring computer = state_.System.System.ComputerName();
    const std::wstring store = state_.Settings->ReadSetting(L"EventStore", L"Folder", L"");
    state_.Logs =
        std::make_unique<LogObjects>(state_.System.Factory.OpenEventLog(store, state_.Folders.Base(), computer),
                                     LogSurroundings{state_.System, state_.Shown, state_.Language, *state_.Settings,
                                                     state_.Rows, state_.Tree, state_.Folders.Xml()});
    state_.Rows.Reset(state_.Columns.Visible());
    state_.Logs->Loader.SetVisibleColumns(state_.Columns.Visible());
    state_.Logs->Builder.BuildLocalTree(computer);
    state_.Shown.Window.SetTitle(FormatText(L"%s - %s", {state_.Language.Text(EventViewerSlot), computer}));
    state_.Shown.Load.SetStatusText(L"");
}

bool StartUp::EnablePrivileges() {
    if (!state_.System.Privileges.Open()) {
        return false;
    }
    EnableProgramPrivileges(state_.System.Privileges, state_.System.Debug);
    state_.Shown.Window.SetTexts();
    return true;
}

void StartUp::FinishWindow() {
    MainWindowView& window = state_.Shown.Window;
    ReadColorListView(*state_.Settings, state_.Values);
    window.ApplyTheme();
    RestoreWindow(*state_.Settings, window);
    window.SetGridLines(state_.Values.GridLines);
    window.SetVersionText(VersionLine(state_.Language));
    window.Repaint();
    window.Focus(FocusStation::Tree);
}

std::wstring VersionLine(const i18n::Language& language) {
    return FormatText(language.Text(VersionSlot), {WideVersion()});
}

void ShowTitleAndVersion(Application::State& state) {
    MainWindowView& window = state.Shown.Window;
    window.SetTitle(FormatText(L"%s - %s", {state.Language.Text(EventViewerSlot), state.System.System.ComputerName()}));
    window.SetVersionText(VersionLine(state.Language));
}

}  // namespace corvina
