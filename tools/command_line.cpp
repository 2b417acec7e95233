#include "command_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace corvina::tools {
namespace {

std::optional<std::uint64_t> ParseCount(std::string_view text, std::uint64_t least, std::uint64_t most) {
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || number < least || number > most) {
        return std::nullopt;
    }
    return number;
}

// What a command takes besides its options.
struct Command {
    std::string_view Name;
    CommandLine::Action What;
    std::size_t LeastFiles;
    std::size_t MostFiles;
    std::string_view Needs;  // said when there are fewer or more
    std::initializer_list<std::string_view> Options;
};

using Action = CommandLine::Action;

constexpr std::size_t Any = std::numeric_limits<std::size_t>::max();

const std::array<Command, 6> Commands{{
    {"info", Action::Info, 1, Any, "No file was given.", {}},
    {"xml", Action::Xml, 1, Any, "No file was given.", {}},
    {"query", Action::Query, 2, 2, "A store and a query document must be given.", {"--computer", "--xml"}},
    {"export",
     Action::Export,
     3,
     3,
     "A store, a query document or channel, and a target must be given.",
     {"--computer", "--overwrite"}},
    {"publishers", Action::Publishers, 1, 1, "Exactly one store must be given.", {"--computer"}},
    {"sample", Action::Sample, 1, 1, "Exactly one folder must be given.", {"--events", "--computers", "--seed"}},
}};

class Parser {
  public:
    explicit Parser(std::span<const std::string> arguments) : rest_(arguments) {}

    CommandLine Parse() {
        if (rest_.empty()) {
            return Misused("No command was given.");
        }
        const std::string_view name = Take();
        if (name == "--help" || name == "-h") {
            line_.What = Action::Help;
            return line_;
        }
        if (name == "--version") {
            line_.What = Action::Version;
            return line_;
        }
        const auto command =
            std::find_if(Commands.begin(), Commands.end(), [name](const Command& known) { return known.Name == name; });
        if (command == Commands.end()) {
            return Misused("There is no command \"" + std::string(name) + "\".");
        }
        ParseArguments(*command);
        return line_;
    }

  private:
    CommandLine& Misused(std::string problem) {
        line_.What = Action::Misused;
        line_.Problem = std::move(problem);
        return line_;
    }

    std::string_view Take() {
        const std::string_view first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    void ParseArguments(const Command& command) {
        line_.What = command.What;
        bool optionsEnded = false;
        while (!rest_.empty() && line_.What == command.What) {
            const std::string_view argument = Take();
            if (!optionsEnded && argument == "--") {
                optionsEnded = true;
            } else if (!optionsEnded && argument.size() > 1 && argument.front() == '-') {
                ParseOption(command, argument);
            } else {
                line_.Files.emplace_back(argument);
            }
        }
        if (line_.What == command.What &&
            (line_.Files.size() < command.LeastFiles || line_.Files.size() > command.MostFiles)) {
            Misused(std::string(command.Needs));
        }
    }

    // "--name value" and "--name=value" are the same.
    void ParseOption(const Command& command, std::string_view argument) {
        const std::size_t equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        const bool hasValue = equals != std::string_view::npos;
        if (name == "--help" || name == "-h") {
            line_.What = Action::Help;
        } else if (std::find(command.Options.begin(), command.Options.end(), name) == command.Options.end()) {
            Misused("There is no option \"" + std::string(name) + "\" here.");
        } else if (bool* const mark = MarkOf(name)) {
            *mark = true;
            if (hasValue) {
                Misused("The option " + std::string(name) + " takes no value.");
            }
        } else if (!hasValue && rest_.empty()) {
            Misused("The option " + std::string(name) + " needs a value.");
        } else {
            SetValue(name, hasValue ? argument.substr(equals + 1) : Take());
        }
    }

    // An option that is only there or not.
    bool* MarkOf(std::string_view name) {
        if (name == "--xml") {
            return &line_.AsXml;
        }
        return name == "--overwrite" ? &line_.Overwrite : nullptr;
    }

    void SetValue(std::string_view name, std::string_view text) {
        std::optional<std::uint64_t> number;
        if (name == "--computer") {
            line_.Computer = text;
            return;
        }
        if (name == "--events") {
            number = ParseCount(text, 0, samples::MostEvents);
            line_.Sample.Events = number.value_or(0);
        } else if (name == "--computers") {
            number = ParseCount(text, 1, samples::MostComputers);
            line_.Sample.Computers = static_cast<std::uint32_t>(number.value_or(1));
        } else {
            number = ParseCount(text, 0, std::numeric_limits<std::uint64_t>::max());
            line_.Sample.Seed = number.value_or(0);
        }
        if (!number) {
            Misused("The number \"" + std::string(text) + "\" cannot be used for " + std::string(name) + ".");
        }
    }

    std::span<const std::string> rest_;
    CommandLine line_;
};

}  // namespace

CommandLine ParseCommandLine(std::span<const std::string> arguments) {
    return Parser(arguments).Parse();
}

std::string_view HelpText() {
    return "corvina-logs - looks into Windows event log files (.evtx) and makes sample logs\n"
           "\n"
           "  corvina-logs info FILE...       what a file holds, and what is damaged in it\n"
           "  corvina-logs xml FILE...        the events as XML in UTF-8, one a line\n"
           "  corvina-logs query STORE DOCUMENT\n"
           "                                  the events that a query document selects, newest first: channel and\n"
           "                                  record identifier, separated by a tab\n"
           "      --xml                       the events as XML instead\n"
           "      --computer NAME             one of the store's computers instead of its own\n"
           "  corvina-logs export STORE DOCUMENT|CHANNEL TARGET\n"
           "                                  writes the events to a new .evtx file, oldest first\n"
           "      --overwrite                 the target may exist and is replaced\n"
           "      --computer NAME             as above\n"
           "  corvina-logs publishers STORE   the names of the publishers whose texts are known\n"
           "      --computer NAME             as above\n"
           "  corvina-logs sample FOLDER      makes a store of sample logs in a new or empty folder\n"
           "      --events N                  events of each computer (100000)\n"
           "      --computers N               computers, this one first (1)\n"
           "      --seed N                    another number makes other logs (1)\n"
           "  corvina-logs --help             this text\n"
           "  corvina-logs --version          the version\n"
           "\n"
           "A STORE is a folder of .evtx files, or of one such folder for each computer, its own being \"localhost\".\n"
           "A DOCUMENT is the text of a query document (<QueryList>...), a file that holds one, or - for the standard\n"
           "input. Its paths are channels of the store, or files written as file:// and their path.\n"
           "\n"
           "In XML, line breaks inside an event's texts are written as references, so that a line is an event.\n"
           "\n"
           "Ends with 0 when all went well, damaged records and chunks included; with 1 when a file or log could not "
           "be\n"
           "read or written (the others are still done, but an export is whole or not made at all) or a query is not\n"
           "valid; with 2 when the command line is wrong.\n";
}

}  // namespace corvina::tools
