// What the builder writes means what the filter says: random filters are built, run over random events as the viewer
// runs them, and compared with a plain test of their criteria on each event.
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/calendar.h"
#include "embedded/clock.h"
#include "query/query_doubles.h"
#include "support/log_machinery.h"

namespace corvina::test {
namespace {

constexpr std::uint64_t TicksPerMillisecond = 10'000;
constexpr std::uint64_t TicksPerMinute = 60 * FileTimeTicksPerSecond;
constexpr std::uint64_t TicksPerHour = 60 * TicksPerMinute;
constexpr std::uint64_t TicksPerDay = 24 * TicksPerHour;
constexpr std::uint64_t AuditMask = std::uint64_t{1} << 52;
constexpr std::uint64_t LocalOffset = 2 * TicksPerHour;

constexpr std::array<const wchar_t*, 3> ChannelPaths = {L"Application", L"System", L"Contoso-App/Operational"};
constexpr std::array<const wchar_t*, 3> ProviderNames = {L"Contoso-App", L"Service Control Manager", L"Other"};
constexpr std::array<const wchar_t*, 2> ComputerNames = {L"TESTPC", L"server.example"};
constexpr std::array<const wchar_t*, 3> UserSids = {L"", L"S-1-5-18", L"S-1-5-21-1-2-3-1001"};

class Dice {
  public:
    std::uint64_t Below(std::uint64_t limit) { return random_() % limit; }
    bool OneIn(std::uint64_t count) { return Below(count) == 0; }

    template <typename Range>
    auto OneOf(const Range& range) {
        return range[Below(std::size(range))];
    }

  private:
    std::mt19937_64 random_{20240305};
};

// What the choices of the time range reach back to, from choice 1 on.
constexpr std::array<std::uint64_t, 5> AskedAges = {TicksPerHour, 12 * TicksPerHour, TicksPerDay, 7 * TicksPerDay,
                                                    30 * TicksPerDay};

// Ages stay some minutes away from those that filters ask for, so that it does not matter how long the test takes.
TestEvent RandomEvent(Dice& dice, std::uint64_t now) {
    constexpr std::uint64_t Margin = 10 * TicksPerMinute;
    const std::uint64_t asked = dice.OneOf(AskedAges);
    const std::uint64_t age = dice.OneIn(2) ? asked + Margin : asked - Margin;
    TestEvent event;
    event.Id = static_cast<std::uint16_t>(dice.Below(10));
    event.Level = static_cast<std::uint8_t>(dice.Below(7));
    event.Provider = dice.OneOf(ProviderNames);
    event.Time = now - age + dice.Below(4) * TicksPerMillisecond + dice.Below(2);
    event.Channel = dice.OneOf(ChannelPaths);
    event.Computer = dice.OneOf(ComputerNames);
    event.Task = static_cast<std::uint16_t>(dice.Below(5));
    event.Keywords = dice.Below(16) | AuditMask * dice.Below(2);
    event.User = dice.OneOf(UserSids);
    return event;
}

enum class Variant { FromDialog, ForChannels, FromCriteria, FromCriteriaWithTasks };

// Criteria, and tests of events that have been drawn together with them instead of being read out of their texts.
class RandomFilter {
  public:
    RandomFilter(Dice& dice, Variant variant, std::uint64_t now, const std::vector<TestEvent>& events)
        : dice_(dice), now_(now), events_(events) {
        const bool withTasks = variant == Variant::FromCriteriaWithTasks;
        DrawChannels();
        Draw(&RandomFilter::DrawTime);
        Draw(&RandomFilter::DrawLevels);
        Draw(&RandomFilter::DrawEventIds);
        Draw(&RandomFilter::DrawProviders);
        Draw(&RandomFilter::DrawKeywords, !withTasks);
        Draw(&RandomFilter::DrawUser, !withTasks);
        Draw(&RandomFilter::DrawComputer, !withTasks);
        Draw(&RandomFilter::DrawTasks, withTasks);
    }

    FilterCriteria Criteria;

    bool Selects(const TestEvent& event) const {
        return std::all_of(tests_.begin(), tests_.end(), [&](const Test& test) { return test(event); });
    }

  private:
    using Test = std::function<bool(const TestEvent&)>;

    // A criterion that the variant does not look at is drawn all the same, without its test.
    void Draw(void (RandomFilter::*draw)(), bool counts = true) {
        const std::size_t before = tests_.size();
        if (dice_.OneIn(3)) {
            (this->*draw)();
        }
        if (!counts) {
            tests_.resize(before);
        }
    }

