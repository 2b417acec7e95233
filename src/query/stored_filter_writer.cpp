#include "base/format_text.h"
#include "base/utf.h"
#include "query/stored_filter.h"
#include "query/stored_filter_document.h"
#include "query/stored_filter_text.h"

namespace corvina {
namespace {

using namespace stored_filter;

// In one pass: looked for anew, each of many would be found behind all that stand before it.
void RemoveAll(pugi::xml_node parent, const char* name) {
    for (pugi::xml_node element = parent.child(name); element;) {
        const pugi::xml_node next = element.next_sibling(name);
        parent.remove_child(element);
        element = next;
    }
}

// The first element of a name, which is the one that counts.
pugi::xml_node Element(pugi::xml_node parent, const char* name) {
    const pugi::xml_node element = parent.child(name);
    return element ? element : parent.append_child(name);
}

// An empty text takes the attribute away. Where a second of its name, which would count then, stands behind it, that
// one is emptied; the others are never looked at.
void SetAttribute(pugi::xml_node element, const char* name, std::wstring_view text) {
    if (text.empty()) {
        element.remove_attribute(name);
    }
    pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute && !text.empty()) {
        attribute = element.append_attribute(name);
    }
    attribute.set_value(Utf8FromWide(text).c_str());
}

// An empty text takes the element away.
void SetText(pugi::xml_node parent, const char* name, std::wstring_view text,
             pugi::xml_node_type type = pugi::node_pcdata) {
    if (text.empty()) {
        RemoveAll(parent, name);
        return;
    }
    pugi::xml_node element = Element(parent, name);
    element.remove_children();
    element.append_child(type).set_value(Utf8FromWide(EscapedFilterText(text)).c_str());
}

std::wstring MomentText(const LocalMoment& moment) {
    return moment == LocalMoment()
               ? std::wstring()
               : FormatText(L"%04u-%02u-%02uT%02u:%02u:%02u.%03u", {moment.Year, moment.Month, moment.Day, moment.Hour,
                                                                    moment.Minute, moment.Second, moment.Milliseconds});
}

void SetTime(pugi::xml_node criteria, const TimeCriterion& time) {
    if (time == TimeCriterion()) {
        RemoveAll(criteria, TimeElement);
        return;
    }
    const pugi::xml_node element = Element(criteria, TimeElement);
    SetAttribute(element, ChoiceAttribute, time.Choice == 0 ? std::wstring() : std::to_wstring(time.Choice));
    SetAttribute(element, CustomAttribute, time.IsCustom ? L"true" : L"");
    SetAttribute(element, FromAttribute, MomentText(time.From));
    SetAttribute(element, ToAttribute, MomentText(time.To));
}

void AppendItem(std::wstring_view item, std::wstring& list) {
    if (!list.empty()) {
        list += L", ";
    }
    list += item;
}

void SetLevels(pugi::xml_node criteria, const LevelMarks& marks) {
    std::wstring list;
    for (const LevelName& level : LevelNames) {
        if (marks.*level.Mark) {
            AppendItem(level.Name, list);
        }
    }
    SetText(criteria, LevelsElement, list);
}

void SetTasks(pugi::xml_node criteria, const std::vector<std::uint32_t>& tasks) {
    std::wstring list;
    for (const std::uint32_t task : tasks) {
        AppendItem(std::to_wstring(task), list);
    }
    SetText(criteria, TasksElement, list);
}

void SetCriteria(pugi::xml_node criteria, const FilterCriteria& values) {
    SetTime(criteria, values.Time);
    SetLevels(criteria, values.Levels);
    for (const TextElement& element : TextElements) {
        SetText(criteria, element.Name, values.*element.Text);
    }
    SetTasks(criteria, values.Tasks);
}

void SetQuery(pugi::xml_node root, std::wstring_view query, bool isEdited) {
    // As a section of character data it can be read without taking its signs apart.
    SetText(root, QueryElement, query, pugi::node_cdata);
    if (isEdited) {
        Element(root, QueryElement);
    }
    SetAttribute(root.child(QueryElement), EditedAttribute, isEdited ? L"true" : L"");
}

}  // namespace

std::string WriteStoredFilter(const StoredFilter& filter, std::string_view previous) {
    Document document;
    StoredFilterFault ignored;
    if (!Parse(previous, document, ignored)) {
        document.Tree.reset();
        document.Tree.append_child(RootElement);
    }
    const pugi::xml_node root = document.Tree.document_element();
    SetAttribute(root, VersionAttribute, std::to_wstring(StoredFilterVersion));
    SetText(root, NameElement, filter.Name);
    SetCriteria(Element(root, CriteriaElement), filter.Criteria);
    SetQuery(root, filter.Query, filter.IsQueryEdited);
    TextWriter writer;
    document.Tree.save(writer, "  ", pugi::format_indent, pugi::encoding_utf8);
    return writer.Text;
}

}  // namespace corvina
