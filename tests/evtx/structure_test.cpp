// Elements, attributes and all that stands between them; templates, optional parts and nested binary XML.
#include <gtest/gtest.h>

#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

class Structure : public testing::Test {
  protected:
    // The XML of a record without a template.
    std::string Render(const Tokens& element) {
        Tokens content(Chunk);
        content.Header().Raw(element.Bytes()).EndFragment();
        Chunk.AddRecord(1, content);
        return OnlyXml(Chunk);
    }

    Tokens Make() { return Tokens(Chunk); }
    Tokens Root() { return Make().Open("Event", NoDependencyField).CloseStart(); }

    TestChunk Chunk;
};

TEST_F(Structure, TagsAreWrittenAsThePlatformWritesThem) {
    Tokens tokens = Make();
    tokens.Open("Event", NoDependencyField)
        .Attribute("xmlns")
        .Text(u"urn:it's")
        .Attribute("b")
        .Text(u"<\">")
        .CloseStart();
    tokens.Open("Data", NoDependencyField).CloseStart().End().Open("Security", NoDependencyField).CloseEmpty();
    tokens.Text(u"a&b").End();
    EXPECT_EQ(Render(tokens), "<Event xmlns='urn:it&apos;s' b='&lt;\"&gt;'><Data></Data><Security/>a&amp;b</Event>");
}

TEST_F(Structure, ReferencesSectionsAndInstructionsStayWellFormed) {
    Tokens tokens = Root();
    tokens.Character(0x20AC).Character(0xD800).Character(1).Entity("lt").Entity("nbsp");
    tokens.CharacterData(u"a<]]>b").ProcessingInstruction("go", u"a?>b").End();
    EXPECT_EQ(Render(tokens),
              "<Event>&#8364;\xEF\xBF\xBD\xEF\xBF\xBD&lt;&amp;nbsp;<![CDATA[a<]]]]><![CDATA[>b]]><?go a? >b?></Event>");
}

TEST_F(Structure, AttributesMayBePutTogetherFromSeveralPieces) {
    Tokens tokens = Make().Open("Event", NoDependencyField);
    tokens.Attribute("a").Text(u"x").Character(u'y').Entity("amp").Text(u"z").CloseEmpty();
    EXPECT_EQ(Render(tokens), "<Event a='x&#121;&amp;z'/>");
}

TEST_F(Structure, NamesMayBeOutsideAscii) {
    EXPECT_EQ(Render(Make().TextElement("Gr\xC3\xB6\xC3\x9F"
                                        "e",
                                        u"\u00E9", NoDependencyField)),
              "<Gr\xC3\xB6\xC3\x9F"
              "e>\xC3\xA9</Gr\xC3\xB6\xC3\x9F"
              "e>");
}

TEST_F(Structure, NamesAndDefinitionsMayStandWhereTheyAreFirstUsed) {
    // One record that holds its template definition and the name of its element; a second one that refers to both.
    const std::uint32_t record = 512;
    const std::uint32_t definition = record + 24 + 4 + 10;
    const std::uint32_t name = definition + 24 + 4 + 11;
    const std::string inlineName = NameBytes("E");
    Tokens body =
        Make().Header().Raw("\x01\xFF\xFF").Raw(LittleEndian(0, 4)).Raw(LittleEndian(name, 4)).Raw(inlineName);
    body.CloseStart().Slot(0).End().EndFragment();
    const std::string definitionBytes = std::string(20, '\0') + LittleEndian(body.Bytes().size(), 4) + body.Bytes();
    const auto content = [&](const std::string& stored, const std::string& text) {
        Tokens tokens = Make().Header().Raw("\x0C\x01").Raw(LittleEndian(9, 4)).Raw(LittleEndian(definition, 4));
        tokens.Raw(stored).Raw(LittleEndian(1, 4)).Raw(LittleEndian(text.size(), 2)).Raw({"\x02\x00", 2}).Raw(text);
        return tokens.EndFragment();
    };
    ASSERT_EQ(Chunk.AddRecord(1, content(definitionBytes, "first")), record);
    Chunk.AddRecord(2, content("", "second"));
    const evtx::Chunk chunk(Chunk.Finish());
    ASSERT_EQ(chunk.Records().size(), 2U);
    EXPECT_EQ(XmlOf(chunk, chunk.Records()[0]), "<E>first</E>");
    EXPECT_EQ(XmlOf(chunk, chunk.Records()[1]), "<E>second</E>");
}

TEST_F(Structure, OptionalPartsWithoutValueAreLeftOut) {
    Tokens tokens = Make().Header().Open("Event").CloseStart();
    tokens.Open("A").Attribute("x").OptionalSlot(0).Attribute("y").OptionalSlot(1).CloseEmpty();
    tokens.Open("B").CloseStart().OptionalSlot(0).End();
    tokens.Open("C").CloseStart().OptionalSlot(1).End();
    tokens.SlotElement("D", 0);
    tokens.Open("E").CloseStart().Text(u"-").OptionalSlot(0).End();
    tokens.Open("F", 0).CloseStart().TextElement("G", u"inner").End();
    tokens.Open("H", 1).CloseEmpty();
    tokens.Open("I").CloseStart().OptionalSlot(99).End();
    tokens.End().EndFragment();
    EXPECT_EQ(RenderTemplate(Chunk, tokens, {NullValue(), TextValue(u"v")}),
              "<Event><A y='v'/><C>v</C><D></D><E>-</E><H/></Event>");
}

