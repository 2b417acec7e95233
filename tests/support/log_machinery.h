// Everything between an event log and the views, put together as the program does it, over an embedded event log in a
// temporary folder and behind a decorator that counts calls and makes them fail.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/embedded_event_log.h"
#include "eventlog/log_selection.h"
#include "eventlog/log_tree_builder.h"
#include "support/doubles_locale.h"
#include "support/doubles_ports.h"
#include "support/doubles_settings.h"
#include "support/doubles_system.h"
#include "support/event_log_fixture.h"
#include "support/failing_event_log.h"
#include "support/recording_views.h"

namespace corvina::test {

// The columns that are visible by default: Type, Date, Source, Task Category, Event ID and User.
inline VisibleColumns DefaultColumns() {
    return VisibleColumns(0b111111);
}

// Takes settings for queries, but for those that a test calls broken.
class PlainStoredQueries final : public StoredQueries {
  public:
    std::optional<std::wstring> QueryOf(std::wstring_view settingValue, std::wstring_view) override {
        return settingValue == Broken ? std::nullopt : std::optional<std::wstring>(settingValue);
    }

    std::wstring Broken;
};

// The ports and views of a test. They come before the event log, which the test may still have to fill.
struct LogSurroundings {
    std::vector<std::wstring> Journal;
    RecordingDebugLog Debug;
    RecordingPrompts Boxes;
    TestPump Pump;
    TestAccounts AccountNames;
    TestSystemErrors SystemTexts;
    TestCategoryFiles Categories;
    PlainLocale Locale;
    MemorySettings Settings;
    FakeSystem System{Journal};
    RecordingLoadView View;
    RecordingTreeView TreeView;
    i18n::Language Language{i18n::English};
    PlainStoredQueries Filters;
    TextMatcher Matcher;
    std::vector<std::wstring> NoEventsTexts;
};

// The logic over any event log.
class LogMachinery {
  public:
    LogMachinery(EventLogApi& api, LogSurroundings& around)
        : Errors(around.SystemTexts, around.Boxes),
          Session(api, Errors, around.Debug, around.Language, Channels),
          Registrar(Session, Channels, around.Debug),
          Tree(&around.TreeView),
          Builder(Session, Channels, Registrar, Tree, Rows, around.View, around.Settings, around.Language),
          Metadata(api),
          Messages(api, around.Categories, around.Debug),
          Descriptions(api, Messages, around.Language, around.Debug),
          Renderer({api, Rows, Metadata, Messages, Descriptions, around.Matcher, around.Language, around.AccountNames,
                    around.Locale, around.Debug}),
          Loader({Session, Errors, Metadata, Messages, Renderer, Rows, Tree, around.View, around.Settings,
                  around.Language, around.Pump, around.Debug,
                  [&around](std::wstring_view text) { around.NoEventsTexts.emplace_back(text); }}),
          Selection({Session, Channels, Tree, Loader, around.View, around.Settings, around.Filters, around.System,
                     around.Boxes, around.Language, around.Debug}) {
        Loader.SetVisibleColumns(DefaultColumns());
    }

    // Selects the node of a path such as "Windows Logs/Application", as the user does; false when there is none.
    bool Select(std::wstring_view path) {
        const NodeId node = Tree.FindByPath(path);
        Tree.SelectionChangedByUser(node);
        Selection.NodeSelected(node);
        return node != NodeId::None;
    }

    // The texts of a shown column, from the first row to the last.
    std::vector<std::wstring> ColumnTexts(Column column) const {
        std::vector<std::wstring> texts;
        for (std::size_t row = 0; row < Rows.Size(); ++row) {
            texts.emplace_back(Rows.Text(Rows.ColumnText(Rows.Row(row), column)));
        }
        return texts;
    }

    ChannelLists Channels;
    RowStore Rows;
    SystemErrorReport Errors;
    EventLogSession Session;
    ChannelRegistrar Registrar;
    LogTree Tree;
    LogTreeBuilder Builder;
    PublisherMetadataCache Metadata;
    MessageResolver Messages;
    EventDescriber Descriptions;
    EventRenderer Renderer;
    LogLoader Loader;
    LogSelection Selection;
};

// A store that the test fills, and the logic over it once Start has been called.
class StoreMachinery : public LogSurroundings {
  public:
    // Opens the store and builds the tree of this computer.
    LogMachinery& Start() {
        Store = std::make_unique<embedded::EmbeddedEventLog>(Files.Folder(), L"TESTPC");
        Api = std::make_unique<FailingEventLog>(*Store);
        Logic = std::make_unique<LogMachinery>(*Api, *this);
        Logic->Builder.BuildLocalTree(L"TESTPC");
        return *Logic;
    }

    // Ends the program; the number of handles that are still open then.
    std::size_t End() {
        Logic.reset();
        return Store->OpenHandleCount();
    }

    TemporaryFolder Folder;
    TestStore Files{Folder.Path()};
    std::unique_ptr<embedded::EmbeddedEventLog> Store;
    std::unique_ptr<FailingEventLog> Api;
    std::unique_ptr<LogMachinery> Logic;
};

}  // namespace corvina::test
