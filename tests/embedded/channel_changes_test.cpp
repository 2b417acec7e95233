// Changing a channel's configuration: what is taken, when it counts, and what becomes of "channels.ini".
#include <fstream>
#include <iterator>

#include "embedded/channel.h"
#include "embedded/embedded_log_test.h"
#include "embedded/ini_changes.h"

namespace corvina::test {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t LargestSize = embedded::LargestMaximumSize;

class ChannelChangesTest : public EmbeddedLogTest {
  protected:
    ChannelChangesTest() {
        EXPECT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(3)));
        EXPECT_TRUE(Store.AddLog(L"localhost", L"Tool/Operational", NumberedEvents(3)));
    }

    EvtHandle Configuration(const std::wstring& channel) {
        return Held(Log->EvtOpenChannelConfig(nullptr, channel.c_str(), 0));
    }

    std::uint32_t Set(const EvtHandle& configuration, int id, EVT_VARIANT value) {
        return Log->EvtSetChannelConfigProperty(configuration.Get(), static_cast<EVT_CHANNEL_CONFIG_PROPERTY_ID>(id), 0,
                                                &value) != FALSE
                   ? error::Success
                   : Log->GetLastError();
    }

    std::uint32_t Save(const EvtHandle& configuration) {
        return Log->EvtSaveChannelConfig(configuration.Get(), 0) != FALSE ? error::Success : Log->GetLastError();
    }

    static EVT_VARIANT Boolean(bool value) {
        EVT_VARIANT variant{};
        variant.BooleanVal = value ? TRUE : FALSE;
        variant.Type = EvtVarTypeBoolean;
        return variant;
    }

    static EVT_VARIANT Number(std::uint64_t value) {
        EVT_VARIANT variant{};
        variant.UInt64Val = value;
        variant.Type = EvtVarTypeUInt64;
        return variant;
    }

    EVT_VARIANT Get(const EvtHandle& configuration, int id) {
        EVT_VARIANT value{};
        DWORD used = 0;
        EXPECT_TRUE(Log->EvtGetChannelConfigProperty(
            configuration.Get(), static_cast<EVT_CHANNEL_CONFIG_PROPERTY_ID>(id), 0, sizeof value, &value, &used));
        return value;
    }

    bool IsEnabled(const EvtHandle& configuration) {
        return Get(configuration, EvtChannelConfigEnabled).BooleanVal != FALSE;
    }

    fs::path IniFile() const { return Store.Folder() / "localhost" / "channels.ini"; }

    std::string Ini() const {
        std::ifstream file(IniFile(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
};

TEST_F(ChannelChangesTest, CountWhenTheyAreSavedForEverybody) {
    const std::string before = "; kept\r\n[Tool/Operational]\r\n# note\r\nEnabled = yes\r\nOther=1\r\n\r\n[System]\r\n";
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", before));
    const EvtHandle session = OpenSession(L"localhost");
    const EvtHandle other = Held(Log->EvtOpenChannelConfig(session.Get(), L"tool/operational", 0));
    {
        const EvtHandle dropped = Configuration(L"Tool/Operational");
        EXPECT_EQ(Set(dropped, EvtChannelConfigEnabled, Boolean(false)), 0U);
        EXPECT_FALSE(IsEnabled(dropped));
        EXPECT_EQ(Save(other), 0U);
    }
    EXPECT_EQ(Ini(), before);
    EXPECT_TRUE(IsEnabled(other));

    const EvtHandle changed = Configuration(L"Tool/Operational");
    EXPECT_EQ(Set(changed, EvtChannelConfigEnabled, Boolean(false)), 0U);
    EXPECT_EQ(Set(changed, EvtChannelLoggingConfigMaxSize, Number(1'000'000)), 0U);
    EXPECT_EQ(Save(changed), 0U);
    EXPECT_EQ(Ini(),
              "; kept\r\n[Tool/Operational]\r\n# note\r\nEnabled =false\r\nOther=1\r\nMaxSize=1048576\r\n\r\n"
              "[System]\r\n");
    EXPECT_FALSE(IsEnabled(other));
    EXPECT_EQ(
        Get(Held(Log->EvtOpenChannelConfig(session.Get(), L"Tool/Operational", 0)), EvtChannelLoggingConfigMaxSize)
            .UInt64Val,
        1'048'576U);
    // Changes that somebody else makes to the file show, and stay when others are saved.
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[Tool/Operational]\nRetention=1\n"));
    EXPECT_TRUE(IsEnabled(other));
    EXPECT_EQ(Set(changed, EvtChannelConfigEnabled, Boolean(false)), 0U);
    EXPECT_EQ(Save(changed), 0U);
    EXPECT_EQ(Ini(), "[Tool/Operational]\nRetention=1\nEnabled=false\n");
    EXPECT_EQ(Events(Query(L"Tool/Operational")).size(), 3U);
    EXPECT_EQ(std::distance(fs::directory_iterator(Store.Folder() / "localhost"), fs::directory_iterator()), 3);
}

TEST_F(ChannelChangesTest, AreCheckedAgainstWhatAChannelCanBe) {
    const EvtHandle tool = Configuration(L"Tool/Operational");
    const EvtHandle system = Configuration(L"System");
    EXPECT_EQ(Set(system, EvtChannelConfigEnabled, Boolean(false)), error::AccessDenied);
    EXPECT_EQ(Set(system, EvtChannelConfigEnabled, Boolean(true)), 0U);
    EXPECT_EQ(Set(tool, EvtChannelConfigEnabled, Number(1)), error::InvalidParameter);
    EXPECT_EQ(Set(tool, EvtChannelLoggingConfigMaxSize, Boolean(true)), error::InvalidParameter);
    for (const std::uint64_t size : {std::uint64_t{0}, ~std::uint64_t{0}, LargestSize + 1}) {
        EXPECT_EQ(Set(tool, EvtChannelLoggingConfigMaxSize, Number(size)), error::InvalidParameter);
    }
    for (const auto& [asked, taken] : {std::pair<std::uint64_t, std::uint64_t>(1, 65536),
                                       {65536, 65536},
                                       {65537, 131072},
                                       {LargestSize, (LargestSize + 65535) / 65536 * 65536}}) {
        EXPECT_EQ(Set(tool, EvtChannelLoggingConfigMaxSize, Number(asked)), 0U);
        EXPECT_EQ(Save(tool), 0U);
        EXPECT_EQ(Get(Configuration(L"Tool/Operational"), EvtChannelLoggingConfigMaxSize).UInt64Val, taken);
    }
    EXPECT_EQ(Set(tool, EvtChannelConfigPropertyIdEND, Boolean(true)), error::InvalidParameter);
    for (const int id : {EvtChannelConfigType, EvtChannelConfigAccess, EvtChannelLoggingConfigLogFilePath,
                         EvtChannelPublishingConfigFileMax}) {
        EXPECT_EQ(Set(tool, id, Number(1)), error::AccessDenied) << id;
    }
    EVT_VARIANT value = Boolean(true);
    EXPECT_FALSE(Log->EvtSetChannelConfigProperty(tool.Get(), EvtChannelConfigEnabled, 1, &value));
    EXPECT_FALSE(Log->EvtSetChannelConfigProperty(tool.Get(), EvtChannelConfigEnabled, 0, nullptr));
    EXPECT_FALSE(Log->EvtSaveChannelConfig(tool.Get(), 1));
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
    EXPECT_FALSE(Log->EvtSaveChannelConfig(nullptr, 0));
    EXPECT_EQ(Log->GetLastError(), error::InvalidHandle);
}

// A full log can only be backed up when it is retained; the order in which the two are set makes no difference.
TEST_F(ChannelChangesTest, BackingUpNeedsRetention) {
    const EvtHandle tool = Configuration(L"Tool/Operational");
    EXPECT_EQ(Set(tool, EvtChannelLoggingConfigAutoBackup, Boolean(true)), 0U);
    EXPECT_EQ(Save(tool), error::InvalidParameter);
    EXPECT_FALSE(fs::exists(IniFile()));
    EXPECT_EQ(Set(tool, EvtChannelLoggingConfigRetention, Boolean(true)), 0U);
    EXPECT_EQ(Save(tool), 0U);
    EXPECT_EQ(Ini(), "[Tool/Operational]\nRetention=true\nAutoBackup=true\n");
    EXPECT_EQ(Set(tool, EvtChannelLoggingConfigRetention, Boolean(false)), 0U);
    EXPECT_EQ(Save(tool), error::InvalidParameter);
    // A file that holds such a state does not stand in the way of other changes.
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[System]\nAutoBackup=1"));
    const EvtHandle system = Configuration(L"System");
    EXPECT_EQ(Set(system, EvtChannelLoggingConfigMaxSize, Number(65536)), 0U);
    EXPECT_EQ(Save(system), 0U);
    EXPECT_EQ(Ini(), "[System]\nAutoBackup=1\nMaxSize=65536\n");
}

TEST_F(ChannelChangesTest, ARetainedLogOfItsSizeIsFull) {
    const auto isFull = [&](const std::wstring& path, DWORD flags) {
        const EvtHandle log = Held(Log->EvtOpenLog(nullptr, path.c_str(), flags));
        EVT_VARIANT value{};
        DWORD used = 0;
        EXPECT_TRUE(Log->EvtGetLogInfo(log.Get(), EvtLogFull, sizeof value, &value, &used));
        return value.BooleanVal != FALSE;
    };
    const std::wstring file = Store.LogPath(L"localhost", L"System").wstring();
    const std::string size = std::to_string(fs::file_size(file));
    const std::string more = std::to_string(fs::file_size(file) + 1);
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[System]\nMaxSize=" + size));
    EXPECT_FALSE(isFull(L"System", EvtOpenChannelPath));
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[System]\nRetention=yes\nMaxSize=" + more));
    EXPECT_FALSE(isFull(L"System", EvtOpenChannelPath));
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[System]\nRetention=yes\nMaxSize=" + size));
    EXPECT_TRUE(isFull(L"System", EvtOpenChannelPath));
    EXPECT_FALSE(isFull(file, EvtOpenFilePath));
    // The flag in the file's own header.
    std::fstream header(fs::path(file), std::ios::in | std::ios::out | std::ios::binary);
    header.seekp(120).put('\2').flush();
    EXPECT_TRUE(isFull(file, EvtOpenFilePath));
}

TEST_F(ChannelChangesTest, AFileThatCannotBeChangedIsNotLost) {
    const std::string utf16("\xFF\xFE[\0S\0]\0", 8);
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", utf16));
    const EvtHandle tool = Configuration(L"Tool/Operational");
    EXPECT_EQ(Set(tool, EvtChannelConfigEnabled, Boolean(false)), 0U);
    EXPECT_EQ(Save(tool), error::InvalidData);
    EXPECT_EQ(Ini(), utf16);
    const std::string garbage = std::string("\0\xFE\x80", 3) + " = [x\n[Tool/Operational]\xFF\n";
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", garbage));
    EXPECT_EQ(Save(tool), 0U);
    EXPECT_EQ(Ini().substr(0, garbage.size()), garbage);
    EXPECT_FALSE(IsEnabled(Configuration(L"Tool/Operational")));
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", std::string(embedded::MaximumIniFileSize + 1, ';')));
    EXPECT_EQ(Set(tool, EvtChannelConfigEnabled, Boolean(false)), 0U);
    EXPECT_EQ(Save(tool), error::AccessDenied);
    EXPECT_EQ(fs::file_size(IniFile()), embedded::MaximumIniFileSize + 1);
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "old"));
    fs::permissions(IniFile(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(Save(tool), error::AccessDenied);
    EXPECT_EQ(Ini(), "old");
    fs::permissions(IniFile(), fs::perms::owner_all);
#ifndef _WIN32
    // A channel whose name would put other lines into the file.
    fs::copy_file(Store.LogPath(L"localhost", L"System"),
                  Store.Folder() / "localhost" / "x]\n[System]\nEnabled=0.evtx");
    const EvtHandle forged = Configuration(L"x]\n[System]\nEnabled=0");
    EXPECT_EQ(Set(forged, EvtChannelLoggingConfigMaxSize, Number(65536)), 0U);
    EXPECT_EQ(Save(forged), error::InvalidParameter);
    EXPECT_EQ(Ini(), "old");
#endif
}

TEST(IniChanges, TouchTheLinesThatCountAndNoOthers) {
    const embedded::IniEntry entries[] = {{L"Enabled", L"no"}, {L"Size", L"7"}};
    const std::pair<const char*, const char*> cases[] = {
        {"", "[A]\nEnabled=no\nSize=7\n"},
        {"\n", "\n\n[A]\nEnabled=no\nSize=7\n"},
        {"[B]\nEnabled=1", "[B]\nEnabled=1\n\n[A]\nEnabled=no\nSize=7\n"},
        {"[a]\n enabled = 1 \nSIZE=2", "[a]\n enabled =no\nSIZE=7"},
        {"[A]\nEnabled=1\nEnabled=2\n[B]\nSize=1\n", "[A]\nEnabled=1\nEnabled=no\nSize=7\n[B]\nSize=1\n"},
        {"[A]\nSize=1\n[B]\n[A]\n;Size=1\nX=1\n; of B\n[B]",
         "[A]\nSize=7\n[B]\n[A]\n;Size=1\nX=1\nEnabled=no\n; of B\n[B]"},
        {"\xEF\xBB\xBF[A]\r\nSize=1\r\n", "\xEF\xBB\xBF[A]\r\nSize=7\r\nEnabled=no\r\n"},
        {"Size=1\n[A\n[A]", "Size=1\n[A\n[A]\nEnabled=no\nSize=7\n"},
    };
    for (const auto& [before, after] : cases) {
        EXPECT_EQ(embedded::ChangedIni(before, L"A", entries), after);
        EXPECT_EQ(embedded::ChangedIni(after, L"A", entries), after);
    }
}

}  // namespace
}  // namespace corvina::test
