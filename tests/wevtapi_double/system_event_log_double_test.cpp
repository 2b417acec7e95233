// The system's event log as the program reaches it, over the double of wevtapi.dll: whether every argument, result and
// error gets through. What the operations do over a store is tested with the embedded event log's own tests, which run
// over the double too.
#include <cstring>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "platform/error_codes.h"
#include "platform/evt_handle.h"
#include "support/event_log_fixture.h"
#include "wevtapi_double/double_access.h"

namespace corvina::test {
namespace {

class SystemEventLogDoubleTest : public testing::Test {
  protected:
    void SetUp() override {
        answerNextCall_ = FindDoubleFunction<AnswerNextCallFunction>(AnswerNextCallName);
        getLastCall_ = FindDoubleFunction<GetLastCallFunction>(GetLastCallName);
        ASSERT_NE(answerNextCall_, nullptr) << "the double is not what was loaded";
        ASSERT_NE(getLastCall_, nullptr);
        SetDoubleStore(Store.Folder().wstring(), L"TESTPC");
    }

    void AnswerNextCall(std::uint64_t result, DWORD lastError) { answerNextCall_(result, lastError); }

    RecordedCall LastCall() const {
        RecordedCall call{};
        getLastCall_(&call);
        return call;
    }

    // Calls an operation twice with arguments that fill their types and differ from each other, once succeeding and
    // once failing.
    template <typename Result, typename... Parameters>
    void ExpectPassedOn(EventLogApi& log, const char* name, Result (EventLogApi::*operation)(Parameters...)) {
        CallWithArguments(log, name, operation, std::index_sequence_for<Parameters...>());
    }

    TemporaryFolder Folder;
    TestStore Store{Folder.Path() / "store"};

  private:
    template <typename Argument>
    static Argument Distinct(std::size_t index) {
        const std::uint64_t plain = DistinctPlain<Argument>(index);
        Argument argument;
        std::memcpy(&argument, &plain, sizeof argument);
        return argument;
    }

    template <typename Argument>
    static std::uint64_t DistinctPlain(std::size_t index) {
        const std::uint64_t all = 0xFEDC'BA98'8765'4321 + index * 0x0101'0101'0101'0101;
        return sizeof(Argument) == sizeof all ? all : all & 0xFFFF'FFFF;
    }

