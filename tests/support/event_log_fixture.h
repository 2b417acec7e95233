// Small logs and stores for tests: events described by a few fields, written as real .evtx files into a folder that
// disappears with the test.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/evtx/log_file_writer.h"

namespace corvina::test {

// A new folder under the system's folder for temporary files; removed with everything in it at the end.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// 5 March 2024, 13:07:09 UTC: the time of the first event whose time is not given.
inline constexpr std::uint64_t FirstTestTime = 133541176290000000;

// An event to be written; what is not given gets a plain default.
struct TestEvent {
    std::uint16_t Id = 1;
    std::uint8_t Level = 4;
    std::wstring Provider = L"Test-Provider";
    std::uint64_t Time = 0;                                   // file time; 0: one second after the event before it
    std::vector<std::pair<std::wstring, std::wstring>> Data;  // name and text; an empty name for none
    std::wstring Channel = L"Application";
    std::wstring Computer = L"TESTPC";
    std::optional<std::uint16_t> Qualifiers;
    std::uint8_t Version = 0;
    std::uint16_t Task = 0;
    std::uint8_t Opcode = 0;
    std::uint64_t Keywords = 0x80000000000000;
    std::wstring User;                      // "S-1-5-18"; empty for none
    std::optional<std::uint64_t> RecordId;  // otherwise counted by the writer
    std::uint32_t ProcessId = 100;
    std::uint32_t ThreadId = 200;
    std::wstring ProviderGuid;  // "{1C2D3E4F-...}"; empty for none
};

// `count` events with ids 1, 2, 3 ... and record ids in the same order.
std::vector<TestEvent> NumberedEvents(std::size_t count);

// The form that the writer takes. `index` sets the time of an event without one.
evtx::WriterEvent MakeWriterEvent(const TestEvent& event, std::size_t index);

// Writes a log file, replacing an existing one. Returns 0 or the writer's error code.
std::uint32_t WriteLog(const std::filesystem::path& path, const std::vector<TestEvent>& events,
                       std::uint64_t firstRecordId = 1);

// Writes a file of bytes (UTF-8 text), creating the folders above it. False when that fails.
bool WriteTextFile(const std::filesystem::path& path, std::string_view text);

// A store in a folder. Every function creates the computer's folder; the computer "localhost" is this one. They return
// whether the file was written.
class TestStore {
  public:
    explicit TestStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& Folder() const { return folder_; }

    // The file of a channel: "/" in the channel's path stands as "%4".
    std::filesystem::path LogPath(const std::wstring& computer, std::wstring_view channel) const;

    // Writes a channel's log; the events get the channel's path.
    bool AddLog(const std::wstring& computer, const std::wstring& channel, std::vector<TestEvent> events,
                std::uint64_t firstRecordId = 1) const;

    // "channels.ini" as a whole.
    bool SetChannelsIni(const std::wstring& computer, std::string_view text) const;

    // "account.ini" with this user and password.
    bool SetAccount(const std::wstring& computer, std::string_view user, std::string_view password) const;

    // "publishers/<name>.man".
    bool AddManifest(const std::wstring& computer, const std::wstring& name, std::string_view xml) const;

  private:
    std::filesystem::path folder_;
};

// A manifest of one provider with level-less events: id and message text (with %1 ...). For tests that need more, write
// the manifest out.
std::string SimpleManifest(std::string_view provider,
                           const std::vector<std::pair<std::uint32_t, std::string>>& messages);

}  // namespace corvina::test
