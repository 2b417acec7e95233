// An event's XML: fetching it, showing it indented, and taking the data values out of it.
#pragma once

#include <string>
#include <string_view>

#include "eventlog/property_buffer.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"

namespace corvina {

// The XML of an event as the event log renders it; empty on failure, which is written to the debug log. Valid until
// `buffer` is used again.
std::wstring_view RenderEventXml(EventLogApi& api, DebugLog& debug, EVT_HANDLE event, PropertyBuffer& buffer);

// The XML with one element a line, indented by two blanks a level. Text that is no well-formed XML, or whose nesting
// would make it many times as long, comes back unchanged.
std::wstring IndentedXml(std::wstring_view xml);

// The data values of an event, one a line, "Name: value" where they are named: what EventData, UserData and any other
// section besides System and RenderingInfo holds.
std::wstring DataValueLines(std::wstring_view xml);

}  // namespace corvina
