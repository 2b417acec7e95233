// An event log whose only query answers with events that a test describes value by value, and whose messages it writes
// down: for what real logs hold only rarely.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/doubles_event_log.h"

namespace corvina::test {

// The system properties of one event; all of them absent at first.
class ScriptedEvent {
  public:
    ScriptedEvent& Text(EVT_SYSTEM_PROPERTY_ID property, std::wstring text) {
        texts_[property] = std::move(text);
        Values[property].Type = EvtVarTypeString;
        return *this;
    }
    ScriptedEvent& Number(EVT_SYSTEM_PROPERTY_ID property, EVT_VARIANT_TYPE type, std::uint64_t number) {
        Values[property].UInt64Val = number;
        Values[property].Type = type;
        return *this;
    }
    ScriptedEvent& Guid(EVT_SYSTEM_PROPERTY_ID property, const GUID& guid) {
        guids_[property] = guid;
        Values[property].Type = EvtVarTypeGuid;
        return *this;
    }
    ScriptedEvent& Sid(std::vector<std::uint8_t> bytes) {
        sid_ = std::move(bytes);
        sid_.resize(1100);  // whatever count of sub-authorities it states, reading them stays inside
        Values[EvtSystemUserID].Type = EvtVarTypeSid;
        return *this;
    }

    // The values with pointers to this event's own texts.
    std::vector<EVT_VARIANT> Row() {
        for (auto& [property, text] : texts_) {
            Values[property].StringVal = text.c_str();
        }
        for (auto& [property, guid] : guids_) {
            Values[property].GuidVal = &guid;
        }
        if (Values[EvtSystemUserID].Type == EvtVarTypeSid) {
            Values[EvtSystemUserID].SidVal = sid_.data();
        }
        return Values;
    }

    std::vector<EVT_VARIANT> Values = std::vector<EVT_VARIANT>(EvtSystemPropertyIdEND);
    std::wstring Xml;

  private:
    std::map<std::size_t, std::wstring> texts_;
    std::map<std::size_t, GUID> guids_;
    std::vector<std::uint8_t> sid_;
};

class ScriptedEventLog final : public RefusingEventLog {
  public:
    std::vector<ScriptedEvent> Events;
    // What EvtFormatMessage answers: metadata handle (null for none), event and kind; an empty text is "no message".
    std::function<std::wstring(EVT_HANDLE, const ScriptedEvent&, DWORD)> Message;
    std::map<std::wstring, EVT_HANDLE> Publishers;
    std::vector<std::pair<DWORD, DWORD>> FormatCalls;  // kind and buffer size
    std::vector<std::wstring> OpenedPublishers;
    std::vector<EVT_HANDLE> Closed;

    static EVT_HANDLE Handle(std::size_t number) { return reinterpret_cast<EVT_HANDLE>(number); }
    static constexpr std::size_t Session = 1;
    static constexpr std::size_t Query = 2;
    static constexpr std::size_t Context = 3;
    static constexpr std::size_t FirstEvent = 1000;

    EVT_HANDLE EvtOpenSession(EVT_LOGIN_CLASS, PVOID, DWORD, DWORD) override { return Handle(Session); }
    BOOL EvtClose(EVT_HANDLE object) override {
        Closed.push_back(object);
        return TRUE;
    }
    EVT_HANDLE EvtQuery(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) override {
        next_ = 0;
        return Handle(Query);
    }
    BOOL EvtGetQueryInfo(EVT_HANDLE, EVT_QUERY_PROPERTY_ID, DWORD, EVT_VARIANT*, DWORD*) override { return TRUE; }
    BOOL EvtNext(EVT_HANDLE, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) override {
        *returned = 0;
        while (*returned < size && next_ < Events.size()) {
            events[(*returned)++] = Handle(FirstEvent + next_++);
        }
        LastError = error::NoMoreItems;
        return *returned > 0;
    }
    EVT_HANDLE EvtCreateRenderContext(DWORD, LPCWSTR*, DWORD flags) override {
        return flags == EvtRenderContextSystem ? Handle(Context) : nullptr;
    }
    BOOL EvtRender(EVT_HANDLE, EVT_HANDLE fragment, DWORD flags, DWORD size, PVOID buffer, DWORD* used,
                   DWORD* count) override {
        ScriptedEvent& event = EventOf(fragment);
        if (flags == EvtRenderEventXml) {
            return Answer(event.Xml.c_str(), (event.Xml.size() + 1) * sizeof(wchar_t), size, buffer, used);
        }
        const std::vector<EVT_VARIANT> row = event.Row();
        *count = static_cast<DWORD>(row.size());
        return Answer(row.data(), row.size() * sizeof(EVT_VARIANT), size, buffer, used);
    }
    EVT_HANDLE EvtOpenPublisherMetadata(EVT_HANDLE, LPCWSTR publisher, LPCWSTR, DWORD, DWORD) override {
        OpenedPublishers.emplace_back(publisher);
        LastError = error::PublisherMetadataNotFound;
        const auto found = Publishers.find(publisher);
        return found == Publishers.end() ? nullptr : found->second;
    }
    BOOL EvtFormatMessage(EVT_HANDLE metadata, EVT_HANDLE event, DWORD, DWORD, EVT_VARIANT*, DWORD kind, DWORD size,
                          LPWSTR buffer, DWORD* used) override {
        FormatCalls.emplace_back(kind, size);
        const std::wstring text = Message ? Message(metadata, EventOf(event), kind) : std::wstring();
        if (text.empty()) {
            LastError = error::MessageNotFound;
            return FALSE;
        }
        return Answer(text.c_str(), text.size() + 1, size, buffer, used, sizeof(wchar_t));
    }

  private:
    ScriptedEvent& EventOf(EVT_HANDLE event) { return Events.at(reinterpret_cast<std::size_t>(event) - FirstEvent); }
    BOOL Answer(const void* data, std::size_t needed, DWORD size, void* buffer, DWORD* used, std::size_t unit = 1) {
        *used = static_cast<DWORD>(needed);
        if (size < needed) {
            LastError = error::InsufficientBuffer;
            return FALSE;
        }
        std::memcpy(buffer, data, needed * unit);
        return TRUE;
    }

    std::size_t next_ = 0;
};

}  // namespace corvina::test
