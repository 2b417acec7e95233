// Where the queries of stored filters come from. Settings only name a filter: their values are too short for a query.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvina {

class StoredQueries {
  public:
    virtual ~StoredQueries() = default;

    // The query of the filter that a setting of a channel names. None when it cannot be had; why has been shown.
    virtual std::optional<std::wstring> QueryOf(std::wstring_view settingValue, std::wstring_view channelPath) = 0;
};

}  // namespace corvina