    template <typename Result, typename... Parameters, std::size_t... Index>
    void CallWithArguments(EventLogApi& log, const char* name, Result (EventLogApi::*operation)(Parameters...),
                           std::index_sequence<Index...>) {
        const std::vector<std::uint64_t> expected{DistinctPlain<Parameters>(Index)...};
        for (const std::uint64_t answer : {std::uint64_t{0x8123'4567'89AB'CDEF}, std::uint64_t{0}}) {
            const auto reason = static_cast<DWORD>(0xC000'0000 + expected.size());
            AnswerNextCall(answer, reason);
            const Result result = (log.*operation)(Distinct<Parameters>(Index)...);
            Result wanted;
            std::memcpy(&wanted, &answer, sizeof wanted);
            EXPECT_EQ(result, wanted) << name;
            const RecordedCall call = LastCall();
            EXPECT_STREQ(call.Operation, name);
            EXPECT_EQ(std::vector(call.Arguments, call.Arguments + call.ArgumentCount), expected) << name;
            if (answer == 0) {
                ::SetLastError(error::OutOfMemory);  // what other calls leave behind does not change the reason
                EXPECT_EQ(log.GetLastError(), reason) << name;
            }
        }
    }

    SystemLibrary library_{L"wevtapi.dll"};  // stays loaded between the event logs of a test
    AnswerNextCallFunction answerNextCall_ = nullptr;
    GetLastCallFunction getLastCall_ = nullptr;
};

TEST_F(SystemEventLogDoubleTest, EveryOperationPassesOnItsArgumentsResultAndError) {
    SystemEventLog log;
    using Api = EventLogApi;
    ExpectPassedOn(log, "EvtOpenSession", &Api::EvtOpenSession);
    ExpectPassedOn(log, "EvtClose", &Api::EvtClose);
    ExpectPassedOn(log, "EvtOpenChannelEnum", &Api::EvtOpenChannelEnum);
    ExpectPassedOn(log, "EvtNextChannelPath", &Api::EvtNextChannelPath);
    ExpectPassedOn(log, "EvtOpenChannelConfig", &Api::EvtOpenChannelConfig);
    ExpectPassedOn(log, "EvtGetChannelConfigProperty", &Api::EvtGetChannelConfigProperty);
    ExpectPassedOn(log, "EvtSetChannelConfigProperty", &Api::EvtSetChannelConfigProperty);
    ExpectPassedOn(log, "EvtSaveChannelConfig", &Api::EvtSaveChannelConfig);
    ExpectPassedOn(log, "EvtQuery", &Api::EvtQuery);
    ExpectPassedOn(log, "EvtGetQueryInfo", &Api::EvtGetQueryInfo);
    ExpectPassedOn(log, "EvtNext", &Api::EvtNext);
    ExpectPassedOn(log, "EvtCreateRenderContext", &Api::EvtCreateRenderContext);
    ExpectPassedOn(log, "EvtRender", &Api::EvtRender);
    ExpectPassedOn(log, "EvtOpenPublisherMetadata", &Api::EvtOpenPublisherMetadata);
    ExpectPassedOn(log, "EvtFormatMessage", &Api::EvtFormatMessage);
    ExpectPassedOn(log, "EvtOpenPublisherEnum", &Api::EvtOpenPublisherEnum);
    ExpectPassedOn(log, "EvtNextPublisherId", &Api::EvtNextPublisherId);
    ExpectPassedOn(log, "EvtGetPublisherMetadataProperty", &Api::EvtGetPublisherMetadataProperty);
    ExpectPassedOn(log, "EvtGetObjectArraySize", &Api::EvtGetObjectArraySize);
    ExpectPassedOn(log, "EvtGetObjectArrayProperty", &Api::EvtGetObjectArrayProperty);
    ExpectPassedOn(log, "EvtOpenEventMetadataEnum", &Api::EvtOpenEventMetadataEnum);
    ExpectPassedOn(log, "EvtNextEventMetadata", &Api::EvtNextEventMetadata);
    ExpectPassedOn(log, "EvtGetEventMetadataProperty", &Api::EvtGetEventMetadataProperty);
    ExpectPassedOn(log, "EvtOpenLog", &Api::EvtOpenLog);
    ExpectPassedOn(log, "EvtGetLogInfo", &Api::EvtGetLogInfo);
    ExpectPassedOn(log, "EvtExportLog", &Api::EvtExportLog);
    ExpectPassedOn(log, "EvtClearLog", &Api::EvtClearLog);
}

TEST_F(SystemEventLogDoubleTest, OnlyAServiceThatAnswersCountsAsImplemented) {
    constexpr DWORD LastErrorOfTheProbe = 0x2FFFFFFF;
    const auto isImplementedWhen = [this](std::uint64_t result, DWORD lastError) {
        AnswerNextCall(result, lastError);
        const bool isImplemented = SystemEventLog().IsImplemented();
        EXPECT_STREQ(LastCall().Operation, result != 0 ? "EvtClose" : "EvtOpenChannelEnum");
        return isImplemented;
    };
    EXPECT_TRUE(isImplementedWhen(0x1234, 0));
    EXPECT_TRUE(isImplementedWhen(0, error::RpcServerUnavailable)) << "stopped";
    EXPECT_TRUE(isImplementedWhen(0, error::AccessDenied)) << "refused";
    EXPECT_FALSE(isImplementedWhen(0, error::CallNotImplemented));
    EXPECT_FALSE(isImplementedWhen(0, LastErrorOfTheProbe)) << "a function without a body";
}

TEST_F(SystemEventLogDoubleTest, NothingIsCalledOfALibraryThatIsNotImplemented) {
    SetEnvironmentVariableW(StoreVariable, nullptr);
    SystemEventLog log;
    EXPECT_FALSE(log.IsImplemented());
    EXPECT_EQ(log.EvtQuery(nullptr, L"System", nullptr, EvtQueryChannelPath), nullptr);
    EXPECT_EQ(log.GetLastError(), error::CallNotImplemented);
    EXPECT_FALSE(log.EvtClose(nullptr));
    EXPECT_STREQ(LastCall().Operation, "EvtOpenChannelEnum");
}

// One road from the session to the texts of an event, with the buffers as the program hands them in.
TEST_F(SystemEventLogDoubleTest, AnEventIsReadThroughTheSystemsFunctions) {
    TestEvent event;
    event.Provider = L"Vendor-Tool";
    event.Data = {{L"Name", L"\u00C4 \u65E5\u672C"}};
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", {event}));
    ASSERT_TRUE(Store.AddManifest(L"localhost", L"tool", SimpleManifest("Vendor-Tool", {{1, "Hello %1"}})));
    SystemEventLog log;
    ASSERT_TRUE(log.IsImplemented());
    const auto held = [&log](EVT_HANDLE handle) { return EvtHandle(log, handle); };
    {
        std::wstring server = L"testpc";
        EVT_RPC_LOGIN login{server.data(), nullptr, nullptr, nullptr, EvtRpcLoginAuthNegotiate};
        const EvtHandle session = held(log.EvtOpenSession(EvtRpcLogin, &login, 0, 0));
        ASSERT_TRUE(session) << log.GetLastError();
        const EvtHandle query = held(log.EvtQuery(session.Get(), L"System", nullptr, 0x1201));
        EVT_HANDLE events[10] = {};
        DWORD returned = 0;
        ASSERT_TRUE(log.EvtNext(query.Get(), 10, events, INFINITE, 0, &returned)) << log.GetLastError();
        ASSERT_EQ(returned, 1u);
        const EvtHandle first = held(events[0]);
        EXPECT_FALSE(log.EvtNext(query.Get(), 10, events, INFINITE, 0, &returned));
        EXPECT_EQ(log.GetLastError(), error::NoMoreItems);

        DWORD size = 0;
        DWORD count = 0;
        EXPECT_FALSE(log.EvtRender(nullptr, first.Get(), EvtRenderEventXml, 0, nullptr, &size, &count));
        EXPECT_EQ(log.GetLastError(), error::InsufficientBuffer);
        std::wstring xml(size / sizeof(wchar_t), L'\0');
        ASSERT_TRUE(log.EvtRender(nullptr, first.Get(), EvtRenderEventXml, size, xml.data(), &size, &count));
        EXPECT_NE(xml.find(L"<Data Name='Name'>\u00C4 \u65E5\u672C</Data>"), std::wstring::npos);

        const EvtHandle publisher = held(log.EvtOpenPublisherMetadata(session.Get(), L"Vendor-Tool", nullptr, 0, 0));
        wchar_t text[40] = {};
        ASSERT_TRUE(
            log.EvtFormatMessage(publisher.Get(), first.Get(), 0, 0, nullptr, EvtFormatMessageEvent, 40, text, &size));
        EXPECT_EQ(std::wstring(text), L"Hello \u00C4 \u65E5\u672C");
        EXPECT_EQ(DoubleOpenHandleCount(), 4u);
    }
    EXPECT_EQ(DoubleOpenHandleCount(), 0u);
}

}  // namespace
}  // namespace corvina::test
