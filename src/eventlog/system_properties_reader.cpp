#include "eventlog/system_properties_reader.h"

#include <algorithm>

#include "base/format_text.h"

namespace corvina {

std::uint32_t SystemPropertiesReader::Read(EVT_HANDLE event) {
    if (!context_) {
        context_ = EvtHandle(api_, api_.EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem));
        if (!context_) {
            const std::uint32_t error = api_.GetLastError();
            debug_.Write(FormatText(L"EvtCreateRenderContext failed with %lu\n", {error}));
            return error;
        }
    }
    DWORD count = 0;
    const FillResult result = buffer_.FillBytes(api_, [&](DWORD size, void* data, DWORD* used) {
        return api_.EvtRender(context_.Get(), event, EvtRenderEventValues, size, data, used, &count);
    });
    if (result == FillResult::OutOfMemory) {
        debug_.Write(L"malloc failed\n");
        return error::OutOfMemory;
    }
    if (result == FillResult::Failed) {
        debug_.Write(FormatText(L"EvtRender failed with %d\n", {buffer_.Error()}));
        return buffer_.Error();
    }
    const std::size_t available = std::min<std::size_t>(count, buffer_.ValueCapacity());
    complete_ = available >= EvtSystemPropertyIdEND;
    if (!complete_) {
        std::fill(std::begin(values_), std::end(values_), EVT_VARIANT{});
        std::copy_n(buffer_.Values(), available, values_);
    }
    return error::Success;
}

}  // namespace corvina
