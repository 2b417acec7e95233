// Any texts in the criteria of a filter. What was typed stands in the query between pieces that are known, and the
// event log runs the query or refuses it as invalid.
//
// The first line of an input holds everything that is no text, the others are the texts of the filter: event IDs,
// channels ("*" stands for those of the store), providers, keywords, user and computer.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/utf.h"
#include "embedded/embedded_event_log.h"
#include "embedded/xpath/query_document.h"
#include "platform/error_codes.h"
#include "query/criterion_fragments.h"
#include "query/query_doubles.h"
#include "store_queries.h"

namespace {

using namespace corvina;
using namespace corvina::fuzz;

enum class Variant { FromDialog, ForChannels, FromCriteria, FromCriteriaWithTasks };

struct Input {
    Variant Builder = Variant::FromDialog;
    FilterCriteria Criteria;
};

// The whole of a text, piece by piece: another piece than the one that comes next is a fault.
class Pieces {
  public:
    explicit Pieces(std::wstring_view text) : rest_(text) {}

    void Take(std::wstring_view piece) {
        Expect(rest_.starts_with(piece));
        rest_.remove_prefix(piece.size());
        anyTaken_ = true;
    }
    void TakeBetween(std::wstring_view separator) {
        if (anyTaken_) {
            Take(separator);
        }
    }
    bool AtEnd() const { return rest_.empty(); }

  private:
    std::wstring_view rest_;
    bool anyTaken_ = false;
};

// Cuts the first item off a list; false at its end and where an item is empty.
bool TakeItem(std::wstring& list, std::wstring& item) {
    const std::size_t comma = std::min(list.find(L','), list.size());
    item = list.substr(0, comma);
    list.erase(0, comma + 1);
    return !item.empty();
}

void CheckEventIds(std::wstring list, const EventIdFragments& fragments) {
    list.erase(std::remove(list.begin(), list.end(), L' '), list.end());
    Pieces included(fragments.IncludedEventIds);
    Pieces excluded(fragments.ExcludedEventIds);
    for (std::wstring item; TakeItem(list, item);) {
        const bool excludes = item[0] == L'-';
        Pieces& fragment = excludes ? excluded : included;
        item.erase(0, excludes ? 1 : 0);
        fragment.TakeBetween(L" or ");
        const std::size_t sign = item.find(L'-');
        if (sign == std::wstring::npos) {
            fragment.Take(L"EventID=" + item);
        } else {
            fragment.Take(L"(EventID&gt;=" + item.substr(0, sign) + L" and EventID&lt;=" + item.substr(sign + 1) +
                          L")");
        }
    }
    Expect(included.AtEnd() && excluded.AtEnd());
}

// A builder in a world where every user is the system, and computers answer unless their names start with "n".
struct World : test::QueryBuilding {
    explicit World(const FilterCriteria& criteria) {
        AccountNames.Sids[criteria.User] = L"S-1-5-18";
        if (!criteria.Computer.starts_with(L'n')) {
            Reachability.Reachable = {criteria.Computer};
        }
        Keywords.Records = {
            {L"Audit Failure", 0x10000000000000}, {L"Audit Success", 0x20000000000000}, {L"All", ~0ULL}};
    }

