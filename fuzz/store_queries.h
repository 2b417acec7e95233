// A store with a few logs and queries over it, for fuzz targets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "base/utf.h"
#include "embedded/samples/sample_store.h"
#include "platform/error_codes.h"
#include "platform/event_log_api.h"
#include "platform/evt_handle.h"

namespace corvina::fuzz {

namespace fs = std::filesystem;

inline void Expect(bool holds) {
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

// Channel and record identifier.
using Identity = std::pair<std::wstring, std::uint64_t>;

inline Identity IdentityOf(EventLogApi& log, const EvtHandle& context, const EvtHandle& event) {
    alignas(EVT_VARIANT) BYTE row[4096];
    DWORD size = 0;
    DWORD count = 0;
    Expect(log.EvtRender(context.Get(), event.Get(), EvtRenderEventValues, sizeof row, row, &size, &count) != FALSE);
    const auto* const values = reinterpret_cast<const EVT_VARIANT*>(row);
    return {values[EvtSystemChannel].StringVal, values[EvtSystemEventRecordId].UInt64Val};
}

inline std::vector<Identity> EventsOf(EventLogApi& log, const EvtHandle& query) {
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
inline EvtHandle OpenQuery(EventLogApi& log, const std::wstring& text, DWORD flags, std::uint32_t& error) {
    EvtHandle query(log, log.EvtQuery(nullptr, nullptr, text.c_str(), flags | EvtQueryChannelPath));
    error = query ? error::Success : log.GetLastError();
    return query;
}

}  // namespace corvina::fuzz
