// Filters are answered from System values where these decide, and from the whole event otherwise. Random filters over
// random events must not show a difference.
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <span>

#include "embedded/filter_log.h"
#include "support/event_log_fixture.h"

namespace corvina::test {
namespace {

class RandomTexts {
  public:
    std::uint64_t Below(std::uint64_t limit) { return random_() % limit; }

    template <std::size_t Count>
    std::wstring OneOf(const std::array<const wchar_t*, Count>& texts) {
        return texts[Below(Count)];
    }

    // A filter of paths to values that some of the events have.
    std::wstring Filter() {
        const std::wstring root = OneOf(std::array{L"*", L"Event"});
        return root + L"[" + Condition(3) + L"]" + (Below(4) == 0 ? L" and *[" + Condition(2) + L"]" : L"");
    }

  private:
    std::wstring Condition(int depth) {
        if (depth > 0 && Below(2) == 0) {
            const std::wstring word = OneOf(std::array{L" and ", L" or "});
            return L"(" + Condition(depth - 1) + word + Condition(depth - 1) + L")";
        }
        switch (Below(6)) {
            case 0:
                return OneOf(std::array{L"EventData", L"System/Provider", L"System[EventRecordID]", L"*/Data[@Name]"});
            case 1:
                return L"EventData[Data[@Name='" + OneOf(std::array{L"Name", L"Count", L"Id"}) + L"']" + Comparison() +
                       Constant() + L"]";
            case 2:
                return L"System" + Path() + Comparison() + Constant();
            default:
                return L"System[" + SystemCondition(depth) + L"]";
        }
    }

    std::wstring SystemCondition(int depth) {
        if (depth > 0 && Below(2) == 0) {
            const std::wstring word = OneOf(std::array{L" and ", L" or "});
            return L"(" + SystemCondition(depth - 1) + word + SystemCondition(depth - 1) + L")";
        }
        switch (Below(8)) {
            case 0:
                return L"band(Keywords," + std::to_wstring(Below(8)) + L")";
            case 1:
                return L"TimeCreated[timediff(@SystemTime)" + Comparison() + std::to_wstring(Below(10) * 1000) + L"]";
            case 2:
                return L"Provider[@Name" + Comparison() + Constant() + L" or @Guid]";
            case 3:
                return L"*[position()=" + std::to_wstring(Below(4)) + L"]" + Comparison() + Constant();
            default:
                return Path().substr(1) + Comparison() + Constant();
        }
    }

    std::wstring Path() {
        return OneOf(std::array{L"/EventID", L"/EventID/@Qualifiers", L"/Level", L"/Task", L"/Keywords", L"/Channel",
                                L"/Computer", L"/Provider/@Name", L"/TimeCreated/@SystemTime", L"/EventRecordID",
                                L"/Security/@UserID", L"/Execution/@ProcessID", L"/Level/text()", L"/*", L"/*/@*"});
    }

    std::wstring Comparison() { return OneOf(std::array{L"=", L"=", L"!=", L"<", L"<=", L">", L">="}); }

    std::wstring Constant() {
        switch (Below(4)) {
            case 0:
                return OneOf(std::array{L"'S-1-5-18'", L"'A'", L"'B'", L"''", L"'true'", L"-1", L"18446744073709551615",
                                        L"'2024-03-05T13:07:12Z'", L"99999999999999999999"});
            case 1:
                return L"'" + std::to_wstring(Below(6)) + L"'";
            default:
                return std::to_wstring(Below(6));
        }
    }

    std::mt19937_64 random_{20240305};
};

// Values are few and small, so that filters hit some events and miss others.
evtx::WriterEvent RandomEvent(RandomTexts& random, std::size_t index) {
    const auto isThere = [&random] { return random.Below(4) != 0; };
    const auto name = [&random] { return random.OneOf(std::array{L"", L"A", L"B", L"3"}); };
    TestEvent plain;
    plain.Id = static_cast<std::uint16_t>(random.Below(6));
    plain.Level = static_cast<std::uint8_t>(random.Below(6));
    plain.Task = static_cast<std::uint16_t>(random.Below(3));
    plain.Keywords = random.Below(8);
    plain.Provider = name();
    plain.Computer = name();
    plain.User = isThere() ? L"S-1-5-18" : L"";
    plain.ProcessId = static_cast<std::uint32_t>(random.Below(6));
    if (isThere()) {
        plain.Qualifiers = static_cast<std::uint16_t>(random.Below(6));
    }
    evtx::WriterEvent event = MakeWriterEvent(plain, index % 6);
    if (!isThere()) {
        event.System.Level.reset();
        event.System.Keywords.reset();
    }
    using Kind = evtx::WriterValue::Kind;
    event.Data = {{L"Name", Kind::Text, name(), 0, {}},
                  {L"Count", Kind::UInt32, {}, random.Below(6), {}},
                  {L"Id", isThere() ? Kind::HexInt64 : Kind::Boolean, {}, random.Below(3), {}}};
    return event;
}

TEST(FilterAgreementTest, SystemValuesAndTheWholeEventGiveTheSameAnswers) {
    RandomTexts random;
    std::vector<evtx::WriterEvent> events;
    for (std::size_t index = 0; index < 60; ++index) {
        events.push_back(RandomEvent(random, index));
    }
    const FilterLog log(events);
    std::size_t selective = 0;
    for (int round = 0; round < 1000 && !HasFailure(); ++round) {
        const std::wstring text = random.Filter();
        const auto matching = log.Matching(text);
        EXPECT_TRUE(matching.has_value() && !HasFailure()) << std::string(text.begin(), text.end());
        selective += matching && !matching->empty() && matching->size() < events.size() ? 1 : 0;
    }
    // Otherwise the filters would have to be made up differently.
    EXPECT_GT(selective, 250U);
}

}  // namespace
}  // namespace corvina::test
