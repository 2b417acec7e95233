// The token of the running process.
#pragma once

#include <windows.h>

#include "platform/system_services.h"

namespace corvina {

class ProcessToken : public PrivilegeToken {
  public:
    ProcessToken() = default;
    ~ProcessToken() override;
    ProcessToken(const ProcessToken&) = delete;
    ProcessToken& operator=(const ProcessToken&) = delete;

    bool Open() override;
    std::uint32_t LookUpPrivilege(std::wstring_view name, std::uint64_t& value) override;
    bool EnablePrivilege(std::uint64_t value, std::uint32_t& error) override;

  private:
    HANDLE token_ = nullptr;
};

}  // namespace corvina
