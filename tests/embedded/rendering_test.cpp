// Events as rows of values and as XML.
#include <cstring>

#include "base/identifiers.h"
#include "embedded/embedded_log_test.h"

namespace corvina::test {
namespace {

class RenderingTest : public EmbeddedLogTest {
  protected:
    std::wstring Xml(const EvtHandle& event) {
        const std::vector<BYTE> bytes = Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
            DWORD count = 77;
            const BOOL done = Log->EvtRender(nullptr, event.Get(), EvtRenderEventXml, size, buffer, used, &count);
            EXPECT_EQ(count, 0u);
            return done;
        });
        std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
        EXPECT_EQ(text.back(), L'\0');
        text.pop_back();
        return text;
    }
};

TEST_F(RenderingTest, RowHoldsEveryValueInItsType) {
    evtx::WriterEvent event = MakeWriterEvent({}, 0);
    evtx::SystemValues& system = event.System;
    const auto guid = [](const wchar_t* text) { return *ParseGuid(text); };
    const std::wstring provider = L"{01020304-0506-0708-090A-0B0C0D0E0F10}";
    const std::wstring activity = L"{11111111-2222-3333-4444-555555555555}";
    const std::wstring related = L"{AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE}";
    system.ProviderName = L"Anbieter-Größe";
    system.ProviderGuid = guid(provider.c_str());
    system.EventId = 0xFFFE;
    system.Version = 3;
    system.Level = 2;
    system.Task = 12290;
    system.Opcode = 11;
    system.Keywords = 0x8020000000000001;
    system.EventRecordId = 0x123456789;
    system.ActivityId = guid(activity.c_str());
    system.RelatedActivityId = guid(related.c_str());
    system.ProcessId = 0xFFFFFFF0;
    system.ThreadId = 8;
    system.Channel = L"System";
    system.Computer = L"PC.example.org";
    const auto sid = *ParseSid(L"S-1-5-21-1-2-3-1001");
    system.UserSid.assign(sid.begin(), sid.end());
    std::filesystem::create_directories(Store.Folder() / "localhost");
    evtx::LogFileWriter writer(Store.LogPath(L"localhost", L"System"));
    ASSERT_EQ(writer.Add(event), 0u);
    ASSERT_EQ(writer.Finish(), 0u);

    const EvtHandle handle = FirstEvent(L"System");
    const std::vector<BYTE> row = SystemRow(handle);
    const std::vector<EVT_VARIANT> values = Values(row, EvtSystemPropertyIdEND);
    const std::vector<DWORD> types{
        EvtVarTypeString, EvtVarTypeGuid,     EvtVarTypeUInt16,   EvtVarTypeNull,   EvtVarTypeByte, EvtVarTypeUInt16,
        EvtVarTypeByte,   EvtVarTypeHexInt64, EvtVarTypeFileTime, EvtVarTypeUInt64, EvtVarTypeGuid, EvtVarTypeGuid,
        EvtVarTypeUInt32, EvtVarTypeUInt32,   EvtVarTypeString,   EvtVarTypeString, EvtVarTypeSid,  EvtVarTypeByte};
    for (std::size_t index = 0; index < types.size(); ++index) {
        EXPECT_EQ(values[index].Type, types[index]) << index;
    }
    const auto guidText = [&](EVT_SYSTEM_PROPERTY_ID property) {
        GuidBytes bytes;
        std::memcpy(bytes.data(), values[property].GuidVal, bytes.size());
        return GuidText(bytes);
    };
    EXPECT_EQ(std::wstring(values[EvtSystemProviderName].StringVal), L"Anbieter-Größe");
    EXPECT_EQ(guidText(EvtSystemProviderGuid), provider);
    EXPECT_EQ(values[EvtSystemEventID].UInt16Val, 0xFFFE);
    EXPECT_EQ(values[EvtSystemLevel].ByteVal, 2);
    EXPECT_EQ(values[EvtSystemTask].UInt16Val, 12290);
    EXPECT_EQ(values[EvtSystemOpcode].ByteVal, 11);
    EXPECT_EQ(values[EvtSystemKeywords].UInt64Val, 0x8020000000000001);
    EXPECT_EQ(values[EvtSystemTimeCreated].FileTimeVal, FirstTestTime);
    EXPECT_EQ(values[EvtSystemEventRecordId].UInt64Val, 0x123456789u);
    EXPECT_EQ(guidText(EvtSystemActivityID), activity);
    EXPECT_EQ(guidText(EvtSystemRelatedActivityID), related);
    EXPECT_EQ(values[EvtSystemProcessID].UInt32Val, 0xFFFFFFF0);
    EXPECT_EQ(values[EvtSystemThreadID].UInt32Val, 8u);
    EXPECT_EQ(std::wstring(values[EvtSystemChannel].StringVal), L"System");
    EXPECT_EQ(std::wstring(values[EvtSystemComputer].StringVal), L"PC.example.org");
    EXPECT_EQ(SidText({static_cast<const std::byte*>(values[EvtSystemUserID].SidVal), sid.size()}),
              L"S-1-5-21-1-2-3-1001");
    EXPECT_EQ(values[EvtSystemVersion].ByteVal, 3);
}

