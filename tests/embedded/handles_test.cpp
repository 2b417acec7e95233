// Handles: what is not an open handle of the right kind is refused; failures on the way are passed on.
#include <set>

#include "embedded/embedded_event_log.h"
#include "embedded/embedded_log_test.h"
#include "support/failing_event_log.h"

namespace corvina::test {
namespace {

class HandlesTest : public EmbeddedLogTest {
  protected:
    void SetUp() override { ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(30))); }

    // Every operation that takes a handle, called with this one; true when all refuse it as no handle of theirs.
    void ExpectRefusedByAll(EVT_HANDLE handle, bool mayBeSession) {
        DWORD used = 0;
        DWORD count = 0;
        EVT_HANDLE event = nullptr;
        const auto refused = [&](bool done, const char* operation) {
            EXPECT_FALSE(done) << operation;
            EXPECT_EQ(Log->GetLastError(), error::InvalidHandle) << operation;
        };
        refused(Log->EvtNextChannelPath(handle, 0, nullptr, &used), "EvtNextChannelPath");
        refused(Log->EvtGetChannelConfigProperty(handle, EvtChannelConfigEnabled, 0, 0, nullptr, &used), "config");
        refused(Log->EvtGetQueryInfo(handle, EvtQueryNames, 0, nullptr, &used), "EvtGetQueryInfo");
        refused(Log->EvtNext(handle, 1, &event, 0, 0, &count), "EvtNext");
        refused(Log->EvtRender(nullptr, handle, EvtRenderEventXml, 0, nullptr, &used, &count), "EvtRender");
        refused(Log->EvtGetLogInfo(handle, EvtLogFileSize, 0, nullptr, &used), "EvtGetLogInfo");
        refused(Log->EvtFormatMessage(handle, nullptr, 0, 0, nullptr, EvtFormatMessageProvider, 0, nullptr, &used),
                "EvtFormatMessage");
        if (!mayBeSession) {
            refused(Log->EvtOpenChannelEnum(handle, 0) != nullptr, "EvtOpenChannelEnum");
            refused(Log->EvtOpenChannelConfig(handle, L"System", 0) != nullptr, "EvtOpenChannelConfig");
            refused(Log->EvtQuery(handle, L"System", nullptr, 0x1201) != nullptr, "EvtQuery");
            refused(Log->EvtOpenPublisherMetadata(handle, L"X", nullptr, 0, 0) != nullptr, "EvtOpenPublisherMetadata");
            refused(Log->EvtOpenLog(handle, L"System", EvtOpenChannelPath) != nullptr, "EvtOpenLog");
        }
    }
};

TEST_F(HandlesTest, WhatIsNoHandleIsRefused) {
    EvtHandle query = Query(L"System");
    EVT_HANDLE stale = query.Get();
    query.Close();
    const EvtHandle next = Query(L"System");
    EXPECT_NE(next.Get(), stale);
    int local = 0;
    const auto other = std::make_unique<embedded::EmbeddedEventLog>(Store.Folder(), L"TESTPC");
    EVT_HANDLE foreign = other->EvtQuery(nullptr, L"System", nullptr, 0x1201);
    ASSERT_NE(foreign, nullptr);
    for (EVT_HANDLE handle : {stale, static_cast<EVT_HANDLE>(&local), reinterpret_cast<EVT_HANDLE>(~std::uintptr_t{0}),
                              reinterpret_cast<EVT_HANDLE>(std::uintptr_t{1}), foreign}) {
        ExpectRefusedByAll(handle, false);
        EXPECT_EQ(Log->EvtClose(handle), FALSE);
        EXPECT_EQ(Log->GetLastError(), error::InvalidHandle);
    }
    EXPECT_EQ(Log->EvtClose(nullptr), FALSE);
    EXPECT_TRUE(other->EvtClose(foreign));
}

TEST_F(HandlesTest, KindsAreNotMistakenForEachOther) {
    const EvtHandle session = OpenSession(L"localhost");
    ExpectRefusedByAll(session.Get(), true);
    ExpectRefusedByAll(Held(Log->EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem)).Get(), false);
}

TEST_F(HandlesTest, EventsOpenAtTheSameTimeHaveHandlesOfTheirOwn) {
    std::set<EVT_HANDLE> seen;
    for (int round = 0; round < 3; ++round) {
        const std::vector<EvtHandle> events = Events(Query(L"System"));
        EXPECT_EQ(OpenHandleCount(), events.size());
        for (const EvtHandle& event : events) {
            EXPECT_TRUE(seen.insert(event.Get()).second) << "a closed handle was given out again";
        }
    }
    EXPECT_EQ(seen.size(), 90u);
}

TEST_F(HandlesTest, DecoratorFailsTheChosenCallOnly) {
    FailingEventLog failing(*Log);
    failing.FailCall(Operation::Next, 2, 1717);
    EVT_HANDLE query = failing.EvtQuery(nullptr, L"System", nullptr, 0x1201);
    ASSERT_NE(query, nullptr);
    std::vector<EVT_HANDLE> events(10);
    DWORD returned = 0;
    EXPECT_TRUE(failing.EvtNext(query, 10, events.data(), INFINITE, 0, &returned));
    EXPECT_EQ(failing.OpenHandles(), 11u);
    EXPECT_FALSE(failing.EvtNext(query, 10, events.data(), INFINITE, 0, &returned));
    EXPECT_EQ(failing.GetLastError(), 1717u);
    EXPECT_EQ(failing.Calls(Operation::Next), 2u);
    ASSERT_EQ(failing.Queries.size(), 1u);
    EXPECT_EQ(failing.Queries[0].Flags, 0x1201u);
    EXPECT_EQ(failing.Queries[0].Query, std::nullopt);
    failing.FailAlways(Operation::OpenSession, error::AccessDenied);
    EVT_RPC_LOGIN login{};
    EXPECT_EQ(failing.EvtOpenSession(EvtRpcLogin, &login, 0, 0), nullptr);
    EXPECT_EQ(failing.GetLastError(), error::AccessDenied);
    for (EVT_HANDLE event : events) {
        EXPECT_TRUE(failing.EvtClose(event));
    }
    EXPECT_TRUE(failing.EvtClose(query));
    EXPECT_EQ(failing.OpenedHandles(), failing.ClosedHandles());
    EXPECT_EQ(failing.OpenHandles(), 0u);
}

}  // namespace
}  // namespace corvina::test
