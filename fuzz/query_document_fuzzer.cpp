// Any text as a query document, run in both directions over a small store: what is no document is refused as such, and
// what is one gives the same events forwards and backwards.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/embedded_event_log.h"
#include "embedded/xpath/query_document.h"
#include "platform/error_codes.h"
#include "platform/evt_handle.h"
#include "store_queries.h"

namespace {

using namespace corvina;
using namespace corvina::fuzz;

void Run(EventLogApi& log, const std::wstring& text, std::size_t paths) {
    std::uint32_t error = 0;
    const EvtHandle forward = OpenQuery(log, text, EvtQueryTolerateQueryErrors, error);
    Expect(error != error::InvalidQuery && (forward || paths != 0));
    if (!forward) {
        return;
    }
    alignas(EVT_VARIANT) BYTE statuses[1 << 16];
    DWORD size = 0;
    Expect(log.EvtGetQueryInfo(forward.Get(), EvtQueryStatuses, sizeof statuses,
                               reinterpret_cast<EVT_VARIANT*>(statuses), &size) != FALSE);
    Expect(reinterpret_cast<const EVT_VARIANT*>(statuses)->Count == paths);
    std::vector<Identity> events = EventsOf(log, forward);
    const EvtHandle reverse = OpenQuery(log, text, EvtQueryTolerateQueryErrors | EvtQueryReverseDirection, error);
    Expect(error == error::Success);
    std::vector<Identity> reversed = EventsOf(log, reverse);
    std::reverse(reversed.begin(), reversed.end());
    Expect(events == reversed);
    std::sort(events.begin(), events.end());
    Expect(std::adjacent_find(events.begin(), events.end()) == events.end());
}

void Try(EventLogApi& log, std::wstring text) {
    text.resize(std::min(text.find(L'\0'), text.size()));
    const auto document = xpath::QueryDocument::Parse(text, 0);
    if (document) {
        Expect(xpath::IsQueryDocument(text));
        Run(log, text, document->Paths().size());
    } else if (xpath::IsQueryDocument(text)) {
        std::uint32_t error = 0;
        OpenQuery(log, text, EvtQueryTolerateQueryErrors, error);
        Expect(error == error::InvalidQuery);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Store store;
    embedded::EmbeddedEventLog log(store.Folder(), L"");
    Try(log, store.WithFolder(WideFromUtf8({reinterpret_cast<const char*>(data), size})));
    std::wstring utf16;
    AppendUtf16(std::span(reinterpret_cast<const std::byte*>(data), size), utf16);
    Try(log, utf16);
    Expect(log.OpenHandleCount() == 0);
    return 0;
}
