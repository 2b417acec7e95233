// The pool of texts and the rows over it, and the texts that are made of an event's XML.
#include <gtest/gtest.h>

#include "eventlog/event_xml.h"
#include "eventlog/row_store.h"
#include "eventlog/text_pool.h"

namespace corvina {
namespace {

TEST(TextPool, EqualTextsStandOnceAndEndWithAZeroCharacter) {
    TextPool pool;
    EXPECT_EQ(pool.Add(L""), TextReference::Empty);
    EXPECT_EQ(pool.Text(TextReference::Empty), L"");
    std::vector<TextReference> references;
    for (int number = 0; number < 100000; ++number) {
        references.push_back(pool.Add(L"text " + std::to_wstring(number)));
    }
    const std::size_t memory = pool.MemoryUsed();
    for (int number = 0; number < 100000; ++number) {
        const std::wstring text = L"text " + std::to_wstring(number);
        const TextReference reference = references[static_cast<std::size_t>(number)];
        ASSERT_EQ(pool.Add(text), reference);
        ASSERT_EQ(pool.Text(reference), text);
        ASSERT_EQ(pool.Text(reference).data()[text.size()], L'\0');
    }
    EXPECT_EQ(pool.MemoryUsed(), memory);
    pool.Clear();
    EXPECT_LT(pool.MemoryUsed(), 1024U);
    EXPECT_EQ(pool.Text(references.back()), L"") << "a reference of the past is no text";
    EXPECT_EQ(pool.Text(pool.Add(L"again")), L"again");
}

TEST(TextPool, LongTextsKeepAllTheirCharacters) {
    TextPool pool;
    std::vector<std::pair<TextReference, std::wstring>> added;
    for (const std::size_t length : {32763U, 32764U, 32765U, 32766U, 32767U, 32768U, 100000U, 1U, 1000001U, 2U}) {
        std::wstring text(length, static_cast<wchar_t>(L'a' + length % 26));
        text.back() = L'\0';  // embedded zero characters are text like any other
        added.emplace_back(pool.Add(text), text);
    }
    for (const auto& [reference, text] : added) {
        EXPECT_EQ(pool.Text(reference), text);
        EXPECT_EQ(pool.Add(text), reference);
    }
    EXPECT_EQ(pool.Text(pool.Add(std::wstring(TextPool::MaximumLength + 5, L'x'))).size(), TextPool::MaximumLength);
}

TEST(RowStore, CellsFollowTheVisibleColumnsAndTheOrder) {
    RowStore store;
    VisibleColumns columns;
    columns.set(static_cast<std::size_t>(Column::EventId)).set(static_cast<std::size_t>(Column::Message));
    store.Reset(columns);
    for (std::uint32_t id = 0; id < 10000; ++id) {
        EventRow row;
        row.EventId = id;
        row.EventIdText = store.AddText(std::to_wstring(id));
        row.MessageText = store.AddText(L"message");
        store.Append(row);
    }
    EXPECT_EQ(store.CellText(4097, 0), L"4097");
    EXPECT_EQ(store.CellText(4097, 1), L"message");
    EXPECT_EQ(store.CellText(4097, 2), L"");
    EXPECT_EQ(store.CellText(10000, 0), L"");

    std::vector<std::size_t> asked;
    store.EraseIf([&](std::size_t row) {
        asked.push_back(row);
        return row < 9990 || row % 2 == 0;
    });
    EXPECT_TRUE(std::is_sorted(asked.rbegin(), asked.rend())) << "from the last row to the first";
    ASSERT_EQ(store.Size(), 5U);
    EXPECT_EQ(store.Row(0).EventId, 9991U);
    EXPECT_EQ(store.Row(4).EventId, 9999U);
    store.Reorder(std::vector<std::uint32_t>{4, 0, 1, 2, 3});
    EXPECT_EQ(store.CellText(0, 0), L"9999");
    EXPECT_EQ(store.CellText(4, 0), L"9997");
    store.Reorder(std::vector<std::uint32_t>{4, 0, 1, 2, 9});  // no order of these rows
    store.Reorder(std::vector<std::uint32_t>{0});
    EXPECT_EQ(store.CellText(0, 0), L"9999");
    EXPECT_EQ(store.Row(99).EventId, 0U);

    store.Reset(VisibleColumns(1));
    EXPECT_EQ(store.Size(), 0U);
    EXPECT_EQ(store.CellText(0, 0), L"");
    EXPECT_LT(store.MemoryUsed(), 1024U);
}

TEST(EventXml, IsIndentedForReading) {
    EXPECT_EQ(IndentedXml(L"<Event a='1'><System><EventID>7</EventID></System><Security/></Event>"),
              L"<Event a=\"1\">\n  <System>\n    <EventID>7</EventID>\n  </System>\n  <Security />\n</Event>\n");
    EXPECT_EQ(IndentedXml(L"no <xml"), L"no <xml");
    EXPECT_EQ(IndentedXml(L""), L"");
    EXPECT_EQ(DataValueLines(L"<broken"), L"");
}

TEST(EventXml, DeepNestingCostsNeitherStackNorMemory) {
    std::wstring deep = L"<Event>";
    for (int level = 0; level < 100000; ++level) {
        deep += L"<D>";
    }
    deep += L"value";
    for (int level = 0; level < 100000; ++level) {
        deep += L"</D>";
    }
    deep += L"</Event>";
    EXPECT_EQ(IndentedXml(deep), deep);
    EXPECT_EQ(DataValueLines(deep), L"D: value\n");
}

TEST(EventXml, IsNeverMadeManyTimesAsLong) {
    const auto nested = [](int levels, int elements) {
        std::wstring xml;
        for (int level = 0; level < levels; ++level) {
            xml += L"<a>";
        }
        for (int element = 0; element < elements; ++element) {
            xml += L"<b/>";
        }
        for (int level = 0; level < levels; ++level) {
            xml += L"</a>";
        }
        return xml;
    };
    const std::wstring wide = nested(3, 100'000);
    EXPECT_GT(IndentedXml(wide).size(), wide.size());
    const std::wstring deepAndWide = nested(150, 100'000);
    EXPECT_TRUE(IndentedXml(deepAndWide) == deepAndWide);
    const std::wstring longText = L"<a>" + std::wstring(2'000'000, L'\x202E') + L"</a>";
    EXPECT_TRUE(IndentedXml(longText) == longText + L"\n");
}

}  // namespace
}  // namespace corvina
