// The commands of corvina-logs.
#pragma once

#include <span>
#include <string>

namespace corvina::tools {

// The program's exit codes.
enum ExitCode : int { AllWell = 0, SomeFailed = 1, Misused = 2 };

// Runs the command line, `arguments` without the program's own name. Results go to the standard output, messages to the
// standard error stream; both are expected to take bytes unchanged.
int Run(std::span<const std::string> arguments);

}  // namespace corvina::tools
