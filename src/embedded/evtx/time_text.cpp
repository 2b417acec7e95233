#include "embedded/evtx/time_text.h"

#include "base/calendar.h"
#include "embedded/evtx/byte_reader.h"

namespace corvina::evtx {
namespace {

// Takes up to `most` digits off the front; none when there is not even one.
std::optional<std::uint32_t> TakeDigits(std::wstring_view& text, std::size_t most) {
    std::uint32_t number = 0;
    std::size_t count = 0;
    while (count < most && count < text.size() && text[count] >= L'0' && text[count] <= L'9') {
        number = number * 10 + static_cast<std::uint32_t>(text[count++] - L'0');
    }
    text.remove_prefix(count);
    return count == 0 ? std::nullopt : std::optional(number);
}

}  // namespace

std::optional<std::uint64_t> FileTimeFromText(std::wstring_view text) {
    constexpr wchar_t Separators[] = {L'-', L'-', L'T', L':', L':'};
    std::uint32_t fields[6] = {};
    for (std::size_t index = 0; index < 6; ++index) {
        if (index > 0) {
            if (text.empty() || text.front() != Separators[index - 1]) {
                return std::nullopt;
            }
            text.remove_prefix(1);
        }
        const auto field = TakeDigits(text, index == 0 ? 5 : 2);
        if (!field) {
            return std::nullopt;
        }
        fields[index] = *field;
    }
    CalendarTime time{static_cast<std::int32_t>(fields[0]), fields[1], fields[2], fields[3], fields[4], fields[5], 0};
    if (text.starts_with(L'.')) {
        text.remove_prefix(1);
        const std::size_t before = text.size();
        time.Ticks = TakeDigits(text, 7).value_or(0);
        for (std::size_t digits = before - text.size(); digits < 7; ++digits) {
            time.Ticks *= 10;
        }
        TakeDigits(text, text.size());
    }
    return text.empty() || text == L"Z" ? FileTimeFromCalendar(time) : std::nullopt;
}

std::optional<std::uint64_t> FileTimeFromSystemTime(std::span<const std::byte> bytes) {
    const auto field = [bytes](std::size_t index) { return std::uint32_t{LoadUInt16(&bytes[2 * index])}; };
    return FileTimeFromCalendar(
        {static_cast<std::int32_t>(field(0)), field(1), field(3), field(4), field(5), field(6), field(7) * 10'000});
}

}  // namespace corvina::evtx
