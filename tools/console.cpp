#include "console.h"

#include <cstdio>

#include "base/utf.h"
#include "commands.h"
#include "platform/error_codes.h"

namespace corvina::tools {

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

std::string ReasonOf(std::uint32_t error) {
    switch (error) {
        case error::FileNotFound:
            return "there is no such file";
        case error::PathNotFound:
            return "there is no such folder";
        case error::AccessDenied:
            return "access is denied";
        case error::OutOfMemory:
            return "there is not enough memory";
        case error::FileExists:
            return "the target exists";
        case error::LogonFailure:
            return "this computer's logs need a user name and a password";
        case error::EventLogFileCorrupt:
            return "this is not an event log";
        case error::RpcServerUnavailable:
            return "there is no such computer in the store";
        case error::InvalidQuery:
            return "the query is not valid";
        case error::InvalidChannelPath:
        case error::ChannelNotFound:
            return "unknown channel";
        default:
            return "error " + std::to_string(error);
    }
}

int Finish(Output& output) {
    output.Flush();
    if (output.HasFailed()) {
        Complain("the output could not be written");
        return SomeFailed;
    }
    return AllWell;
}

}  // namespace corvina::tools
