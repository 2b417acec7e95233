#include "embedded/publisher/event_template_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "base/little_endian.h"
#include "base/xml_escape.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t TemplateHeaderSize = 40;
constexpr std::size_t ItemSize = 20;
constexpr std::size_t MostItems = 1'024;                         // the platform's events have 128 values at most
constexpr std::size_t LongestTemplate = std::size_t{256} << 10;  // in characters; groups may name the same items again

// The flags and the numbers of types are those of the platform's published event tracing structures (PROPERTY_FLAGS,
// _TDH_IN_TYPE, _TDH_OUT_TYPE); the names are those of its event manifests.
constexpr std::uint32_t IsGroup = 0x01;
constexpr std::uint32_t LengthIsItem = 0x02;
constexpr std::uint32_t CountIsItem = 0x04;
constexpr std::uint32_t LengthIsFixed = 0x10;
constexpr std::uint32_t CountIsFixed = 0x20;

struct InType {
    std::wstring_view Name;
    std::wstring_view OutType;  // where none is stated
};

constexpr std::array<InType, 26> InTypes = {{
    {L"win:Null", L""},
    {L"win:UnicodeString", L"xs:string"},
    {L"win:AnsiString", L"xs:string"},
    {L"win:Int8", L"xs:byte"},
    {L"win:UInt8", L"xs:unsignedByte"},
    {L"win:Int16", L"xs:short"},
    {L"win:UInt16", L"xs:unsignedShort"},
    {L"win:Int32", L"xs:int"},
    {L"win:UInt32", L"xs:unsignedInt"},
    {L"win:Int64", L"xs:long"},
    {L"win:UInt64", L"xs:unsignedLong"},
    {L"win:Float", L"xs:float"},
    {L"win:Double", L"xs:double"},
    {L"win:Boolean", L"xs:boolean"},
    {L"win:Binary", L"xs:hexBinary"},
    {L"win:GUID", L"xs:GUID"},
    {L"win:Pointer", L"win:HexInt64"},
    {L"win:FILETIME", L"xs:dateTime"},
    {L"win:SYSTEMTIME", L"xs:dateTime"},
    {L"win:SID", L"xs:string"},
    {L"win:HexInt32", L"win:HexInt32"},
    {L"win:HexInt64", L"win:HexInt64"},
    {L"win:CountedUnicodeString", L"xs:string"},
    {L"win:CountedAnsiString", L"xs:string"},
    {L"", L""},
    {L"win:CountedBinary", L"xs:hexBinary"},
}};

constexpr std::array<std::wstring_view, 34> OutTypes = {
    L"",
    L"xs:string",
    L"xs:dateTime",
    L"xs:byte",
    L"xs:unsignedByte",
    L"xs:short",
    L"xs:unsignedShort",
    L"xs:int",
    L"xs:unsignedInt",
    L"xs:long",
    L"xs:unsignedLong",
    L"xs:float",
    L"xs:double",
    L"xs:boolean",
    L"xs:GUID",
    L"xs:hexBinary",
    L"win:HexInt8",
    L"win:HexInt16",
    L"win:HexInt32",
    L"win:HexInt64",
    L"win:PID",
    L"win:TID",
    L"win:Port",
    L"win:IPv4",
    L"win:IPv6",
    L"win:SocketAddress",
    L"win:CIMDateTime",
    L"win:ETWTIME",
    L"win:Xml",
    L"win:ErrorCode",
    L"win:Win32Error",
    L"win:NTSTATUS",
    L"win:HResult",
    L"win:DateTimeCultureInsensitive",
};

struct Item {
    std::uint32_t Flags = 0;
    std::uint8_t InType = 0;
    std::uint8_t OutType = 0;
    std::uint16_t FirstMember = 0;  // of a group: its items in the same list
    std::uint16_t MemberCount = 0;
    std::uint16_t Count = 0;   // a number, or the item that has it
    std::uint16_t Length = 0;  // the same
    std::wstring Name;
};

void AppendAttribute(std::wstring_view name, std::wstring_view value, std::wstring& xml) {
    ((xml += L' ') += name) += L"=\"";
    AppendXmlEscaped(value, L'"', xml);
    xml += L'"';
}

class TemplateWriter {
  public:
    explicit TemplateWriter(std::vector<Item> items) : items_(std::move(items)) {}

