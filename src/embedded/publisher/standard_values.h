// The levels, opcodes and keywords that every provider may use without defining them, by the names under which
// manifests refer to them (the "win" namespace of the platform's published winmeta definitions).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace corvina::publisher {

struct StandardValue {
    std::string_view Name;  // "win:Error"
    std::uint64_t Value = 0;
    std::wstring_view Text;  // empty for a value that is shown without a text
};

// Each list stands in the order of its values.
std::span<const StandardValue> StandardLevels();
std::span<const StandardValue> StandardTasks();
std::span<const StandardValue> StandardOpcodes();
std::span<const StandardValue> StandardKeywords();

}  // namespace corvina::publisher
