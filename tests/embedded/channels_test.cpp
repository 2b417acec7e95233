// Channels: which there are, their configuration, and the facts of their logs.
#include <fstream>
#include <optional>

#include "embedded/embedded_log_test.h"

namespace corvina::test {
namespace {

class ChannelsTest : public EmbeddedLogTest {
  protected:
    std::vector<std::wstring> Paths() {
        const EvtHandle channels = Held(Log->EvtOpenChannelEnum(nullptr, 0));
        std::vector<std::wstring> paths;
        DWORD used = 0;
        while (Log->EvtNextChannelPath(channels.Get(), 0, nullptr, &used) == FALSE &&
               Log->GetLastError() == error::InsufficientBuffer) {
            const auto text = Filled<wchar_t>([&](DWORD size, LPWSTR buffer, DWORD* needed) {
                return Log->EvtNextChannelPath(channels.Get(), size, buffer, needed);
            });
            EXPECT_EQ(text.size(), used);
            paths.emplace_back(text.data());
        }
        EXPECT_EQ(Log->GetLastError(), error::NoMoreItems);
        return paths;
    }

    std::vector<BYTE> Property(const std::wstring& channel, int id) {
        const EvtHandle configuration = Held(Log->EvtOpenChannelConfig(nullptr, channel.c_str(), 0));
        EXPECT_TRUE(configuration) << Log->GetLastError();
        return Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
            return Log->EvtGetChannelConfigProperty(configuration.Get(),
                                                    static_cast<EVT_CHANNEL_CONFIG_PROPERTY_ID>(id), 0, size,
                                                    reinterpret_cast<EVT_VARIANT*>(buffer), used);
        });
    }

    EVT_VARIANT Number(const std::wstring& channel, int id) { return Values(Property(channel, id), 1)[0]; }

    std::wstring Text(const std::wstring& channel, int id) {
        const std::vector<BYTE> row = Property(channel, id);
        const EVT_VARIANT value = Values(row, 1)[0];
        return value.Type == EvtVarTypeString ? value.StringVal : L"?";
    }

    std::optional<EVT_VARIANT> LogInfo(const std::wstring& path, DWORD flags, int id) {
        const EvtHandle log = Held(Log->EvtOpenLog(nullptr, path.c_str(), flags));
        EVT_VARIANT value{};
        DWORD used = 0;
        if (!log ||
            Log->EvtGetLogInfo(log.Get(), static_cast<EVT_LOG_PROPERTY_ID>(id), sizeof value, &value, &used) == FALSE) {
            return std::nullopt;
        }
        return value;
    }
};

TEST_F(ChannelsTest, ComeFromFilesAndSettingsInAFixedOrder) {
    for (const wchar_t* channel : {L"System", L"application", L"Vendor-Tool/Admin", L"Vendor-Tool/Debug"}) {
        ASSERT_TRUE(Store.AddLog(L"localhost", channel, {}));
    }
    ASSERT_TRUE(WriteTextFile(Store.Folder() / "localhost" / "notes.txt", "no log"));
    ASSERT_TRUE(WriteTextFile(Store.Folder() / "localhost" / ".evtx", "no name"));
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost",
                                     "\xEF\xBB\xBF; what differs\r\n[SYSTEM]\r\nEnabled = No\r\nbroken line\r\n"
                                     "[Contoso-Jobs/Operational]\r\nEnabled=0\r\n[]\r\nEnabled=1\r\n[unclosed"));
    const std::vector<std::wstring> expected{L"application", L"Contoso-Jobs/Operational", L"System",
                                             L"Vendor-Tool/Admin", L"Vendor-Tool/Debug"};
    EXPECT_EQ(Paths(), expected);
    EXPECT_EQ(Number(L"System", EvtChannelConfigEnabled).BooleanVal, FALSE);
    EXPECT_EQ(Number(L"APPLICATION", EvtChannelConfigEnabled).BooleanVal, TRUE);
    EXPECT_TRUE(Events(Query(L"contoso-jobs/operational")).empty());
    // A log that appears later is found without listing the channels again.
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Late", NumberedEvents(1)));
    EXPECT_EQ(Events(Query(L"Late")).size(), 1u);
}

