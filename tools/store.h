// A store that the command line names, and the queries that the commands put to it. What goes wrong is told of at once.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "command_line.h"
#include "embedded/embedded_event_log.h"
#include "platform/error_codes.h"
#include "platform/evt_handle.h"

namespace corvina::tools {

// The event log over the store, and the session of the computer that was asked for.
struct Store {
    explicit Store(const std::filesystem::path& folder) : Log(folder, {}) {}

    embedded::EmbeddedEventLog Log;
    EvtHandle Session;  // none for the store's own computer

    EvtHandle Held(EVT_HANDLE handle) { return EvtHandle(Log, handle); }
};

// None when the store or the computer cannot be opened.
std::unique_ptr<Store> OpenStore(const CommandLine& line);

// A query document in the direction of one of EvtQuery's flags; none when it cannot be opened. `allReadable` tells
// whether each of its logs can be read: others are told of and left out.
EvtHandle OpenDocument(Store& store, const std::wstring& document, DWORD direction, bool& allReadable);

// Calls a function of the event log that fills a buffer of bytes, again when the buffer was too small. Returns an error
// code.
template <typename Fill>
std::uint32_t FillBuffer(const EventLogApi& log, std::vector<BYTE>& buffer, DWORD& used, Fill fill) {
    for (;;) {
        if (fill(static_cast<DWORD>(buffer.size()), buffer.data(), &used)) {
            return error::Success;
        }
        if (log.GetLastError() != error::InsufficientBuffer || used <= buffer.size()) {
            return log.GetLastError();
        }
        buffer.resize(std::max<std::size_t>(used, 2 * buffer.size()));
    }
}

// One of the values that such a function has put at the front of the buffer.
EVT_VARIANT ValueAt(const std::vector<BYTE>& row, std::size_t index);

}  // namespace corvina::tools
