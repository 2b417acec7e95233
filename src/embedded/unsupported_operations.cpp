// Operations that the embedded event log refuses with error::NotSupported: changing and exporting logs, and listing
// what publishers define.
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

EVT_HANDLE EmbeddedEventLog::EvtOpenPublisherEnum(EVT_HANDLE, DWORD) {
    state_->LastError = error::NotSupported;
    return nullptr;
}

BOOL EmbeddedEventLog::EvtNextPublisherId(EVT_HANDLE, DWORD, LPWSTR, DWORD*) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtGetPublisherMetadataProperty(EVT_HANDLE, EVT_PUBLISHER_METADATA_PROPERTY_ID, DWORD, DWORD,
                                                       EVT_VARIANT*, DWORD*) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtGetObjectArraySize(EVT_HANDLE, DWORD*) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

BOOL EmbeddedEventLog::EvtGetObjectArrayProperty(EVT_HANDLE, DWORD, DWORD, DWORD, DWORD, EVT_VARIANT*, DWORD*) {
    state_->LastError = error::NotSupported;
    return FALSE;
}

EVT_HANDLE EmbeddedEventLog::EvtOpenEventMetadataEnum(EVT_HANDLE, DWORD) {
    state_->LastError = error::NotSupported;
    return nullptr;
}

EVT_HANDLE EmbeddedEventLog::EvtNextEventMetadata(EVT_HANDLE, DWORD) {
    state_->LastError = error::NotSupported;
    return nullptr;
}

BOOL EmbeddedEventLog::EvtGetEventMetadataProperty(EVT_HANDLE, EVT_EVENT_METADATA_PROPERTY_ID, DWORD, DWORD,
                                                   EVT_VARIANT*, DWORD*) {
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