    // Empty when the text gets too long.
    std::wstring Write(std::size_t topLevelCount) {
        xml_ = L"<template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">";
        for (std::size_t index = 0; index < topLevelCount && !IsTooLong(); ++index) {
            if ((items_[index].Flags & IsGroup) != 0) {
                WriteGroup(items_[index]);
            } else {
                WriteItem(items_[index]);
            }
        }
        xml_ += L"</template>";
        return IsTooLong() ? std::wstring() : std::move(xml_);
    }

  private:
    bool IsTooLong() const { return xml_.size() > LongestTemplate; }

    void WriteItem(const Item& item) {
        xml_ += L"<data";
        AppendAttribute(L"name", item.Name, xml_);
        if (item.InType < InTypes.size()) {
            const InType& type = InTypes[item.InType];
            const bool isStated = item.OutType != 0 && item.OutType < OutTypes.size();
            AppendAttribute(L"inType", type.Name, xml_);
            AppendAttribute(L"outType", isStated ? OutTypes[item.OutType] : type.OutType, xml_);
        }
        AppendNumber(L"length", item.Flags, LengthIsItem, LengthIsFixed, item.Length);
        AppendNumber(L"count", item.Flags, CountIsItem, CountIsFixed, item.Count);
        xml_ += L"/>";
    }

    // Groups do not hold groups. One without items is left out: the manifests' schema does not allow it.
    void WriteGroup(const Item& group) {
        const std::size_t first = std::min<std::size_t>(group.FirstMember, items_.size());
        const std::size_t end = std::min(first + group.MemberCount, items_.size());
        if (first == end) {
            return;
        }
        xml_ += L"<struct";
        AppendAttribute(L"name", group.Name, xml_);
        AppendNumber(L"count", group.Flags, CountIsItem, CountIsFixed, group.Count);
        xml_ += L'>';
        for (std::size_t index = first; index < end && !IsTooLong(); ++index) {
            if ((items_[index].Flags & IsGroup) == 0) {
                WriteItem(items_[index]);
            }
        }
        xml_ += L"</struct>";
    }

    void AppendNumber(std::wstring_view attribute, std::uint32_t flags, std::uint32_t isItem, std::uint32_t isFixed,
                      std::uint16_t number) {
        if ((flags & isItem) != 0 && number < items_.size()) {
            AppendAttribute(attribute, items_[number].Name, xml_);
        } else if ((flags & isFixed) != 0) {
            AppendAttribute(attribute, std::to_wstring(number), xml_);
        }
    }

    std::vector<Item> items_;
    std::wstring xml_;
};

std::optional<Item> ReadItem(TemplateBytes& resource, const std::byte* bytes) {
    Item item;
    item.Flags = LoadUInt32(bytes);
    item.InType = LoadUInt8(bytes + 4);
    item.OutType = LoadUInt8(bytes + 5);
    item.FirstMember = LoadUInt16(bytes + 4);
    item.MemberCount = LoadUInt16(bytes + 6);
    item.Count = LoadUInt16(bytes + 12);
    item.Length = LoadUInt16(bytes + 14);
    if (!resource.ReadText(LoadUInt32(bytes + 16), item.Name)) {
        return std::nullopt;
    }
    return item;
}

}  // namespace

std::wstring EventTemplateText(TemplateBytes& resource, std::uint32_t offset) {
    const std::span<const std::byte> header = resource.Part(offset, TemplateHeaderSize);
    if (header.empty() || std::memcmp(header.data(), "TEMP", 4) != 0) {
        return {};
    }
    // Both counts are the same unless there are groups, whose items stand behind those of the event itself.
    const std::size_t oneCount = LoadUInt32(header.data() + 8);
    const std::size_t otherCount = LoadUInt32(header.data() + 12);
    const std::size_t count = std::max(oneCount, otherCount);
    const auto entries = resource.Entries(LoadUInt32(header.data() + 16), count, ItemSize);
    if (count > MostItems || entries.size() != count * ItemSize) {
        return {};
    }
    std::vector<Item> items;
    items.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        std::optional<Item> item = ReadItem(resource, entries.data() + index * ItemSize);
        if (!item) {
            return {};
        }
        items.push_back(std::move(*item));
    }
    std::wstring text = TemplateWriter(std::move(items)).Write(std::min(oneCount, otherCount));
    return resource.Spend(text.size()) ? text : std::wstring();
}

}  // namespace corvina::publisher
