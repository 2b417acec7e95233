// An event's XML together with its display texts, as the platform writes it for events that are to be read elsewhere.
#pragma once

#include <string>
#include <string_view>

#include "embedded/evtx/system_values.h"

namespace corvina::embedded {

// The XML with an element RenderingInfo before the end of the root. Characters that XML cannot hold become U+FFFD.
std::wstring WithRenderingInfo(std::wstring_view eventXml, const evtx::RenderingInfo& info);

}  // namespace corvina::embedded
