// The program's entry: it makes every port and the main window, and hands them to one another.
#include <string>

#include "app/win32/main_window.h"
#include "app/win32/message_loop.h"
#include "app/win32/windows_port_factory.h"
#include "platform/win32/debugger_log.h"
#include "platform/win32/process_token.h"
#include "platform/win32/registry_category_message_files.h"
#include "platform/win32/system_library.h"
#include "platform/win32/windows_accounts.h"
#include "platform/win32/windows_clipboard.h"
#include "platform/win32/windows_dark_mode.h"
#include "platform/win32/windows_locale.h"
#include "platform/win32/windows_message_pump.h"
#include "platform/win32/windows_prompts.h"
#include "platform/win32/windows_system_errors.h"
#include "platform/win32/windows_system_services.h"
#include "resource_ids.h"
#include "ui/win32/common_controls.h"

namespace {

using namespace corvina;

// Other programs that wait for this one look for this status after every close.
constexpr UINT ExitStatusOfClose = 1;

std::wstring ResourceText(HINSTANCE instance, UINT identifier) {
    wchar_t text[256] = {};
    const int length = LoadStringW(instance, identifier, text, 256);
    return std::wstring(text, static_cast<std::size_t>(length));
}

void InitializeControls() {
    INITCOMMONCONTROLSEX classes{};
    classes.dwSize = sizeof(classes);
    classes.dwICC = ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES;
    InitCommonControlsEx(&classes);
}

// A window that was restored maximized must not be made smaller by the usual ways to show it.
int FittingShowCommand(HWND window, int showCommand) {
    const bool isUsual = showCommand == SW_SHOWNORMAL || showCommand == SW_SHOW || showCommand == SW_SHOWDEFAULT;
    return isUsual && IsZoomed(window) ? SW_SHOWMAXIMIZED : showCommand;
}

int RunProgram(HINSTANCE instance, int showCommand) {
    const std::wstring title = ResourceText(instance, CORVINA_STRING_WINDOW_TITLE);
    const std::wstring className = ResourceText(instance, CORVINA_STRING_WINDOW_CLASS);

    WindowsSystemServices system;
    ProcessToken privileges;
    DebuggerLog debug;
    WindowsPrompts boxes;
    WindowsMessagePump pump;
    WindowsAccounts accounts;
    WindowsLocale locale;
    WindowsSystemErrors errors;
    RegistryCategoryMessageFiles categories;
    WindowsPortFactory factory;
    WindowsClipboard clipboard;
    WindowsDarkMode darkMode;
    Ports ports{system, privileges, debug,      boxes,   pump,     accounts,
                locale, errors,     categories, factory, darkMode, clipboard};

    MainWindow window({.Instance = instance,
                       .System = ports,
                       .Created = [&boxes](HWND handle) { boxes.SetOwner(handle); },
                       .EndProcess = [] { ExitProcess(ExitStatusOfClose); }});
    if (!MainWindow::RegisterOwnClass(instance, className) || !window.Create(className, title)) {
        return 0;
    }
    ShowWindow(window.Handle(), FittingShowCommand(window.Handle(), showCommand));
    UpdateWindow(window.Handle());
    // Loaded but never translated: keys take effect when they are released, which an accelerator cannot express.
    LoadAcceleratorsW(instance, MAKEINTRESOURCEW(CORVINA_ACCELERATORS));
    return RunMessageLoop(window);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int showCommand) {
    HardenLibrarySearch();
    InitializeControls();
    return RunProgram(instance, showCommand);
}
