// The port between the names of accounts and their security identifiers.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvina {

class Accounts {
  public:
    virtual ~Accounts() = default;

    // The account's name without its domain, looked up on this computer; none when the system does not know it.
    // `sid` is a security identifier in its binary form that has already been found valid.
    virtual std::optional<std::wstring> AccountName(std::span<const std::byte> sid) = 0;

    // The security identifier of an account as text ("S-1-5-18"); none when the system does not know the name, which
    // may be typed with or without a domain ("SYSTEM", "NT AUTHORITY\\SYSTEM", "user@domain").
    virtual std::optional<std::wstring> AccountSid(std::wstring_view name) = 0;
};

}  // namespace corvina
