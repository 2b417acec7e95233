// The file that a log is written to: a temporary one beside its target, renamed when complete.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

namespace corvina::evtx {

class WriterFile {
  public:
    explicit WriterFile(std::filesystem::path target);
    // Removes the temporary file unless Commit succeeded.
    ~WriterFile();
    WriterFile(const WriterFile&) = delete;
    WriterFile& operator=(const WriterFile&) = delete;

    // Creates the temporary file, which must not exist yet. This and the others return 0 or a system error code.
    std::uint32_t Create();

    // Appends at the end of what was written.
    std::uint32_t Append(std::string_view bytes);

    // Writes over the first bytes of the file.
    std::uint32_t WriteFront(std::string_view bytes);

    // Closes the file and gives it the target's name, replacing what was there.
    std::uint32_t Commit();

    // Closes and removes the temporary file.
    void Discard();

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::filesystem::path target_;
    std::filesystem::path temporary_;
    std::unique_ptr<std::FILE, Closer> file_;
    bool created_ = false;
};

}  // namespace corvina::evtx
