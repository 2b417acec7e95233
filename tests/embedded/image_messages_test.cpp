// The display texts of events whose providers are described by program files.
#include "embedded/message_asking_test.h"
#include "publisher/image_builder.h"

namespace corvina::test {
namespace {

using publisher::MakeEventTemplate;
using publisher::MakeImage;
using publisher::MakeMessageTable;
using publisher::PumpMessages;
using publisher::PumpProvider;

class ImageMessagesTest : public MessageAskingTest {
  protected:
    void SetUp() override {
        TestEvent pump;
        pump.Provider = L"Contoso-Pump";
        pump.ProviderGuid = L"{1C2D3E4F-0011-2233-4455-66778899AABB}";
        pump.Level = 17;
        pump.Task = 1;
        pump.Opcode = 11;
        pump.Keywords = 0x8000000000000001;
        pump.Version = 1;
        pump.Data = {{L"Litres", L"7"}, {L"From", L"%%1842"}};
        ASSERT_TRUE(Store.AddLog(L"localhost", L"Contoso-Pump/Operational", {pump}));

        TestEvent classic;
        classic.Provider = L"MySource";
        classic.Qualifiers = std::uint16_t{0xC004};
        classic.Task = 2;
        classic.Id = 7;
        classic.Data = {{L"", L"disk"}, {L"", L"%%5 and %%99"}};
        TestEvent plain = classic;
        plain.Qualifiers = std::uint16_t{0};
        plain.Task = 9;
        ASSERT_TRUE(Store.AddLog(L"localhost", L"Application", {classic, plain}));
        Write("pumpres.dll", MakeImage({MakeEventTemplate({PumpProvider()}), MakeMessageTable(PumpMessages())}));
        Write("MySource.dll",
              MakeImage({MakeMessageTable({{2, L"Disks"}, {5, L"five"}, {7, L"Small %1"}, {0xC0040007, L"No %1: %2"}})},
                        false));
        Pump = FirstEvent(L"Contoso-Pump/Operational");
        Classic = Events(Query(L"Application"));
        ASSERT_EQ(Classic.size(), 2u);
    }

    void TearDown() override {
        Pump.Close();
        Classic.clear();
        MessageAskingTest::TearDown();
    }

    void Write(const std::string& name, std::string_view bytes) const {
        ASSERT_TRUE(WriteTextFile(Store.Folder() / "localhost" / "publishers" / name, bytes));
    }

    EvtHandle Open(LPCWSTR name) { return Held(Log->EvtOpenPublisherMetadata(nullptr, name, nullptr, 0, 0)); }

