#include "publisher/image_builder.h"

#include <map>
#include <string_view>

#include "base/utf.h"
#include "publisher/test_bytes.h"

namespace corvina::publisher {
namespace {

constexpr std::size_t HeadersSize = 0x200;
constexpr std::size_t TextSectionAddress = 0x1000;
constexpr std::size_t ResourceSectionAddress = 0x3000;

// Three directories a resource, data entries, names and data. Every type has one name, number 1.
std::string ResourceSection(const std::vector<TestResource>& resources) {
    using TypeKey = std::pair<bool, std::pair<std::string, std::uint16_t>>;  // names first, as the format wants it
    std::map<TypeKey, std::map<std::uint16_t, const TestResource*>> types;
    for (const TestResource& resource : resources) {
        types[{resource.TypeName.empty(), {resource.TypeName, resource.Type}}][resource.Language] = &resource;
    }
    TestBytes out;
    const auto putHeader = [&out](std::size_t named, std::size_t numbered) {
        out.Put32(0);
        out.Put32(0);
        out.Put32(0);
        out.Put16(named);
        out.Put16(numbered);
    };
    std::size_t named = 0;
    for (const auto& [key, languages] : types) {
        named += key.first ? 0 : 1;
    }
    putHeader(named, types.size() - named);
    std::vector<std::pair<std::size_t, std::size_t>> typeHoles;  // name and place of each type
    for (const auto& [key, languages] : types) {
        out.Put32(key.second.second);
        out.Put32(0);
        typeHoles.emplace_back(out.Size() - 8, out.Size() - 4);
    }
    std::vector<std::pair<std::size_t, const TestResource*>> dataHoles;
    auto typeHole = typeHoles.begin();
    for (const auto& [key, languages] : types) {
        out.Patch32(typeHole++->second, out.Size() | 0x80000000U);
        putHeader(0, 1);
        out.Put32(1);
        out.Put32((out.Size() + 4) | 0x80000000U);
        putHeader(0, languages.size());
        for (const auto& [language, resource] : languages) {
            out.Put32(language);
            dataHoles.emplace_back(out.Hole(), resource);
        }
    }
    std::vector<std::pair<std::size_t, const TestResource*>> addressHoles;
    for (const auto& [hole, resource] : dataHoles) {
        out.FillHole(hole);
        addressHoles.emplace_back(out.Hole(), resource);
        out.Put32(resource->Bytes.size());
        out.Put32(0);
        out.Put32(0);
    }
    typeHole = typeHoles.begin();
    for (const auto& [key, languages] : types) {
        if (!key.first) {
            out.Patch32(typeHole->first, out.Size() | 0x80000000U);
            out.Put16(key.second.first.size());
            std::string name;
            AppendUtf16Bytes(WideFromUtf8(key.second.first), name);
            out.PutText(name);
        }
        ++typeHole;
    }
    for (const auto& [hole, resource] : addressHoles) {
        out.Align(4);
        out.Patch32(hole, out.Size() + ResourceSectionAddress);
        out.PutText(resource->Bytes);
    }
    return out.Take();
}

void PutSection(TestBytes& out, std::string_view name, std::size_t address, std::size_t size, std::size_t offset) {
    out.PutText(name);
    out.FillTo(out.Size() + 8 - name.size());
    out.Put32(size);
    out.Put32(address);
    out.Put32((size + 0x1FF) / 0x200 * 0x200);
    out.Put32(offset);
    out.FillTo(out.Size() + 12);
    out.Put32(0x40000040);  // initialized data, readable
}

}  // namespace

std::string MakeImage(const std::vector<TestResource>& resources, bool is64Bit) {
    const std::string section = ResourceSection(resources);
    TestBytes out;
    out.PutText("MZ");
    out.FillTo(60);
    out.Put32(64);
    out.PutText(std::string_view("PE\0\0", 4));
    out.Put16(is64Bit ? 0x8664 : 0x14C);
    out.Put16(2);
    out.FillTo(out.Size() + 12);
    out.Put16(is64Bit ? 240 : 224);
    out.Put16(is64Bit ? 0x2022 : 0x2102);  // a library
    const std::size_t optional = out.Size();
    out.Put16(is64Bit ? 0x20B : 0x10B);
    out.FillTo(optional + (is64Bit ? 24 : 28));
    out.Put(0x10000000, is64Bit ? 8 : 4);
    out.Put32(0x1000);
    out.Put32(0x200);
    out.Put16(6);
    out.FillTo(optional + 48);
    out.Put16(6);
    out.FillTo(optional + 56);
    out.Put32(ResourceSectionAddress + (section.size() + 0xFFF) / 0x1000 * 0x1000);
    out.Put32(HeadersSize);
    out.FillTo(optional + 68);
    out.Put16(2);
    out.FillTo(optional + (is64Bit ? 108 : 92));
    out.Put32(16);
    out.FillTo(out.Size() + 16);
    out.Put32(ResourceSectionAddress);
    out.Put32(section.size());
    out.FillTo(optional + (is64Bit ? 240 : 224));
    PutSection(out, ".text", TextSectionAddress, 0x200, HeadersSize);
    PutSection(out, ".rsrc", ResourceSectionAddress, section.size(), ResourceSectionOffset);
    out.FillTo(ResourceSectionOffset);
    out.PutText(section);
    out.Align(0x200);
    return out.Take();
}

TestResource MakeMessageTable(const TestMessages& messages, std::uint16_t language, bool isUtf16) {
    std::vector<TestMessages> blocks;
    for (const auto& message : messages) {
        if (blocks.empty() || blocks.back().back().first + 1 != message.first) {
            blocks.emplace_back();
        }
        blocks.back().push_back(message);
    }
    TestBytes out;
    out.Put32(blocks.size());
    std::vector<std::size_t> holes;
    for (const TestMessages& block : blocks) {
        out.Put32(block.front().first);
        out.Put32(block.back().first);
        holes.push_back(out.Hole());
    }
    auto hole = holes.begin();
    for (const TestMessages& block : blocks) {
        out.FillHole(*hole++);
        for (const auto& [id, text] : block) {
            std::string bytes;
            const std::wstring whole = text + L"\r\n" + L'\0';
            if (isUtf16) {
                AppendUtf16Bytes(whole, bytes);
            } else {
                for (const wchar_t character : whole) {
                    bytes += static_cast<char>(character);
                }
            }
            bytes.resize((bytes.size() + 3) / 4 * 4);
            out.Put16(bytes.size() + 4);
            out.Put16(isUtf16 ? 1 : 0);
            out.PutText(bytes);
        }
    }
    return {11, {}, language, out.Take()};
}

}  // namespace corvina::publisher
