// Turns the events of a load, one at a time, into rows of the row store. Only the texts of visible columns are
// computed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "eventlog/event_description.h"
#include "eventlog/message_resolver.h"
#include "eventlog/publisher_metadata_cache.h"
#include "eventlog/row_store.h"
#include "i18n/language.h"
#include "platform/accounts.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"
#include "platform/locale_services.h"
#include "search/text_matcher.h"

namespace corvina {

// The two conditions of a filter that the event log cannot test itself. Empty texts are no conditions.
struct TextConditions {
    std::wstring InDescription;
    std::wstring InXml;
};

class EventRenderer {
  public:
    struct Parts {
        EventLogApi& Api;
        RowStore& Rows;
        PublisherMetadataCache& Metadata;
        MessageResolver& Messages;
        EventDescriber& Descriptions;
        const TextMatcher& Matcher;
        const i18n::Language& Language;
        Accounts& AccountNames;
        const LocaleServices& Locale;
        DebugLog& Debug;
    };

    explicit EventRenderer(const Parts& parts);
    ~EventRenderer();
    EventRenderer(const EventRenderer&) = delete;
    EventRenderer& operator=(const EventRenderer&) = delete;

    // Prepares for the events of one load, after the row store has been reset. `session`: where the metadata of
    // publishers is opened when their first event appears; null when the cache already holds all that can be had.
    void BeginLoad(EVT_HANDLE session);

    // Appends the row of one event unless a text condition rejects it. Returns 0 or an error code that ends the load.
    std::uint32_t RenderEventRow(EVT_HANDLE event);

    // Forgets everything of the load, before the metadata handles are closed.
    void EndLoad();

    const TextConditions& Conditions() const;
    void SetConditions(TextConditions conditions);

  private:
    class Load;
    Parts parts_;
    TextConditions conditions_;
    std::unique_ptr<Load> load_;
};

}  // namespace corvina
