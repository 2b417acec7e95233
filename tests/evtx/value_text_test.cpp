// Every type of value in the text that stands in an event's XML.
#include <gtest/gtest.h>
#include <map>
#include <string>

#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

// The texts of the elements whose content is the value, each with a bar behind it.
std::string Rendered(const TestValue& value) {
    TestChunk chunk;
    Tokens definition(chunk);
    definition.Header().Open("Event").CloseStart().SlotElement("D", 0).End().EndFragment();
    const std::string xml = RenderTemplate(chunk, definition, {value});
    std::string texts;
    for (auto begin = xml.find("<D>"); begin != std::string::npos; begin = xml.find("<D>", begin + 1)) {
        texts.append(xml, begin + 3, xml.find("</D>", begin) - begin - 3);
        texts += '|';
    }
    return texts;
}

TEST(ValueText, EveryTypeHasThePlatformsForm) {
    struct Case {
        std::uint8_t Type;
        std::string Bytes;
        std::string Text;
    };
    const std::string guid("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16);
    const std::string systemSid("\x01\x01\x00\x00\x00\x00\x00\x05\x12\x00\x00\x00", 12);
    const Case cases[] = {
        {0x00, "", ""},
        {0x01, Utf16(u"caf\u00E9 \U0001F600"), "caf\xC3\xA9 \xF0\x9F\x98\x80"},
        {0x02, "caf\xE9 \x80", "caf\xC3\xA9 \xE2\x82\xAC"},
        {0x03, LittleEndian(0x80, 1), "-128"},
        {0x04, LittleEndian(0xFF, 1), "255"},
        {0x05, LittleEndian(0xFFFF, 2), "-1"},
        {0x06, LittleEndian(0xFFFF, 2), "65535"},
        {0x07, LittleEndian(0x80000000, 4), "-2147483648"},
        {0x08, LittleEndian(0xFFFFFFFF, 4), "4294967295"},
        {0x09, LittleEndian(0x8000000000000000, 8), "-9223372036854775808"},
        {0x0A, LittleEndian(0xFFFFFFFFFFFFFFFF, 8), "18446744073709551615"},
        {0x0B, LittleEndian(0x3DCCCCCD, 4), "0.1"},
        {0x0B, LittleEndian(0xFF800000, 4), "-INF"},
        {0x0C, LittleEndian(0x3FB999999999999A, 8), "0.1"},
        {0x0C, LittleEndian(0x7FF8000000000000, 8), "NaN"},
        {0x0D, LittleEndian(1, 4), "true"},
        {0x0D, LittleEndian(0, 4), "false"},
        {0x0D, LittleEndian(0x100, 4), "true"},
        {0x0D, LittleEndian(7, 1), "true"},
        {0x0E, std::string("\x00\xAB\x7F", 3), "00AB7F"},
        {0x0F, guid, "{00112233-4455-6677-8899-aabbccddeeff}"},
        {0x10, LittleEndian(0x3E7, 4), "0x3e7"},
        {0x10, LittleEndian(0xFFFFFFFF00000001, 8), "0xffffffff00000001"},
        {0x11, LittleEndian(133541176291234567, 8), "2024-03-05T13:07:09.1234567Z"},
        {0x11, LittleEndian(0, 8), "1601-01-01T00:00:00.0000000Z"},
        {0x11, LittleEndian(UINT64_MAX, 8), "60056-05-28T05:36:10.9551615Z"},
        {0x12, Utf16({u"\x07E8\x0003\x0002\x0005\x000D\x0007\x0009\x007B", 8}), "2024-03-05T13:07:09.123Z"},
        {0x13, systemSid, "S-1-5-18"},
        {0x13, std::string("\x01\x00\xFF\xFF\xFF\xFF\xFF\xFF", 8), "S-1-0xFFFFFFFFFFFF"},
        {0x14, LittleEndian(0, 4), "0x0"},
        {0x15, LittleEndian(0x8020000000000000, 8), "0x8020000000000000"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(Rendered({each.Type, each.Bytes}), each.Text + "|") << "type " << int{each.Type};
    }
}

TEST(ValueText, ValuesOfOddSizesAreStillShown) {
    EXPECT_EQ(Rendered({0x08, LittleEndian(0x1234, 2)}), "4660|");
    EXPECT_EQ(Rendered({0x08, ""}), "|");
    EXPECT_EQ(Rendered({0x0F, "\x01\x02"}), "0102|");
    EXPECT_EQ(Rendered({0x0C, LittleEndian(1, 4)}), "01000000|");
    EXPECT_EQ(Rendered({0x12, ""}), "|");
    // Not a security identifier: revision 2, or more sub-authorities than bytes.
    EXPECT_EQ(Rendered({0x13, std::string("\x02\x00\x00\x00\x00\x00\x00\x05", 8)}), "0200000000000005|");
    EXPECT_EQ(Rendered({0x13, std::string("\x01\x0F\x00\x00\x00\x00\x00\x05", 8)}), "010F000000000005|");
    EXPECT_EQ(Rendered({0x7E, "\x5A"}), "5A|");
    // Zero characters that were counted as part of a text.
    EXPECT_EQ(Rendered({0x01, Utf16(std::u16string_view(u"ab\0\0", 4))}), "ab|");
    EXPECT_EQ(Rendered({0x01, "a"}), "|");
}

TEST(ValueText, ArraysRepeatTheirElement) {
    EXPECT_EQ(Rendered({0x81, Utf16(std::u16string_view(u"one\0\0three\0", 11))}), "one||three|");
    EXPECT_EQ(Rendered({0x81, Utf16(u"unterminated")}), "unterminated|");
    EXPECT_EQ(Rendered({0x82, std::string("a\0b", 3)}), "a|b|");
    EXPECT_EQ(Rendered({0x86, LittleEndian(0x00020001, 4)}), "1|2|");
    EXPECT_EQ(Rendered({0x83, "\xFF\x01"}), "-1|1|");
    EXPECT_EQ(Rendered({0x8D, LittleEndian(0x0000000100000000, 8)}), "false|true|");
    EXPECT_EQ(Rendered({0x95, LittleEndian(0x10, 8) + LittleEndian(0x20, 8)}), "0x10|0x20|");
    EXPECT_EQ(Rendered({0x90, LittleEndian(5, 8)}), "0x5|");
    EXPECT_EQ(Rendered({0x90, LittleEndian(5, 4)}), "0x5|");
    const std::string sid("\x01\x01\x00\x00\x00\x00\x00\x05\x12\x00\x00\x00", 12);
    EXPECT_EQ(Rendered({0x93, sid + sid}), "S-1-5-18|S-1-5-18|");
    EXPECT_EQ(Rendered({0x88, LittleEndian(7, 4) + "xx"}), "7|");
    EXPECT_EQ(Rendered({0x81, ""}), "");
}

TEST(ValueText, MarkupIsEscapedAndForbiddenCharactersAreReplaced) {
    EXPECT_EQ(Rendered(TextValue(u"a<b>&'\"c")), "a&lt;b&gt;&amp;'\"c|");
    EXPECT_EQ(Rendered({0x02, "<&>"}), "&lt;&amp;&gt;|");
    EXPECT_EQ(Rendered(TextValue(u"tab\tline\r\nend")), "tab\tline\r\nend|");
    const char16_t forbidden[] = {u'a', 1, u'b', 0xD83D, u'c', 0xDE00, u'd', 0xFFFF, 0, u'e'};
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(Rendered(TextValue({forbidden, 10})),
              "a" + replaced + "b" + replaced + "c" + replaced + "d" + replaced + replaced + "e|");
    // A pair that is cut off by the end of the text, and the same among plain characters.
    EXPECT_EQ(Rendered({0x01, Utf16(u"plain text ") + "\x3D\xD8"}), "plain text " + replaced + "|");
    EXPECT_EQ(Rendered(TextValue(u"\u0416\u0443\u043A <plain>")), "\xD0\x96\xD1\x83\xD0\xBA &lt;plain&gt;|");
}

// Texts are copied in blocks, so the place of a special character in its block must make no difference.
TEST(ValueText, EveryCharacterIsWrittenAnywhereInAText) {
    const std::string replaced = "\xEF\xBF\xBD";
    const std::map<char16_t, std::string> special = {
        {u'&', "&amp;"},    {u'<', "&lt;"},     {u'>', "&gt;"},           {0xD800, replaced},
        {0xDFFF, replaced}, {0xFFFE, replaced}, {0x7FFF, "\xE7\xBF\xBF"}, {0x8020, "\xE8\x80\xA0"}};
    std::u16string characters;
    for (char16_t character = 1; character < 0x180; ++character) {
        characters += character;
    }
    characters += u"\x7FFF\x8020\xFFFE\xDFFF\xD800";
    const std::u16string letters = u"abcdefghijklmnopqrstuvwxyz";
    for (std::size_t between = 1; between < letters.size(); ++between) {
        std::u16string text;
        std::string expected;
        for (const char16_t character : characters) {
            text += character + letters.substr(0, between);
            const bool forbidden = character < 0x20 && character != '\t' && character != '\n' && character != '\r';
            if (const auto found = special.find(character); found != special.end()) {
                expected += found->second;
            } else if (forbidden) {
                expected += replaced;
            } else if (character < 0x80) {
                expected += static_cast<char>(character);
            } else {
                expected += static_cast<char>(0xC0 | character >> 6);
                expected += static_cast<char>(0x80 | (character & 0x3F));
            }
            expected.append(letters.begin(), letters.begin() + static_cast<std::ptrdiff_t>(between));
        }
        ASSERT_EQ(Rendered(TextValue(text)), expected + "|") << between << " letters between";
    }
}

}  // namespace
}  // namespace corvina::evtx::test
