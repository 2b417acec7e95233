#include <algorithm>
#include <array>
#include <limits>

#include "base/calendar.h"
#include "base/format_text.h"
#include "base/parse_number.h"
#include "base/utf.h"
#include "query/comma_list.h"
#include "query/stored_filter.h"
#include "query/stored_filter_document.h"
#include "query/stored_filter_text.h"

namespace corvina {
namespace {

using namespace stored_filter;

constexpr std::uint32_t LastTimeChoice = 5;

// "2026-11-22T01:16:28.250"; whatever follows the date may be missing from the end.
constexpr std::wstring_view MomentLayout = L"0000-00-00T00:00:00.000";

std::optional<LocalMoment> ParseMoment(std::wstring_view text) {
    constexpr std::array<std::size_t, 4> Lengths = {10, 16, 19, 23};
    if (std::find(Lengths.begin(), Lengths.end(), text.size()) == Lengths.end()) {
        return std::nullopt;
    }
    std::array<std::uint16_t, 7> fields{};
    std::size_t field = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (MomentLayout[index] == L'0') {
            if (text[index] < L'0' || text[index] > L'9') {
                return std::nullopt;
            }
            fields[field] = static_cast<std::uint16_t>(fields[field] * 10 + (text[index] - L'0'));
        } else if (text[index] == MomentLayout[index]) {
            ++field;
        } else {
            return std::nullopt;
        }
    }
    const bool isReal =
        FileTimeFromCalendar({fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], 0}).has_value();
    return isReal ? std::optional<LocalMoment>(
                        {fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], fields[6]})
                  : std::nullopt;
}

std::string TextOfChildren(pugi::xml_node element) {
    std::string text;
    for (const pugi::xml_node part : element.children()) {
        if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) {
            text += part.value();
        }
    }
    return text;
}

std::wstring FilterText(pugi::xml_node element) {
    return UnescapedFilterText(WideFromUtf8(TextOfChildren(element)));
}

// The query stands in the file as a text; somebody who copied one from elsewhere may have put it there as elements.
std::wstring QueryText(pugi::xml_node element) {
    const pugi::xml_node list = element.child("QueryList");
    if (!list) {
        return FilterText(element);
    }
    TextWriter writer;
    list.print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return WideFromUtf8(writer.Text);
}

class Reader {
  public:
    Reader(const Document& document, StoredFilterFault& fault) : document_(document), fault_(fault) {}

    bool Read(StoredFilter& filter) {
        const pugi::xml_node root = document_.Tree.document_element();
        filter.Name = FilterText(root.child(NameElement));
        const pugi::xml_node query = root.child(QueryElement);
        filter.Query = QueryText(query);
        const pugi::xml_node criteria = root.child(CriteriaElement);
        for (const TextElement& element : TextElements) {
            filter.Criteria.*element.Text = FilterText(criteria.child(element.Name));
        }
        return ReadFlag(query, EditedAttribute, filter.IsQueryEdited) &&
               ReadTime(criteria.child(TimeElement), filter.Criteria.Time) &&
               ReadLevels(criteria.child(LevelsElement), filter.Criteria.Levels) &&
               ReadTasks(criteria.child(TasksElement), filter.Criteria.Tasks);
    }

  private:
    bool Refuse(pugi::xml_node element, std::wstring_view item, std::wstring_view expected) {
        const std::ptrdiff_t offset = element.offset_debug();
        SetFault(FormatText(L"%s: \"%.40s\" is not %s", {WideFromUtf8(element.name()), item, expected}), document_,
                 offset, fault_);
        return false;
    }

    bool ReadMoment(pugi::xml_node element, const char* attribute, LocalMoment& moment) {
        const std::wstring text = WideFromUtf8(element.attribute(attribute).value());
        const std::wstring_view trimmed = TrimmedFilterText(text);
        if (trimmed.empty()) {
            return true;
        }
        const std::optional<LocalMoment> parsed = ParseMoment(trimmed);
        moment = parsed.value_or(moment);
        return parsed || Refuse(element, trimmed, L"a date and time such as 2026-11-22T01:16:28.250");
    }

    bool ReadFlag(pugi::xml_node element, const char* attribute, bool& flag) {
        const std::wstring text = WideFromUtf8(element.attribute(attribute).value());
        const std::wstring_view value = TrimmedFilterText(text);
        flag = value == L"true" || value == L"1";
        return flag || value.empty() || value == L"false" || value == L"0" ||
               Refuse(element, value, L"\"true\" or \"false\"");
    }

    bool ReadTime(pugi::xml_node element, TimeCriterion& time) {
        if (!ReadFlag(element, CustomAttribute, time.IsCustom)) {
            return false;
        }
        const std::wstring text = WideFromUtf8(element.attribute(ChoiceAttribute).value());
        const std::wstring_view choice = TrimmedFilterText(text);
        if (!choice.empty()) {
            const std::optional<std::uint64_t> parsed = ParseUnsigned(choice, LastTimeChoice);
            if (!parsed) {
                return Refuse(element, choice, L"a number from 0 to 5");
            }
            time.Choice = static_cast<std::uint32_t>(*parsed);
        }
        return ReadMoment(element, FromAttribute, time.From) && ReadMoment(element, ToAttribute, time.To);
    }

    // False when `use` refuses an item, or when an empty one hides those behind it.
    template <typename Use>
    bool ForEachItem(pugi::xml_node element, std::wstring_view expected, Use use) {
        const std::wstring text = FilterText(element);
        std::size_t end = 0;
        for (const std::wstring_view item : CommaListItems(text)) {
            if (!use(TrimmedFilterText(item))) {
                return Refuse(element, item, expected);
            }
            end += item.size() + 1;
        }
        return end >= text.size() || Refuse(element, L"", expected);
    }

    bool ReadLevels(pugi::xml_node element, LevelMarks& marks) {
        return ForEachItem(element, L"a level", [&marks](std::wstring_view item) {
            const auto level = std::find_if(LevelNames.begin(), LevelNames.end(),
                                            [item](const LevelName& candidate) { return candidate.Name == item; });
            if (level == LevelNames.end()) {
                return false;
            }
            marks.*level->Mark = true;
            return true;
        });
    }

    bool ReadTasks(pugi::xml_node element, std::vector<std::uint32_t>& tasks) {
        return ForEachItem(element, L"the number of a task", [&tasks](std::wstring_view item) {
            const auto task = ParseUnsigned(item, std::numeric_limits<std::uint32_t>::max());
            tasks.push_back(static_cast<std::uint32_t>(task.value_or(0)));
            return task.has_value();
        });
    }

    const Document& document_;
    StoredFilterFault& fault_;
};

}  // namespace

std::optional<StoredFilter> ReadStoredFilter(std::string_view bytes, StoredFilterFault& fault) {
    Document document;
    std::optional<StoredFilter> filter;
    if (Parse(bytes, document, fault)) {
        filter.emplace();
        if (!Reader(document, fault).Read(*filter)) {
            filter.reset();
        }
    }
    return filter;
}

}  // namespace corvina
