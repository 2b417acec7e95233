// The message queue of the thread that calls.
#pragma once

#include "platform/message_pump.h"

namespace corvina {

class WindowsMessagePump : public MessagePump {
  public:
    // A quit message is put back for the program's own message loop and ends the call.
    void DispatchPending() override;
};

}  // namespace corvina
