#include "command_line.h"

#include <charconv>
#include <cstdint>
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

class Parser {
  public:
    explicit Parser(std::span<const std::string> arguments) : rest_(arguments) {}

    CommandLine Parse() {
        if (rest_.empty()) {
            return Misused("No command was given.");
        }
        const std::string_view command = Take();
        if (command == "--help" || command == "-h") {
            line_.What = CommandLine::Action::Help;
        } else if (command == "--version") {
            line_.What = CommandLine::Action::Version;
        } else if (command == "info") {
            ParseArguments(CommandLine::Action::Info);
        } else if (command == "xml") {
            ParseArguments(CommandLine::Action::Xml);
        } else if (command == "sample") {
            ParseArguments(CommandLine::Action::Sample);
        } else {
            return Misused("There is no command \"" + std::string(command) + "\".");
        }
        return line_;
    }

  private:
    CommandLine& Misused(std::string problem) {
        line_.What = CommandLine::Action::Misused;
        line_.Problem = std::move(problem);
        return line_;
    }

    std::string_view Take() {
        const std::string_view first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    void ParseArguments(CommandLine::Action action) {
        line_.What = action;
        bool optionsEnded = false;
        while (!rest_.empty() && line_.What == action) {
            const std::string_view argument = Take();
            if (!optionsEnded && argument == "--") {
                optionsEnded = true;
            } else if (!optionsEnded && argument.size() > 1 && argument.front() == '-') {
                ParseOption(argument);
            } else {
                line_.Files.emplace_back(argument);
            }
        }
        if (line_.What == action) {
            CheckFiles();
        }
    }

    void CheckFiles() {
        if (line_.What != CommandLine::Action::Sample && line_.Files.empty()) {
            Misused("No file was given.");
        } else if (line_.What == CommandLine::Action::Sample && line_.Files.size() != 1) {
            Misused("Exactly one folder must be given.");
        }
    }

    // "--name value" and "--name=value" are the same.
    void ParseOption(std::string_view argument) {
        const std::size_t equals = argument.find('=');
        const std::string_view name = argument.substr(0, equals);
        const bool isSample = line_.What == CommandLine::Action::Sample;
        if (name == "--help" || name == "-h") {
            line_.What = CommandLine::Action::Help;
            return;
        }
        if (!isSample || (name != "--events" && name != "--computers" && name != "--seed")) {
            Misused("There is no option \"" + std::string(name) + "\" here.");
            return;
        }
        if (equals == std::string_view::npos && rest_.empty()) {
            Misused("The option " + std::string(name) + " needs a number.");
            return;
        }
        SetNumber(name, equals == std::string_view::npos ? Take() : argument.substr(equals + 1));
    }

    void SetNumber(std::string_view name, std::string_view text) {
        std::optional<std::uint64_t> number;
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
           "  corvina-logs sample FOLDER      makes a store of sample logs in a new or empty folder\n"
           "      --events N                  events of each computer (100000)\n"
           "      --computers N               computers, this one first (1)\n"
           "      --seed N                    another number makes other logs (1)\n"
           "  corvina-logs --help             this text\n"
           "  corvina-logs --version          the version\n"
           "\n"
           "In XML, line breaks inside an event's texts are written as references, so that a line is an event.\n"
           "\n"
           "Ends with 0 when all went well, damaged records and chunks included; with 1 when a file could not be read\n"
           "or written (the others are still done); with 2 when the command line is wrong.\n";
}

}  // namespace corvina::tools
