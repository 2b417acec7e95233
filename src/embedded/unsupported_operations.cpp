// Operations that the embedded event log refuses with error::NotSupported: changing and exporting logs.
#include "embedded/embedded_state.h"

namespace corvina::embedded {

BOOL EmbeddedEventLog::EvtSetChannelConfigProperty(EVT_HANDLE, EVT_CHANNEL_CONFIG_PROPERTY_ID, DWORD, EVT_VARIANT*) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtSaveChannelConfig(EVT_HANDLE, DWORD) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtExportLog(EVT_HANDLE, LPCWSTR, LPCWSTR, LPCWSTR, DWORD) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtClearLog(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

}  // namespace corvina::embedded
