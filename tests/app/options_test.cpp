// The options: what the dialog is offered, what is written, and what changes at once or at a restart.
#include "app/options.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "app/application_fixture.h"
#include "app/command_ids.h"

namespace corvina {
namespace {

constexpr std::size_t GermanEntry = 0;
constexpr std::size_t EnglishEntry = 1;

TEST(Options, EveryEntryOfTheLanguageListHasItsOwnTable) {
    std::set<int> languages;
    for (std::size_t entry = 0; entry < 24; ++entry) {
        const int language = LanguageOfEntry(entry);
        EXPECT_EQ(EntryOfLanguage(language), entry);
        languages.insert(language);
    }
    EXPECT_EQ(languages.size(), 24u);
    const i18n::Language names(i18n::English);
    const auto nameOf = [&](int language) { return names.Text(171 + static_cast<int>(EntryOfLanguage(language))); };
    EXPECT_TRUE(nameOf(9).starts_with(L"Sloven\x0161\x010Dina"));
    EXPECT_EQ(nameOf(19), L"Slovensk\x00FD (Slovak)");
    EXPECT_EQ(nameOf(22), L"\x0395\x03BB\x03BB\x03B7\x03BD\x03B9\x03BA\x03AC (Greek)");
    for (const int wrong : {-1, 24, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ(EntryOfLanguage(wrong), EnglishEntry);
    }
    EXPECT_EQ(LanguageOfEntry(24), i18n::English);
}

class OptionsTest : public test::ApplicationTest {
  protected:
    OptionsTest() {
        settings_.Set(L"Options", L"Language", L"1");
        settings_.Set(L"Options", L"CurrTheme", L"0");
    }
    void Start() {
        app_->Create();
        settings_.Writes.clear();
        journal_.clear();
    }
    // Opens the dialog and presses its button with these values.
    void Choose(const OptionValues& values) {
        window_.ChosenOptions = values;
        app_->Command(CORVINA_ID_OPTIONS);
    }
    std::size_t Noted(std::wstring_view step) const {
        return static_cast<std::size_t>(std::ranges::count(journal_, step));
    }
};

TEST_F(OptionsTest, TheDialogIsOfferedWhatIsNow) {
    settings_.Set(L"Options", L"Language", L"19");
    settings_.Set(L"Options", L"CurrTheme", L"1");
    settings_.Set(L"Options", L"ColorListView", L"1");
    settings_.Set(L"Options", L"autoupdates", L"5");
    Start();
    app_->Command(CORVINA_ID_OPTIONS);
    const OptionOffer& offer = window_.OfferedOptions;
    EXPECT_EQ(offer.Now, (OptionValues{9, 1, true, false, true}));
    ASSERT_EQ(offer.Languages.size(), 24u);
    for (const std::wstring& language : offer.Languages) {
        EXPECT_EQ(language.find(L'\t'), std::wstring::npos) << "tabs cannot be shown";
    }
    EXPECT_EQ(offer.DisplayModes.size(), 2u);
    EXPECT_TRUE(settings_.Writes.empty()) << "a cancelled dialog writes nothing";
}

TEST_F(OptionsTest, FollowingTheSystemIsOfferedWhereItCanBeDark) {
    darkMode_.HaveAll();
    settings_.Set(L"Options", L"CurrTheme", L"2");
    Start();
    app_->Command(CORVINA_ID_OPTIONS);
    EXPECT_EQ(window_.OfferedOptions.DisplayModes,
              (std::vector<std::wstring>{L"White", L"Black", L"Use Windows theme"}));
    EXPECT_EQ(window_.OfferedOptions.Now.DisplayMode, 2);
}

TEST_F(OptionsTest, EverythingIsWrittenWithoutAQuestionWhileTheModeStays) {
    Start();
    Choose({EnglishEntry, 0, true, true, true});
    EXPECT_EQ(settings_.Writes, (std::vector<std::wstring>{L"CurrTheme=0", L"ColorListView=0", L"GridLines=1",
                                                           L"autoupdates=1", L"Language=1"}))
        << "the list's colours belong to the black scheme";
    EXPECT_TRUE(prompts_.Questions.empty());
    EXPECT_TRUE(window_.GridLines);
    EXPECT_EQ(Noted(L"ApplyTheme"), 1u);
    EXPECT_EQ(Noted(L"RequestClose"), 0u);
    EXPECT_FALSE(app_->ColorsRowsByLevel());
}

TEST_F(OptionsTest, AnotherModeWithoutARestartTakesEffectAtOnce) {
    Start();
    prompts_.Answer = false;
    Choose({EnglishEntry, 1, true, false, false});
    ASSERT_EQ(prompts_.Questions.size(), 1u);
    EXPECT_EQ(prompts_.Questions[0].Text,
              L"A restart is required to initialize design data. Changed design data will only be adopted after the "
              L"restart of Corvina. \n\n Restart Corvina now?");
    EXPECT_EQ(prompts_.Questions[0].Title, L"Corvina");
    EXPECT_EQ(settings_.Value(L"Options", L"CurrTheme"), L"1");
    EXPECT_EQ(settings_.Value(L"Options", L"ColorListView"), L"1");
    EXPECT_TRUE(app_->ColorsRowsByLevel());
    EXPECT_EQ(app_->Colors().WindowFill, DarkPalette.WindowFill);
    EXPECT_EQ(Noted(L"StartProgram C:\\Corvina\\Corvina.exe"), 0u);
    // The same mode again is no change.
    Choose({EnglishEntry, 1, false, false, false});
    EXPECT_EQ(prompts_.Questions.size(), 1u);
    EXPECT_EQ(settings_.Value(L"Options", L"ColorListView"), L"0");
}

TEST_F(OptionsTest, ARestartFindsEverythingWritten) {
    Start();
    Choose({GermanEntry, 1, true, true, true});
    ASSERT_GE(journal_.size(), 2u);
    EXPECT_EQ(journal_[journal_.size() - 2], L"StartProgram C:\\Corvina\\Corvina.exe");
    EXPECT_EQ(journal_.back(), L"RequestClose");
    EXPECT_EQ(settings_.Writes.front(), L"CurrTheme=1");
    EXPECT_EQ(settings_.Value(L"Options", L"Language"), L"0");
    EXPECT_EQ(settings_.Value(L"Options", L"ColorListView"), L"1");
    EXPECT_EQ(settings_.Value(L"Options", L"GridLines"), L"1");
    EXPECT_EQ(settings_.Value(L"Options", L"nVSplitPos"), L"250") << "the window is saved before the new one reads";
}

TEST_F(OptionsTest, AnotherLanguageIsSpokenAtOnce) {
    AddLog(L"Application", 5);
    Start();
    Select(L"Windows Logs/Application");
    window_.Columns[1].Width = 77;
    Choose({GermanEntry, 0, false, false, false});
    const i18n::Language german(i18n::German);
    EXPECT_EQ(settings_.Value(L"Options", L"Language"), L"0");
    EXPECT_EQ(window_.Title, std::wstring(german.Text(0)) + L" - TESTPC");
    EXPECT_EQ(window_.Columns[1].Header, german.Text(128));
    EXPECT_EQ(window_.Columns[1].Width, 77);
    EXPECT_EQ(Noted(L"SetTexts"), 1u);
    for (const int slot : {5, 6, 7, 212, 213, 214}) {
        EXPECT_TRUE(std::ranges::any_of(tree_.Captions, [&](const auto& node) {
            return node.second == german.Text(slot);
        })) << slot;
    }
    EXPECT_EQ(load_.RowCount, 5u);
    EXPECT_NE(load_.ListCaption.find(L"Ereignisse"), std::wstring::npos) << "the view was not loaded anew";
    Choose({20, 0, false, false, false});
    EXPECT_EQ(settings_.Value(L"Options", L"Language"), L"20");
    EXPECT_EQ(app_->CurrentLanguage().Index(), 20);
}

TEST_F(OptionsTest, TheAboutBoxTellsNameVersionAndLicence) {
    Start();
    app_->Command(CORVINA_ID_ABOUT);
    EXPECT_EQ(window_.About.Title, L"About");
    EXPECT_EQ(window_.About.Name, L"Corvina");
    EXPECT_EQ(window_.About.Version, window_.VersionText);
    EXPECT_NE(window_.About.License.find(L"MIT License"), std::wstring::npos);
}

}  // namespace
}  // namespace corvina
