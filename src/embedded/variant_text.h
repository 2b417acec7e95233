// The values that a caller passes for the places of a message, as text.
#pragma once

#include <string>

#include "platform/event_log_types.h"

namespace corvina::embedded {

// Texts, numbers, Booleans, GUIDs and security identifiers; any other kind gives an empty text.
std::wstring VariantText(const EVT_VARIANT& value);

}  // namespace corvina::embedded
