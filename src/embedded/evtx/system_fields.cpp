#include "embedded/evtx/system_fields.h"

#include <limits>

#include "base/identifiers.h"
#include "base/parse_number.h"
#include "base/utf.h"
#include "embedded/evtx/time_text.h"
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

// Hands the number that a field is to `visit`; nothing for fields that are no numbers.
template <typename Visitor>
void VisitNumber(SystemField field, SystemValues& values, Visitor visit) {
    switch (field) {
        case SystemField::EventId:
            return visit(values.EventId);
        case SystemField::Qualifiers:
            return visit(values.Qualifiers);
        case SystemField::Version:
            return visit(values.Version);
        case SystemField::Level:
            return visit(values.Level);
        case SystemField::Task:
            return visit(values.Task);
        case SystemField::Opcode:
            return visit(values.Opcode);
        case SystemField::Keywords:
            return visit(values.Keywords);
        case SystemField::TimeCreated:
            return visit(values.TimeCreated);
        case SystemField::EventRecordId:
            return visit(values.EventRecordId);
        case SystemField::ProcessId:
            return visit(values.ProcessId);
        case SystemField::ThreadId:
            return visit(values.ThreadId);
        default:
            return;
    }
}

void SetNumberField(SystemField field, std::uint64_t number, SystemValues& values) {
    VisitNumber(field, values, [number]<typename Number>(std::optional<Number>& target) {
        if (number <= std::numeric_limits<Number>::max()) {
            target = static_cast<Number>(number);
        }
    });
}

std::wstring_view Trimmed(std::wstring_view text) {
    constexpr std::wstring_view Blanks = L" \t\r\n";
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::wstring_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
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
    if (type == ValueType::SystemTime && field == SystemField::TimeCreated && bytes.size() >= SystemTimeSize) {
        values.TimeCreated = FileTimeFromSystemTime(bytes);
        return true;
    }
    return false;
}

}  // namespace

std::optional<std::size_t> SystemElementOf(Bytes element) {
    std::size_t index = 0;
    for (const FieldName& name : FieldNames) {
        if (EqualsAscii(element, name.Element)) {
            return index;
        }
        ++index;
    }
    return std::nullopt;
}

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

void ClearSystemField(SystemField field, SystemValues& values) {
    if (std::wstring* text = TextField(field, values); text != nullptr) {
        text->clear();
    } else if (std::optional<GuidBytes>* guid = GuidField(field, values); guid != nullptr) {
        guid->reset();
    } else if (field == SystemField::UserSid) {
        values.UserSid.clear();
    } else {
        VisitNumber(field, values, [](auto& number) { number.reset(); });
    }
}

void SetSystemField(SystemField field, Bytes chunk, const Value& value, SystemValues& values) {
    if (value.IsArray) {
        Value first;
        if (ArrayItems(chunk, value).Next(first)) {
            SetSystemField(field, chunk, first, values);
        }
        return;
    }
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
    const auto number = field == SystemField::TimeCreated ? FileTimeFromText(text) : ParseUnsigned(text);
    if (number) {
        SetNumberField(field, *number, values);
    }
}

}  // namespace corvina::evtx
