// The program's way from a log to the list, without a window, over logs that are made once and kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "app/application.h"
#include "app/log_objects.h"
#include "embedded/embedded_event_log.h"
#include "eventlog/event_columns.h"
#include "eventlog/log_tree.h"
#include "eventlog/row_store.h"
#include "support/doubles_dark_mode.h"
#include "support/doubles_locale.h"
#include "support/doubles_ports.h"
#include "support/doubles_settings.h"
#include "support/doubles_system.h"
#include "support/recording_main_window.h"
#include "support/recording_views.h"

namespace corvina::bench {

// The folder of a store whose System log holds `events` events, with the manifests of its providers. It is made on
// first use and stays for later runs. Ends the program with a message when it cannot be made.
std::filesystem::path StoreWithEvents(std::uint64_t events);

// An export of that log without its oldest event, whose records are counted anew, so that the events have other record
// identifiers than the records they stand in.
std::filesystem::path ExportWithEvents(std::uint64_t events);

// The columns that a fresh program shows, and all of them.
VisibleColumns DefaultColumns();
VisibleColumns AllColumns();

class BenchProgram {
  public:
    BenchProgram(const std::filesystem::path& store, const VisibleColumns& columns);

    // Loads the System log from the beginning, as selecting its node does.
    void LoadSystemLog();

    // Loads a saved log from the beginning.
    void LoadSavedLog(const std::filesystem::path& file);

    // Shows the event of a row in the pane, as selecting it does, and returns its XML.
    const std::wstring& ShowDetails(std::size_t row);

    // Ends the next load when waiting messages are dispatched for the first time, after at most 101 rows.
    void StopAtFirstPage();

    RowStore& Rows() { return rows_; }
    const LocaleServices& Locale() const { return locale_; }

  private:
    // Unused here, but the program's objects are handed all ports at once.
    class NoFactory final : public PortFactory {
      public:
        std::unique_ptr<SettingsStore> OpenSettings(std::wstring_view) override { return nullptr; }
        std::unique_ptr<EventLogApi> OpenEventLog(std::wstring_view, std::wstring_view, std::wstring_view) override {
            return nullptr;
        }
    };

    test::Journal journal_;
    test::FakeSystem system_{journal_};
    test::FakePrivilegeToken token_{journal_};
    test::RecordingDebugLog debug_;
    test::RecordingPrompts prompts_;
    test::TestPump pump_;
    test::TestAccounts accounts_;
    test::PlainLocale locale_;
    test::TestSystemErrors errors_;
    test::TestCategoryFiles categories_;
    test::MemorySettings settings_;
    NoFactory factory_;
    test::FakeDarkMode darkMode_;
    test::RecordingClipboard clipboard_;
    test::RecordingMainWindow window_{journal_};
    test::RecordingTreeView treeView_;
    test::RecordingLoadView load_;
    test::RecordingDetailsPane details_;
    test::RecordingDetailsWindow eventWindow_;
    Ports ports_{system_, token_,  debug_,      prompts_, pump_,     accounts_,
                 locale_, errors_, categories_, factory_, darkMode_, clipboard_};
    Views views_{window_, treeView_, load_, details_, eventWindow_};
    i18n::Language language_;
    RowStore rows_;
    LogTree tree_{&treeView_};
    std::unique_ptr<LogObjects> logs_;
    NodeId systemLog_ = NodeId::None;
};

}  // namespace corvina::bench