TEST_F(RenderingTest, AbsentValuesAreNullAndClassicEventsHaveQualifiers) {
    TestEvent event;
    event.Qualifiers = 0xC000;
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", {event}));
    const std::vector<BYTE> row = SystemRow(FirstEvent(L"System"));
    const std::vector<EVT_VARIANT> values = Values(row, EvtSystemPropertyIdEND);
    EXPECT_EQ(values[EvtSystemQualifiers].Type, static_cast<DWORD>(EvtVarTypeUInt16));
    EXPECT_EQ(values[EvtSystemQualifiers].UInt16Val, 0xC000);
    for (const int absent : {EvtSystemProviderGuid, EvtSystemActivityID, EvtSystemRelatedActivityID, EvtSystemUserID}) {
        EXPECT_EQ(values[static_cast<std::size_t>(absent)].Type, static_cast<DWORD>(EvtVarTypeNull)) << absent;
    }
}

TEST_F(RenderingTest, XmlIsTheWholeEvent) {
    std::vector<TestEvent> events = NumberedEvents(2);
    events[0].Data = {{L"Path", L"C:\\a <b> & 'c'"}};
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", events));
    const EvtHandle first = FirstEvent(L"System");
    const std::wstring xml = Xml(first);
    EXPECT_EQ(xml.rfind(L"<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System>", 0), 0u);
    EXPECT_NE(xml.find(L"<EventRecordID>1</EventRecordID>"), std::wstring::npos);
    EXPECT_NE(xml.find(L"C:\\a &lt;b&gt; &amp; "), std::wstring::npos);
    EXPECT_EQ(xml.substr(xml.size() - 8), L"</Event>");
    // Turning from one event to another and back gives each its own.
    const std::vector<EvtHandle> all = Events(Query(L"System"));
    EXPECT_NE(Xml(all[1]).find(L"<EventRecordID>2</EventRecordID>"), std::wstring::npos);
    EXPECT_EQ(Xml(all[0]), xml);
}

TEST_F(RenderingTest, ContextsAndFlagsAreChecked) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(1)));
    const EvtHandle event = FirstEvent(L"System");
    const auto contextError = [&](DWORD count, DWORD flags) {
        LPCWSTR path = L"Event/System/EventID";
        EXPECT_FALSE(Held(Log->EvtCreateRenderContext(count, count == 0 ? nullptr : &path, flags)));
        return Log->GetLastError();
    };
    EXPECT_EQ(contextError(1, EvtRenderContextSystem), error::InvalidParameter);
    EXPECT_EQ(contextError(0, 9), error::InvalidParameter);
    EXPECT_EQ(contextError(1, EvtRenderContextValues), error::NotSupported);
    const EvtHandle context = Held(Log->EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem));
    DWORD used = 0;
    DWORD count = 0;
    const auto renderError = [&](EVT_HANDLE with, EVT_HANDLE what, DWORD flags, DWORD* needed) {
        EXPECT_EQ(Log->EvtRender(with, what, flags, 0, nullptr, needed, &count), FALSE);
        return Log->GetLastError();
    };
    EXPECT_EQ(renderError(nullptr, event.Get(), EvtRenderEventValues, &used), error::InvalidHandle);
    EXPECT_EQ(renderError(context.Get(), context.Get(), EvtRenderEventValues, &used), error::InvalidHandle);
    EXPECT_EQ(renderError(context.Get(), event.Get(), EvtRenderBookmark, &used), error::NotSupported);
    EXPECT_EQ(renderError(context.Get(), event.Get(), 3, &used), error::InvalidParameter);
    EXPECT_EQ(renderError(context.Get(), event.Get(), EvtRenderEventValues, nullptr), error::InvalidParameter);
}

}  // namespace
}  // namespace corvina::test
