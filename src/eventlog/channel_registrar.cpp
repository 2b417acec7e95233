#include "eventlog/channel_registrar.h"

#include "base/format_text.h"
#include "eventlog/event_values.h"
#include "eventlog/property_buffer.h"
#include "platform/evt_handle.h"

namespace corvina {

namespace {

// Building the tree asks every channel of the computer, so no more is read than the record keeps.
constexpr EVT_CHANNEL_CONFIG_PROPERTY_ID RecordProperties[] = {EvtChannelConfigEnabled, EvtChannelConfigOwningPublisher,
                                                               EvtChannelConfigClassicEventlog};

void Keep(EVT_CHANNEL_CONFIG_PROPERTY_ID property, const EVT_VARIANT& value, ChannelRecord& record) {
    if (property == EvtChannelConfigEnabled) {
        record.Enabled = BooleanValue(value);
    } else if (property == EvtChannelConfigOwningPublisher) {
        record.OwningPublisher = TextValue(value);
    } else {
        record.ClassicEventlog = BooleanValue(value);
    }
}

}  // namespace

void ChannelRegistrar::RegisterChannel(const std::wstring& path) {
    EventLogApi& api = session_.Api();
    const EvtHandle config(api, api.EvtOpenChannelConfig(session_.CurrentSession(), path.c_str(), 0));
    if (!config) {
        debug_.Write(FormatText(L"EvtOpenChannelConfig failed with %lu.\n", {api.GetLastError()}));
        return;
    }
    ChannelRecord record{.Path = path, .OwningPublisher = {}, .Enabled = false, .ClassicEventlog = false};
    PropertyBuffer buffer;
    for (const EVT_CHANNEL_CONFIG_PROPERTY_ID property : RecordProperties) {
        const FillResult result = buffer.FillBytes(api, [&](DWORD size, void* data, DWORD* used) {
            return api.EvtGetChannelConfigProperty(config.Get(), property, 0, size, static_cast<EVT_VARIANT*>(data),
                                                   used);
        });
        if (result == FillResult::OutOfMemory) {
            debug_.Write(L"realloc failed\n");
            break;
        }
        if (result == FillResult::Failed) {
            debug_.Write(FormatText(L"EvtGetChannelConfigProperty failed with %d\n", {buffer.Error()}));
            break;
        }
        if (buffer.ValueCapacity() > 0) {
            Keep(property, buffer.Values()[0], record);
        }
    }
    if (record.Enabled) {
        channels_.Append(session_.CurrentComputerIndex(), std::move(record));
    }
}

}  // namespace corvina
