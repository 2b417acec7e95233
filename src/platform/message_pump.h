// The port that keeps the window alive during long work on the user-interface thread.
#pragma once

namespace corvina {

class MessagePump {
  public:
    virtual ~MessagePump() = default;

    // Removes, translates and dispatches every message that waits in the thread's queue. Handlers run inside this call.
    virtual void DispatchPending() = 0;
};

}  // namespace corvina
