#include "commands.h"

#include <cstdio>
#include <functional>

#include "base/utf.h"
#include "command_line.h"
#include "console.h"
#include "embedded/evtx/log_file.h"
#include "embedded/samples/sample_store.h"
#include "log_summary.h"
#include "output.h"
#include "store_commands.h"

namespace corvina::tools {
namespace {

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
            Complain(name + ": " + ReasonOf(error));
            result = SomeFailed;
            continue;
        }
        use(name, *file, output);
        if (!output.Continue()) {
            break;
        }
    }
    const int written = Finish(output);
    return result == AllWell ? written : result;
}

void WriteEvents(const std::string&, const evtx::LogFile& file, Output& output) {
    evtx::TextBuffer<char>& text = output.Buffer();
    for (std::size_t index = 0; index < file.Chunks().size(); ++index) {
        const auto chunk = file.ReadChunk(index);
        for (const evtx::RecordPlace& record : chunk->Places()) {
            const std::size_t begin = text.Size();
            if (chunk->AppendXml(record, text)) {
                EscapeLineBreaks(text, begin);
                text.Append('\n');
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
    output.Buffer().Append(text);
    return Finish(output);
}

}  // namespace

int Run(std::span<const std::string> arguments) {
    const CommandLine line = ParseCommandLine(arguments);
    switch (line.What) {
        case CommandLine::Action::Info:
            return ForEachFile(line.Files, [](const std::string& name, const evtx::LogFile& file, Output& output) {
                output.Buffer().Append(SummaryText(name, Summarize(file)));
            });
        case CommandLine::Action::Xml:
            return ForEachFile(line.Files, WriteEvents);
        case CommandLine::Action::Sample:
            return MakeSample(line);
        case CommandLine::Action::Query:
            return QueryStore(line);
        case CommandLine::Action::Export:
            return ExportFromStore(line);
        case CommandLine::Action::Publishers:
            return ListPublishers(line);
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
