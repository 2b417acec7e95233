// Events as trees, and which System values are known for sure without one.
#include "embedded/evtx/event_tree.h"

#include <gtest/gtest.h>

#include "base/utf.h"
#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

using NodeKind = EventTree::NodeKind;

constexpr SystemFieldSet EventId = SystemFieldSet::Of(SystemField::EventId);

void AppendNodes(const EventTree& tree, std::uint32_t begin, std::uint32_t end, std::string& shown) {
    for (std::uint32_t index = begin; index < end; index = tree.Nodes()[index].End) {
        const EventTree::Node& node = tree.Nodes()[index];
        TextBuffer<wchar_t> text;
        tree.AppendText(node, text);
        AppendUtf8FromUtf16(node.Name, shown);
        if (node.Kind == NodeKind::Element) {
            shown += '(';
            AppendNodes(tree, index + 1, node.End, shown);
            shown += ')';
        } else {
            shown += (node.Kind == NodeKind::Attribute ? "='" : "'") + Utf8FromWide(text.View()) + "'";
        }
    }
}

// "Event(System(Level('4')))"; attributes come first, without parentheses. Empty when there is no sound record.
std::string TreeOf(TestChunk& testChunk) {
    const Chunk chunk(testChunk.Finish());
    EventTree tree;
    std::string shown;
    if (!chunk.Records().empty() && chunk.ReadTree(chunk.Records()[0], tree)) {
        AppendNodes(tree, 0, static_cast<std::uint32_t>(tree.Nodes().size()), shown);
    }
    return shown;
}

// A record that is an instance of what `define` puts between the event's tags.
template <typename Define>
TestChunk EventOf(Define define, const std::vector<TestValue>& values) {
    TestChunk chunk;
    Tokens definition(chunk);
    definition.Header().Open("Event").Attribute("xmlns").Text(u"urn:x").CloseStart();
    define(definition);
    definition.End().EndFragment();
    Tokens content(chunk);
    content.Header().Instance(chunk.Define(definition), values).EndFragment();
    chunk.AddRecord(1, content);
    return chunk;
}

TEST(EventTreeTest, HoldsElementsAttributesAndTexts) {
    TestChunk chunk = EventOf(
        [](Tokens& tokens) {
            tokens.Open("x:Data").Attribute("x:Name").Text(u"a").Slot(0).Attribute("xmlns:x").Text(u"y").CloseStart();
            tokens.Text(u"b").Character('c').Entity("amp").Entity("other").CharacterData(u"d").Slot(1);
            tokens.Open("Leaf").CloseEmpty().Text(u"e").End();
            tokens.SlotElement("Item", 2).Open("Gone").CloseStart().OptionalSlot(3).End();
        },
        {UInt32Value(7), TextValue(u"z"), {0x81, Utf16({u"m\0n\0", 4})}, NullValue()});
    EXPECT_EQ(TreeOf(chunk), "Event(Data(Name='a7''bc&&other;dz'Leaf()'e')Item('m')Item('n'))");
}

TEST(EventTreeTest, SystemValuesAreSingle) {
    TestChunk chunk = EventOf(
        [](Tokens& tokens) {
            tokens.Open("System").CloseStart().SlotElement("EventID", 0).TextElement("EventID", u"9");
            tokens.TextElement("Foreign", u"1").TextElement("Foreign", u"2").End();
            tokens.Open("System").CloseStart().TextElement("Level", u"1").End();
        },
        {{0x86, LittleEndian(5, 2) + LittleEndian(6, 2)}});
    EXPECT_EQ(TreeOf(chunk), "Event(System(EventID('5')Foreign('1')Foreign('2')))");
}

