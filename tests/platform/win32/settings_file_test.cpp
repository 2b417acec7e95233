#include "platform/win32/settings_file.h"

#include <fstream>
#include <gtest/gtest.h>

#include "platform/temporary_folder.h"

namespace corvina {
namespace {

using Settings = std::vector<std::pair<std::wstring, std::wstring>>;

class SettingsFileTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
    const std::filesystem::path path_ = folder_.Path / L"Einstellungen \u65E5.ini";
    SettingsFile file_{path_.wstring()};
};

TEST_F(SettingsFileTest, MissingThingsGiveTheDefault) {
    EXPECT_FALSE(file_.Exists());
    EXPECT_EQ(file_.ReadSetting(L"Options", L"Language", L"-1"), L"-1");
    EXPECT_TRUE(file_.ReadSection(L"AddedFiles").empty());
    file_.RemoveSetting(L"Options", L"Language");
    EXPECT_FALSE(file_.Exists()) << "reading and removing must not create the file";

    file_.WriteSetting(L"Options", L"Language", L"2");
    EXPECT_TRUE(file_.Exists());
    EXPECT_EQ(file_.ReadSetting(L"Options", L"GridLines", L"0"), L"0");
    EXPECT_EQ(file_.ReadSetting(L"Corvina", L"Language", L"none"), L"none");
    EXPECT_EQ(file_.ReadSetting(L"options", L"LANGUAGE", L""), L"2");
    EXPECT_EQ(file_.ReadSetting(L"", L"Language", L"d"), L"d");
    EXPECT_EQ(file_.ReadSetting(L"Options", L"", L"d"), L"d");
}

TEST_F(SettingsFileTest, EveryNameAndValueComesBack) {
    const Settings settings = {
        {L"Protokoll \u00E4\u00DF", L"Z:\\Gesicherte Logs\\\u65E5\u672C\u8A9E.evtx"},
        {L"\u0421\u0438\u0441\u0442\u0435\u043C\u0430", L"\xD83D\xDCC1 folder"},
        {L"equals", L"a=b;c=[d]"},
        {L"empty", L""},
        {L"percent", L"100%s %1"},
    };
    for (const auto& [key, value] : settings) {
        file_.WriteSetting(L"AddedFiles \u00FC", key, value);
    }
    const SettingsFile again(path_.wstring());
    for (const auto& [key, value] : settings) {
        EXPECT_EQ(again.ReadSetting(L"AddedFiles \u00FC", key, L"default"), value);
    }
    EXPECT_EQ(again.ReadSection(L"AddedFiles \u00FC"), settings);
}

TEST_F(SettingsFileTest, WritingReplacesAndRemovesSingleKeys) {
    file_.WriteSetting(L"One", L"a", L"1");
    file_.WriteSetting(L"One", L"b", L"2");
    file_.WriteSetting(L"Two", L"a", L"3");
    file_.WriteSetting(L"One", L"a", L"4");
    EXPECT_EQ(file_.ReadSection(L"One"), (Settings{{L"a", L"4"}, {L"b", L"2"}}));
    file_.RemoveSetting(L"One", L"a");
    file_.RemoveSetting(L"One", L"");
    file_.RemoveSetting(L"", L"a");
    EXPECT_EQ(file_.ReadSection(L"One"), (Settings{{L"b", L"2"}}));
    EXPECT_EQ(file_.ReadSetting(L"Two", L"a", L""), L"3");
}

TEST_F(SettingsFileTest, ValuesAreCutUnquotedAndKeptToOneLine) {
    file_.WriteSetting(L"Odd", L"long", std::wstring(259, L'x') + L"yz");
    file_.WriteSetting(L"Odd", L"quoted", L"\"  inner blanks \"");
    file_.WriteSetting(L"Odd", L"blanks", L"  text\t ");
    file_.WriteSetting(L"Odd", L"lines", L"first\r\n[Options]\r\nautoupdates=1");
    EXPECT_EQ(file_.ReadSetting(L"Odd", L"long", L""), std::wstring(259, L'x'));
    EXPECT_EQ(file_.ReadSetting(L"Odd", L"quoted", L""), L"  inner blanks ");
    EXPECT_EQ(file_.ReadSetting(L"Odd", L"blanks", L""), L"text");
    EXPECT_EQ(file_.ReadSetting(L"Odd", L"lines", L""), L"first");
    EXPECT_EQ(file_.ReadSetting(L"Options", L"autoupdates", L"0"), L"0");
    // A whole section reads like its single keys.
    const Settings section = file_.ReadSection(L"Odd");
    ASSERT_EQ(section.size(), 4u);
    for (const auto& [key, value] : section) {
        EXPECT_EQ(value, file_.ReadSetting(L"Odd", key, L"")) << std::string(key.begin(), key.end());
    }
}

TEST_F(SettingsFileTest, LongSectionsAreReadWhole) {
    Settings settings;
    std::wofstream file(path_);
    file << "[AddedFiles]\n; a comment = not a setting\nno setting\n";
    for (int number = 0; number < 2000; ++number) {
        settings.emplace_back(L"log " + std::to_wstring(number), L"Z:\\logs\\" + std::to_wstring(number) + L".evtx");
        file << settings.back().first << L" = " << settings.back().second << L'\n';
    }
    file.close();
    EXPECT_EQ(file_.ReadSection(L"AddedFiles"), settings);
}

TEST_F(SettingsFileTest, AnUnwritableFileIsNoError) {
    SettingsFile nowhere((folder_.Path / L"missing" / L"inifile.ini").wstring());
    nowhere.WriteSetting(L"Options", L"Language", L"1");
    EXPECT_FALSE(nowhere.Exists());
    EXPECT_EQ(nowhere.ReadSetting(L"Options", L"Language", L"-1"), L"-1");
    SettingsFile onFolder(folder_.Path.wstring());
    onFolder.WriteSetting(L"Options", L"Language", L"1");
    EXPECT_FALSE(onFolder.Exists());
}

}  // namespace
}  // namespace corvina
