// The port that finds the account name behind a security identifier.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace corvina {

class Accounts {
  public:
    virtual ~Accounts() = default;

    // The account's name without its domain, looked up on this computer; none when the system does not know it.
    // `sid` is a security identifier in its binary form that has already been found valid.
    virtual std::optional<std::wstring> AccountName(std::span<const std::byte> sid) = 0;
};

}  // namespace corvina
