#include "platform/win32/system_event_log.h"

#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "platform/error_codes.h"

namespace corvina {
namespace {

TEST(SystemEventLogTest, WithoutAServiceEveryOperationFailsAndNothingIsCalled) {
    SystemEventLog log;
    if (log.IsImplemented()) {
        GTEST_SKIP() << "this system has an event log service";
    }
    const auto rpc = EvtRpcLogin;
    EVT_HANDLE event = nullptr;
    const std::vector<std::function<bool()>> operations = {
        [&] { return log.EvtOpenSession(rpc, nullptr, 0, 0) != nullptr; },
        [&] { return log.EvtClose(nullptr) != FALSE; },
        [&] { return log.EvtOpenChannelEnum(nullptr, 0) != nullptr; },
        [&] { return log.EvtNextChannelPath(nullptr, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtOpenChannelConfig(nullptr, L"System", 0) != nullptr; },
        [&] {
            return log.EvtGetChannelConfigProperty(nullptr, EvtChannelConfigEnabled, 0, 0, nullptr, nullptr) != FALSE;
        },
        [&] { return log.EvtSetChannelConfigProperty(nullptr, EvtChannelConfigEnabled, 0, nullptr) != FALSE; },
        [&] { return log.EvtSaveChannelConfig(nullptr, 0) != FALSE; },
        [&] { return log.EvtQuery(nullptr, L"System", nullptr, EvtQueryChannelPath) != nullptr; },
        [&] { return log.EvtGetQueryInfo(nullptr, EvtQueryNames, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtNext(nullptr, 1, &event, INFINITE, 0, nullptr) != FALSE; },
        [&] { return log.EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem) != nullptr; },
        [&] { return log.EvtRender(nullptr, nullptr, EvtRenderEventXml, 0, nullptr, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtOpenPublisherMetadata(nullptr, L"Publisher", nullptr, 0, 0) != nullptr; },
        [&] { return log.EvtFormatMessage(nullptr, nullptr, 0, 0, nullptr, 1, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtOpenPublisherEnum(nullptr, 0) != nullptr; },
        [&] { return log.EvtNextPublisherId(nullptr, 0, nullptr, nullptr) != FALSE; },
        [&] {
            return log.EvtGetPublisherMetadataProperty(nullptr, EvtPublisherMetadataTasks, 0, 0, nullptr, nullptr) !=
                   FALSE;
        },
        [&] { return log.EvtGetObjectArraySize(nullptr, nullptr) != FALSE; },
        [&] { return log.EvtGetObjectArrayProperty(nullptr, 0, 0, 0, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtOpenEventMetadataEnum(nullptr, 0) != nullptr; },
        [&] { return log.EvtNextEventMetadata(nullptr, 0) != nullptr; },
        [&] { return log.EvtGetEventMetadataProperty(nullptr, EventMetadataEventID, 0, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtOpenLog(nullptr, L"System", EvtOpenChannelPath) != nullptr; },
        [&] { return log.EvtGetLogInfo(nullptr, EvtLogFileSize, 0, nullptr, nullptr) != FALSE; },
        [&] { return log.EvtExportLog(nullptr, L"System", nullptr, L"x.evtx", EvtExportLogChannelPath) != FALSE; },
        [&] { return log.EvtClearLog(nullptr, L"System", nullptr, 0) != FALSE; },
    };
    for (std::size_t index = 0; index < operations.size(); ++index) {
        EXPECT_FALSE(operations[index]()) << index;
        EXPECT_EQ(log.GetLastError(), error::CallNotImplemented) << index;
    }
}

TEST(SystemEventLogTest, WithAServiceOperationsReachItAndTellItsErrors) {
    SystemEventLog log;
    if (!log.IsImplemented()) {
        GTEST_SKIP() << "this system has no event log service";
    }
    const EVT_HANDLE channels = log.EvtOpenChannelEnum(nullptr, 0);
    ASSERT_NE(channels, nullptr) << log.GetLastError();
    DWORD needed = 0;
    EXPECT_FALSE(log.EvtNextChannelPath(channels, 0, nullptr, &needed));
    EXPECT_EQ(log.GetLastError(), error::InsufficientBuffer);
    // What other calls leave behind does not change the reason.
    ::SetLastError(error::AccessDenied);
    EXPECT_EQ(log.GetLastError(), error::InsufficientBuffer);
    EXPECT_TRUE(log.EvtClose(channels));
    EXPECT_EQ(log.EvtQuery(nullptr, L"No such channel", nullptr, EvtQueryChannelPath), nullptr);
    EXPECT_EQ(log.GetLastError(), error::ChannelNotFound);
}

}  // namespace
}  // namespace corvina
