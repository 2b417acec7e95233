// Writing a file that is whole or not there at all: it is written beside its target under a temporary name and takes
// the target's name only when it is complete and on the disk. A full disk or a killed process leaves the old state.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>

namespace corvina {

// What becomes of a file that has the target's name already.
enum class ExistingFile {
    Replace,  // it is replaced at once; programs that have it open go on reading what was in it
    Keep,     // it stays, whenever it appeared, and the writing fails with error::FileExists
};

// All functions return 0 or an error code of the operating system: 3 when the folder is missing, 5 when writing is
// refused (also when the target is a folder or a file that is marked read-only), 80, 112 when the disk is full. Once
// one has failed, the file is only good for being destroyed.
class ReplacingFile {
  public:
    // Removes the temporary file unless Commit succeeded.
    virtual ~ReplacingFile() = default;

    // Appends at the end of what was written.
    virtual std::uint32_t Append(std::string_view bytes) = 0;

    // Writes over the first bytes of the file.
    virtual std::uint32_t WriteFront(std::string_view bytes) = 0;

    // Brings the file to the disk and gives it the target's name.
    virtual std::uint32_t Commit() = 0;
};

// Starts such a file. Temporary names are the target's with ".0.corvina-tmp" and the like behind it; files of that kind
// which an ended process has left there are removed. Returns none and an error code in `error` on failure.
std::unique_ptr<ReplacingFile> CreateReplacingFile(const std::filesystem::path& target, ExistingFile existing,
                                                   std::uint32_t& error);

}  // namespace corvina
