// What the commands share at the edge to the user: arguments as the rest of the program takes them, and messages.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "output.h"

namespace corvina::tools {

// A file or folder that was named on the command line, whose bytes need not be valid text.
std::filesystem::path PathFromArgument(const std::string& argument);

// Writes one line to the standard error stream.
void Complain(const std::string& message);

// What an error code of the event log means, in words that follow the name of what it is about.
std::string ReasonOf(std::uint32_t error);

// Writes what is left of the results. Returns an exit code; a failure is told of.
int Finish(Output& output);

}  // namespace corvina::tools
