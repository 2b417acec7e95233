#include "embedded/forwarded_log.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "base/utf.h"
#include "support/event_log_fixture.h"

namespace corvina::test {
namespace {

void PutNumber(std::string& bytes, std::size_t place, std::uint64_t number, std::size_t size) {
    for (std::size_t index = 0; index < size; ++index) {
        bytes[place + index] = static_cast<char>(index < sizeof number ? number >> (8 * index) : 0);
    }
}

void AppendNumber(std::string& bytes, std::uint64_t number, std::size_t size) {
    bytes.append(size, '\0');
    PutNumber(bytes, bytes.size() - size, number, size);
}

// One chunk, written token by token. Every name stands where it is used.
class ChunkBytes {
  public:
    static constexpr std::size_t HeaderSize = 512;
    static constexpr std::size_t RecordHeaderSize = 24;

    // The record's fragment is an instance of a template that stands right there.
    ChunkBytes() : bytes_(HeaderSize + RecordHeaderSize, '\0') {
        const std::string fragmentHeader("\x0F\x01\x01\x00", 4);
        bytes_ += fragmentHeader + "\x0C\x01";
        AppendNumber(bytes_, TemplateId, 4);
        AppendNumber(bytes_, bytes_.size() + 4, 4);
        AppendNumber(bytes_, 0, 4);
        AppendNumber(bytes_, TemplateId, 16);
        templateLengthPlace_ = bytes_.size();
        AppendNumber(bytes_, 0, 4);
        bytes_ += fragmentHeader;
    }

    void Open(std::wstring_view name,
              std::initializer_list<std::pair<std::wstring_view, std::wstring_view>> attributes) {
        bytes_ += attributes.size() == 0 ? '\x01' : '\x41';
        AppendNumber(bytes_, 0xFFFF, 2);
        lengthPlaces_.push_back(bytes_.size());
        AppendNumber(bytes_, 0, 4);
        AppendName(name);
        if (attributes.size() != 0) {
            const std::size_t lengthPlace = bytes_.size();
            AppendNumber(bytes_, 0, 4);
            std::size_t left = attributes.size();
            for (const auto& [key, value] : attributes) {
                bytes_ += --left == 0 ? '\x06' : '\x46';
                AppendName(key);
                AppendValue(value);
            }
            PutNumber(bytes_, lengthPlace, bytes_.size() - lengthPlace - 4, 4);
        }
        bytes_ += '\x02';
    }

    void Close() {
        bytes_ += '\x04';
        PutNumber(bytes_, lengthPlaces_.back(), bytes_.size() - lengthPlaces_.back() - 4, 4);
        lengthPlaces_.pop_back();
    }

    void Element(std::wstring_view name, std::wstring_view text) {
        Open(name, {});
        AppendValue(text);
        Close();
    }

    // The chunk with its record and header complete.
    std::string Finish() {
        constexpr std::size_t ChunkSize = 65536;
        bytes_ += '\0';
        PutNumber(bytes_, templateLengthPlace_, bytes_.size() - templateLengthPlace_ - 4, 4);
        AppendNumber(bytes_, 0, 4);  // no values
        bytes_.append((8 - (bytes_.size() + 4) % 8) % 8, '\0');
        const std::size_t recordSize = bytes_.size() + 4 - HeaderSize;
        AppendNumber(bytes_, recordSize, 4);
        bytes_.replace(HeaderSize, 4, std::string("**\0\0", 4));
        PutNumber(bytes_, HeaderSize + 4, recordSize, 4);
        PutNumber(bytes_, HeaderSize + 8, 1, 8);
        PutNumber(bytes_, HeaderSize + 16, FirstTestTime, 8);
        bytes_.replace(0, 8, std::string("ElfChnk\0", 8));
        for (const std::size_t place : {8U, 16U, 24U, 32U}) {
            PutNumber(bytes_, place, 1, 8);
        }
        PutNumber(bytes_, 40, 128, 4);
        PutNumber(bytes_, 44, HeaderSize, 4);
        PutNumber(bytes_, 48, bytes_.size(), 4);
        bytes_.resize(ChunkSize, '\0');
        return bytes_;
    }

  private:
    void AppendText(std::wstring_view text) {
        AppendNumber(bytes_, text.size(), 2);
        AppendUtf16Bytes(text, bytes_);
    }

    void AppendValue(std::wstring_view text) {
        bytes_ += std::string("\x05\x01", 2);
        AppendText(text);
    }

    void AppendName(std::wstring_view name) {
        AppendNumber(bytes_, bytes_.size() + 4, 4);
        AppendNumber(bytes_, 0, 4);
        std::uint32_t hash = 0;
        for (const wchar_t character : name) {
            hash = hash * 65599 + static_cast<std::uint32_t>(character);
        }
        AppendNumber(bytes_, hash & 0xFFFF, 2);
        AppendText(name);
        AppendNumber(bytes_, 0, 2);
    }

    static constexpr std::uint64_t TemplateId = 0x12345678;

    std::string bytes_;
    std::size_t templateLengthPlace_ = 0;
    std::vector<std::size_t> lengthPlaces_;
};

// No checksums (flag 4), one chunk.
std::string FileHeader() {
    std::string bytes(4096, '\0');
    bytes.replace(0, 8, std::string("ElfFile\0", 8));
    PutNumber(bytes, 24, 2, 8);
    PutNumber(bytes, 32, 128, 4);
    PutNumber(bytes, 36, 1, 2);
    PutNumber(bytes, 38, 3, 2);
    PutNumber(bytes, 40, 4096, 2);
    PutNumber(bytes, 42, 1, 2);
    PutNumber(bytes, 120, 4, 4);
    return bytes;
}

}  // namespace

bool WriteForwardedLog(const std::filesystem::path& path) {
    ChunkBytes chunk;
    chunk.Open(L"Event", {{L"xmlns", L"http://schemas.microsoft.com/win/2004/08/events/event"}});
    chunk.Open(L"System", {});
    chunk.Open(L"Provider", {{L"Name", L"Remote-Provider"}});
    chunk.Close();
    chunk.Element(L"EventID", L"4711");
    chunk.Element(L"Level", L"2");
    chunk.Element(L"Task", L"9");
    chunk.Element(L"Opcode", L"77");
    chunk.Element(L"Channel", L"ForwardedEvents");
    chunk.Close();
    chunk.Open(L"UserData", {});
    chunk.Open(L"Notice", {{L"xmlns", L"urn:vendor"}, {L"Kind", L"urgent"}});
    chunk.Element(L"Name", L"O'Neill");
    chunk.Element(L"Count", L"16");
    chunk.Open(L"Items", {});
    chunk.Element(L"Item", L"first");
    chunk.Element(L"Item", L"second");
    chunk.Close();
    chunk.Close();
    chunk.Close();
    chunk.Open(L"RenderingInfo", {{L"Culture", L"en-US"}});
    for (const wchar_t* part : {L"Message", L"Level", L"Task", L"Opcode", L"Channel", L"Provider"}) {
        std::wstring text = std::wstring(L"Remote ") + part;
        text[7] = static_cast<wchar_t>(text[7] - L'A' + L'a');
        chunk.Element(part, text);
    }
    chunk.Open(L"Keywords", {});
    chunk.Element(L"Keyword", L"First");
    chunk.Element(L"Keyword", L"Second");
    chunk.Close();
    chunk.Close();
    chunk.Close();
    return WriteTextFile(path, FileHeader() + chunk.Finish());
}

}  // namespace corvina::test
