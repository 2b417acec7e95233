#include "embedded/publisher/parameter_text.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "base/parse_number.h"
#include "embedded/publisher/message_table.h"

namespace corvina::publisher {

namespace {

constexpr std::wstring_view Mark = L"%%";
constexpr std::wstring_view Digits = L"0123456789";
constexpr std::size_t LongestResult = std::size_t{16} << 20;

std::optional<std::wstring> ParameterText(const Publisher& publisher, std::wstring_view digits) {
    const std::optional<std::uint64_t> id = ParseUnsigned(digits, 0xFFFF'FFFF);
    std::optional<std::wstring> message;
    for (const MessageTables* const tables : {publisher.Parameters.get(), publisher.Messages.get()}) {
        if (id && !message && tables != nullptr) {
            message = tables->Find(static_cast<std::uint32_t>(*id));
        }
    }
    if (!message) {
        return std::nullopt;
    }
    bool missing = false;  // a parameter's own places stay
    return ExpandMessage(*message, {}, missing);
}

}  // namespace

void ExpandParameters(const Publisher& publisher, std::wstring& text) {
    if (publisher.Parameters == nullptr && publisher.Messages == nullptr) {
        return;
    }
    std::wstring result;
    std::size_t done = 0;  // of the text: what has gone over to the result
    std::size_t mark = text.find(Mark);
    while (mark != std::wstring::npos && result.size() < LongestResult) {
        const std::size_t first = mark + Mark.size();
        const std::size_t end = std::min(text.find_first_not_of(Digits, first), text.size());
        const std::wstring_view digits = std::wstring_view(text).substr(first, end - first);
        if (const std::optional<std::wstring> parameter = ParameterText(publisher, digits)) {
            result.append(text, done, mark - done).append(*parameter);
            done = end;
        }
        // Of "%%%5" the last two marks count.
        mark = text.find(Mark, digits.empty() ? mark + 1 : end);
    }
    if (done != 0) {
        result.append(text, done);
        result.resize(std::min(result.size(), LongestResult));
        text = std::move(result);
    }
}

}  // namespace corvina::publisher
