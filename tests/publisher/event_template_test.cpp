#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "embedded/publisher/event_template_resource.h"
#include "publisher/image_builder.h"
#include "publisher/memory_image.h"

namespace corvina::publisher {
namespace {

Publisher ReadProvider(const TestProvider& provider) {
    Publisher publisher;
    EXPECT_TRUE(ReadEventTemplate(BytesOf(MakeEventTemplate({provider}).Bytes), provider.Guid, publisher));
    return publisher;
}

TEST(EventTemplate, ReadsAProvidersLists) {
    const Publisher pump = ReadProvider(PumpProvider());
    EXPECT_EQ(pump.Guid, PumpProvider().Guid);
    EXPECT_EQ(pump.MessageId, 0x90000001U);

    ASSERT_EQ(pump.Channels.size(), 2U);
    EXPECT_EQ(pump.Channels[0].Path, L"System");
    EXPECT_EQ(pump.Channels[0].Id, 8);
    EXPECT_TRUE(pump.Channels[0].Imported);
    EXPECT_EQ(pump.Channels[0].MessageId, NoMessage);
    EXPECT_EQ(pump.Channels[1].Path, L"Contoso-Pump/Operational");
    EXPECT_FALSE(pump.Channels[1].Imported);
    EXPECT_EQ(pump.Channels[1].MessageId, 0x90000002U);

    ASSERT_EQ(pump.Levels.size(), 2U);
    EXPECT_EQ(pump.Levels[1].Name, L"Loud");
    EXPECT_EQ(pump.Levels[1].Value, 17U);
    EXPECT_EQ(pump.Levels[1].MessageId, 0x50000011U);
    ASSERT_EQ(pump.Opcodes.size(), 2U);
    EXPECT_EQ(pump.Opcodes[0].Value, 11U) << "of no task";
    EXPECT_EQ(pump.Opcodes[1].Value, 0x1000BU);
    EXPECT_EQ(pump.Opcodes[1].Name, L"ValveOfFill");
    ASSERT_EQ(pump.Tasks.size(), 2U);
    EXPECT_FALSE(pump.Tasks[0].Guid);
    EXPECT_EQ(pump.Tasks[1].Guid, ParseGuid(L"{00000001-0000-0000-0000-000000000000}"));
    EXPECT_EQ(pump.Tasks[1].Name, L"Drain");
    ASSERT_EQ(pump.Keywords.size(), 2U);
    EXPECT_EQ(pump.Keywords[1].Value, 0x8000'0000'0000'0000U);
    EXPECT_EQ(pump.Keywords[1].MessageId, 0x10000040U);
}

TEST(EventTemplate, ReadsEventsSortedForLookingThemUp) {
    const Publisher pump = ReadProvider(PumpProvider());
    ASSERT_EQ(pump.Events.size(), 4U);
    const EventDefinition* const event = pump.FindEvent(1, 1);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(event->Version, 1);
    EXPECT_EQ(event->ChannelId, 16);
    EXPECT_EQ(event->Channel, L"Contoso-Pump/Operational");
    EXPECT_EQ(event->Level, 2);
    EXPECT_EQ(event->Opcode, 11);
    EXPECT_EQ(event->Task, 1);
    EXPECT_EQ(event->Keywords, 0x8000'0000'0000'0001U);
    EXPECT_EQ(event->MessageId, 0xB0010001U);
    EXPECT_EQ(event->Template,
              L"<template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">"
              L"<data name=\"Litres\" inType=\"win:UInt32\" outType=\"xs:int\"/>"
              L"<data name=\"From &amp; to\" inType=\"win:UnicodeString\" outType=\"xs:string\"/></template>");
    EXPECT_EQ(pump.Events[2].Channel, L"System");
    EXPECT_EQ(pump.Events[3].MessageId, NoMessage);
    EXPECT_EQ(pump.Events[3].Channel, L"");
    EXPECT_EQ(pump.Events[3].Template, L"");
}

TEST(EventTemplate, TemplatesMayHaveGroupsAndLengths) {
    TestProvider provider = PumpProvider();
    provider.Templates = {{{{L"Count", 6, 0},
                            {L"Group", 3, 0, 0x05, 0, 1},  // its one item, number 3, as often as item 0 says
                            {L"Bytes", 14, 15, 0x02, 0, 0},
                            {L"Inner", 10, 0, 0x30, 4, 8}},
                           3}};
    EXPECT_EQ(
        ReadProvider(provider).Events[0].Template,
        L"<template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">"
        L"<data name=\"Count\" inType=\"win:UInt16\" outType=\"xs:unsignedShort\"/>"
        L"<struct name=\"Group\" count=\"Count\">"
        L"<data name=\"Inner\" inType=\"win:UInt64\" outType=\"xs:unsignedLong\" length=\"8\" count=\"4\"/></struct>"
        L"<data name=\"Bytes\" inType=\"win:Binary\" outType=\"xs:hexBinary\" length=\"Count\"/></template>");
}

TEST(EventTemplate, EventsTellWhichNumberOfAChannelTheyMean) {
    TestProvider provider = PumpProvider();
    for (TestProvider::Channel& channel : provider.Channels) {
        const std::uint32_t id = channel.Id;
        channel.Id = static_cast<std::uint8_t>(channel.Flags);
        channel.Flags = id;
    }
    const Publisher pump = ReadProvider(provider);
    EXPECT_EQ(pump.Channels[1].Id, 16);
    EXPECT_TRUE(pump.Channels[0].Imported);
    EXPECT_EQ(pump.Events[0].Channel, L"Contoso-Pump/Operational");
}

TEST(EventTemplate, FindsOneOfSeveralProviders) {
    TestProvider other = PumpProvider();
    other.Guid[0] = std::byte{1};
    other.Levels.clear();
    const std::vector<std::byte> bytes = BytesOf(MakeEventTemplate({PumpProvider(), other}).Bytes);
    EXPECT_EQ(EventTemplateProviders(bytes), (std::vector<GuidBytes>{PumpProvider().Guid, other.Guid}));
    EXPECT_EQ(EventTemplateProviders(std::span(bytes).first(56)).size(), 2U) << "the head is enough";
    Publisher publisher;
    ASSERT_TRUE(ReadEventTemplate(bytes, other.Guid, publisher));
    EXPECT_TRUE(publisher.Levels.empty());
    EXPECT_EQ(publisher.Events[0].Channel, L"Contoso-Pump/Operational");
    Publisher nobody;
    EXPECT_FALSE(ReadEventTemplate(bytes, GuidBytes{}, nobody));
    EXPECT_FALSE(nobody.Guid);
}

TEST(EventTemplate, DamagedResourcesGiveWhatIsThere) {
    const std::string bytes = MakeEventTemplate({PumpProvider()}).Bytes;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        Publisher publisher;
        ReadEventTemplate(BytesOf(bytes.substr(0, size)), PumpProvider().Guid, publisher);
        EXPECT_LE(publisher.Events.size(), 4U);
    }
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (const char byte : {'\0', '\x01', '\x80', '\xFF'}) {
            std::string changed = bytes;
            changed[place] = byte;
            Publisher publisher;
            ReadEventTemplate(BytesOf(changed), PumpProvider().Guid, publisher);
            EXPECT_LE(publisher.Channels.size(), 256U) << place;
        }
    }
}

// A list of two hundred thousand events which all name one template; its groups name all the others again and again.
TEST(EventTemplate, HostileSizesStayBounded) {
    TestProvider provider = PumpProvider();
    provider.Templates[0].Items.assign(500, {std::wstring(1'000, L'g'), 0xF4, 1, 1, 0, 500});
    provider.Templates[0].Items.resize(1'000, {std::wstring(1'000, L'n'), 1, 1});
    provider.Events.assign(200'000, provider.Events[1]);
    provider.Channels[1].Path.assign(30'000, L'c');
    const Publisher publisher = ReadProvider(provider);
    EXPECT_EQ(publisher.Events.size(), 65'536U);
    std::size_t characters = 0;
    for (const EventDefinition& event : publisher.Events) {
        characters += event.Channel.size() + event.Template.size();
    }
    EXPECT_LE(characters, std::size_t{8} << 20);
}

}  // namespace
}  // namespace corvina::publisher
