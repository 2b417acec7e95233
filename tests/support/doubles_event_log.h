// An event log that refuses everything, as the base of doubles that answer a few operations by script.
#pragma once

#include <cstdint>

#include "platform/error_codes.h"
#include "platform/event_log_api.h"

namespace corvina::test {

class RefusingEventLog : public EventLogApi {
  public:
    std::uint32_t LastError = error::NotSupported;

    std::uint32_t GetLastError() const override { return LastError; }
    EVT_HANDLE EvtOpenSession(EVT_LOGIN_CLASS, PVOID, DWORD, DWORD) override { return nullptr; }
    BOOL EvtClose(EVT_HANDLE) override { return TRUE; }
    EVT_HANDLE EvtOpenChannelEnum(EVT_HANDLE, DWORD) override { return nullptr; }
    BOOL EvtNextChannelPath(EVT_HANDLE, DWORD, LPWSTR, DWORD*) override { return FALSE; }
    EVT_HANDLE EvtOpenChannelConfig(EVT_HANDLE, LPCWSTR, DWORD) override { return nullptr; }
    BOOL EvtGetChannelConfigProperty(EVT_HANDLE, EVT_CHANNEL_CONFIG_PROPERTY_ID, DWORD, DWORD, EVT_VARIANT*,
                                     DWORD*) override {
        return FALSE;
    }
    BOOL EvtSetChannelConfigProperty(EVT_HANDLE, EVT_CHANNEL_CONFIG_PROPERTY_ID, DWORD, EVT_VARIANT*) override {
        return FALSE;
    }
    BOOL EvtSaveChannelConfig(EVT_HANDLE, DWORD) override { return FALSE; }
    EVT_HANDLE EvtQuery(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) override { return nullptr; }
    BOOL EvtGetQueryInfo(EVT_HANDLE, EVT_QUERY_PROPERTY_ID, DWORD, EVT_VARIANT*, DWORD*) override { return FALSE; }
    BOOL EvtNext(EVT_HANDLE, DWORD, EVT_HANDLE*, DWORD, DWORD, DWORD*) override { return FALSE; }
    EVT_HANDLE EvtCreateRenderContext(DWORD, LPCWSTR*, DWORD) override { return nullptr; }
    BOOL EvtRender(EVT_HANDLE, EVT_HANDLE, DWORD, DWORD, PVOID, DWORD*, DWORD*) override { return FALSE; }
    EVT_HANDLE EvtOpenPublisherMetadata(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD, DWORD) override { return nullptr; }
    BOOL EvtFormatMessage(EVT_HANDLE, EVT_HANDLE, DWORD, DWORD, EVT_VARIANT*, DWORD, DWORD, LPWSTR, DWORD*) override {
        return FALSE;
    }
    EVT_HANDLE EvtOpenPublisherEnum(EVT_HANDLE, DWORD) override { return nullptr; }
    BOOL EvtNextPublisherId(EVT_HANDLE, DWORD, LPWSTR, DWORD*) override { return FALSE; }
    BOOL EvtGetPublisherMetadataProperty(EVT_HANDLE, EVT_PUBLISHER_METADATA_PROPERTY_ID, DWORD, DWORD, EVT_VARIANT*,
                                         DWORD*) override {
        return FALSE;
    }
    BOOL EvtGetObjectArraySize(EVT_HANDLE, DWORD*) override { return FALSE; }
    BOOL EvtGetObjectArrayProperty(EVT_HANDLE, DWORD, DWORD, DWORD, DWORD, EVT_VARIANT*, DWORD*) override {
        return FALSE;
    }
    EVT_HANDLE EvtOpenEventMetadataEnum(EVT_HANDLE, DWORD) override { return nullptr; }
    EVT_HANDLE EvtNextEventMetadata(EVT_HANDLE, DWORD) override { return nullptr; }
    BOOL EvtGetEventMetadataProperty(EVT_HANDLE, EVT_EVENT_METADATA_PROPERTY_ID, DWORD, DWORD, EVT_VARIANT*,
                                     DWORD*) override {
        return FALSE;
    }
    EVT_HANDLE EvtOpenLog(EVT_HANDLE, LPCWSTR, DWORD) override { return nullptr; }
    BOOL EvtGetLogInfo(EVT_HANDLE, EVT_LOG_PROPERTY_ID, DWORD, EVT_VARIANT*, DWORD*) override { return FALSE; }
    BOOL EvtExportLog(EVT_HANDLE, LPCWSTR, LPCWSTR, LPCWSTR, DWORD) override { return FALSE; }
    BOOL EvtClearLog(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) override { return FALSE; }
};

}  // namespace corvina::test
