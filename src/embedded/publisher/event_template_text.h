// The names and types of an event's values as XML, out of the binary template in a program file.
#pragma once

#include <cstdint>
#include <string>

#include "embedded/publisher/template_bytes.h"

namespace corvina::publisher {

// Writes the template ("TEMP") at an offset of a WEVT_TEMPLATE resource in the words of a manifest: an element
// "template" with an element "data" for each value and "struct" for a group of them. Empty when the resource does not
// describe the values there.
std::wstring EventTemplateText(TemplateBytes& resource, std::uint32_t offset);

}  // namespace corvina::publisher
