// The XML document of a stored filter as its reader and its writer see it: the names of its elements, and the checks
// that stand before both.
#pragma once

#include <array>
#include <cstddef>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "query/stored_filter.h"

namespace corvina::stored_filter {

inline constexpr const char* RootElement = "StoredFilter";
inline constexpr const char* VersionAttribute = "Version";
inline constexpr const char* NameElement = "Name";
inline constexpr const char* CriteriaElement = "Criteria";
inline constexpr const char* QueryElement = "Query";
inline constexpr const char* EditedAttribute = "Edited";

// Below the criteria.
inline constexpr const char* TimeElement = "Time";
inline constexpr const char* ChoiceAttribute = "Choice";
inline constexpr const char* CustomAttribute = "Custom";
inline constexpr const char* FromAttribute = "From";
inline constexpr const char* ToAttribute = "To";
inline constexpr const char* LevelsElement = "Levels";
inline constexpr const char* TasksElement = "Tasks";

struct TextElement {
    const char* Name;
    std::wstring FilterCriteria::*Text;
};
inline constexpr std::array<TextElement, 6> TextElements = {{{"EventIds", &FilterCriteria::EventIds},
                                                             {"Keywords", &FilterCriteria::Keywords},
                                                             {"Providers", &FilterCriteria::Providers},
                                                             {"User", &FilterCriteria::User},
                                                             {"Computer", &FilterCriteria::Computer},
                                                             {"Channels", &FilterCriteria::Channels}}};

struct LevelName {
    std::wstring_view Name;
    bool LevelMarks::*Mark;
};
inline constexpr std::array<LevelName, 5> LevelNames = {{{L"Critical", &LevelMarks::Critical},
                                                         {L"Error", &LevelMarks::Error},
                                                         {L"Warning", &LevelMarks::Warning},
                                                         {L"Information", &LevelMarks::Information},
                                                         {L"Verbose", &LevelMarks::Verbose}}};

struct Document {
    pugi::xml_document Tree;
    // What was parsed. Empty when it was in another encoding than the parser's own: the parser tells places in the
    // converted text, which is not at hand.
    std::string_view Source;
};

// Parses a document, of which it keeps a view, and checks that it is a stored filter of a version that is known here,
// and no deeper than anybody would write one: some of the parser's functions call themselves for every level. Comments
// are kept.
bool Parse(std::string_view bytes, Document& document, StoredFilterFault& fault);

// Fills in a fault at a place of the document, given as the parser counts it.
void SetFault(std::wstring_view text, const Document& document, std::ptrdiff_t offset, StoredFilterFault& fault);

// Takes what the library writes.
class TextWriter : public pugi::xml_writer {
  public:
    void write(const void* data, std::size_t size) override { Text.append(static_cast<const char*>(data), size); }

    std::string Text;
};

}  // namespace corvina::stored_filter
