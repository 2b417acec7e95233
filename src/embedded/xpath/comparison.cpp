#include "embedded/xpath/comparison.h"

#include <algorithm>
#include <bit>

#include "base/calendar.h"
#include "base/little_endian.h"
#include "embedded/evtx/time_text.h"
#include "embedded/evtx/value_text.h"

namespace corvina::xpath {
namespace {

using evtx::ValueType;
using Bytes = std::span<const std::byte>;

constexpr std::size_t GuidSize = std::tuple_size_v<GuidBytes>;

template <typename Number>
Scalar NumberScalar(const std::optional<Number>& number) {
    return number ? Scalar(Integer::Of(*number)) : Scalar();
}

Scalar GuidScalar(const std::optional<GuidBytes>& guid) {
    return guid ? Scalar(*guid) : Scalar();
}

Scalar IntegerScalar(ValueType type, std::uint64_t bits) {
    switch (type) {
        case ValueType::Int8:
        case ValueType::Int16:
        case ValueType::Int32:
        case ValueType::Int64:
            return Integer::OfSigned(static_cast<std::int64_t>(bits));
        case ValueType::Boolean:
            return bits != 0;
        case ValueType::FileTime:
            return FileTime{bits};
        default:
            return Integer::Of(bits);
    }
}

// Values that are neither integers nor texts; none when their bytes are not of their type.
Scalar StructuredScalar(ValueType type, Bytes bytes) {
    if (type == ValueType::Float && bytes.size() >= sizeof(float)) {
        return static_cast<double>(std::bit_cast<float>(LoadUInt32(bytes.data())));
    }
    if (type == ValueType::Double && bytes.size() >= sizeof(double)) {
        return std::bit_cast<double>(LoadUInt64(bytes.data()));
    }
    if (type == ValueType::Guid && bytes.size() >= GuidSize) {
        GuidBytes guid;
        std::copy_n(bytes.begin(), GuidSize, guid.begin());
        return guid;
    }
    if (type == ValueType::Sid && SidLength(bytes) != 0) {
        return SidView{bytes.first(SidLength(bytes))};
    }
    if (type == ValueType::SystemTime && bytes.size() >= evtx::SystemTimeSize) {
        const auto time = evtx::FileTimeFromSystemTime(bytes);
        return time ? Scalar(FileTime{*time}) : Scalar();
    }
    return {};
}

template <typename Value>
std::partial_ordering Order(const Value& value, const std::optional<Value>& literal) {
    return literal ? std::partial_ordering(value <=> *literal) : std::partial_ordering::unordered;
}

// For values that have no order.
bool CompareSameness(Comparison comparison, bool same) {
    return comparison == (same ? Comparison::Equal : Comparison::NotEqual);
}

struct Comparer {
    Comparison How;
    const Literal& With;

