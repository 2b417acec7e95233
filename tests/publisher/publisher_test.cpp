#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "publisher/manifest_text.h"

namespace corvina::publisher {
namespace {

using Texts = std::vector<std::wstring>;

Publisher OnlyPublisher(std::string_view content, std::string_view strings = "") {
    std::vector<Publisher> publishers = Read(ManifestText("P", content, strings));
    return publishers.empty() ? Publisher() : publishers[0];
}

TEST(Publisher, FindsTheEventThatFitsTheVersionBest) {
    const Publisher publisher = OnlyPublisher(
        R"(<events><event value="9" message="nine"/>
           <event value="7" version="4" message="four"/><event value="7" version="4" message="four again"/><event value="7" version="2" message="two"/>
           <event value="7" version="2" message="two again"/><event value="7" version="3" message="three"/>
           <event value="65536" message="large"/></events>)");
    const auto message = [&publisher](std::uint32_t id, std::uint8_t version) {
        const EventDefinition* const event = publisher.FindEvent(id, version);
        return event != nullptr ? event->Message : std::wstring(L"none");
    };
    EXPECT_EQ(message(7, 3), L"three");
    EXPECT_EQ(message(7, 2), L"two");
    EXPECT_EQ(message(7, 0), L"two") << "only newer ones";
    EXPECT_EQ(message(7, 255), L"four");
    EXPECT_EQ(message(9, 5), L"nine");
    EXPECT_EQ(message(65536, 0), L"large");
    EXPECT_EQ(message(0, 0), L"none");
    EXPECT_EQ(message(8, 0), L"none");
    EXPECT_EQ(message(65537, 0), L"none");
    EXPECT_EQ(Publisher().FindEvent(7, 0), nullptr);
}

TEST(Publisher, OwnTextsComeBeforeStandardOnes) {
    const Publisher publisher =
        OnlyPublisher(R"(<levels><level name="L" value="2" message="Own error"/><level name="S" value="3"/>
                                 <level name="U" value="200"/></levels>
                         <tasks><task name="T" value="5" message="Own task">
                           <opcodes><opcode name="A" value="1" message="Own start of five"/></opcodes></task>
                           <task name="Silent" value="6"/></tasks>
                         <opcodes><opcode name="B" value="1" message="Own start"/>
                                  <opcode name="C" value="100" message="Hundred"/></opcodes>)");
    EXPECT_EQ(publisher.LevelText(2), L"Own error");
    EXPECT_EQ(publisher.LevelText(3), L"Warning") << "a definition without a text leaves the standard one";
    EXPECT_EQ(publisher.LevelText(200), std::nullopt);
    EXPECT_EQ(publisher.TaskText(5), L"Own task");
    EXPECT_EQ(publisher.TaskText(6), std::nullopt);
    EXPECT_EQ(publisher.TaskText(0), std::nullopt);
    EXPECT_EQ(publisher.OpcodeText(1, 5), L"Own start of five");
    EXPECT_EQ(publisher.OpcodeText(1, 6), L"Own start");
    EXPECT_EQ(publisher.OpcodeText(100, 5), L"Hundred");
    EXPECT_EQ(publisher.OpcodeText(2, 5), L"Stop");
    EXPECT_EQ(publisher.OpcodeText(99, 5), std::nullopt);
}

TEST(Publisher, KeywordsGiveTheirTextsOnce) {
    const Publisher publisher = OnlyPublisher(
        R"(<keywords><keyword name="Two" mask="0x2" message="Two"/><keyword name="One" mask="0x1" message="One"/>
                                   <keyword name="OneAgain" mask="0x1" message="One again"/>
                                   <keyword name="Both" mask="0xC" message="Four and eight"/>
                                   <keyword name="Silent" mask="0x0080000000000000"/>
                                   <keyword name="Sqm" mask="0x0008000000000000" message="Own SQM"/>
                                   <keyword name="Zero" mask="0" message="Never"/></keywords>)");
    EXPECT_EQ(publisher.KeywordTexts(0), Texts());
    EXPECT_EQ(publisher.KeywordTexts(0x3), (Texts{L"One", L"Two"}));
    EXPECT_EQ(publisher.KeywordTexts(0x8000'0000'0000'0005), (Texts{L"One"}));
    EXPECT_EQ(publisher.KeywordTexts(0x0088'0000'0000'000C), (Texts{L"Four and eight", L"Own SQM", L"Classic"}));
}

TEST(StandardValues, AreKnownWithoutAProvider) {
    EXPECT_EQ(StandardLevelText(1), L"Critical");
    EXPECT_EQ(StandardLevelText(5), L"Verbose");
    EXPECT_EQ(StandardLevelText(0), L"Information");
    EXPECT_EQ(StandardLevelText(6), std::nullopt);
    EXPECT_EQ(StandardOpcodeText(0), L"Info");
    EXPECT_EQ(StandardOpcodeText(3), L"DCStart");
    EXPECT_EQ(StandardOpcodeText(9), L"Send");
    EXPECT_EQ(StandardOpcodeText(10), std::nullopt);
    EXPECT_EQ(StandardOpcodeText(240), L"Receive");
    EXPECT_EQ(StandardKeywordTexts(0x0080'0000'0000'0000), (Texts{L"Classic"}));
    EXPECT_EQ(StandardKeywordTexts(0xFFFF'FFFF'FFFF'FFFF),
              (Texts{L"Response Time", L"WDI Context", L"WDI Diag", L"SQM", L"Audit Failure", L"Audit Success",
                     L"Correlation Hint", L"Classic"}));
}

}  // namespace
}  // namespace corvina::publisher