    std::wstring Build(const Input& input) {
        const test::CriteriaDialog dialog(input.Criteria);
        switch (input.Builder) {
            case Variant::FromDialog:
                return Builder.BuildQueryFromDialog(dialog, Current);
            case Variant::ForChannels:
                return Builder.BuildQueryForChannels(dialog, {input.Criteria.Channels});
            case Variant::FromCriteria:
                return Builder.BuildQueryFromCriteria(input.Criteria);
            case Variant::FromCriteriaWithTasks:
                return Builder.BuildQueryFromCriteriaWithTasks(input.Criteria);
        }
        return {};
    }
};

// Fragments in the order of the variant. Those that nothing typed gets into are taken from their functions.
std::wstring ExpectedCondition(const Input& input, World& world) {
    const FilterCriteria& criteria = input.Criteria;
    std::wstring providers;
    std::wstring names = criteria.Providers;
    for (std::wstring name; TakeItem(names, name);) {
        providers += (providers.empty() ? L"Provider[@Name='" : L" or @Name='") + name + L"'";
    }
    providers += providers.empty() ? L"" : L"]";
    const std::wstring keywords = KeywordFragment(criteria.Keywords, world.Keywords.Records);
    const std::wstring user = criteria.User.empty() ? L"" : L"Security[@UserID='S-1-5-18']";
    const bool isReachable = !criteria.Computer.empty() && criteria.Computer[0] != L'n';
    const std::wstring computer = isReachable ? L"Computer='" + criteria.Computer + L"'" : L"";
    const bool isDialog = input.Builder == Variant::FromDialog || input.Builder == Variant::ForChannels;
    const bool withTasks = input.Builder == Variant::FromCriteriaWithTasks;
    const std::array<std::wstring, 7> fragments = {
        TimeFragment(criteria.Time, world.Locale),
        LevelFragment(criteria.Levels),
        ParseEventIdList(criteria.EventIds).IncludedEventIds,
        isDialog ? keywords : providers,
        isDialog ? providers : (withTasks ? TaskFragment(criteria.Tasks) : keywords),
        withTasks ? L"" : user,
        withTasks ? L"" : computer,
    };
    std::wstring condition;
    for (const std::wstring& fragment : fragments) {
        condition += fragment.empty() ? L"" : (condition.empty() ? L"(" : L" and (") + fragment + L")";
    }
    return condition;
}

// One Select for each channel, all with the same condition, and a Suppress for each if there is something to exclude.
void CheckDocument(const std::wstring& document, const Input& input, World& world) {
    std::wstring channels = input.Criteria.Channels;
    if (document.empty()) {
        Expect(channels.empty() && input.Builder != Variant::ForChannels && !world.Boxes.Informations.empty());
        return;
    }
    const std::wstring condition = ExpectedCondition(input, world);
    const std::wstring exclusion = ParseEventIdList(input.Criteria.EventIds).ExcludedEventIds;
    Pieces pieces(document);
    pieces.Take(L"<QueryList>  <Query Id=\"0\" Path=\"" + channels.substr(0, channels.find(L',')) + L"\">");
    for (std::wstring channel; TakeItem(channels, channel);) {
        pieces.Take(L"  <Select Path=\"" + channel + L"\">*");
        pieces.Take((condition.empty() ? L"" : L"[System[" + condition + L"]]") + L"</Select>");
        if (!exclusion.empty()) {
            pieces.Take(L"  <Suppress Path=\"" + channel + L"\">*[System[" + exclusion + L"]]</Suppress>");
        }
    }
    pieces.Take(L"  </Query></QueryList>");
    Expect(pieces.AtEnd());
}

// What the event log reads of a text ends at its first zero character.
void Run(std::wstring document) {
    static const Store store;
    static embedded::EmbeddedEventLog log(store.Folder(), L"");
    document.resize(std::min(document.find(L'\0'), document.size()));
    const bool isValid = xpath::QueryDocument::Parse(document, 0).has_value();
    {
        std::uint32_t error = 0;
        const EvtHandle query = OpenQuery(log, document, EvtQueryTolerateQueryErrors, error);
        Expect(isValid == (error != error::InvalidQuery));
        if (query) {
            EventsOf(log, query);
        }
    }
    Expect(log.OpenHandleCount() == 0);
}

// Boxes and their cut are no subject here: texts that are longer than a box are left out.
void Try(const Input& input) {
    constexpr std::size_t LongestBox = 2599;
    const FilterCriteria& criteria = input.Criteria;
    for (const std::wstring* const text : {&criteria.EventIds, &criteria.Channels, &criteria.Providers,
                                           &criteria.Keywords, &criteria.User, &criteria.Computer}) {
        if (text->size() > LongestBox) {
            return;
        }
    }
    CheckEventIds(criteria.EventIds, ParseEventIdList(criteria.EventIds));
    World world(criteria);
    const std::wstring document = world.Build(input);
    CheckDocument(document, input, world);
    if (!document.empty()) {
        Run(document);
    }
}

class LineReader {
  public:
    explicit LineReader(std::wstring_view text) : rest_(text) {}

    std::wstring Next() {
        const std::size_t end = std::min(rest_.find(L'\n'), rest_.size());
        std::wstring line(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return line;
    }

  private:
    std::wstring_view rest_;
};

Input ReadInput(std::wstring_view text) {
    LineReader lines(text);
    const std::wstring numbers = lines.Next();
    std::size_t place = 0;
    const auto next = [&] { return place < numbers.size() ? static_cast<std::uint32_t>(numbers[place++]) : 0; };
    const auto field = [&] { return static_cast<std::uint16_t>(next()); };
    Input input;
    FilterCriteria& criteria = input.Criteria;
    input.Builder = static_cast<Variant>(next() % 4);
    criteria.Time.Choice = next() % 8;
    criteria.Time.IsCustom = criteria.Time.Choice == 7;
    const std::uint32_t levels = next();
    criteria.Levels = {(levels & 1) != 0, (levels & 2) != 0, (levels & 4) != 0, (levels & 8) != 0, (levels & 16) != 0};
    for (LocalMoment* const moment : {&criteria.Time.From, &criteria.Time.To}) {
        *moment = {field(), field(), field(), field(), field(), field(), field()};
    }
    while (place < numbers.size()) {
        criteria.Tasks.push_back(next());
    }
    criteria.EventIds = lines.Next();
    criteria.Channels = lines.Next();
    criteria.Channels = criteria.Channels == L"*" ? L"Application,System,Security" : criteria.Channels;
    criteria.Providers = lines.Next();
    criteria.Keywords = lines.Next();
    criteria.User = lines.Next();
    criteria.Computer = lines.Next();
    return input;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Try(ReadInput(WideFromUtf8({reinterpret_cast<const char*>(data), size})));
    std::wstring utf16;
    AppendUtf16(std::span(reinterpret_cast<const std::byte*>(data), size), utf16);
    Try(ReadInput(utf16));
    return 0;
}
