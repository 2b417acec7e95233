// The display texts of events and where they come from.
#include "embedded/forwarded_log.h"
#include "embedded/message_asking_test.h"

namespace corvina::test {
namespace {

constexpr std::string_view ToolManifest = R"xml(<?xml version="1.0" encoding="utf-8"?>
<instrumentationManifest xmlns="http://schemas.microsoft.com/win/2004/08/events"><instrumentation><events>
<provider name="Vendor-Tool" guid="{11111111-2222-3333-4444-555555555555}" symbol="TOOL" resourceFileName="t.dll"
    messageFileName="t.dll" message="$(string.Provider)">
  <levels><level name="Vendor:Chatty" value="16" message="$(string.Chatty)"/></levels>
  <tasks><task name="Copy" value="7" message="$(string.Copy)"/></tasks>
  <opcodes><opcode name="Verify" value="11" message="$(string.Verify)"/></opcodes>
  <keywords><keyword name="Disk" mask="0x1" message="$(string.Disk)"/>
            <keyword name="Net" mask="0x2" message="$(string.Net)"/></keywords>
  <events><event value="1" version="0" level="win:Error" task="Copy" opcode="Verify" keywords="Disk Net"
                 message="$(string.Copied)"/>
          <event value="2" version="0"/></events>
</provider></events></instrumentation>
<localization><resources culture="en-US"><stringTable>
  <string id="Provider" value="Vendor's tool"/><string id="Chatty" value="Chatty level"/>
  <string id="Copy" value="Copying"/><string id="Verify" value="Verifying"/>
  <string id="Disk" value="Disk work"/><string id="Net" value="Network work"/>
  <string id="Copied" value="Copied %1 to %2.%nSize: %3"/>
</stringTable></resources></localization></instrumentationManifest>)xml";

TestEvent CopiedEvent(std::vector<std::pair<std::wstring, std::wstring>> data) {
    TestEvent event;
    event.Provider = L"Vendor-Tool";
    event.Level = 2;
    event.Task = 7;
    event.Opcode = 11;
    event.Keywords = 0x8000000000000003;
    event.Data = std::move(data);
    return event;
}

class MessagesTest : public MessageAskingTest {
  protected:
    void SetUp() override {
        TestEvent silent = CopiedEvent({});
        silent.Id = 2;
        TestEvent unknown = CopiedEvent({});
        unknown.Id = 3;
        unknown.Level = 99;
        unknown.Task = 55;
        unknown.Opcode = 200;
        unknown.Keywords = 0x4;
        ASSERT_TRUE(Store.AddLog(L"localhost", L"System",
                                 {CopiedEvent({{L"From", L"a.txt"}, {L"To", L"b.txt"}, {L"Size", L"12"}}),
                                  CopiedEvent({{L"From", L"a.txt"}}), silent, unknown}));
        ASSERT_TRUE(Store.AddManifest(L"localhost", L"tool", ToolManifest));
        ASSERT_TRUE(WriteForwardedLog(Store.LogPath(L"localhost", L"ForwardedEvents")));
        Tool = Held(Log->EvtOpenPublisherMetadata(nullptr, L"Vendor-Tool", nullptr, 0, 0));
        ASSERT_TRUE(Tool) << Log->GetLastError();
        Logged = Events(Query(L"System"));
        ASSERT_EQ(Logged.size(), 4u);
    }

    void TearDown() override {
        Tool.Close();
        Logged.clear();
        EmbeddedLogTest::TearDown();
    }

    EvtHandle Tool;
    std::vector<EvtHandle> Logged;
};

TEST_F(MessagesTest, ManifestGivesAllTexts) {
    EVT_HANDLE tool = Tool.Get();
    EVT_HANDLE event = Logged[0].Get();
    EXPECT_EQ(Text(tool, event, EvtFormatMessageEvent), L"Copied a.txt to b.txt.\r\nSize: 12");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageLevel), L"Error");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageTask), L"Copying");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageOpcode), L"Verifying");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageChannel), L"System");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageProvider), L"Vendor's tool");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageProvider), L"Vendor's tool");
    EXPECT_EQ(Text(tool, event, EvtFormatMessageKeyword), std::wstring(L"Disk work\0Network work\0", 23));
}

