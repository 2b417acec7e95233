#include "eventlog/event_values.h"

#include <cstring>

#include "base/identifiers.h"

namespace corvina {

std::wstring_view TextValue(const EVT_VARIANT& value) {
    return value.Type == EvtVarTypeString && value.StringVal != nullptr ? std::wstring_view(value.StringVal)
                                                                        : std::wstring_view();
}

std::uint64_t NumberValue(const EVT_VARIANT& value) {
    switch (value.Type) {
        case EvtVarTypeSByte:
            return static_cast<std::uint64_t>(std::int64_t{value.SByteVal});
        case EvtVarTypeByte:
            return value.ByteVal;
        case EvtVarTypeInt16:
            return static_cast<std::uint64_t>(std::int64_t{value.Int16Val});
        case EvtVarTypeUInt16:
            return value.UInt16Val;
        case EvtVarTypeInt32:
            return static_cast<std::uint64_t>(std::int64_t{value.Int32Val});
        case EvtVarTypeUInt32:
        case EvtVarTypeHexInt32:
            return value.UInt32Val;
        case EvtVarTypeInt64:
        case EvtVarTypeUInt64:
        case EvtVarTypeHexInt64:
            return value.UInt64Val;
        case EvtVarTypeFileTime:
            return value.FileTimeVal;
        default:
            return 0;
    }
}

bool BooleanValue(const EVT_VARIANT& value) {
    return value.Type == EvtVarTypeBoolean && value.BooleanVal != 0;
}

std::optional<std::wstring> GuidValueText(const EVT_VARIANT& value) {
    if (value.Type != EvtVarTypeGuid || value.GuidVal == nullptr) {
        return std::nullopt;
    }
    GuidBytes bytes;
    static_assert(sizeof(GUID) == sizeof bytes);
    std::memcpy(bytes.data(), value.GuidVal, sizeof bytes);
    return GuidText(bytes);
}

std::span<const std::byte> SidValue(const EVT_VARIANT& value) {
    if (value.Type != EvtVarTypeSid || value.SidVal == nullptr) {
        return {};
    }
    // The variant gives no length: it follows from the number of sub-authorities in the second byte.
    const auto* bytes = static_cast<const std::byte*>(value.SidVal);
    const std::size_t stated = 8 + 4 * std::to_integer<std::size_t>(bytes[1]);
    return {bytes, SidLength({bytes, stated})};
}

}  // namespace corvina