    void DrawChannels() {
        std::vector<std::wstring> paths;
        do {
            paths.emplace_back(dice_.OneOf(ChannelPaths));
            Criteria.Channels += paths.back() + L",";
        } while (dice_.OneIn(2));
        if (dice_.OneIn(2)) {
            Criteria.Channels.pop_back();
        }
        tests_.push_back([paths](const TestEvent& event) {
            return std::find(paths.begin(), paths.end(), event.Channel) != paths.end();
        });
    }

    void DrawTime() {
        if (dice_.OneIn(2)) {
            Criteria.Time.Choice = static_cast<std::uint32_t>(dice_.Below(6));
            if (Criteria.Time.Choice != 0) {
                tests_.push_back([oldest = AskedAges[Criteria.Time.Choice - 1], now = now_](const TestEvent& event) {
                    return now - event.Time <= oldest;
                });
            }
        } else {
            const std::uint64_t from = DrawMoment(Criteria.Time.From);
            const std::uint64_t to = DrawMoment(Criteria.Time.To);
            Criteria.Time.IsCustom = true;
            tests_.push_back([from, to](const TestEvent& event) { return event.Time >= from && event.Time <= to; });
        }
    }

    // A millisecond at or next to the time of an event, as local time; the same in UTC.
    std::uint64_t DrawMoment(LocalMoment& moment) {
        const std::uint64_t time = dice_.OneOf(events_).Time + dice_.Below(3) * TicksPerMillisecond;
        const std::uint64_t utc = time - time % TicksPerMillisecond;
        const CalendarTime local = CalendarFromFileTime(utc + LocalOffset);
        const auto field = [](auto number) { return static_cast<std::uint16_t>(number); };
        moment = {field(local.Year),
                  field(local.Month),
                  field(local.Day),
                  field(local.Hour),
                  field(local.Minute),
                  field(local.Second),
                  field(local.Ticks / TicksPerMillisecond)};
        return utc;
    }

    void DrawLevels() {
        std::array<bool, 6> levels{};
        for (std::size_t level = 1; level < levels.size(); ++level) {
            levels[level] = dice_.OneIn(2);
        }
        Criteria.Levels = {levels[1], levels[2], levels[3], levels[4], levels[5]};
        levels[0] = levels[4];
        if (std::find(levels.begin(), levels.end(), true) != levels.end()) {
            tests_.push_back([levels](const TestEvent& event) { return event.Level < 6 && levels[event.Level]; });
        }
    }

    void DrawEventIds() {
        using Range = std::pair<std::uint64_t, std::uint64_t>;
        std::vector<Range> included;
        std::vector<Range> excluded;
        bool ended = false;
        do {
            const bool excludes = dice_.OneIn(3);
            const Range range(dice_.Below(10), dice_.Below(10));
            const bool single = dice_.OneIn(2);
            ended = ended || dice_.OneIn(12);
            Criteria.EventIds += ended ? L" ," : std::wstring();
            Criteria.EventIds += (excludes ? L"- " : L" ") + std::to_wstring(range.first) +
                                 (single ? L" " : L" -" + std::to_wstring(range.second)) + L",";
            if (!ended) {
                (excludes ? excluded : included).emplace_back(range.first, single ? range.first : range.second);
            }
        } while (!dice_.OneIn(4));
        const auto isIn = [](const std::vector<Range>& ranges, std::uint64_t id) {
            return std::any_of(ranges.begin(), ranges.end(),
                               [id](const Range& range) { return id >= range.first && id <= range.second; });
        };
        tests_.push_back([=](const TestEvent& event) {
            return (included.empty() || isIn(included, event.Id)) && !isIn(excluded, event.Id);
        });
    }

    void DrawProviders() {
        const std::wstring first = dice_.OneOf(ProviderNames);
        const std::wstring second = dice_.OneIn(2) ? dice_.OneOf(ProviderNames) : L"Missing";
        Criteria.Providers = first + L"," + second;
        tests_.push_back([=](const TestEvent& event) { return event.Provider == first || event.Provider == second; });
    }

    void DrawKeywords() {
        struct Typed {
            const wchar_t* Name;
            std::uint64_t Mask;
        };
        const std::array<Typed, 5> names = {
            {{L"red", 1}, {L"Blue", 4}, {L"AUDIT", AuditMask}, {L"none", 0}, {L"ed", 1}}};
        std::uint64_t sum = 0;
        do {
            const Typed typed = dice_.OneOf(names);
            Criteria.Keywords += std::wstring(typed.Name) + L",";
            sum += typed.Mask;
        } while (dice_.OneIn(2));
        tests_.push_back([sum](const TestEvent& event) { return sum == 0 || (event.Keywords & sum) != 0; });
    }