TEST_F(MessagesTest, MissingValuesLeaveTheirPlaces) {
    EXPECT_EQ(Text(Tool.Get(), Logged[1].Get(), EvtFormatMessageEvent, error::UnresolvedValueInsert),
              L"Copied a.txt to %2.\r\nSize: %3");
}

TEST_F(MessagesTest, TextsThatNobodyHasAreErrors) {
    EXPECT_EQ(ErrorOf(Tool.Get(), Logged[2].Get(), EvtFormatMessageEvent), error::MessageIdNotFound);
    for (const DWORD kind : {EvtFormatMessageEvent, EvtFormatMessageLevel, EvtFormatMessageTask, EvtFormatMessageOpcode,
                             EvtFormatMessageKeyword}) {
        EXPECT_EQ(ErrorOf(Tool.Get(), Logged[3].Get(), kind), error::MessageIdNotFound) << kind;
        EXPECT_EQ(ErrorOf(nullptr, Logged[3].Get(), kind), error::MessageNotFound) << kind;
    }
    EXPECT_EQ(ErrorOf(nullptr, Logged[0].Get(), EvtFormatMessageProvider), error::MessageNotFound);
    EXPECT_EQ(ErrorOf(Tool.Get(), nullptr, EvtFormatMessageEvent), error::InvalidParameter);
    EXPECT_EQ(ErrorOf(nullptr, nullptr, EvtFormatMessageId, 1), error::InvalidParameter);
    EXPECT_EQ(ErrorOf(Tool.Get(), Logged[0].Get(), 0), error::InvalidParameter);
    EXPECT_EQ(ErrorOf(Tool.Get(), Logged[0].Get(), 10), error::InvalidParameter);
    EXPECT_EQ(ErrorOf(Logged[0].Get(), Logged[0].Get(), EvtFormatMessageLevel), error::InvalidHandle);
    EXPECT_EQ(ErrorOf(Tool.Get(), Tool.Get(), EvtFormatMessageLevel), error::InvalidHandle);
}

TEST_F(MessagesTest, StandardTextsNeedNoManifest) {
    EXPECT_EQ(Text(nullptr, Logged[0].Get(), EvtFormatMessageLevel), L"Error");
    TestEvent audit;
    audit.Keywords = 0x8020000000000000;
    audit.Opcode = 1;
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Security", {audit}));
    const EvtHandle event = FirstEvent(L"Security");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageOpcode), L"Start");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageKeyword), std::wstring(L"Audit Success\0", 14));
}

TEST_F(MessagesTest, ForwardedEventsBringTheirTexts) {
    const EvtHandle event = FirstEvent(L"ForwardedEvents");
    EXPECT_EQ(EventId(event), 4711);
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageEvent), L"Remote message");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageLevel),
              L"Error");  // a standard level, in this computer's words
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageTask), L"Remote task");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageOpcode), L"Remote opcode");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageChannel), L"Remote channel");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageProvider), L"Remote provider");
    EXPECT_EQ(Text(nullptr, event.Get(), EvtFormatMessageKeyword), std::wstring(L"First\0Second\0", 13));
    const std::wstring xml = Text(nullptr, event.Get(), EvtFormatMessageXml);
    EXPECT_EQ(xml.find(L"<RenderingInfo"), xml.rfind(L"<RenderingInfo"));
    // An event after it has no such texts.
    EXPECT_EQ(ErrorOf(nullptr, Logged[0].Get(), EvtFormatMessageTask), error::MessageNotFound);
}

TEST_F(MessagesTest, XmlCarriesTheTexts) {
    const std::wstring xml = Text(Tool.Get(), Logged[0].Get(), EvtFormatMessageXml);
    const std::wstring expected =
        L"<RenderingInfo Culture='en-US'><Message>Copied a.txt to b.txt.\r\nSize: 12</Message><Level>Error</Level>"
        L"<Task>Copying</Task><Opcode>Verifying</Opcode><Channel>System</Channel><Provider>Vendor&apos;s "
        L"tool</Provider>"
        L"<Keywords><Keyword>Disk work</Keyword><Keyword>Network work</Keyword></Keywords></RenderingInfo></Event>";
    ASSERT_GT(xml.size(), expected.size());
    EXPECT_EQ(xml.substr(xml.size() - expected.size()), expected);
}

