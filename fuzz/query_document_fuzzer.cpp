// Any text as a query document, run in both directions over a small store: what is no document is refused as such, and
// what is one gives the same events forwards and backwards.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "base/utf.h"
#include "embedded/embedded_event_log.h"
#include "embedded/samples/sample_store.h"
#include "embedded/xpath/query_document.h"
#include "platform/error_codes.h"
#include "platform/evt_handle.h"

namespace {

using namespace corvina;
namespace fs = std::filesystem;

void Expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// A folder with a few logs, made once and removed at the end.
class Store {
  public:
    Store() : folder_(fs::temp_directory_path() / ("corvina-fuzz-" + std::to_string(std::random_device()()))) {
        fs::create_directories(folder_);
        std::uint64_t seed = 1;
        for (const wchar_t* channel : {L"Application", L"System", L"Security"}) {
            Expect(samples::WriteSampleLog(folder_ / (Utf8FromWide(channel) + ".evtx"), channel, 12, seed++) == 0);
        }
    }
    ~Store() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    const fs::path& Folder() const { return folder_; }

    // The text with every "STORE" replaced by the folder, so that seeds can name the logs as files.
    std::wstring WithFolder(std::wstring text) const {
        const std::wstring folder = TextOfPath(folder_);
        constexpr std::wstring_view Name = L"STORE";
        for (std::size_t at = text.find(Name); at != std::wstring::npos; at = text.find(Name, at + folder.size())) {
            text.replace(at, Name.size(), folder);
        }
        return text;
    }

  private:
    fs::path folder_;
};

using Identity = std::pair<std::wstring, std::uint64_t>;

Identity IdentityOf(EventLogApi& log, const EvtHandle& context, const EvtHandle& event) {
    alignas(EVT_VARIANT) BYTE row[4096];
    DWORD size = 0;
    DWORD count = 0;
    Expect(log.EvtRender(context.Get(), event.Get(), EvtRenderEventValues, sizeof row, row, &size, &count) != FALSE);
    const auto* const values = reinterpret_cast<const EVT_VARIANT*>(row);
    return {values[EvtSystemChannel].StringVal, values[EvtSystemEventRecordId].UInt64Val};
}

std::vector<Identity> EventsOf(EventLogApi& log, const EvtHandle& query) {
    const EvtHandle context(log, log.EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem));
    std::vector<Identity> events;
    EVT_HANDLE handle = nullptr;
    DWORD count = 0;
    while (log.EvtNext(query.Get(), 1, &handle, INFINITE, 0, &count)) {
        events.push_back(IdentityOf(log, context, EvtHandle(log, handle)));
    }
    Expect(log.GetLastError() == error::NoMoreItems);
    return events;
}

// None when the query is refused, with the error.
EvtHandle Open(EventLogApi& log, const std::wstring& text, DWORD flags, std::uint32_t& error) {
    EvtHandle query(log, log.EvtQuery(nullptr, nullptr, text.c_str(), flags | EvtQueryChannelPath));
    error = query ? error::Success : log.GetLastError();
    return query;
}

void Run(EventLogApi& log, const std::wstring& text, std::size_t paths) {
    std::uint32_t error = 0;
    const EvtHandle forward = Open(log, text, EvtQueryTolerateQueryErrors, error);
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
    const EvtHandle reverse = Open(log, text, EvtQueryTolerateQueryErrors | EvtQueryReverseDirection, error);
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
        Open(log, text, EvtQueryTolerateQueryErrors, error);
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
