#include "embedded/publisher/message_table.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "embedded/publisher/parameter_text.h"
#include "publisher/image_builder.h"
#include "publisher/memory_image.h"

namespace corvina::publisher {
namespace {

const TestMessages Messages = {{0, L"zero"},
                               {1, L"first %1"},
                               {2, L""},
                               {1842, L"Yes"},
                               {1843, L"%1 and %%2"},
                               {0x400007D0, L"two\r\nlines\r\n"},
                               {0xC0040007, L"\xFC\x20AC\x2019"},
                               {0xFFFFFFFE, L"the last"}};

MessageTable Table(const TestMessages& messages, bool isUtf16 = true) {
    return MessageTable(BytesOf(MakeMessageTable(messages, 0, isUtf16).Bytes));
}

TEST(MessageTable, FindsTextsByNumber) {
    const MessageTable table = Table(Messages);
    EXPECT_FALSE(table.IsEmpty());
    for (const auto& [id, text] : Messages) {
        EXPECT_EQ(table.Find(id), text) << id;
    }
    for (const std::uint32_t id : {3U, 1841U, 1844U, 0x400007D1U, 0x40000001U, 0xFFFFFFFFU}) {
        EXPECT_EQ(table.Find(id), std::nullopt) << id;
    }
}

TEST(MessageTable, EightBitTextsAreOfTheWesternCodePage) {
    EXPECT_EQ(Table({{1, L"a\x80\x92\xFC\x81"}}, false).Find(1), std::wstring(L"a\x20AC\x2019\xFC\x81"));
    std::string utf8 = MakeMessageTable({{1, L"\xC3\xBC"}}, 0, false).Bytes;
    utf8[18] = 2;
    EXPECT_EQ(MessageTable(BytesOf(utf8)).Find(1), std::wstring(L"\xFC"));
}

TEST(MessageTable, OneLineBreakAtTheEndIsTheCompilers) {
    std::string bytes = MakeMessageTable({{1, L"a\r\n"}, {2, L"b"}}, 0, false).Bytes;
    EXPECT_EQ(MessageTable(BytesOf(bytes)).Find(1), L"a\r\n");
    bytes.replace(bytes.rfind("b\r\n"), 3, "\nb\n");
    EXPECT_EQ(MessageTable(BytesOf(bytes)).Find(2), L"\r\nb") << "line breaks are the platform's";
}

TEST(MessageTable, DamagedTablesKeepWhatIsSound) {
    const std::string bytes = MakeMessageTable(Messages).Bytes;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const MessageTable table(BytesOf(bytes.substr(0, size)));
        for (const auto& [id, text] : Messages) {
            const std::optional<std::wstring> found = table.Find(id);
            EXPECT_TRUE(!found || *found == text) << size << " " << id;
        }
    }
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (const char byte : {'\0', '\x03', '\x80', '\xFF'}) {
            std::string changed = bytes;
            changed[place] = byte;
            const MessageTable table(BytesOf(changed));
            for (const auto& [id, text] : Messages) {
                table.Find(id);
            }
            EXPECT_LE(table.ByteSize(), 2 * bytes.size());
        }
    }
}

// 40,000 blocks of four thousand million messages each, all at the same place.
TEST(MessageTable, ClaimsBeyondTheBytesAreNotBelieved) {
    std::string bytes(4 + 12 * 40'000 + 4 * 1'000, '\0');
    const auto put = [&bytes](std::size_t place, std::uint32_t value) {
        for (std::size_t index = 0; index < 4; ++index) {
            bytes[place + index] = static_cast<char>(value >> (8 * index) & 0xFF);
        }
    };
    put(0, 0xFFFFFFFF);
    for (std::size_t block = 0; block < 40'000; ++block) {
        put(4 + 12 * block + 4, 0xFFFFFFFF);
        put(4 + 12 * block + 8, 4 + 12 * 40'000);
    }
    for (std::size_t entry = 0; entry < 1'000; ++entry) {
        put(4 + 12 * 40'000 + 4 * entry, 4);
    }
    const MessageTable table(BytesOf(bytes));
    EXPECT_LE(table.ByteSize(), 2 * bytes.size());
    EXPECT_EQ(table.Find(999), L"");
    EXPECT_EQ(table.Find(1'000), std::nullopt);
}

TEST(ExpandParameters, FillsInTextsThatValuesStandFor) {
    const auto tables = [](const TestMessages& messages) {
        return std::make_shared<const MessageTables>(
            std::vector{std::make_shared<const MessageTable>(Table(messages))});
    };
    Publisher publisher;
    publisher.Messages = tables({{1842, L"own"}, {7, L"seven%0 and no more"}});
    const auto expanded = [&publisher](std::wstring text) {
        ExpandParameters(publisher, text);
        return text;
    };
    EXPECT_EQ(expanded(L"%%1842"), L"own") << "without a parameter file the provider's own texts count";
    publisher.Parameters = tables(Messages);
    EXPECT_EQ(expanded(L"Allowed:\t%%1842\r\n%%1842%%1842."), L"Allowed:\tYes\r\nYesYes.");
    EXPECT_EQ(expanded(L"%%7 %%%1842 %%1843"), L"seven %Yes %1 and %2");
    EXPECT_EQ(expanded(L"%%18422 %% %1842 %%x %%99999999999 100%%"), L"%%18422 %% %1842 %%x %%99999999999 100%%");
    EXPECT_EQ(expanded(L"%%2|"), L"|") << "an empty text is one";
    EXPECT_EQ(expanded(L"%%"), L"%%");
    publisher.Messages = nullptr;
    publisher.Parameters = nullptr;
    EXPECT_EQ(expanded(L"%%1842"), L"%%1842");

    publisher.Parameters = tables({{1, std::wstring(10'000, L'x')}});
    std::wstring many;
    for (int count = 0; count < 10'000; ++count) {
        many += L"%%1";
    }
    EXPECT_EQ(expanded(many).size(), std::size_t{16} << 20);
}

}  // namespace
}  // namespace corvina::publisher