TEST(EventTreeTest, TooManyNodesAreRefused) {
    // An array of bytes in an element with many others around each of them.
    TestChunk chunk = EventOf(
        [](Tokens& tokens) {
            tokens.Open("Item").CloseStart().Slot(0);
            for (int child = 0; child < 50; ++child) {
                tokens.Open("a").CloseEmpty();
            }
            tokens.End();
        },
        {{0x84, std::string(10'000, '1')}});
    const Chunk read(chunk.Finish());
    EventTree tree;
    ASSERT_EQ(read.Records().size(), 1U);
    EXPECT_FALSE(read.ReadTree(read.Records()[0], tree));
    EXPECT_LE(tree.Nodes().size(), std::size_t{256} * 1024);
}

// Whether the event identifier that is read without the tree is certain, and which one it is.
std::pair<bool, int> FastEventId(TestChunk testChunk) {
    const Chunk chunk(testChunk.Finish());
    SystemValues values;
    values.Level = 77;
    SystemFieldSet certain;
    EXPECT_EQ(chunk.Records().size(), 1U);
    EXPECT_TRUE(chunk.ReadSystem(chunk.Records()[0], EventId, values, certain));
    EXPECT_EQ(values.Level, 77) << "a value that nobody asked for";
    return {certain.Has(SystemField::EventId), values.EventId ? *values.EventId : -1};
}

TEST(EventTreeTest, SystemValuesOfOddEventsAreNotCertain) {
    using Result = std::pair<bool, int>;
    const auto inSystem = [](auto define, const std::vector<TestValue>& values) {
        return FastEventId(EventOf(
            [&](Tokens& tokens) {
                define(tokens.Open("System").CloseStart());
                tokens.End();
            },
            values));
    };
    const auto slot = [](Tokens& tokens) { tokens.SlotElement("EventID", 0); };
    EXPECT_EQ(inSystem(slot, {UInt16Value(7)}), Result(true, 7));
    EXPECT_EQ(inSystem(slot, {NullValue()}), Result(true, -1));
    EXPECT_EQ(inSystem(slot, {{0x86, LittleEndian(7, 2) + LittleEndian(8, 2)}}), Result(true, 7));
    EXPECT_EQ(inSystem([](Tokens&) {}, {}), Result(true, -1));
    EXPECT_EQ(inSystem([](Tokens& tokens) { tokens.TextElement("EventID", u"7"); }, {}), Result(true, 7));
    // An element that is left out takes its attributes along.
    // So does one that is repeated for the items of an array without any.
    const auto qualifiers = [](bool optional, const TestValue& content) {
        const auto define = [&](Tokens& tokens) {
            tokens.Open("System").CloseStart().Open("EventID").Attribute("Qualifiers").Slot(0).CloseStart();
            optional ? tokens.OptionalSlot(1) : tokens.Slot(1);
            tokens.End().End();
        };
        const Chunk chunk(EventOf(define, {UInt16Value(3), content}).Finish());
        SystemValues values;
        EXPECT_TRUE(chunk.ReadSystem(chunk.Records()[0], values));
        return values.Qualifiers ? *values.Qualifiers : -1;
    };
    EXPECT_EQ(qualifiers(true, NullValue()), -1);
    EXPECT_EQ(qualifiers(false, NullValue()), 3);
    EXPECT_EQ(qualifiers(false, {0x86, ""}), -1);
    EXPECT_EQ(qualifiers(false, {0x86, LittleEndian(7, 2)}), 3);

    const auto isCertain = [&](auto define, const std::vector<TestValue>& slots) {
        return inSystem(define, slots).first;
    };
    EXPECT_FALSE(isCertain([&](Tokens& tokens) { slot(tokens), slot(tokens); }, {UInt16Value(7)}));
    EXPECT_FALSE(isCertain([&](Tokens& tokens) { slot(tokens), tokens.Slot(1); }, {UInt16Value(7), NullValue()}));
    EXPECT_FALSE(isCertain([](Tokens& tokens) { tokens.SlotElement("x:EventID", 0); }, {UInt16Value(7)}));
    EXPECT_FALSE(
        isCertain([](Tokens& tokens) { tokens.Open("EventID").CloseStart().TextElement("a", u"7").End(); }, {}));
    EXPECT_FALSE(FastEventId(EventOf([](Tokens& tokens) { tokens.Slot(0); }, {NullValue()})).first);
    EXPECT_FALSE(
        FastEventId(EventOf([](Tokens& tokens) { tokens.Open("System", 0).CloseStart().End(); }, {NullValue()})).first);
}

TEST(EventTreeTest, RecordsAreLookedAtWhenAsked) {
    TestChunk testChunk;
    for (std::uint64_t id = 1; id <= 4; ++id) {
        testChunk.AddPlainRecord(id);
    }
    testChunk.Finish();
    const std::uint32_t third = Chunk(testChunk.Bytes()).Places()[2].Offset;
    testChunk.Put(third + 28, "\x1F");  // content that is no binary XML
    const Chunk chunk(testChunk.Bytes(), false);
    const auto places = chunk.Places();
    ASSERT_EQ(places.size(), 4U);
    for (const std::size_t index : {3U, 2U, 0U, 2U, 1U}) {
        std::string xml;
        EXPECT_EQ(chunk.IsSound(places[index]), index != 2) << index;
        EXPECT_EQ(chunk.AppendXml(places[index], xml), index != 2) << index;
    }
    EXPECT_FALSE(chunk.IsSound(RecordPlace{}));
    EXPECT_EQ(chunk.Records().size(), 3U);
    EXPECT_EQ(chunk.Records().size(), 3U);
    EXPECT_EQ(chunk.Damage().SkippedRecords, 1U);
}

}  // namespace
}  // namespace corvina::evtx::test
