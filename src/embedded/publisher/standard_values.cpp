#include "embedded/publisher/standard_values.h"

#include <optional>
#include <string>
#include <vector>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

namespace {

// Events that are always logged, audits among them, count as information.
constexpr StandardValue Levels[] = {
    {"win:LogAlways", 0, L"Information"}, {"win:Critical", 1, L"Critical"},         {"win:Error", 2, L"Error"},
    {"win:Warning", 3, L"Warning"},       {"win:Informational", 4, L"Information"}, {"win:Verbose", 5, L"Verbose"},
};

constexpr StandardValue Tasks[] = {{"win:None", 0, L""}};

constexpr StandardValue Opcodes[] = {
    {"win:Info", 0, L"Info"},        {"win:Start", 1, L"Start"},       {"win:Stop", 2, L"Stop"},
    {"win:DC_Start", 3, L"DCStart"}, {"win:DC_Stop", 4, L"DCStop"},    {"win:Extension", 5, L"Extension"},
    {"win:Reply", 6, L"Reply"},      {"win:Resume", 7, L"Resume"},     {"win:Suspend", 8, L"Suspend"},
    {"win:Send", 9, L"Send"},        {"win:Receive", 240, L"Receive"},
};

constexpr StandardValue Keywords[] = {
    {"win:AnyKeyword", 0, L""},
    {"win:ResponseTime", 0x0001'0000'0000'0000, L"Response Time"},
    {"win:WDIContext", 0x0002'0000'0000'0000, L"WDI Context"},
    {"win:WDIDiag", 0x0004'0000'0000'0000, L"WDI Diag"},
    {"win:SQM", 0x0008'0000'0000'0000, L"SQM"},
    {"win:AuditFailure", 0x0010'0000'0000'0000, L"Audit Failure"},
    {"win:AuditSuccess", 0x0020'0000'0000'0000, L"Audit Success"},
    {"win:CorrelationHint", 0x0040'0000'0000'0000, L"Correlation Hint"},
    {"win:EventlogClassic", 0x0080'0000'0000'0000, L"Classic"},
};

std::optional<std::wstring> TextOf(std::span<const StandardValue> values, std::uint64_t value) {
    for (const StandardValue& candidate : values) {
        if (candidate.Value == value && !candidate.Text.empty()) {
            return std::wstring(candidate.Text);
        }
    }
    return std::nullopt;
}

}  // namespace

std::span<const StandardValue> StandardLevels() {
    return Levels;
}
std::span<const StandardValue> StandardTasks() {
    return Tasks;
}
std::span<const StandardValue> StandardOpcodes() {
    return Opcodes;
}
std::span<const StandardValue> StandardKeywords() {
    return Keywords;
}

std::optional<std::wstring> StandardLevelText(std::uint8_t level) {
    return TextOf(Levels, level);
}

std::optional<std::wstring> StandardOpcodeText(std::uint8_t opcode) {
    return TextOf(Opcodes, opcode);
}

std::vector<std::wstring> StandardKeywordTexts(std::uint64_t mask) {
    std::vector<std::wstring> texts;
    for (const StandardValue& keyword : Keywords) {
        if ((mask & keyword.Value) != 0) {
            texts.emplace_back(keyword.Text);
        }
    }
    return texts;
}

}  // namespace corvina::publisher
