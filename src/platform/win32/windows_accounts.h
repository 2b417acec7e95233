// Accounts from the system's own look-up. Names are remembered for a while: one log names the same few accounts in
// thousands of events, and a look-up may have to ask a server.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "platform/accounts.h"

namespace corvina {

class WindowsAccounts : public Accounts {
  public:
    // Names are cut to 259 characters.
    std::optional<std::wstring> AccountName(std::span<const std::byte> sid) override;

    std::optional<std::wstring> AccountSid(std::wstring_view name) override;

  private:
    std::unordered_map<std::string, std::optional<std::wstring>> names_;  // by the identifiers' bytes
    std::uint64_t collectedSince_ = 0;                                    // in milliseconds since the system started
};

}  // namespace corvina
