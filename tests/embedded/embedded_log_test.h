// What the tests of the embedded event log share: a store in a temporary folder, opened as computer "TESTPC", and the
// check that every handle was closed in the end.
#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "embedded/event_log_under_test.h"
#include "platform/error_codes.h"
#include "platform/evt_handle.h"
#include "support/event_log_fixture.h"

namespace corvina::test {

class EmbeddedLogTest : public testing::Test {
  protected:
    EmbeddedLogTest()
        : Store(Folder.Path() / "store"),
          UnderTest(OpenEventLogUnderTest(Store.Folder(), L"TESTPC")),
          Log(UnderTest.Log.get()) {}

    void TearDown() override { EXPECT_EQ(OpenHandleCount(), 0u); }

    std::size_t OpenHandleCount() const { return UnderTest.OpenHandleCount(); }

    EvtHandle Held(EVT_HANDLE handle) { return EvtHandle(*Log, handle); }

    EvtHandle OpenSession(std::wstring server, std::wstring user = {}, std::wstring password = {}) {
        EVT_RPC_LOGIN login{server.data(), user.empty() ? nullptr : user.data(), nullptr,
                            password.empty() ? nullptr : password.data(), EvtRpcLoginAuthNegotiate};
        return Held(Log->EvtOpenSession(EvtRpcLogin, &login, 0, 0));
    }

    EvtHandle Query(const std::wstring& channel, LPCWSTR query = nullptr, DWORD flags = 0x1001) {
        return Held(Log->EvtQuery(nullptr, channel.c_str(), query, flags));
    }

    // All events of a query, in batches of ten.
    std::vector<EvtHandle> Events(const EvtHandle& query) {
        std::vector<EvtHandle> events;
        EVT_HANDLE batch[10];
        DWORD returned = 0;
        while (Log->EvtNext(query.Get(), 10, batch, INFINITE, 0, &returned) != FALSE) {
            for (DWORD index = 0; index < returned; ++index) {
                events.push_back(Held(batch[index]));
            }
        }
        EXPECT_EQ(Log->GetLastError(), error::NoMoreItems);
        return events;
    }

    // The first event of a channel's log.
    EvtHandle FirstEvent(const std::wstring& channel) {
        const EvtHandle query = Query(channel);
        EVT_HANDLE event = nullptr;
        DWORD returned = 0;
        EXPECT_NE(Log->EvtNext(query.Get(), 1, &event, INFINITE, 0, &returned), FALSE) << Log->GetLastError();
        return Held(event);
    }

    // Calls a function that fills a buffer as the platform's callers do: with nothing, with one unit too little, and
    // with what it asks for. The first two must fail with the same size and leave the buffer alone. `Call` takes a
    // size, a buffer of `Unit` and a place for the needed size; the unit is what sizes are counted in.
    template <typename Unit, typename Call>
    std::vector<Unit> Filled(Call call, std::uint32_t expectedError = error::Success) {
        DWORD needed = 0;
        EXPECT_EQ(call(0, nullptr, &needed), FALSE);
        EXPECT_EQ(Log->GetLastError(), error::InsufficientBuffer);
        if (Log->GetLastError() != error::InsufficientBuffer || needed == 0) {
            return {};
        }
        const std::vector<Unit> untouched(needed, static_cast<Unit>(0x5A));
        std::vector<Unit> buffer = untouched;
        DWORD again = 0;
        EXPECT_EQ(call(needed - 1, buffer.data(), &again), FALSE);
        EXPECT_EQ(Log->GetLastError(), error::InsufficientBuffer);
        EXPECT_EQ(again, needed);
        EXPECT_EQ(buffer, untouched);
        EXPECT_EQ(call(needed, buffer.data(), &again), expectedError == error::Success ? TRUE : FALSE);
        if (expectedError != error::Success) {
            EXPECT_EQ(Log->GetLastError(), expectedError);
        }
        EXPECT_EQ(again, needed);
        return buffer;
    }

    std::vector<BYTE> SystemRow(const EvtHandle& event) {
        const EvtHandle context = Held(Log->EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem));
        return Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
            DWORD count = 0;
            return Log->EvtRender(context.Get(), event.Get(), EvtRenderEventValues, size, buffer, used, &count);
        });
    }

    // The values at the front of a buffer. The records of `row` point into it.
    static std::vector<EVT_VARIANT> Values(const std::vector<BYTE>& row, std::size_t count) {
        std::vector<EVT_VARIANT> values(count);
        if (row.size() >= count * sizeof(EVT_VARIANT)) {
            std::copy_n(row.data(), count * sizeof(EVT_VARIANT), reinterpret_cast<BYTE*>(values.data()));
        }
        return values;
    }

    std::uint16_t EventId(const EvtHandle& event) {
        const std::vector<BYTE> row = SystemRow(event);
        return Values(row, EvtSystemPropertyIdEND)[EvtSystemEventID].UInt16Val;
    }

    std::vector<std::uint16_t> EventIds(const EvtHandle& query) {
        std::vector<std::uint16_t> ids;
        for (const EvtHandle& event : Events(query)) {
            ids.push_back(EventId(event));
        }
        return ids;
    }

    TemporaryFolder Folder;
    TestStore Store;
    EventLogUnderTest UnderTest;
    EventLogApi* Log;
};

}  // namespace corvina::test
