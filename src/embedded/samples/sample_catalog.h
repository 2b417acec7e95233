// What the sample logs are made of: channels, and providers with the events that they write, as plain tables.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "embedded/evtx/log_file_writer.h"

namespace corvina::samples {

// What a data value tells; decides its type and how it is made up.
enum class FieldKind {
    Account,
    AccountSid,
    Domain,
    Workstation,
    Address,
    Port,
    ProgramPath,
    ModulePath,
    ServiceName,
    ServiceState,
    StartType,
    TaskName,
    UpdateTitle,
    PackageName,
    DeviceName,
    Drive,
    HostName,
    PrinterName,
    DocumentName,
    ThreatName,
    PolicyName,
    ScriptText,
    JobName,
    FolderPath,
    VersionText,
    Reason,
    Count,
    Milliseconds,
    SmallNumber,
    SignedOffset,
    ByteSize,
    LogonType,
    Status,
    LogonId,
    ProcessIdentifier,
    Flag,
    Identifier,
    PointInTime,
    Bytes,
};

// How the value of a field is stored in an event.
evtx::WriterValue::Kind KindOf(FieldKind kind);

struct SampleField {
    const wchar_t* Name = L"";  // empty in events of classic providers
    FieldKind Kind = FieldKind::Count;
};

struct SampleEvent {
    std::uint16_t Id = 0;
    std::uint8_t Version = 0;
    std::uint8_t Level = 4;
    std::uint16_t Task = 0;
    std::uint8_t Opcode = 0;
    std::uint64_t Keywords = 0;
    std::uint16_t Qualifiers = 0;  // of classic providers
    const wchar_t* Channel = L"";
    unsigned Weight = 1;  // how often, against the other events of the channel
    std::vector<SampleField> Fields = {};
    const wchar_t* Message = L"";
};

struct SampleName {
    const wchar_t* Name = L"";
    std::uint64_t Value = 0;
    const wchar_t* Text = L"";
};

enum class SampleUser { None, System, Account };

struct SampleProvider {
    const wchar_t* Name = L"";
    const wchar_t* Guid = L"";  // empty: a classic provider's events have none, others get one made up from the name
    bool IsClassic = false;     // its events have qualifiers
    bool HasActivities = false;
    SampleUser User = SampleUser::None;
    std::vector<SampleName> Tasks = {};
    std::vector<SampleName> Opcodes = {};
    std::vector<SampleName> Keywords = {};
    std::vector<SampleEvent> Events = {};
};

struct SampleChannel {
    const wchar_t* Path = L"";
    unsigned Share = 0;  // of a computer's events, in thousandths
    const wchar_t* Type = L"Operational";
    const wchar_t* Publisher = L"";  // the owning provider, empty for the system's own channels
    bool IsClassic = false;
    bool IsEnabled = true;
    std::uint64_t MaxSize = 1052672;
    bool Retention = false;
    bool AutoBackup = false;
};

// Bits that the platform sets in the keywords of events.
inline constexpr std::uint64_t AuditFailure = 0x0010000000000000;
inline constexpr std::uint64_t AuditSuccess = 0x0020000000000000;
inline constexpr std::uint64_t ClassicEvent = 0x0080000000000000;
inline constexpr std::uint64_t ChannelBit = 0x8000000000000000;

const std::vector<SampleChannel>& Channels();

// All providers. The tables are built once, on first use, and never change.
const std::vector<SampleProvider>& Providers();

// The parts of the catalog, one file each.
void AddSystemProviders(std::vector<SampleProvider>& providers);
void AddSecurityProviders(std::vector<SampleProvider>& providers);
void AddApplicationProviders(std::vector<SampleProvider>& providers);
void AddServiceProviders(std::vector<SampleProvider>& providers);
void AddProductProviders(std::vector<SampleProvider>& providers);

}  // namespace corvina::samples