    EvtHandle Pump;
    std::vector<EvtHandle> Classic;
};

TEST_F(ImageMessagesTest, AProvidersGuidIsLearnedFromItsEvents) {
    EXPECT_FALSE(Open(L"Contoso-Pump"));
    EXPECT_EQ(Log->GetLastError(), error::PublisherMetadataNotFound);
    EXPECT_EQ(EventId(Pump), 1);
    EXPECT_TRUE(Open(L"Contoso-Pump"));
}

TEST_F(ImageMessagesTest, EveryKindOfTextIsFormed) {
    SystemRow(Pump);
    const EvtHandle metadata = Open(L"Contoso-Pump");
    ASSERT_TRUE(metadata) << Log->GetLastError();
    const auto text = [&](DWORD kind) { return Text(metadata.Get(), Pump.Get(), kind); };
    EXPECT_EQ(text(EvtFormatMessageEvent), L"7 litres of %%1842") << "no text has that number";
    EXPECT_EQ(text(EvtFormatMessageLevel), L"Loud");
    EXPECT_EQ(text(EvtFormatMessageTask), L"Filling");
    EXPECT_EQ(text(EvtFormatMessageOpcode), L"Filling valve");
    EXPECT_EQ(text(EvtFormatMessageKeyword), std::wstring(L"Water\0Oil\0", 10));
    EXPECT_EQ(text(EvtFormatMessageChannel), L"What the pump does");
    EXPECT_EQ(text(EvtFormatMessageProvider), L"The pump");
    EXPECT_NE(text(EvtFormatMessageXml).find(L"<Message>7 litres of %%1842</Message><Level>Loud</Level>"),
              std::wstring::npos);
    EXPECT_EQ(Text(metadata.Get(), nullptr, EvtFormatMessageId, 0, 0xB0010001), L"%1 litres of %2");
    EXPECT_EQ(Text(metadata.Get(), nullptr, EvtFormatMessageId, 0, 0x70000001), L"Filling");
    EXPECT_EQ(ErrorOf(metadata.Get(), nullptr, EvtFormatMessageId, 0x70000002), error::MessageIdNotFound);
}

TEST_F(ImageMessagesTest, ClassicEventsAreFoundByTheirWholeIdentifier) {
    const EvtHandle metadata = Open(L"MySource");
    ASSERT_TRUE(metadata) << Log->GetLastError();
    EXPECT_EQ(Text(metadata.Get(), Classic[0].Get(), EvtFormatMessageEvent), L"No disk: five and %%99");
    EXPECT_EQ(Text(metadata.Get(), Classic[0].Get(), EvtFormatMessageTask), L"Disks");
    EXPECT_EQ(Text(metadata.Get(), Classic[1].Get(), EvtFormatMessageEvent), L"Small disk");
    EXPECT_EQ(ErrorOf(metadata.Get(), Classic[1].Get(), EvtFormatMessageTask), error::MessageIdNotFound);
    EXPECT_EQ(Text(metadata.Get(), Classic[0].Get(), EvtFormatMessageProvider), L"MySource");

    // The numbers of the pump's table are not those of its events, which have definitions.
    SystemRow(Pump);
    const EvtHandle pump = Open(L"Contoso-Pump");
    EXPECT_EQ(ErrorOf(pump.Get(), Classic[0].Get(), EvtFormatMessageEvent), error::MessageIdNotFound);
}

TEST_F(ImageMessagesTest, TheRegistrysWordsAreReadAndReadAgain) {
    Write("par.dll", MakeImage({MakeMessageTable({{1842, L"the well"}, {99, L"ninety-nine"}})}));
    Write("publishers.ini",
          "; exported from the dead computer\n[Contoso-Pump]\nGuid={1C2D3E4F-0011-2233-4455-66778899AABB}\n"
          "File=%SystemRoot%\\System32\\pumpres.dll\nParameterFile=par.dll\n"
          "[Renamed]\nMessageFile=MySource.dll\nParameterFile=par.dll\n");
    const EvtHandle pump = Open(L"Contoso-Pump");
    ASSERT_TRUE(pump) << Log->GetLastError();
    EXPECT_EQ(Text(pump.Get(), Pump.Get(), EvtFormatMessageEvent), L"7 litres of the well");
    const EvtHandle renamed = Open(L"Renamed");
    ASSERT_TRUE(renamed) << Log->GetLastError();
    EXPECT_EQ(Text(renamed.Get(), Classic[0].Get(), EvtFormatMessageEvent), L"No disk: five and ninety-nine");

    Write("publishers.ini", "[Contoso-Pump]\nFile=MySource.dll\n");
    const std::filesystem::path file = Store.Folder() / "localhost" / "publishers" / "publishers.ini";
    std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) + std::chrono::seconds(5));
    const EvtHandle changed = Open(L"Contoso-Pump");
    ASSERT_TRUE(changed) << Log->GetLastError();
    EXPECT_EQ(Text(changed.Get(), Classic[0].Get(), EvtFormatMessageTask), L"Disks");
    EXPECT_FALSE(Open(L"Renamed"));
}

TEST_F(ImageMessagesTest, ChannelsKnowTheirProviders) {
    Write("publishers.ini", "[Contoso-Pump]\nGuid={1C2D3E4F-0011-2233-4455-66778899AABB}\n");
    const EvtHandle channel = Held(Log->EvtOpenChannelConfig(nullptr, L"Contoso-Pump/Operational", 0));
    const std::vector<BYTE> row = Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
        return Log->EvtGetChannelConfigProperty(channel.Get(), EvtChannelPublisherList, 0, size,
                                                reinterpret_cast<EVT_VARIANT*>(buffer), used);
    });
    const EVT_VARIANT value = Values(row, 1)[0];
    ASSERT_EQ(value.Count, 1u);
    EXPECT_EQ(std::wstring(value.StringArr[0]), L"Contoso-Pump");
}

}  // namespace
}  // namespace corvina::test
