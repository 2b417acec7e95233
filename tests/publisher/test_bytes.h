// Bytes of a file that a test puts together: numbers are little-endian, and places that are known only later are holes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/identifiers.h"
#include "base/utf.h"

namespace corvina::publisher {

class TestBytes {
  public:
    std::size_t Size() const { return bytes_.size(); }
    std::string Take() { return std::move(bytes_); }

    template <typename Number>
    void Put(Number number, std::size_t size) {
        bytes_.resize(bytes_.size() + size);
        Patch(bytes_.size() - size, number, size);
    }
    void Put16(std::size_t number) { Put(number, 2); }
    void Put32(std::size_t number) { Put(number, 4); }
    void PutText(std::string_view text) { bytes_ += text; }
    void PutGuid(const GuidBytes& guid) { bytes_.append(reinterpret_cast<const char*>(guid.data()), guid.size()); }
    void FillTo(std::size_t size) { bytes_.resize(size); }
    void Align(std::size_t unit) { bytes_.resize((bytes_.size() + unit - 1) / unit * unit); }

    void Patch32(std::size_t place, std::size_t number) { Patch(place, number, 4); }

    // The place of a number that is not known yet.
    std::size_t Hole() {
        Put32(0);
        return bytes_.size() - 4;
    }
    void FillHole(std::size_t hole) { Patch32(hole, bytes_.size()); }

    // A name as lists of providers have it, to which a hole leads.
    void PutName(std::size_t hole, const std::wstring& name) {
        FillHole(hole);
        const std::size_t size = Hole();
        AppendUtf16Bytes(name + L'\0', bytes_);
        Patch32(size, bytes_.size() - size);
        Align(4);
    }

  private:
    template <typename Number>
    void Patch(std::size_t place, Number number, std::size_t size) {
        for (std::size_t index = 0; index < size; ++index) {
            bytes_[place + index] = static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * index) & 0xFF);
        }
    }

    std::string bytes_;
};

}  // namespace corvina::publisher