TEST_F(MessagesTest, MessagesAreFoundById) {
    EVT_HANDLE tool = Tool.Get();
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0xB0000001), L"Copied %1 to %2.\r\nSize: %3");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0x50000010), L"Chatty level");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0x70000007), L"Copying");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0x3000000B), L"Verifying");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0x10000002), L"Network work");
    EXPECT_EQ(Text(tool, nullptr, EvtFormatMessageId, 0, 0x90000001), L"Vendor's tool");
    for (const DWORD id : {0u, 0xB0000002u, 0xB0010001u, 0x500000FFu, 0x10000000u, 0x10000041u, 0xF0000001u}) {
        EXPECT_EQ(ErrorOf(tool, nullptr, EvtFormatMessageId, id), error::MessageIdNotFound) << id;
    }
    EVT_VARIANT values[3] = {};
    values[0].Type = EvtVarTypeString;
    values[0].StringVal = L"x";
    values[1].Type = EvtVarTypeHexInt64;
    values[1].UInt64Val = 0xAB00000001;
    values[2].Type = EvtVarTypeInt32;
    values[2].Int32Val = -5;
    wchar_t buffer[200];
    DWORD used = 0;
    EXPECT_TRUE(Log->EvtFormatMessage(tool, nullptr, 0xB0000001, 3, values, EvtFormatMessageId, 200, buffer, &used));
    EXPECT_EQ(std::wstring(buffer), L"Copied x to 0xab00000001.\r\nSize: -5");
    EXPECT_FALSE(Log->EvtFormatMessage(tool, nullptr, 0xB0000001, 1, values, EvtFormatMessageId, 200, buffer, &used));
    EXPECT_EQ(Log->GetLastError(), error::UnresolvedValueInsert);
    EXPECT_EQ(std::wstring(buffer), L"Copied x to %2.\r\nSize: %3");
}

TEST_F(MessagesTest, ManifestsBesideAFileComeFirst) {
    const std::filesystem::path file = Folder.Path() / "saved" / "log.evtx";
    ASSERT_TRUE(
        WriteTextFile(file.parent_path() / "publishers" / "a.man", SimpleManifest("Vendor-Tool", {{1, "Saved"}})));
    ASSERT_TRUE(WriteTextFile(file.parent_path() / "publishers" / "broken.man", "<instrumentationManifest"));
    const auto message = [&](LPCWSTR logFile) {
        const EvtHandle metadata = Held(Log->EvtOpenPublisherMetadata(nullptr, L"Vendor-Tool", logFile, 0, 0));
        return Text(metadata.Get(), Logged[0].Get(), EvtFormatMessageEvent);
    };
    EXPECT_EQ(message(file.wstring().c_str()), L"Saved");
    const std::wstring elsewhere = (Folder.Path() / "elsewhere.evtx").wstring();
    EXPECT_EQ(message(elsewhere.c_str()), L"Copied a.txt to b.txt.\r\nSize: 12");
}

TEST_F(MessagesTest, UnknownPublishersAreRefused) {
    const auto errorOf = [&](LPCWSTR name, DWORD flags) {
        EXPECT_FALSE(Held(Log->EvtOpenPublisherMetadata(nullptr, name, nullptr, 0, flags)));
        return Log->GetLastError();
    };
    EXPECT_EQ(errorOf(L"Nobody", 0), error::PublisherMetadataNotFound);
    EXPECT_EQ(errorOf(nullptr, 0), error::InvalidParameter);
    EXPECT_EQ(errorOf(L"Vendor-Tool", 1), error::InvalidParameter);
    ASSERT_TRUE(Store.AddLog(L"BARE", L"System", {}));
    const EvtHandle session = OpenSession(L"BARE");
    EXPECT_FALSE(Held(Log->EvtOpenPublisherMetadata(session.Get(), L"Vendor-Tool", nullptr, 0, 0)));
    EXPECT_EQ(Log->GetLastError(), error::PublisherMetadataNotFound);
}

}  // namespace
}  // namespace corvina::test
