#include "app/focus_ring.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace corvina {
namespace {

constexpr std::array Ring = {FocusStation::Tree,           FocusStation::List,
                             FocusStation::LeftProperties, FocusStation::RightProperties,
                             FocusStation::Description,    FocusStation::Xml};

}  // namespace

FocusStation NextFocusStation(std::optional<FocusStation> focused, bool backwards) {
    if (!focused) {
        return Ring.front();
    }
    const auto place = std::find(Ring.begin(), Ring.end(), *focused);
    const std::size_t index = static_cast<std::size_t>(place - Ring.begin());
    return Ring[(index + (backwards ? Ring.size() - 1 : 1)) % Ring.size()];
}

}  // namespace corvina
