// Looks into a program library as it stands in memory: which of its slots holds the address of a function of another
// library. Source of the layout: Microsoft's "PE Format" (import directory and delay-load directory).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace corvina {

// The offset in `image` of the slot through which the image calls the function with that number of that library
// ("uxtheme.dll", compared without regard to case), whether the library is bound when the image is loaded or at the
// first call. Images of 64 bits only: a slot has 8 bytes. None for other images, and when anything does not fit
// together.
std::optional<std::size_t> FindImportSlot(std::span<const std::byte> image, std::string_view library,
                                          std::uint16_t ordinal);

}  // namespace corvina
