#include "embedded/samples/sample_store.h"

#include <exception>
#include <fstream>
#include <system_error>
#include <utility>

#include "base/calendar.h"
#include "base/path_text.h"
#include "base/utf.h"
#include "embedded/evtx/channel_file_name.h"
#include "embedded/evtx/log_file_writer.h"
#include "embedded/samples/sample_catalog.h"
#include "embedded/samples/sample_events.h"
#include "embedded/samples/sample_manifest.h"

namespace corvina::samples {
namespace {

constexpr std::wstring_view ComputerNames[] = {L"FILESRV-02", L"MAILSRV-01", L"DESK-0114", L"LAPTOP-77"};
constexpr std::wstring_view LocalComputer = L"CORVINA-DEMO";
constexpr std::uint64_t DefaultMaxSize = 20971520;
constexpr std::uint64_t ThousandthsTotal = 1000;
constexpr int FolderAttempts = 100;

// All logs end a little before 14 June 2024, 18:00 UTC, and reach back six weeks. Never the present time: stores must
// not differ from run to run.
constexpr std::uint64_t EndOfLogs = 133'628'616'000'000'000;
constexpr std::uint64_t SpanOfLogs = std::uint64_t{42} * 86'400 * FileTimeTicksPerSecond;

// Spreads the times of a log's events over the span: even steps, each event somewhere inside its own.
class Timeline {
  public:
    explicit Timeline(std::uint64_t events) : step_(SpanOfLogs / (events == 0 ? 1 : events)), random_(events) {}

    std::uint64_t Next() {
        const std::uint64_t time = next_ + random_.Below(step_ == 0 ? 1 : step_);
        next_ += step_;
        return time;
    }

