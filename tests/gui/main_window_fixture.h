// The real main window over real settings and real log files in a temporary folder, driven with window messages. The
// window reads the files by itself or, where the environment variable CORVINA_TEST_EVENT_LOG is "system", through the
// system's event log, which is then the double of wevtapi.dll.
#pragma once

#include <windows.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/win32/main_window.h"
#include "app/win32/message_loop.h"
#include "app/win32/windows_port_factory.h"
#include "platform/win32/process_token.h"
#include "platform/win32/registry_category_message_files.h"
#include "platform/win32/settings_file.h"
#include "platform/win32/windows_accounts.h"
#include "platform/win32/windows_clipboard.h"
#include "platform/win32/windows_dark_mode.h"
#include "platform/win32/windows_locale.h"
#include "platform/win32/windows_message_pump.h"
#include "platform/win32/windows_system_errors.h"
#include "platform/win32/windows_system_services.h"

namespace corvina::test {

// The system's own answers, except that the program stands in another folder.
class MovedSystemServices final : public SystemServices {
  public:
    std::filesystem::path Folder;

    std::wstring ModulePath() const override { return (Folder / L"Corvina.exe").wstring(); }
    bool FolderExists(std::wstring_view path) const override { return real_.FolderExists(path); }
    void CreateFolders(std::wstring_view path) override { real_.CreateFolders(path); }
    bool FileExists(std::wstring_view path) const override { return real_.FileExists(path); }
    std::wstring ComputerName() const override { return real_.ComputerName(); }
    std::optional<std::uint16_t> UserInterfaceLanguage() const override { return 1033; }
    WindowsVersion Version() const override { return real_.Version(); }
    void StartProgram(std::wstring_view path) override { Started.emplace_back(path); }

    std::vector<std::wstring> Started;  // programs that are not really started

  private:
    WindowsSystemServices real_;
};

class DebugLines final : public DebugLog {
  public:
    std::vector<std::wstring> Lines;
    void Write(std::wstring_view text) override { Lines.emplace_back(text); }
};

// Answers at once instead of showing boxes.
class SilentPrompts final : public Prompts {
  public:
    std::vector<std::wstring> Shown;
    bool Answer = true;
    std::optional<std::wstring> FileToOpen;

    void ShowError(std::wstring_view text, std::wstring_view) override { Shown.emplace_back(text); }
    void ShowInformation(std::wstring_view text, std::wstring_view) override { Shown.emplace_back(text); }
    bool AskYesNo(std::wstring_view text, std::wstring_view) override {
        Shown.emplace_back(text);
        return Answer;
    }
    std::optional<std::wstring> ChooseFileToOpen(std::wstring_view) override { return FileToOpen; }
};

struct ShownMenuEntry {
    UINT Command = 0;  // 0: a separator
    std::wstring Text;
    bool Enabled = false;
};

class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest();
    ~MainWindowTest() override;

    // A log in the store, for the channel of the file's name.
    void WriteLog(const std::wstring& channel, std::uint64_t events);
    void WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value);
    std::wstring ReadSetting(std::wstring_view section, std::wstring_view key) const;

    // Creates the window over the store and shows it.
    void Start();
    // As the user would close it; the settings stay.
    void CloseAndDestroy();

    // Handles every waiting message as the program's loop does.
    void Pump();

    HWND Main() const { return window_->Handle(); }
    HWND Child(const wchar_t* className, int index = 0) const;
    HWND TreeControl() const { return Child(L"SysTreeView32"); }
    HWND ListControl() const;
    HWND HeaderControl() const;
    const std::vector<std::wstring>& StartedPrograms() const { return system_.Started; }
    HWND Field(int index) const { return Child(L"Edit", index); }
    static std::wstring TextOf(HWND window);
    static std::wstring ClipboardText();
    std::wstring Caption() const { return TextOf(Child(L"Static", 0)); }
    static RECT PlaceIn(HWND parent, HWND child);

    // Selects the node with that path of captions below the computer, counts left out, as a click would.
    void SelectNode(const std::vector<std::wstring>& captions);
    std::wstring SelectedNodeCaption() const;

    int RowCount() const;
    std::wstring Cell(int row, int column) const;
    std::wstring ColumnHeader(int column) const;
    int ColumnCountShown() const;
    void ClickHeader(int column);
    void SelectRowsOnly(const std::vector<int>& rows);
    std::vector<int> SelectedRowNumbers() const;

    // A key that goes down and up while the main window is in front.
    void PressKey(WORD virtualKey);

    // Runs `action` as soon as the program waits inside a modal loop that `open` enters.
    void WhileModal(const std::function<void()>& open, const std::function<bool()>& action);
    // Opens a context menu, reads it and closes it again.
    std::vector<ShownMenuEntry> ContextMenuOf(HWND control, POINT screenPlace);
    static std::vector<ShownMenuEntry> EntriesOf(HMENU menu);

    std::filesystem::path Folder;
    std::filesystem::path Store;
    DebugLines Debug;
    SilentPrompts Boxes;
    int Ended = 0;  // how often the window asked to end the process

  private:
    HTREEITEM FindItem(HTREEITEM parent, const std::wstring& caption) const;
    std::wstring ItemText(HTREEITEM item) const;
    void ReleaseWindow();

    MovedSystemServices system_;
    ProcessToken privileges_;
    WindowsMessagePump pump_;
    WindowsAccounts accounts_;
    WindowsLocale locale_;
    WindowsSystemErrors errors_;
    RegistryCategoryMessageFiles categories_;
    WindowsPortFactory factory_;
    WindowsDarkMode darkMode_;
    WindowsClipboard clipboard_;
    Ports ports_;
    std::unique_ptr<MainWindow> window_;
    mutable HWND list_ = nullptr;
};

}  // namespace corvina::test
