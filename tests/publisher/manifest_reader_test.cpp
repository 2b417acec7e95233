#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/publisher/message_ids.h"
#include "publisher/manifest_text.h"

namespace corvina::publisher {
namespace {

constexpr const char* PumpManifest = R"xml(<?xml version="1.0" encoding="utf-8"?>
<!-- a comment -->
<instrumentationManifest xmlns="http://schemas.microsoft.com/win/2004/08/events">
  <instrumentation>
    <events>
      <provider name="Contoso-Pump" guid="{1c2d3e4f-0011-2233-4455-66778899aabb}" messageFileName="pump.dll"
                resourceFileName="pumpres.dll" parameterFileName="pumppar.dll" message="$(string.provider)">
        <channels>
          <importChannel chid="SYS" name="System"/>
          <channel chid="OP" name="Contoso-Pump/Operational" type="Operational" enabled="true"
                   message="$(string.channel)"/>
          <channel symbol="DBG" name="Contoso-Pump/Debug" type="Debug"/>
          <channel chid="OWN" name="Contoso-Pump/Own" value="200"/>
        </channels>
        <levels><level name="Loud" value="0x11" message="$(string.loud)"/></levels>
        <tasks>
          <task name="Fill" value="1" message="$(string.fill)">
            <opcodes><opcode name="Valve" value="11" message="$(string.valve.fill)"/></opcodes>
          </task>
          <task name="Drain" value="2" eventGUID="{00000000-0000-0000-0000-00000000000D}"/>
        </tasks>
        <opcodes><opcode name="Valve" value="12" message="$(string.valve)"/></opcodes>
        <keywords>
          <keyword name="Water" mask="0x1" message="$(string.water)"/>
          <keyword name="Oil" mask="0x8000000000000000"/>
        </keywords>
        <templates>
          <template tid="Values"><data name="Litres" inType="win:UInt32" outType="xs:unsignedInt"/></template>
        </templates>
        <events>
          <event value="0xFFFFFFFF" level="Loud" message="$(string.empty)"/>
          <event value="1" version="2" level="win:Error" task="Drain" opcode="Valve" channel="DBG"/>
          <event value="1" level="win:Error" task="Fill" opcode="Valve" keywords=" Water
               Oil win:AuditFailure" channel="OP" template="Values" message="$(string.one)"/>
          <event value="2" opcode="win:Stop" channel="SYS" message="$(string.empty)"/>
          <event value="3" channel="Contoso-Pump/Operational" message="written out"/>
        </events>
      </provider>
    </events>
  </instrumentation>
  <localization>
    <resources culture="de-DE"><stringTable>
      <string id="fill" value="F&#xFC;llen"/><string id="water" value="Wasser"/></stringTable></resources>
    <resources culture="en-us"><stringTable>
      <string id="provider" value="The &quot;Pump&quot;"/><string id="loud" value="Loud"/>
      <string id="channel" value="What the pump does"/>
      <string id="fill" value="Filling"/><string id="valve" value="Valve"/>
      <string id="valve.fill" value="Filling valve"/><string id="one" value="%1 litres%n"/>
      <string id="empty" value=""/></stringTable></resources>
  </localization>
</instrumentationManifest>)xml";

std::string AsUtf16(std::string_view utf8, bool bigEndian) {
    std::string bytes;
    AppendUtf16Bytes(L"\uFEFF" + WideFromUtf8(utf8), bytes);
    for (std::size_t index = 0; bigEndian && index + 1 < bytes.size(); index += 2) {
        std::swap(bytes[index], bytes[index + 1]);
    }
    return bytes;
}

TEST(ManifestReader, ReadsAProvidersDefinitions) {
    std::vector<std::wstring> problems;
    const std::vector<Publisher> publishers = Read(PumpManifest, &problems);
    ASSERT_EQ(publishers.size(), 1U);
    EXPECT_EQ(problems, std::vector<std::wstring>());
    const Publisher& pump = publishers[0];
    EXPECT_EQ(pump.Name, L"Contoso-Pump");
    EXPECT_EQ(pump.Guid, ParseGuid(L"{1C2D3E4F-0011-2233-4455-66778899AABB}"));
    EXPECT_EQ(pump.MessageFileName, L"pump.dll");
    EXPECT_EQ(pump.ResourceFileName, L"pumpres.dll");
    EXPECT_EQ(pump.ParameterFileName, L"pumppar.dll");
    EXPECT_EQ(pump.Message, L"The \"Pump\"");

    ASSERT_EQ(pump.Channels.size(), 4U);
    EXPECT_EQ(pump.Channels[0].Path, L"System");
    EXPECT_FALSE(pump.Channels[0].Enabled);
    EXPECT_TRUE(pump.Channels[0].Imported);
    EXPECT_FALSE(pump.Channels[1].Imported);
    EXPECT_EQ(pump.Channels[1].Message, L"What the pump does");
    std::vector<int> ids;
    for (const ChannelReference& channel : pump.Channels) {
        ids.push_back(channel.Id);
    }
    EXPECT_EQ(ids, (std::vector<int>{8, 16, 17, 200}));
    EXPECT_EQ(pump.Channels[1].Type, L"Operational");
    EXPECT_TRUE(pump.Channels[1].Enabled);

    ASSERT_EQ(pump.Levels.size(), 1U);
    EXPECT_EQ(pump.Levels[0].Value, 17U);
    ASSERT_EQ(pump.Tasks.size(), 2U);
    EXPECT_EQ(pump.Tasks[0].Message, L"Filling");
    EXPECT_EQ(pump.Tasks[1].Message, L"");
    EXPECT_EQ(pump.Tasks[1].Guid, ParseGuid(L"{00000000-0000-0000-0000-00000000000D}"));
    EXPECT_FALSE(pump.Tasks[0].Guid);
    ASSERT_EQ(pump.Opcodes.size(), 2U);
    EXPECT_EQ(pump.Opcodes[0].Value, 12U);
    EXPECT_EQ(pump.Opcodes[1].Value, 0x1000BU);
    ASSERT_EQ(pump.Keywords.size(), 2U);
    EXPECT_EQ(pump.Keywords[0].Message, L"Wasser") << "what English lacks comes from another culture";
    EXPECT_EQ(pump.Keywords[1].Value, 0x8000'0000'0000'0000U);
}

TEST(ManifestReader, GivesTextsTheNumbersOfTheMessageCompiler) {
    const std::vector<Publisher> publishers = Read(PumpManifest);
    ASSERT_EQ(publishers.size(), 1U);
    const Publisher& pump = publishers[0];
    EXPECT_EQ(pump.MessageId, 0x90000001U);
    EXPECT_EQ(pump.Channels[0].MessageId, NoMessage);
    EXPECT_EQ(pump.Channels[1].MessageId, 0x90000003U);
    EXPECT_EQ(pump.Levels[0].MessageId, 0x50000011U);
    EXPECT_EQ(pump.Tasks[0].MessageId, 0x70000001U);
    EXPECT_EQ(pump.Tasks[1].MessageId, NoMessage);
    EXPECT_EQ(pump.Opcodes[0].MessageId, 0x3000000CU);
    EXPECT_EQ(pump.Opcodes[1].MessageId, 0x3001000BU);
    EXPECT_EQ(pump.Keywords[0].MessageId, 0x10000001U);
    EXPECT_EQ(pump.Events[0].MessageId, 0xB0000001U);
    EXPECT_EQ(pump.Events[1].MessageId, NoMessage);
    EXPECT_EQ(KeywordMessageId(0x8000'0000'0000'0000), 0x10000040U);
    EXPECT_EQ(EventMessageId(7, 3), 0xB0030007U);
    EXPECT_EQ(EventMessageId(0xC004'0007, 3), 0xC004'0007U) << "a whole identifier is one already";

    EXPECT_EQ(MessageById(pump, 0x3001000B), L"Filling valve");
    EXPECT_EQ(MessageById(pump, 0x90000003), L"What the pump does");
    EXPECT_EQ(MessageById(pump, 0x50000002), L"Error");
    EXPECT_EQ(MessageById(pump, NoMessage), std::nullopt) << "no event without a message is found by that number";
    EXPECT_EQ(MessageById(pump, 0x90000002), std::nullopt);
}

TEST(ManifestReader, ResolvesWhatEventsReferTo) {
    const std::vector<Publisher> publishers = Read(PumpManifest);
    ASSERT_EQ(publishers.size(), 1U);
    const std::vector<EventDefinition>& events = publishers[0].Events;
    ASSERT_EQ(events.size(), 5U);

    EXPECT_EQ(events[0].Id, 1U);
    EXPECT_EQ(events[0].Version, 0);
    EXPECT_EQ(events[0].Level, 2);
    EXPECT_EQ(events[0].Task, 1);
    EXPECT_EQ(events[0].Opcode, 11) << "the task's own opcode comes before one of the same name for all";
    EXPECT_EQ(events[0].Keywords, 0x8010'0000'0000'0001U);
    EXPECT_EQ(events[0].Channel, L"Contoso-Pump/Operational");
    EXPECT_EQ(events[0].ChannelId, 16);
    EXPECT_EQ(events[0].Template,
              L"<template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">"
              L"<data name=\"Litres\" inType=\"win:UInt32\" outType=\"xs:unsignedInt\"/></template>");
    EXPECT_TRUE(events[0].HasMessage);
    EXPECT_EQ(events[0].Message, L"%1 litres%n");

    EXPECT_EQ(events[1].Version, 2);
    EXPECT_EQ(events[1].Opcode, 12);
    EXPECT_EQ(events[1].Channel, L"Contoso-Pump/Debug");
    EXPECT_FALSE(events[1].HasMessage);
    EXPECT_EQ(events[2].Opcode, 2);
    EXPECT_EQ(events[2].Channel, L"System");
    EXPECT_TRUE(events[2].HasMessage) << "an empty message is a message";
    EXPECT_EQ(events[3].Channel, L"Contoso-Pump/Operational");
    EXPECT_EQ(events[3].Message, L"written out");
    EXPECT_EQ(events[4].Id, 0xFFFF'FFFFU);
    EXPECT_EQ(events[4].Level, 17);
}

TEST(ManifestReader, ReadsEveryEncodingAndNamespacePrefixes) {
    const std::string text =
        R"(<e:instrumentationManifest xmlns:e="x"><e:instrumentation><e:events><e:provider name="Größe 😀"/>)"
        R"(</e:events></e:instrumentation></e:instrumentationManifest>)";
    for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text, AsUtf16(text, false), AsUtf16(text, true),
                                     AsUtf16("<?xml version='1.0' encoding='utf-16'?>" + text, false)}) {
        const std::vector<Publisher> publishers = Read(bytes);
        ASSERT_EQ(publishers.size(), 1U);
        EXPECT_EQ(publishers[0].Name, WideFromUtf8("Größe 😀"));
        EXPECT_FALSE(publishers[0].Guid);
    }
}

TEST(ManifestReader, ReportsWhatIsWrongAndKeepsTheRest) {
    std::vector<std::wstring> problems;
    const std::string content = R"xml(
        <channels><channel chid="C"/></channels>
        <levels><level name="TooHigh" value="256"/><level name="Good" value="255"/></levels>
        <tasks><task name="Odd" value="seven"><opcodes><opcode name="O" value="1"/></opcodes></task></tasks>
        <keywords><keyword name="NoMask"/></keywords>
        <events>
          <event value="1" level="TooHigh" task="Odd" opcode="O" keywords="NoMask win:SQM" channel="C" template="T"
                 message="$(string.nowhere)"/>
          <event value="4294967296"/><event version="1"/><event value="2" version="256"/>
          <event value="3" level="Good"/>
        </events>)xml";
    const std::vector<Publisher> publishers = Read(ManifestText("P", content), &problems);
    ASSERT_EQ(publishers.size(), 1U);
    ASSERT_EQ(publishers[0].Events.size(), 2U);
    EXPECT_EQ(publishers[0].Events[0].Keywords, 0x0008'0000'0000'0000U);
    EXPECT_FALSE(publishers[0].Events[0].HasMessage);
    EXPECT_EQ(publishers[0].Events[1].Level, 255);
    for (const wchar_t* const subject :
         {L"TooHigh", L"Odd", L"NoMask", L"O", L"C", L"T", L"$(string.nowhere)", L"4294967296"}) {
        EXPECT_TRUE(std::any_of(problems.begin(), problems.end(), [subject](const std::wstring& problem) {
            return problem.ends_with(L": " + std::wstring(subject));
        })) << Utf8FromWide(subject);
    }
    EXPECT_EQ(problems.size(), 14U);
}

TEST(ManifestReader, WhatIsNoManifestGivesNoPublishers) {
    const std::string good = ManifestText("P", "");
    ASSERT_EQ(Read(good).size(), 1U);
    for (const std::string& text : {std::string(), std::string("text"), std::string("<other/>"), std::string(64, '\0'),
                                    good.substr(0, good.size() - 5), "<x>" + good + "</x>", ManifestText("", ""),
                                    good + std::string(LargestManifest, ' ')}) {
        EXPECT_TRUE(Read(text).empty()) << text.substr(0, 40);
    }
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_TRUE(Read(std::string_view(good).substr(0, size)).empty()) << size;
    }
}

TEST(ManifestReader, HostileSizesStayBounded) {
    // Deep nesting.
    std::string deep = "<instrumentationManifest>";
    for (int depth = 0; depth < 500'000; ++depth) {
        deep += "<a>";
    }
    EXPECT_TRUE(Read(deep).empty());

    // A short manifest whose texts would fill gigabytes: each of its events refers to the same long string.
    std::string events =
        "<channels><channel chid=\"C\" name=\"" + std::string(1 << 20, 'c') + "\"/></channels><events>";
    for (int id = 0; id < 5'000; ++id) {
        events += "<event value=\"" + std::to_string(id) + "\" channel=\"C\" message=\"$(string.long)\"/>";
    }
    std::vector<std::wstring> problems;
    const std::vector<Publisher> publishers = Read(
        ManifestText("P", events + "</events>", "<string id=\"long\" value=\"" + std::string(1 << 20, 'm') + "\"/>"),
        &problems);
    ASSERT_EQ(publishers.size(), 1U);
    std::size_t characters = 0;
    for (const EventDefinition& event : publishers[0].Events) {
        characters += event.Message.size() + event.Channel.size();
    }
    EXPECT_EQ(publishers[0].Events.size(), 5'000U);
    EXPECT_LE(characters, std::size_t{16} << 20);
    EXPECT_EQ(problems.size(), 1'000U);
}

}  // namespace
}  // namespace corvina::publisher
