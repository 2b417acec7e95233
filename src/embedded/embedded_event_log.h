// The embedded event log: the operations of the event log over a folder of .evtx files, for machines without the system's
// service and for the logs of a computer that no longer starts.
//
// A store is a folder. Each subfolder is a computer, "localhost" being this one; a folder that holds .evtx files itself is
// this computer alone. In a computer's folder: the channels' files, "channels.ini" (what differs from a channel's
// defaults), "publishers" (manifests), and "account.ini" when a user name and a password are needed to open it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/event_log_api.h"

namespace corvina::embedded {

// Whether a folder is a store that holds at least one log.
bool IsEventStore(const std::filesystem::path& folder);

// Creates the embedded event log. `localComputerName` is the name under which this computer is asked for.
class EmbeddedEventLog;
std::unique_ptr<EmbeddedEventLog> OpenEventStore(const std::filesystem::path& folder, std::wstring localComputerName);

}  // namespace corvina::embedded
