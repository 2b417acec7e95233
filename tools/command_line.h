// The command line of corvina-logs, taken apart.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/samples/sample_store.h"

namespace corvina::tools {

struct CommandLine {
    enum class Action { Info, Xml, Query, Export, Publishers, Sample, Help, Version, Misused };
    Action What = Action::Misused;
    // What is not an option, in UTF-8 or as bytes that the system gave: files, or a store's folder and what is asked of
    // it. As many as the command takes.
    std::vector<std::string> Files;
    samples::SampleStoreOptions Sample;
    std::optional<std::string> Computer;
    bool AsXml = false;
    bool Overwrite = false;
    std::string Problem;  // of a misused command line: what is wrong, in English
};

// `arguments` without the program's own name.
CommandLine ParseCommandLine(std::span<const std::string> arguments);

// What --help shows.
std::string_view HelpText();

}  // namespace corvina::tools
