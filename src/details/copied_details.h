// The details of events as one text for the clipboard.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "details/row_details.h"

namespace corvina {

// One block for each of these rows, in their order: properties, description and XML, ended by a line of slashes. Each
// event is fetched from its log; one that cannot be had leaves its block empty. A log that cannot be read is reported
// once, not again for each of its events.
std::wstring DetailsAsText(RowDetails& details, std::span<const std::size_t> rows);

}  // namespace corvina
