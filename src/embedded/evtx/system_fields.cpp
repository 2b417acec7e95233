#include "embedded/evtx/system_fields.h"

#include <limits>

#include "base/calendar.h"
#include "base/identifiers.h"
#include "base/parse_number.h"
#include "base/utf.h"
#include "embedded/evtx/value_text.h"

namespace corvina::evtx {
namespace {

using Bytes = std::span<const std::byte>;

struct FieldName {
    std::string_view Element;
    std::string_view Attribute;  // empty for the element's content
    SystemField Field;
};

constexpr FieldName FieldNames[] = {
    {"Provider", "Name", SystemField::ProviderName},
    {"Provider", "Guid", SystemField::ProviderGuid},
    {"Provider", "EventSourceName", SystemField::EventSourceName},
    {"EventID", "", SystemField::EventId},
    {"EventID", "Qualifiers", SystemField::Qualifiers},
    {"Version", "", SystemField::Version},
    {"Level", "", SystemField::Level},
    {"Task", "", SystemField::Task},
    {"Opcode", "", SystemField::Opcode},
    {"Keywords", "", SystemField::Keywords},
    {"TimeCreated", "SystemTime", SystemField::TimeCreated},
    {"EventRecordID", "", SystemField::EventRecordId},
    {"Correlation", "ActivityID", SystemField::ActivityId},
    {"Correlation", "RelatedActivityID", SystemField::RelatedActivityId},
    {"Execution", "ProcessID", SystemField::ProcessId},
    {"Execution", "ThreadID", SystemField::ThreadId},
    {"Channel", "", SystemField::Channel},
    {"Computer", "", SystemField::Computer},
    {"Security", "UserID", SystemField::UserSid},
};

std::wstring* TextField(SystemField field, SystemValues& values) {
    switch (field) {
        case SystemField::ProviderName:
            return &values.ProviderName;
        case SystemField::EventSourceName:
            return &values.EventSourceName;
        case SystemField::Channel:
            return &values.Channel;
        case SystemField::Computer:
            return &values.Computer;
        default:
            return nullptr;
    }
}

std::optional<GuidBytes>* GuidField(SystemField field, SystemValues& values) {
    switch (field) {
        case SystemField::ProviderGuid:
            return &values.ProviderGuid;
        case SystemField::ActivityId:
            return &values.ActivityId;
        case SystemField::RelatedActivityId:
            return &values.RelatedActivityId;
        default:
            return nullptr;
    }
}

template <typename Number>
void SetNumber(std::uint64_t number, std::optional<Number>& target) {
    if (number <= std::numeric_limits<Number>::max()) {
        target = static_cast<Number>(number);
    }
}

void SetNumberField(SystemField field, std::uint64_t number, SystemValues& values) {
    switch (field) {
        case SystemField::EventId:
            return SetNumber(number, values.EventId);
        case SystemField::Qualifiers:
            return SetNumber(number, values.Qualifiers);
        case SystemField::Version:
            return SetNumber(number, values.Version);
        case SystemField::Level:
            return SetNumber(number, values.Level);
        case SystemField::Task:
            return SetNumber(number, values.Task);
        case SystemField::Opcode:
            return SetNumber(number, values.Opcode);
        case SystemField::Keywords:
            return SetNumber(number, values.Keywords);
        case SystemField::TimeCreated:
            return SetNumber(number, values.TimeCreated);
        case SystemField::EventRecordId:
            return SetNumber(number, values.EventRecordId);
        case SystemField::ProcessId:
            return SetNumber(number, values.ProcessId);
        case SystemField::ThreadId:
            return SetNumber(number, values.ThreadId);
        default:
            return;
    }
}

std::wstring_view Trimmed(std::wstring_view text) {
    constexpr std::wstring_view Blanks = L" \t\r\n";
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::wstring_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

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

// "2024-03-05T13:07:09.1234567Z" with any number of decimals, which may be missing.
std::optional<std::uint64_t> ParseTime(std::wstring_view text) {
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

std::optional<std::uint64_t> FileTimeFromSystemTime(Bytes bytes) {
    const auto field = [bytes](std::size_t index) { return std::uint32_t{LoadUInt16(&bytes[2 * index])}; };
    return FileTimeFromCalendar(
        {static_cast<std::int32_t>(field(0)), field(1), field(3), field(4), field(5), field(6), field(7) * 10'000});
}

// Values of the kind that the field is made of; false for others, whose text is read instead.
bool SetFromTypedValue(SystemField field, Bytes bytes, ValueType type, SystemValues& values) {
    if (type == ValueType::Guid && bytes.size() >= std::tuple_size_v<GuidBytes>) {
        std::optional<GuidBytes>* guid = GuidField(field, values);
        if (guid != nullptr) {
            std::copy_n(bytes.begin(), std::tuple_size_v<GuidBytes>, guid->emplace().begin());
        }
        return guid != nullptr;
    }
    if (type == ValueType::Sid && field == SystemField::UserSid && SidLength(bytes) != 0) {
        values.UserSid.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(SidLength(bytes)));
        return true;
    }
    if (type == ValueType::SystemTime && field == SystemField::TimeCreated && bytes.size() >= 16) {
        values.TimeCreated = FileTimeFromSystemTime(bytes);
        return true;
    }
    return false;
}

}  // namespace

std::optional<SystemField> SystemFieldOf(Bytes element) {
    return SystemFieldOf(element, {});
}

std::optional<SystemField> SystemFieldOf(Bytes element, Bytes attribute) {
    for (const FieldName& name : FieldNames) {
        if (EqualsAscii(element, name.Element) && EqualsAscii(attribute, name.Attribute)) {
            return name.Field;
        }
    }
    return std::nullopt;
}

void SetSystemField(SystemField field, Bytes chunk, const Value& value, SystemValues& values) {
    if (std::wstring* text = TextField(field, values); text != nullptr && value.Type == ValueType::Text) {
        text->clear();
        AppendUtf16(TextBytes(chunk, value), *text);
        return;
    }
    std::uint64_t number = 0;
    if (TextField(field, values) == nullptr && IntegerBits(chunk, value, number)) {
        SetNumberField(field, number, values);
        return;
    }
    if (value.IsNull() || SetFromTypedValue(field, chunk.subspan(value.Offset, value.Size), value.Type, values)) {
        return;
    }
    TextBuffer<wchar_t> text;
    AppendValueText(chunk, value, Escaping::None, text);
    SetSystemField(field, text.View(), values);
}

void SetSystemField(SystemField field, std::wstring_view text, SystemValues& values) {
    if (std::wstring* target = TextField(field, values); target != nullptr) {
        target->assign(text);
        return;
    }
    text = Trimmed(text);
    if (std::optional<GuidBytes>* guid = GuidField(field, values); guid != nullptr) {
        *guid = ParseGuid(text);
        return;
    }
    if (field == SystemField::UserSid) {
        const auto sid = ParseSid(text);
        values.UserSid.clear();
        if (sid) {
            values.UserSid.assign(sid->begin(), sid->end());
        }
        return;
    }
    const auto number = field == SystemField::TimeCreated ? ParseTime(text) : ParseUnsigned(text);
    if (number) {
        SetNumberField(field, *number, values);
    }
}

}  // namespace corvina::evtx
