// The commands of corvina-logs that ask a store: query, export and publishers. Each takes its part of the command line
// and returns an exit code.
#pragma once

#include "command_line.h"

namespace corvina::tools {

// The events that a query document selects, the newest first: channel and record identifier, or the XML. Logs of the
// document that cannot be read are told of and left out.
int QueryStore(const CommandLine& line);

// Writes a channel, or the events that a query document selects, to a file, the oldest first. Nothing is written when
// one of the logs cannot be read.
int ExportFromStore(const CommandLine& line);

// The names of the publishers whose texts a computer of the store has.
int ListPublishers(const CommandLine& line);

}  // namespace corvina::tools
