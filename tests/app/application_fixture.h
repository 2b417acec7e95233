// The whole program without a window: an application over an embedded event log in a temporary folder, with doubles for
// everything that the system and the window would do.
#pragma once

#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/application.h"
#include "embedded/embedded_event_log.h"
#include "support/doubles_dark_mode.h"
#include "support/doubles_locale.h"
#include "support/doubles_ports.h"
#include "support/doubles_settings.h"
#include "support/doubles_system.h"
#include "support/event_log_fixture.h"
#include "support/failing_event_log.h"
#include "support/recording_main_window.h"
#include "support/recording_views.h"

namespace corvina::test {

// Lends the settings of a test to the program and notes every access in the journal.
class LentSettings final : public SettingsStore {
  public:
    LentSettings(MemorySettings& settings, Journal& journal) : settings_(settings), journal_(journal) {}

    std::wstring ReadSetting(std::wstring_view section, std::wstring_view key,
                             std::wstring_view defaultValue) const override {
        Note(L"read " + std::wstring(key));
        return settings_.ReadSetting(section, key, defaultValue);
    }
    void WriteSetting(std::wstring_view section, std::wstring_view key, std::wstring_view value) override {
        Note(L"write " + std::wstring(key));
        settings_.WriteSetting(section, key, value);
    }
    void RemoveSetting(std::wstring_view section, std::wstring_view key) override {
        settings_.RemoveSetting(section, key);
    }
    std::vector<std::pair<std::wstring, std::wstring>> ReadSection(std::wstring_view section) const override {
        Note(L"section " + std::wstring(section));
        return settings_.ReadSection(section);
    }
    bool Exists() const override { return settings_.Exists(); }

  private:
    // The same key read twice in a row is one step.
    void Note(const std::wstring& step) const {
        if (journal_.empty() || journal_.back() != step) {
            journal_.push_back(step);
        }
    }

    MemorySettings& settings_;
    Journal& journal_;
};

class TestFactory final : public PortFactory {
  public:
    TestFactory(MemorySettings& settings, Journal& journal) : settings_(settings), journal_(journal) {}

    std::unique_ptr<SettingsStore> OpenSettings(std::wstring_view path) override {
        journal_.push_back(L"OpenSettings " + std::wstring(path));
        return std::make_unique<LentSettings>(settings_, journal_);
    }
    std::unique_ptr<EventLogApi> OpenEventLog(std::wstring_view storeFolder, std::wstring_view baseFolder,
                                              std::wstring_view computerName) override {
        journal_.push_back(L"OpenEventLog");
        StoreFolder = storeFolder;
        BaseFolder = baseFolder;
        Embedded.emplace(Store, std::wstring(computerName));
        auto api = std::make_unique<FailingEventLog>(*Embedded);
        Api = api.get();
        if (OnOpen) {
            OnOpen(*Api);
        }
        return api;
    }

    std::filesystem::path Store;
    std::wstring StoreFolder;
    std::wstring BaseFolder;
    std::optional<embedded::EmbeddedEventLog> Embedded;
    FailingEventLog* Api = nullptr;  // the program's event log, for plans and counts
    std::function<void(FailingEventLog&)> OnOpen;

  private:
    MemorySettings& settings_;
    Journal& journal_;
};

class ApplicationTest : public testing::Test {
  protected:
    ApplicationTest() {
        factory_.Store = folder_.Path() / "store";
        load_.OnSelectRow = [this](std::size_t row) {
            window_.Selection = {row};
            app_->RowSelectionChanged();
        };
        app_ = std::make_unique<Application>(ports_, Views{window_, tree_, load_, details_, eventWindow_});
    }

    void AddLog(const std::wstring& channel, std::size_t count) {
        ASSERT_TRUE(store_.AddLog(L"localhost", channel, NumberedEvents(count)));
    }
    NodeId Node(std::wstring_view path) const { return app_->Tree().FindByPath(path); }
    void Select(std::wstring_view path) {
        ASSERT_NE(Node(path), NodeId::None) << testing::PrintToString(path);
        app_->TreeSelectionChanged(Node(path));
    }
    bool Release(std::uint32_t key, bool control = false) { return app_->KeyReleased({key, control, false}); }
    // The texts of one shown column from the first row to the last.
    std::vector<std::wstring> CellTexts(std::size_t position) const {
        std::vector<std::wstring> texts;
        for (std::size_t row = 0; row < load_.RowCount; ++row) {
            texts.emplace_back(app_->CellText(row, position));
        }
        return texts;
    }

    TemporaryFolder folder_;
    TestStore store_{folder_.Path() / "store"};
    Journal journal_;
    MemorySettings settings_;
    FakeSystem system_{journal_};
    FakePrivilegeToken token_{journal_};
    RecordingDebugLog debug_;
    RecordingPrompts prompts_;
    TestPump pump_;
    TestAccounts accounts_;
    PlainLocale locale_;
    TestSystemErrors errors_;
    TestCategoryFiles categories_;
    TestFactory factory_{settings_, journal_};
    FakeDarkMode darkMode_;
    RecordingClipboard clipboard_;
    RecordingMainWindow window_{journal_};
    RecordingTreeView tree_;
    RecordingLoadView load_;
    RecordingDetailsPane details_;
    RecordingDetailsWindow eventWindow_;
    Ports ports_{system_, token_,  debug_,      prompts_, pump_,     accounts_,
                 locale_, errors_, categories_, factory_, darkMode_, clipboard_};
    std::unique_ptr<Application> app_;
};

}  // namespace corvina::test
