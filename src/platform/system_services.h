// The port to what the program asks of the system at start and at a restart: names, versions, folders, privileges and
// the start of another program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvina {

struct WindowsVersion {
    std::uint32_t Major = 0;
    std::uint32_t Minor = 0;
    std::uint32_t Build = 0;  // without the four flag bits
};

class SystemServices {
  public:
    virtual ~SystemServices() = default;

    // The full path of the running executable, cut to 260 characters.
    virtual std::wstring ModulePath() const = 0;

    virtual bool FolderExists(std::wstring_view path) const = 0;

    // Creates a folder with all folders above it. A failure is not reported: later writes into it fail by themselves.
    virtual void CreateFolders(std::wstring_view path) = 0;

    virtual bool FileExists(std::wstring_view path) const = 0;

    // This computer's name.
    virtual std::wstring ComputerName() const = 0;

    // The language identifier of the user's interface language; none when the system cannot tell.
    virtual std::optional<std::uint16_t> UserInterfaceLanguage() const = 0;

    virtual WindowsVersion Version() const = 0;

    // Starts a program as if the user had opened its file (verb "open", shown normally). A failure is not reported.
    virtual void StartProgram(std::wstring_view path) = 0;
};

// The process token, opened for adjusting privileges.
class PrivilegeToken {
  public:
    virtual ~PrivilegeToken() = default;

    // Looks up a privilege by name on this computer. Returns 0 and the value, or the error code.
    virtual std::uint32_t LookUpPrivilege(std::wstring_view name, std::uint64_t& value) = 0;

    // Enables one privilege and leaves the others alone. Returns whether the call succeeded; `error` is the last error
    // either way (error::NotAllAssigned after a successful call means that the token does not hold the privilege).
    virtual bool EnablePrivilege(std::uint64_t value, std::uint32_t& error) = 0;

    // Opens the token; false when that is refused.
    virtual bool Open() = 0;
};

}  // namespace corvina