  private:
    std::uint64_t step_;
    std::uint64_t next_ = EndOfLogs - SpanOfLogs;
    SampleRandom random_;
};

std::uint32_t WriteLog(const std::filesystem::path& path, SampleEventSource& source, std::uint64_t events) {
    evtx::LogFileWriter writer(path);
    Timeline timeline(events);
    for (std::uint64_t index = 0; index < events; ++index) {
        if (const std::uint32_t failure = writer.Add(source.Next(timeline.Next())); failure != 0) {
            return failure;
        }
    }
    return writer.Finish();
}

bool WriteTextFile(const std::filesystem::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

std::string ChannelSettings() {
    std::string text = "; What differs from the defaults of a channel.\n";
    for (const SampleChannel& channel : Channels()) {
        text += "\n[" + Utf8FromWide(channel.Path) + "]\nType=" + Utf8FromWide(channel.Type) + "\n";
        if (*channel.Publisher != L'\0') {
            text += "Publisher=" + Utf8FromWide(channel.Publisher) + "\n";
        }
        text += channel.IsEnabled ? "" : "Enabled=false\n";
        text += channel.IsClassic ? "Classic=true\n" : "";
        text += channel.MaxSize == DefaultMaxSize ? "" : "MaxSize=" + std::to_string(channel.MaxSize) + "\n";
        text += channel.Retention ? "Retention=true\n" : "";
        text += channel.AutoBackup ? "AutoBackup=true\n" : "";
    }
    return text;
}

// What the events of one computer carry, and where they go.
struct ComputerJob {
    std::filesystem::path Folder;
    std::wstring Name;
    std::uint64_t Events = 0;
    std::uint64_t Seed = 0;
};

bool WriteLogs(const ComputerJob& job, std::wstring& problem) {
    std::uint64_t left = job.Events;
    for (const SampleChannel& channel : Channels()) {
        left -= job.Events * channel.Share / ThousandthsTotal;
    }
    for (const SampleChannel& channel : Channels()) {
        std::uint64_t events = job.Events * channel.Share / ThousandthsTotal;
        // What rounding leaves over goes where most of the events are.
        if (channel.Path == std::wstring_view(L"System")) {
            events += left;
        }
        const std::filesystem::path path = job.Folder / PathFromText(evtx::FileNameOfChannelPath(channel.Path));
        SampleEventSource source(channel.Path, job.Name, job.Seed);
        if (const std::uint32_t failure = WriteLog(path, source, events); failure != 0) {
            problem =
                L"The log " + TextOfPath(path) + L" could not be written (error " + std::to_wstring(failure) + L").";
            return false;
        }
    }
    return true;
}

bool WriteComputer(const ComputerJob& job, std::wstring& problem) {
    const std::filesystem::path publishers = job.Folder / "publishers";
    std::error_code failure;
    std::filesystem::create_directories(publishers, failure);
    if (failure) {
        problem = L"The folder " + TextOfPath(publishers) + L" could not be made.";
        return false;
    }
    for (const SampleProvider& provider : Providers()) {
        const std::filesystem::path path = publishers / PathFromText(std::wstring(provider.Name) + L".man");
        if (!WriteTextFile(path, ManifestText(provider))) {
            problem = L"The file " + TextOfPath(path) + L" could not be written.";
            return false;
        }
    }
    const std::filesystem::path settings = job.Folder / "channels.ini";
    if (!WriteTextFile(settings, ChannelSettings())) {
        problem = L"The file " + TextOfPath(settings) + L" could not be written.";
        return false;
    }
    return WriteLogs(job, problem);
}

// A new folder beside the target that is removed unless it becomes the target.
class UnfinishedFolder {
  public:
    explicit UnfinishedFolder(std::filesystem::path target) : target_(std::move(target)) {}
    ~UnfinishedFolder() {
        if (created_) {
            std::error_code ignored;
            std::filesystem::remove_all(path_, ignored);
        }
    }
    UnfinishedFolder(const UnfinishedFolder&) = delete;
    UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    bool Create() {
        std::error_code ignored;
        if (target_.has_parent_path()) {
            std::filesystem::create_directories(target_.parent_path(), ignored);
        }
        for (int attempt = 0; attempt < FolderAttempts && !created_; ++attempt) {
            path_ = target_;
            path_ += std::to_string(attempt).append(".unfinished").insert(0, 1, '.');
            created_ = std::filesystem::create_directory(path_, ignored);
        }
        return created_;
    }

    bool Commit() {
        std::error_code failure;
        // Only an empty folder goes this way; not every system renames over one.
        std::filesystem::remove(target_, failure);
        std::filesystem::rename(path_, target_, failure);
        created_ = static_cast<bool>(failure);
        return !failure;
    }

  private:
    std::filesystem::path target_;
    std::filesystem::path path_;
    bool created_ = false;
};

bool IsFree(const std::filesystem::path& folder, std::wstring& problem) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(folder, failure);
    if (!std::filesystem::exists(status)) {
        return true;
    }
    if (!std::filesystem::is_directory(status)) {
        problem = TextOfPath(folder) + L" is a file, not a folder.";
        return false;
    }
    if (!std::filesystem::is_empty(folder, failure) || failure) {
        problem = L"The folder " + TextOfPath(folder) + L" is not empty.";
        return false;
    }
    return true;
}

bool WriteStore(std::filesystem::path folder, const SampleStoreOptions& options, std::wstring& problem) {
    if (!folder.has_filename()) {
        folder = folder.parent_path();  // written with a separator at its end
    }
    if (options.Computers == 0 || options.Computers > MostComputers || options.Events > MostEvents) {
        problem = L"The number of computers or events is out of range.";
        return false;
    }
    if (!IsFree(folder, problem)) {
        return false;
    }
    UnfinishedFolder unfinished(folder);
    if (!unfinished.Create()) {
        problem = L"No folder can be made beside " + TextOfPath(folder) + L".";
        return false;
    }
    for (std::uint32_t index = 0; index < options.Computers; ++index) {
        const std::wstring name = SampleComputerName(index);
        const std::wstring eventName = index == 0 ? std::wstring(LocalComputer) : name;
        if (!WriteComputer({unfinished.Path() / PathFromText(name), eventName, options.Events, options.Seed},
                           problem)) {
            return false;
        }
    }
    if (!unfinished.Commit()) {
        problem = L"The folder " + TextOfPath(folder) + L" could not be made.";
        return false;
    }
    return true;
}

}  // namespace

std::wstring SampleComputerName(std::uint32_t index) {
    if (index == 0) {
        return L"localhost";
    }
    if (index <= std::size(ComputerNames)) {
        return std::wstring(ComputerNames[index - 1]);
    }
    return L"BRANCH-" + std::to_wstring(index);
}

bool WriteSampleStore(const std::filesystem::path& folder, const SampleStoreOptions& options, std::wstring& problem) {
    try {
        return WriteStore(folder, options, problem);
    } catch (const std::exception&) {
        // Out of memory, or a path that the file system library cannot work with.
        problem = L"The sample logs could not be made.";
        return false;
    }
}

std::uint32_t WriteSampleLog(const std::filesystem::path& path, const std::wstring& channel, std::uint64_t events,
                             std::uint64_t seed) {
    SampleEventSource source(channel, std::wstring(LocalComputer), seed);
    return WriteLog(path, source, events);
}

}  // namespace corvina::samples
