// What happens between the birth of the main window and its first look: folders, settings, language, controls, the
// tree, privileges, and the window's place, each resting on what came before it.
#pragma once

#include "app/application_state.h"

namespace corvina {

class StartUp {
  public:
    explicit StartUp(Application::State& state) : state_(state) {}

    // All steps in their order. Without the process token the steps behind it are left out; the window then stays as it
    // is.
    void Run();

  private:
    void CreateFolders();
    void ProbeDarkMode();
    void OpenSettings();
    void ChooseTheme();
    void ChooseLanguage();
    void CreateControls();
    void OpenEventLog();
    bool EnablePrivileges();
    void FinishWindow();

    Application::State& state_;
};

// The window's title and the version's text, in the current language.
void ShowTitleAndVersion(Application::State& state);

// "Version: 1.0.0 (64-bit)", in the current language.
std::wstring VersionLine(const i18n::Language& language);

}  // namespace corvina
