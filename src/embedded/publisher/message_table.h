// The message texts of a program file.
// Format: the platform's published structures MESSAGE_RESOURCE_DATA, MESSAGE_RESOURCE_BLOCK and MESSAGE_RESOURCE_ENTRY.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvina::publisher {

// One message table resource. Keeps its bytes and decodes a text when it is asked for.
class MessageTable {
  public:
    // Takes the bytes of the resource, which may be anything: what does not lie in them is left out.
    explicit MessageTable(std::vector<std::byte> bytes);

    // The text of a message with its inserts, without the line break that the message compiler puts behind each text;
    // none when the table has no such message.
    std::optional<std::wstring> Find(std::uint32_t id) const;

    bool IsEmpty() const { return places_.empty(); }

    // What it takes in memory, about.
    std::size_t ByteSize() const { return bytes_.size() + places_.size() * sizeof(std::uint32_t); }

  private:
    // Messages with numbers in a row, whose places stand in a row too.
    struct Block {
        std::uint32_t First = 0;
        std::size_t Count = 0;
        std::size_t FirstPlace = 0;
    };

    void AddBlock(std::uint32_t first, std::uint32_t last, std::size_t place);

    std::vector<std::byte> bytes_;
    std::vector<Block> blocks_;          // sorted by their first numbers
    std::vector<std::uint32_t> places_;  // of entries in the bytes
};

// Several tables, of several languages or files, asked one after the other.
class MessageTables {
  public:
    explicit MessageTables(std::vector<std::shared_ptr<const MessageTable>> tables) : tables_(std::move(tables)) {}

    // The text of the first table that has the message.
    std::optional<std::wstring> Find(std::uint32_t id) const;

  private:
    std::vector<std::shared_ptr<const MessageTable>> tables_;
};

}  // namespace corvina::publisher
