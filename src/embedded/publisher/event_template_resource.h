// The resource "WEVT_TEMPLATE" of a program file: what the platform's message compiler makes of a manifest's providers.
// Format: not published by the platform; known from looking at the files that its compiler writes. A header "CRIM" with
// the providers' GUIDs leads to a "WEVT" for each provider, and that one to its lists: "CHAN" (channels), "LEVL"
// (levels), "TASK", "OPCO" (opcodes), "KEYW" (keywords), "EVNT" (events) and "TTBL" (templates).
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "base/identifiers.h"
#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

inline constexpr std::string_view EventTemplateType = "WEVT_TEMPLATE";

// The beginning of a resource that is needed to learn the GUIDs of all its providers.
inline constexpr std::size_t EventTemplateHeadSize = 16 + 1'000 * 20;

// The GUIDs of the providers that a resource describes, 1,000 at most. The resource may have been cut off after
// EventTemplateHeadSize bytes.
std::vector<GuidBytes> EventTemplateProviders(std::span<const std::byte> resource);

// Reads what a resource says of one provider into `publisher`: its GUID, its lists, sorted as the look-ups need them,
// and all message identifiers. Names and texts are not in the resource. False, with nothing read, when it does not
// describe that provider.
bool ReadEventTemplate(std::span<const std::byte> resource, const GuidBytes& guid, Publisher& publisher);

}  // namespace corvina::publisher
