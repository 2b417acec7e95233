// The file format of stored filters and custom views: what a filter asks for and the query that does it, side by side
// in one XML document that people may edit. docs/stored-filters.md shows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "query/filter_criteria.h"

namespace corvina {

struct StoredFilter {
    std::wstring Name;  // as the user gave it; a file's name cannot hold every text
    FilterCriteria Criteria;
    std::wstring Query;          // what the event log is asked: the document made of the criteria, or an edited one
    bool IsQueryEdited = false;  // the query was edited by hand and may say something else than the criteria

    friend bool operator==(const StoredFilter&, const StoredFilter&) = default;
};

// Why a filter cannot be read or written.
struct StoredFilterFault {
    std::wstring Text;            // in English; empty when only the system knows
    std::size_t Line = 0;         // of the file, from 1 on; 0 when the fault has no place
    std::uint32_t ErrorCode = 0;  // the system's, 0 when it was not the system that refused
};

// The version that is written. Documents of later versions are refused, since what they ask for may not be known here.
inline constexpr std::uint32_t StoredFilterVersion = 1;

// Larger documents are neither read nor written. The query of a filter over a thousand logs takes some 100 KB.
inline constexpr std::size_t MaximumStoredFilterSize = std::size_t{4} * 1024 * 1024;

// Reads a document in any encoding that it declares by a byte order mark or by its first line (UTF-8, UTF-16, UTF-32,
// ISO 8859-1). What is missing is not set, unknown elements and attributes are passed over, and a criterion that cannot
// be understood is a fault: left out it would silently change the result.
std::optional<StoredFilter> ReadStoredFilter(std::string_view bytes, StoredFilterFault& fault);

// The document of a filter in UTF-8, which reads back equal whatever its texts are made of; only numbers beyond
// Unicode become U+FFFD. If `previous` is a document that can be read, its comments and unknown elements are kept. The
// time must be a real one (a month of 1 to 12 and so on) and the choice of a time at most 5.
std::string WriteStoredFilter(const StoredFilter& filter, std::string_view previous = {});

}  // namespace corvina
