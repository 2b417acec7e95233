#include "store.h"

#include <cstring>
#include <system_error>

#include "base/utf.h"
#include "console.h"

namespace corvina::tools {
namespace {

std::vector<BYTE> QueryInformation(Store& store, const EvtHandle& query, EVT_QUERY_PROPERTY_ID property) {
    std::vector<BYTE> buffer(sizeof(EVT_VARIANT));
    DWORD size = 0;
    const std::uint32_t error = FillBuffer(store.Log, buffer, size, [&](DWORD room, BYTE* place, DWORD* used) {
        return store.Log.EvtGetQueryInfo(query.Get(), property, room, reinterpret_cast<EVT_VARIANT*>(place), used);
    });
    if (error != error::Success) {
        std::fill(buffer.begin(), buffer.end(), BYTE{0});  // an array of no values
    }
    return buffer;
}

// Tells of each log of a query that cannot be read; whether there was none.
bool ReportUnreadable(Store& store, const EvtHandle& query) {
    const std::vector<BYTE> names = QueryInformation(store, query, EvtQueryNames);
    const std::vector<BYTE> statuses = QueryInformation(store, query, EvtQueryStatuses);
    const EVT_VARIANT name = ValueAt(names, 0);
    const EVT_VARIANT status = ValueAt(statuses, 0);
    bool allReadable = true;
    for (DWORD index = 0; index < std::min(name.Count, status.Count); ++index) {
        if (status.UInt32Arr[index] != error::Success) {
            Complain(Utf8FromWide(name.StringArr[index]) + ": " + ReasonOf(status.UInt32Arr[index]));
            allReadable = false;
        }
    }
    return allReadable;
}

}  // namespace

std::unique_ptr<Store> OpenStore(const CommandLine& line) {
    const std::string& folder = line.Files.front();
    std::error_code error;
    if (!std::filesystem::is_directory(PathFromArgument(folder), error)) {
        Complain(folder + ": there is no such folder");
        return nullptr;
    }
    auto store = std::make_unique<Store>(PathFromArgument(folder));
    if (line.Computer) {
        std::wstring name = WideFromUtf8(*line.Computer);
        EVT_RPC_LOGIN login{name.data(), nullptr, nullptr, nullptr, EvtRpcLoginAuthDefault};
        store->Session = store->Held(store->Log.EvtOpenSession(EvtRpcLogin, &login, 0, 0));
        if (!store->Session) {
            Complain(*line.Computer + ": " + ReasonOf(store->Log.GetLastError()));
            return nullptr;
        }
    }
    return store;
}

EvtHandle OpenDocument(Store& store, const std::wstring& document, DWORD direction, bool& allReadable) {
    const DWORD flags = EvtQueryChannelPath | EvtQueryTolerateQueryErrors | direction;
    EvtHandle query = store.Held(store.Log.EvtQuery(store.Session.Get(), nullptr, document.c_str(), flags));
    if (!query) {
        const std::uint32_t error = store.Log.GetLastError();
        Complain((error == error::InvalidQuery ? "" : "none of the query's logs can be read: ") + ReasonOf(error));
        return query;
    }
    allReadable = ReportUnreadable(store, query);
    return query;
}

EVT_VARIANT ValueAt(const std::vector<BYTE>& row, std::size_t index) {
    EVT_VARIANT value;
    std::memcpy(&value, row.data() + index * sizeof value, sizeof value);
    return value;
}

}  // namespace corvina::tools