TEST_F(ChannelsTest, ConfigurationHasThePlatformsTypes) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Vendor-Tool/Analytic", {}));
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Security", {}));
    ASSERT_TRUE(
        Store.SetChannelsIni(L"localhost",
                             "[Security]\nMaxSize=1052672\nRetention=true\nAutoBackup=yes\nPublisher=Vendor-Tool"
                             "\nClassic=maybe\n[Vendor-Tool/Analytic]\nMaxSize=99999999999999999999\n"));
    ASSERT_TRUE(Store.AddManifest(
        L"localhost", L"tool",
        "<instrumentationManifest><instrumentation><events><provider name='Vendor-Tool' "
        "guid='{11111111-2222-3333-4444-555555555555}' symbol='T' resourceFileName='t' messageFileName='t'><channels>"
        "<channel chid='a' name='Vendor-Tool/Analytic' type='Analytic' enabled='true'/></channels></provider></events>"
        "</instrumentation></instrumentationManifest>"));
    const DWORD boolean = EvtVarTypeBoolean, number = EvtVarTypeUInt32, text = EvtVarTypeString, none = EvtVarTypeNull;
    const std::vector<DWORD> types{boolean,
                                   number,
                                   number,
                                   text,
                                   boolean,
                                   text,
                                   boolean,
                                   boolean,
                                   EvtVarTypeUInt64,
                                   text,
                                   none,
                                   none,
                                   none,
                                   number,
                                   number,
                                   number,
                                   number,
                                   number,
                                   number,
                                   EvtVarTypeString | EVT_VARIANT_TYPE_ARRAY,
                                   number};
    for (int id = 0; id < EvtChannelConfigPropertyIdEND; ++id) {
        EXPECT_EQ(Number(L"Security", id).Type, types[static_cast<std::size_t>(id)]) << id;
    }
    EXPECT_EQ(Number(L"Security", EvtChannelLoggingConfigMaxSize).UInt64Val, 1052672u);
    EXPECT_NE(Number(L"Security", EvtChannelLoggingConfigRetention).BooleanVal, FALSE);
    EXPECT_NE(Number(L"Security", EvtChannelLoggingConfigAutoBackup).BooleanVal, FALSE);
    EXPECT_NE(Number(L"Security", EvtChannelConfigClassicEventlog).BooleanVal, FALSE);
    EXPECT_EQ(Text(L"Security", EvtChannelConfigOwningPublisher), L"Vendor-Tool");
    EXPECT_NE(Text(L"Security", EvtChannelLoggingConfigLogFilePath).find(L"Security.evtx"), std::wstring::npos);

    const std::wstring tool = L"Vendor-Tool/Analytic";
    EXPECT_EQ(Number(tool, EvtChannelConfigType).UInt32Val, static_cast<DWORD>(EvtChannelTypeAnalytic));
    EXPECT_EQ(Number(tool, EvtChannelConfigClassicEventlog).BooleanVal, FALSE);
    EXPECT_EQ(Number(tool, EvtChannelLoggingConfigMaxSize).UInt64Val, 20971520u);
    EXPECT_EQ(Text(tool, EvtChannelConfigOwningPublisher), L"");
    const std::vector<BYTE> row = Property(tool, EvtChannelPublisherList);
    const EVT_VARIANT publishers = Values(row, 1)[0];
    ASSERT_EQ(publishers.Count, 1u);
    EXPECT_EQ(std::wstring(publishers.StringArr[0]), L"Vendor-Tool");
}

TEST_F(ChannelsTest, UnknownChannelsAndPropertiesAreRefused) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", {}));
    const auto errorOf = [&](LPCWSTR path, DWORD flags) {
        EXPECT_FALSE(Held(Log->EvtOpenChannelConfig(nullptr, path, flags)));
        return Log->GetLastError();
    };
    EXPECT_EQ(errorOf(L"Unknown", 0), error::ChannelNotFound);
    EXPECT_EQ(errorOf(L"", 0), error::ChannelNotFound);
    EXPECT_EQ(errorOf(L"../localhost/System", 0), error::ChannelNotFound);
    EXPECT_EQ(errorOf(std::wstring(300, L'x').c_str(), 0), error::InvalidChannelPath);
    EXPECT_EQ(errorOf(nullptr, 0), error::InvalidParameter);
    EXPECT_EQ(errorOf(L"System", 1), error::InvalidParameter);
    EXPECT_FALSE(Held(Log->EvtOpenChannelEnum(nullptr, 1)));
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
    const EvtHandle configuration = Held(Log->EvtOpenChannelConfig(nullptr, L"System", 0));
    DWORD used = 0;
    EXPECT_FALSE(
        Log->EvtGetChannelConfigProperty(configuration.Get(), EvtChannelConfigPropertyIdEND, 0, 0, nullptr, &used));
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
}

TEST_F(ChannelsTest, LogsReportTheirFiles) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(700), 42));
    ASSERT_TRUE(Store.SetChannelsIni(L"localhost", "[Empty/Operational]\n"));
    const std::wstring file = Store.LogPath(L"localhost", L"System").wstring();
    for (const auto& [path, flags] :
         {std::pair<std::wstring, DWORD>(L"system", EvtOpenChannelPath), {file, EvtOpenFilePath}}) {
        for (const int id : {EvtLogCreationTime, EvtLogLastAccessTime, EvtLogLastWriteTime}) {
            const auto time = LogInfo(path, flags, id);
            ASSERT_TRUE(time);
            EXPECT_EQ(time->Type, static_cast<DWORD>(EvtVarTypeFileTime));
            EXPECT_GT(time->FileTimeVal, FirstTestTime) << id;
        }
        EXPECT_EQ(LogInfo(path, flags, EvtLogFileSize)->UInt64Val, std::filesystem::file_size(file));
        EXPECT_EQ(LogInfo(path, flags, EvtLogAttributes)->Type, static_cast<DWORD>(EvtVarTypeUInt32));
        EXPECT_EQ(LogInfo(path, flags, EvtLogNumberOfLogRecords)->UInt64Val, 700u);
        EXPECT_EQ(LogInfo(path, flags, EvtLogOldestRecordNumber)->UInt64Val, 42u);
        EXPECT_EQ(LogInfo(path, flags, EvtLogFull)->Type, static_cast<DWORD>(EvtVarTypeBoolean));
    }
    EXPECT_EQ(LogInfo(L"Empty/Operational", EvtOpenChannelPath, EvtLogNumberOfLogRecords)->UInt64Val, 0u);
    EXPECT_EQ(LogInfo(L"Empty/Operational", EvtOpenChannelPath, EvtLogCreationTime)->Type,
              static_cast<DWORD>(EvtVarTypeNull));
    EXPECT_FALSE(LogInfo(L"Missing", EvtOpenChannelPath, 0));
    EXPECT_EQ(Log->GetLastError(), error::ChannelNotFound);
    EXPECT_FALSE(LogInfo(file, EvtOpenChannelPath | EvtOpenFilePath, 0));
    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
}

}  // namespace
}  // namespace corvina::test
