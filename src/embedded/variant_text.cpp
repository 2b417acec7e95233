#include "embedded/variant_text.h"

#include <cstdint>
#include <cstring>

#include "base/format_text.h"
#include "base/identifiers.h"
#include "base/utf.h"

namespace corvina::embedded {
namespace {

std::wstring SidValueText(const void* sid) {
    // The second byte counts the sub-authorities of four bytes each that follow the first eight.
    constexpr std::size_t FixedSize = 8;
    const auto* const bytes = static_cast<const std::byte*>(sid);
    const std::size_t size = FixedSize + 4 * std::to_integer<std::size_t>(bytes[1]);
    return SidText({bytes, size}).value_or(std::wstring());
}

std::wstring GuidValueText(const void* guid) {
    GuidBytes bytes;
    std::memcpy(bytes.data(), guid, bytes.size());
    return GuidText(bytes);
}

std::wstring PointedText(const EVT_VARIANT& value) {
    if (value.BinaryVal == nullptr) {
        return {};
    }
    switch (value.Type) {
        case EvtVarTypeString:
            return value.StringVal;
        case EvtVarTypeAnsiString:
            return WideFromUtf8(value.AnsiStringVal);
        case EvtVarTypeGuid:
            return GuidValueText(value.GuidVal);
        case EvtVarTypeSid:
            return SidValueText(value.SidVal);
        default:
            return {};
    }
}

}  // namespace

std::wstring VariantText(const EVT_VARIANT& value) {
    switch (value.Type) {
        case EvtVarTypeSByte:
            return std::to_wstring(value.SByteVal);
        case EvtVarTypeByte:
            return std::to_wstring(value.ByteVal);
        case EvtVarTypeInt16:
            return std::to_wstring(value.Int16Val);
        case EvtVarTypeUInt16:
            return std::to_wstring(value.UInt16Val);
        case EvtVarTypeInt32:
            return std::to_wstring(value.Int32Val);
        case EvtVarTypeUInt32:
            return std::to_wstring(value.UInt32Val);
        case EvtVarTypeInt64:
            return std::to_wstring(value.Int64Val);
        case EvtVarTypeUInt64:
            return std::to_wstring(value.UInt64Val);
        case EvtVarTypeHexInt32:
            return FormatText(L"0x%I64x", {value.UInt32Val});
        case EvtVarTypeHexInt64:
            return FormatText(L"0x%I64x", {value.UInt64Val});
        case EvtVarTypeBoolean:
            return value.BooleanVal != FALSE ? L"true" : L"false";
        default:
            return PointedText(value);
    }
}

}  // namespace corvina::embedded