    bool operator()(std::monostate) const { return false; }
    bool operator()(const Integer& number) const { return Holds(How, Order(number, With.Number)); }
    bool operator()(double number) const { return Holds(How, Order(number, With.Real)); }
    bool operator()(bool boolean) const { return Holds(How, Order(boolean, With.Boolean)); }
    bool operator()(FileTime time) const { return Holds(How, Order(time.Ticks, With.Time)); }
    bool operator()(const GuidBytes& guid) const { return With.Guid && CompareSameness(How, guid == *With.Guid); }
    bool operator()(SidView sid) const {
        return With.Sid &&
               CompareSameness(How, std::equal(sid.Bytes.begin(), sid.Bytes.end(), With.Sid->begin(), With.Sid->end()));
    }
    bool operator()(std::wstring_view text) const {
        const bool asksSameness = How == Comparison::Equal || How == Comparison::NotEqual;
        if (asksSameness && With.IsText) {
            return CompareSameness(How, text == With.Text);
        }
        if (const auto number = With.Number ? IntegerFromText(text) : std::nullopt) {
            return (*this)(*number);
        }
        const auto time = With.Time ? evtx::FileTimeFromText(text) : std::nullopt;
        return time && (*this)(FileTime{*time});
    }
};

}  // namespace

Comparison Mirrored(Comparison comparison) {
    switch (comparison) {
        case Comparison::Less:
            return Comparison::Greater;
        case Comparison::LessOrEqual:
            return Comparison::GreaterOrEqual;
        case Comparison::Greater:
            return Comparison::Less;
        case Comparison::GreaterOrEqual:
            return Comparison::LessOrEqual;
        default:
            return comparison;
    }
}

Scalar ScalarOf(evtx::SystemField field, const evtx::SystemValues& values) {
    using evtx::SystemField;
    switch (field) {
        case SystemField::ProviderName:
            return std::wstring_view(values.ProviderName);
        case SystemField::ProviderGuid:
            return GuidScalar(values.ProviderGuid);
        case SystemField::EventSourceName:
            return std::wstring_view(values.EventSourceName);
        case SystemField::EventId:
            return NumberScalar(values.EventId);
        case SystemField::Qualifiers:
            return NumberScalar(values.Qualifiers);
        case SystemField::Version:
            return NumberScalar(values.Version);
        case SystemField::Level:
            return NumberScalar(values.Level);
        case SystemField::Task:
            return NumberScalar(values.Task);
        case SystemField::Opcode:
            return NumberScalar(values.Opcode);
        case SystemField::Keywords:
            return NumberScalar(values.Keywords);
        case SystemField::TimeCreated:
            return values.TimeCreated ? Scalar(FileTime{*values.TimeCreated}) : Scalar();
        case SystemField::EventRecordId:
            return NumberScalar(values.EventRecordId);
        case SystemField::ActivityId:
            return GuidScalar(values.ActivityId);
        case SystemField::RelatedActivityId:
            return GuidScalar(values.RelatedActivityId);
        case SystemField::ProcessId:
            return NumberScalar(values.ProcessId);
        case SystemField::ThreadId:
            return NumberScalar(values.ThreadId);
        case SystemField::Channel:
            return std::wstring_view(values.Channel);
        case SystemField::Computer:
            return std::wstring_view(values.Computer);
        case SystemField::UserSid:
            return values.UserSid.empty() ? Scalar() : Scalar(SidView{values.UserSid});
    }
    return {};
}

Scalar ScalarOf(const evtx::EventTree& tree, const evtx::EventTree::Node& node, evtx::TextBuffer<wchar_t>& text) {
    if (node.Field) {
        return ScalarOf(*node.Field, tree.System());
    }
    const std::optional<evtx::Value> value = tree.OnlyValueOf(node);
    if (value && !value->IsArray) {
        std::uint64_t bits = 0;
        if (evtx::IntegerBits(tree.Chunk(), *value, bits)) {
            return IntegerScalar(value->Type, bits);
        }
        Scalar scalar = StructuredScalar(value->Type, tree.Chunk().subspan(value->Offset, value->Size));
        if (scalar.index() != 0) {
            return scalar;
        }
    }
    text.Clear();
    tree.AppendText(node, text);
    return text.View();
}

bool Compare(const Scalar& value, Comparison comparison, const Literal& literal) {
    return std::visit(Comparer{comparison, literal}, value);
}

std::optional<std::uint64_t> BitsOf(const Scalar& value) {
    std::optional<Integer> number;
    if (const auto* const integer = std::get_if<Integer>(&value)) {
        number = *integer;
    } else if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
        number = IntegerFromText(*text);
    }
    return number && number->IsIn64Bits() ? std::optional(number->Low) : std::nullopt;
}

std::optional<std::uint64_t> TimeOf(const Scalar& value) {
    if (const auto* const time = std::get_if<FileTime>(&value)) {
        return time->Ticks;
    }
    if (const auto* const integer = std::get_if<Integer>(&value)) {
        return integer->IsUnsigned64() ? std::optional(integer->Low) : std::nullopt;
    }
    const auto* const text = std::get_if<std::wstring_view>(&value);
    return text == nullptr ? std::nullopt : evtx::FileTimeFromText(*text);
}

Integer MillisecondsBetween(std::uint64_t from, std::uint64_t to) {
    constexpr std::uint64_t TicksPerMillisecond = FileTimeTicksPerSecond / 1000;
    const auto distance = static_cast<std::int64_t>((std::max(from, to) - std::min(from, to)) / TicksPerMillisecond);
    return Integer::OfSigned(from <= to ? distance : -distance);
}

}  // namespace corvina::xpath