    void DrawUser() {
        const std::size_t user = dice_.Below(UserSids.size());
        Criteria.User = std::array{L"stranger", L"system", L"alice"}[user];
        if (user != 0) {
            tests_.push_back([user](const TestEvent& event) { return event.User == UserSids[user]; });
        }
    }

    void DrawComputer() {
        if (dice_.OneIn(3)) {
            Criteria.Computer = L"unreachable";
            return;
        }
        Criteria.Computer = dice_.OneOf(ComputerNames);
        tests_.push_back([name = Criteria.Computer](const TestEvent& event) { return event.Computer == name; });
    }

    void DrawTasks() {
        Criteria.Tasks.assign({static_cast<std::uint32_t>(dice_.Below(5)), static_cast<std::uint32_t>(dice_.Below(5))});
        tests_.push_back([tasks = Criteria.Tasks](const TestEvent& event) {
            return event.Task == tasks[0] || event.Task == tasks[1];
        });
    }

    Dice& dice_;
    std::uint64_t now_;
    const std::vector<TestEvent>& events_;
    std::vector<Test> tests_;
};

class QueryMeaning : public testing::Test, protected StoreMachinery {
  protected:
    QueryMeaning() {
        Building.Locale.OffsetTicks = LocalOffset;
        Building.AccountNames.Sids = {{L"system", UserSids[1]}, {L"alice", UserSids[2]}};
        Building.Reachability.Reachable = {ComputerNames.begin(), ComputerNames.end()};
        Building.Keywords.Records = {{L"Dark Red", 1}, {L"Red", 2}, {L"Blue", 4}, {L"Audit Failure", AuditMask}};
    }

    // Writes the events into the logs of their channels and gives each a record id of its own in all of them.
    void WriteEvents(std::vector<TestEvent>& events) {
        std::uint64_t nextId = 1;
        for (const std::wstring path : ChannelPaths) {
            std::vector<TestEvent> ofChannel;
            const std::uint64_t firstId = nextId;
            for (TestEvent& event : events) {
                if (event.Channel == path) {
                    event.RecordId = nextId++;
                    ofChannel.push_back(event);
                }
            }
            ASSERT_TRUE(Files.AddLog(L"localhost", path, ofChannel, firstId));
        }
    }

    std::wstring Build(const FilterCriteria& criteria, Variant variant) {
        const CriteriaDialog dialog(criteria);
        switch (variant) {
            case Variant::FromDialog:
                return Building.Builder.BuildQueryFromDialog(dialog, Building.Current);
            case Variant::ForChannels:
                return Building.Builder.BuildQueryForChannels(dialog, {criteria.Channels});
            case Variant::FromCriteria:
                return Building.Builder.BuildQueryFromCriteria(criteria);
            case Variant::FromCriteriaWithTasks:
                return Building.Builder.BuildQueryFromCriteriaWithTasks(criteria);
        }
        return {};
    }

    std::vector<std::uint64_t> RecordIdsOf(const std::wstring& document) {
        Logic->Loader.LoadQuery(document, L"view", NodeId::None);
        std::vector<std::uint64_t> ids;
        for (std::size_t row = 0; row < Logic->Rows.Size(); ++row) {
            ids.push_back(Logic->Rows.Row(row).RecordId);
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    QueryBuilding Building;
};

TEST_F(QueryMeaning, EventsAreThoseThatTheCriteriaAskFor) {
    Dice dice;
    const std::uint64_t now = embedded::CurrentFileTime() / TicksPerMillisecond * TicksPerMillisecond;
    std::vector<TestEvent> events;
    for (int count = 0; count < 150; ++count) {
        events.push_back(RandomEvent(dice, now));
    }
    WriteEvents(events);
    Start();
    int selective = 0;
    for (int round = 0; round < 800 && !HasFailure(); ++round) {
        const auto variant = static_cast<Variant>(dice.Below(4));
        const RandomFilter filter(dice, variant, now, events);
        std::vector<std::uint64_t> expected;
        for (const TestEvent& event : events) {
            if (filter.Selects(event)) {
                expected.push_back(*event.RecordId);
            }
        }
        std::sort(expected.begin(), expected.end());
        const std::wstring document = Build(filter.Criteria, variant);
        EXPECT_EQ(RecordIdsOf(document), expected) << testing::PrintToString(document);
        EXPECT_TRUE(Boxes.Errors.empty());
        selective += !expected.empty() && expected.size() < events.size() ? 1 : 0;
    }
    EXPECT_GT(selective, 400);  // otherwise the filters would have to be made up differently
    EXPECT_EQ(End(), 0U);
}

}  // namespace
}  // namespace corvina::test