// Real templates make the root depend on the slot of the event's data, which need not have any.
TEST_F(Structure, TheRootIsNeverLeftOutAndNeverRepeated) {
    const auto definition = [this] { return Make().Header().Open("Event", 0).CloseStart().OptionalSlot(0).End(); };
    EXPECT_EQ(RenderTemplate(Chunk, definition().EndFragment(), {NullValue()}), "<Event></Event>");
    TestChunk repeated;
    Tokens content(repeated);
    Tokens root = Tokens(repeated).Header().Open("Event").CloseStart().Slot(0).End().EndFragment();
    content.Instance(repeated.Define(root), {{0x84, "ab"}});
    repeated.AddRecord(1, content);
    EXPECT_EQ(OnlyXml(repeated), "");
}

TEST_F(Structure, ArraysRepeatOnlyTheirOwnElement) {
    Tokens tokens = Make().Header().Open("Event").CloseStart();
    tokens.Open("Data").Attribute("Name").Text(u"n").Attribute("all").Slot(0).CloseStart();
    tokens.Text(u"<").Slot(0).Slot(1).Text(u">").End().End().EndFragment();
    EXPECT_EQ(
        RenderTemplate(Chunk, tokens, {{0x84, "\x01\x02"}, {0x84, "\x08\x09"}}),
        "<Event><Data Name='n' all='1 2'>&lt;18 9&gt;</Data><Data Name='n' all='1 2'>&lt;28 9&gt;</Data></Event>");
}

TEST_F(Structure, NestedXmlMayHaveATemplateOrStartWithAnElement) {
    Tokens inner = Make().Header().Open("EventData").CloseStart().SlotElement("Data", 0).End().EndFragment();
    Tokens withTemplate = Make().Header().Instance(Chunk.Define(inner), {TextValue(u"one")}).EndFragment();
    Tokens direct = Make().Header().Open("UserData", NoDependencyField).CloseStart();
    direct.TextElement("X", u"two", NoDependencyField).End().EndFragment();
    Tokens outer = Make().Header().Open("Event").CloseStart().Slot(0).OptionalSlot(1).Slot(2).SlotElement("T", 3).End();
    const std::vector<TestValue> values = {{NestedXmlType, withTemplate.Bytes()},
                                           {NestedXmlType, direct.Bytes()},
                                           {NestedXmlType, ""},
                                           TextValue(u"after")};
    EXPECT_EQ(RenderTemplate(Chunk, outer.EndFragment(), values),
              "<Event><EventData><Data>one</Data></EventData><UserData><X>two</X></UserData><T>after</T></Event>");
}

// What is not well-formed makes the record damaged: nobody gets half an event.
TEST_F(Structure, InvalidTokensMakeTheRecordDamaged) {
    const auto isDamaged = [](auto make) {
        TestChunk chunk;
        Tokens tokens(chunk);
        make(tokens.Header());
        chunk.AddRecord(1, tokens);
        return OnlyXml(chunk).empty();
    };
    constexpr int None = NoDependencyField;
    const auto open = [](Tokens& tokens) -> Tokens& { return tokens.Open("Event", None).CloseStart(); };
    EXPECT_FALSE(isDamaged([&](Tokens& t) { open(t).End().EndFragment(); }));
    EXPECT_TRUE(isDamaged([](Tokens&) {})) << "nothing at all";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.EndFragment(); })) << "no element";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).EndFragment(); })) << "never closed";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).End().End(); })) << "closed twice";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(open(t).End()).End().EndFragment(); })) << "two roots";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.Text(u"x").TextElement("Event", u"", None); })) << "text before the root";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.TextElement("1st", u"", None); })) << "not a name";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.TextElement("", u"", None); })) << "no name";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.TextElement("a b", u"", None); })) << "not a name";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.TextElement(std::string(300, 'n'), u"", None); })) << "endless name";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.TextElement("Ev\xE2\xBC\x81nt", u"", None); }))
        << "a letter in some editions of XML only";
    EXPECT_TRUE(isDamaged([](Tokens& t) {
        t.Open("Event", None).Attribute("a").Text(u"1").Attribute("a").Text(u"2").CloseEmpty();
    })) << "attribute twice";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.Open("Event", None).Text(u"x").CloseEmpty(); })) << "text in a tag";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).Raw("\x1F").End(); })) << "unknown token";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).Raw("\x05\x04").End(); })) << "literal that is no text";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).Raw("\x05\x01\xFF\xFF"); })) << "text beyond the record";
    EXPECT_TRUE(isDamaged([&](Tokens& t) { open(t).ProcessingInstruction("XmL", u"").End(); })) << "declaration inside";
    EXPECT_TRUE(isDamaged([](Tokens& t) { t.Raw({"\x0F\x02\x01\x00", 4}); })) << "another version";
}

}  // namespace
}  // namespace corvina::evtx::test
