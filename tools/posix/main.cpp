#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands.h"

int main(int count, char** arguments) {
    // A reader that goes away is noticed when writing fails.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return corvina::tools::Run(std::vector<std::string>(arguments + (count > 0 ? 1 : 0), arguments + count));
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "corvina-logs: %s\n", exception.what());
        return corvina::tools::SomeFailed;
    }
}
