// The port that asks whether another computer's event log can be read at present.
#pragma once

#include <string>

namespace corvina {

class ComputerReachability {
  public:
    virtual ~ComputerReachability() = default;

    // Whether the computer's event log answers to the user's own logon. May take as long as the network takes.
    virtual bool IsReachable(const std::wstring& computer) = 0;
};

}  // namespace corvina
