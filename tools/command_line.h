// The command line of corvina-logs, taken apart.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "embedded/samples/sample_store.h"

namespace corvina::tools {

struct CommandLine {
    enum class Action { Info, Xml, Sample, Help, Version, Misused };
    Action What = Action::Misused;
    std::vector<std::string> Files;  // UTF-8, or bytes as the system gave them; of Sample the one folder
    samples::SampleStoreOptions Sample;
    std::string Problem;  // of a misused command line: what is wrong, in English
};

// `arguments` without the program's own name.
CommandLine ParseCommandLine(std::span<const std::string> arguments);

// What --help shows.
std::string_view HelpText();

}  // namespace corvina::tools
