#include "commands.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>

#include "base/utf.h"
#include "command_line.h"
#include "embedded/evtx/log_file.h"
#include "embedded/samples/sample_store.h"
#include "log_summary.h"
#include "output.h"
#include "platform/error_codes.h"

namespace corvina::tools {
namespace {

std::filesystem::path PathFromArgument(const std::string& argument) {
#ifdef _WIN32
    return std::filesystem::path(WideFromUtf8(argument));
#else
    return std::filesystem::path(argument);
#endif
}

void Complain(const std::string& message) {
    std::fputs(("corvina-logs: " + message + "\n").c_str(), stderr);
}

std::string OpenProblem(std::uint32_t error) {
    switch (error) {
        case error::FileNotFound:
        case error::PathNotFound:
            return "there is no such file";
        case error::AccessDenied:
            return "access is denied";
        case error::EventLogFileCorrupt:
            return "this is not an event log";
        default:
            return "error " + std::to_string(error);
    }
}

// Opens the files one after another and lets `use` write about each. A file that cannot be opened does not stop the
// others.
using FileUser = std::function<void(const std::string& name, const evtx::LogFile& file, Output& output)>;

int ForEachFile(const std::vector<std::string>& files, const FileUser& use) {
    Output output(stdout);
    int result = AllWell;
    for (const std::string& name : files) {
        std::uint32_t error = 0;
        const auto file = evtx::LogFile::Open(PathFromArgument(name), error);
        if (file == nullptr) {
            output.Flush();
            Complain(name + ": " + OpenProblem(error));
            result = SomeFailed;
            continue;
        }
        use(name, *file, output);
        if (!output.Continue()) {
            break;
        }
    }
    output.Flush();
    if (output.HasFailed()) {
        Complain("the output could not be written");
        result = SomeFailed;
    }
    return result;
}

// Texts of events may hold line breaks. As references they have the same meaning and keep the event on its line.
void EscapeLineBreaks(std::string& text, std::size_t begin) {
    const std::size_t size = text.size() - begin;
    if (std::memchr(text.data() + begin, '\n', size) == nullptr &&
        std::memchr(text.data() + begin, '\r', size) == nullptr) {
        return;
    }
    std::string escaped;
    for (std::size_t index = begin; index < text.size(); ++index) {
        switch (text[index]) {
            case '\n':
                escaped += "&#10;";
                break;
            case '\r':
                escaped += "&#13;";
                break;
            default:
                escaped += text[index];
        }
    }
    text.replace(begin, std::string::npos, escaped);
}

void WriteEvents(const std::string&, const evtx::LogFile& file, Output& output) {
    std::string& text = output.Buffer();
    for (std::size_t index = 0; index < file.Chunks().size(); ++index) {
        const auto chunk = file.ReadChunk(index);
        for (const evtx::RecordPlace& record : chunk->Places()) {
            const std::size_t begin = text.size();
            if (chunk->AppendXml(record, text)) {
                EscapeLineBreaks(text, begin);
                text += '\n';
            }
            if (!output.Continue()) {
                return;
            }
        }
    }
}

int MakeSample(const CommandLine& line) {
    std::wstring problem;
    if (!samples::WriteSampleStore(PathFromArgument(line.Files.front()), line.Sample, problem)) {
        Complain(Utf8FromWide(problem));
        return SomeFailed;
    }
    return AllWell;
}

int Print(std::string_view text) {
    Output output(stdout);
    output.Buffer() = text;
    output.Flush();
    return output.HasFailed() ? SomeFailed : AllWell;
}

}  // namespace

int Run(std::span<const std::string> arguments) {
    const CommandLine line = ParseCommandLine(arguments);
    switch (line.What) {
        case CommandLine::Action::Info:
            return ForEachFile(line.Files, [](const std::string& name, const evtx::LogFile& file, Output& output) {
                output.Buffer() += SummaryText(name, Summarize(file));
            });
        case CommandLine::Action::Xml:
            return ForEachFile(line.Files, WriteEvents);
        case CommandLine::Action::Sample:
            return MakeSample(line);
        case CommandLine::Action::Help:
            return Print(HelpText());
        case CommandLine::Action::Version:
            return Print("corvina-logs " CORVINA_VERSION "\n");
        case CommandLine::Action::Misused:
            break;
    }
    Complain(line.Problem + " Try corvina-logs --help.");
    return Misused;
}

}  // namespace corvina::tools
