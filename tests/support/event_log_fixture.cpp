#include "support/event_log_fixture.h"

#include <chrono>
#include <fstream>
#include <random>
#include <system_error>

#include "base/calendar.h"
#include "base/identifiers.h"

namespace corvina::test {

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const std::string name = "corvina-test-" + std::to_string(now) + "-" + std::to_string(random());
    path_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<TestEvent> NumberedEvents(std::size_t count) {
    std::vector<TestEvent> events(count);
    for (std::size_t index = 0; index < count; ++index) {
        events[index].Id = static_cast<std::uint16_t>(index + 1);
    }
    return events;
}

evtx::WriterEvent MakeWriterEvent(const TestEvent& event, std::size_t index) {
    evtx::WriterEvent result;
    evtx::SystemValues& system = result.System;
    system.ProviderName = event.Provider;
    system.ProviderGuid = ParseGuid(event.ProviderGuid);
    system.EventId = event.Id;
    system.Qualifiers = event.Qualifiers;
    system.Version = event.Version;
    system.Level = event.Level;
    system.Task = event.Task;
    system.Opcode = event.Opcode;
    system.Keywords = event.Keywords;
    system.TimeCreated = event.Time != 0 ? event.Time : FirstTestTime + index * FileTimeTicksPerSecond;
    system.EventRecordId = event.RecordId;
    system.ProcessId = event.ProcessId;
    system.ThreadId = event.ThreadId;
    system.Channel = event.Channel;
    system.Computer = event.Computer;
    if (const auto sid = ParseSid(event.User)) {
        system.UserSid.assign(sid->begin(), sid->end());
    }
    for (const auto& [name, text] : event.Data) {
        evtx::WriterValue value;
        value.Name = name;
        value.Text = text;
        result.Data.push_back(std::move(value));
    }
    return result;
}

std::uint32_t WriteLog(const std::filesystem::path& path, const std::vector<TestEvent>& events,
                       std::uint64_t firstRecordId) {
    evtx::LogFileWriter writer(path, firstRecordId);
    for (std::size_t index = 0; index < events.size(); ++index) {
        if (const std::uint32_t error = writer.Add(MakeWriterEvent(events[index], index))) {
            return error;
        }
    }
    return writer.Finish();
}

bool WriteTextFile(const std::filesystem::path& path, std::string_view text) {
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

std::filesystem::path TestStore::LogPath(const std::wstring& computer, std::wstring_view channel) const {
    std::wstring name;
    for (const wchar_t character : channel) {
        name += character == L'/' ? std::wstring(L"%4") : std::wstring(1, character);
    }
    return folder_ / computer / (name + L".evtx");
}

bool TestStore::AddLog(const std::wstring& computer, const std::wstring& channel, std::vector<TestEvent> events,
                       std::uint64_t firstRecordId) const {
    for (TestEvent& event : events) {
        event.Channel = channel;
    }
    std::error_code error;
    std::filesystem::create_directories(folder_ / computer, error);
    return WriteLog(LogPath(computer, channel), events, firstRecordId) == 0;
}

bool TestStore::SetChannelsIni(const std::wstring& computer, std::string_view text) const {
    return WriteTextFile(folder_ / computer / "channels.ini", text);
}

bool TestStore::SetAccount(const std::wstring& computer, std::string_view user, std::string_view password) const {
    return WriteTextFile(folder_ / computer / "account.ini",
                         "[Account]\nUser=" + std::string(user) + "\nPassword=" + std::string(password) + "\n");
}

bool TestStore::AddManifest(const std::wstring& computer, const std::wstring& name, std::string_view xml) const {
    return WriteTextFile(folder_ / computer / "publishers" / (name + L".man"), xml);
}

std::string SimpleManifest(std::string_view provider,
                           const std::vector<std::pair<std::uint32_t, std::string>>& messages) {
    std::string events;
    std::string texts;
    for (const auto& [id, message] : messages) {
        const std::string number = std::to_string(id);
        events += "<event value='" + number + "' message='$(string.Event" + number + ")'/>";
        texts += "<string id='Event" + number + "' value='" + message + "'/>";
    }
    return "<?xml version='1.0' encoding='utf-8'?>"
           "<instrumentationManifest xmlns='http://schemas.microsoft.com/win/2004/08/events'>"
           "<instrumentation><events><provider name='" +
           std::string(provider) +
           "' guid='{11111111-2222-3333-4444-555555555555}' symbol='TEST' resourceFileName='test.dll' "
           "messageFileName='test.dll'><events>" +
           events +
           "</events></provider></events></instrumentation>"
           "<localization><resources culture='en-US'><stringTable>" +
           texts + "</stringTable></resources></localization></instrumentationManifest>";
}

}  // namespace corvina::test
