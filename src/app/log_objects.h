// The objects that read event logs, wired to one another, to the views and to the system. They exist from the moment
// when the event log is opened until the program ends.
#pragma once

#include <memory>
#include <string>

#include "app/application.h"
#include "app/list_selection.h"
#include "app/stored_filter_queries.h"
#include "details/details_pane.h"
#include "details/details_window.h"
#include "details/event_details.h"
#include "details/row_details.h"
#include "eventlog/channel_list.h"
#include "eventlog/channel_registrar.h"
#include "eventlog/event_description.h"
#include "eventlog/event_log_session.h"
#include "eventlog/event_renderer.h"
#include "eventlog/log_loader.h"
#include "eventlog/log_selection.h"
#include "eventlog/log_tree_builder.h"
#include "eventlog/message_resolver.h"
#include "eventlog/publisher_metadata_cache.h"
#include "eventlog/system_error_report.h"
#include "search/text_matcher.h"

namespace corvina {

// What is there before the event log is opened, and stays when it is gone.
struct LogSurroundings {
    const Ports& System;
    const Views& Shown;
    const i18n::Language& Language;
    SettingsStore& Settings;
    RowStore& Rows;
    LogTree& Tree;
    std::wstring FilterFolder;  // with the files of stored filters
};

// Members stand in the order in which they need one another.
class LogObjects {
  public:
    LogObjects(std::unique_ptr<EventLogApi> api, const LogSurroundings& surroundings);

  private:
    std::unique_ptr<EventLogApi> api_;
    SystemErrorReport errors_;
    PublisherMetadataCache metadata_;
    MessageResolver messages_;
    EventDescriber descriptions_;
    TextMatcher matcher_;
    StoredFilterQueries filters_;

  public:
    ChannelLists Channels;
    EventLogSession Session;
    ChannelRegistrar Registrar;
    LogTreeBuilder Builder;
    EventRenderer Renderer;
    LogLoader Loader;
    EventDetails Details;
    RowDetails RowEvents;
    DetailsPane Pane;
    ListSelection Selected;
    DetailsWindow EventWindow;
    LogSelection Selection;
};

}  // namespace corvina
