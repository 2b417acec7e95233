#include "embedded/samples/sample_values.h"

#include <array>
#include <span>

#include "base/calendar.h"
#include "base/identifiers.h"

namespace corvina::samples {
namespace {

using Words = std::span<const std::wstring_view>;

constexpr std::wstring_view Accounts[] = {L"anna.berg",  L"ben.ortiz",  L"chiara.rossi", L"dmitri.sokolov",
                                          L"SYSTEM",     L"ewa.nowak",  L"farid.karimi", L"jürgen.groß",
                                          L"backup-svc", L"hana.suzuki"};
constexpr std::wstring_view Domains[] = {L"CONTOSO", L"CONTOSO", L"NT AUTHORITY", L"FABRIKAM"};
constexpr std::wstring_view Workstations[] = {L"DESK-0114", L"DESK-0231", L"LAPTOP-77", L"FILESRV-02", L"-"};
constexpr std::wstring_view Programs[] = {L"C:\\Windows\\System32\\svchost.exe",
                                          L"C:\\Windows\\System32\\services.exe",
                                          L"C:\\Windows\\explorer.exe",
                                          L"C:\\Program Files\\Contoso\\Backup\\engine.exe",
                                          L"C:\\Program Files\\Fabrikam & Sons\\Ledger\\ledger.exe",
                                          L"C:\\Windows\\System32\\WindowsPowerShell\\v1.0\\powershell.exe",
                                          L"C:\\Windows\\System32\\taskhostw.exe"};
constexpr std::wstring_view Modules[] = {L"ntdll.dll", L"KERNELBASE.dll", L"ucrtbase.dll", L"ledger-core.dll",
                                         L"unknown"};
constexpr std::wstring_view Services[] = {
    L"Windows Update",        L"Print Spooler",  L"Background Intelligent Transfer Service",
    L"Contoso Backup Engine", L"Windows Time",   L"Remote Registry",
    L"Software Protection",   L"WLAN AutoConfig"};
constexpr std::wstring_view States[] = {L"running", L"stopped", L"paused", L"available"};
constexpr std::wstring_view StartTypes[] = {L"auto start", L"demand start", L"disabled"};
constexpr std::wstring_view Tasks[] = {
    L"\\Contoso\\Nightly backup", L"\\Contoso\\Rotate logs", L"\\Microsoft\\Windows\\Defrag\\ScheduledDefrag",
    L"\\Microsoft\\Windows\\Time Synchronization\\SynchronizeTime", L"\\Fabrikam\\Ledger <monthly>"};
constexpr std::wstring_view Updates[] = {
    L"Cumulative Update for x64-based Systems (KB5037001)", L"Security Intelligence Update (Version 1.409.12.0)",
    L"Printer driver update - Northwind", L".NET Update for x64 Server (KB5036002)"};
constexpr std::wstring_view Packages[] = {L"KB5037001", L"KB5036002", L"Contoso Backup Agent", L"Fabrikam Ledger",
                                          L"Northwind Viewer"};
constexpr std::wstring_view Devices[] = {L"\\Device\\Harddisk0\\DR0", L"\\Device\\Harddisk1\\DR1", L"\\_SB.TZ00",
                                         L"CPU1", L"Intake 2"};
constexpr std::wstring_view Drives[] = {L"C:", L"D:", L"E:", L"\\\\?\\Volume{0d6f1a2e}"};
constexpr std::wstring_view Hosts[] = {L"dc01.corp.contoso.example", L"time.contoso.example", L"wpad.contoso.example",
                                       L"backup.contoso.example", L"files.fabrikam.example"};
constexpr std::wstring_view Printers[] = {L"North Hall Colour", L"Second Floor (A3)", L"Labels"};
constexpr std::wstring_view Documents[] = {L"Quarter figures.xlsx", L"Reisekosten März.pdf", L"Untitled - Notepad",
                                           L"Invoice 2024-0117"};
constexpr std::wstring_view Threats[] = {L"Sample:Win32/TestFile", L"PUA:Win32/Toolbar.Example",
                                         L"Trojan:Script/Example.A"};
constexpr std::wstring_view Policies[] = {L"Default Domain Policy", L"Workstations: updates",
                                          L"Default Domain Policy\r\nPrinters", L"Servers & storage"};
constexpr std::wstring_view Scripts[] = {L"Get-Service | Where-Object { $_.Status -eq 'Stopped' }",
                                         L"Get-ChildItem C:\\Logs -Filter *.log |\r\n  Remove-Item -WhatIf",
                                         L"if ($free -lt 10GB) { Write-Warning \"low <$free>\" }", L"prompt"};
constexpr std::wstring_view Jobs[] = {L"Home folders", L"Mail", L"Ledger database", L"System state"};
constexpr std::wstring_view Folders[] = {
    L"D:\\Shares\\Projects\\2024", L"C:\\Users\\anna.berg\\Downloads", L"C:\\ProgramData\\Contoso\\Backup\\state.db",
    L"C:\\Windows\\SoftwareDistribution\\DataStore\\DataStore.edb", L"\\\\FILESRV-02\\archive\\R&D"};
constexpr std::wstring_view Reasons[] = {L"The operation was cancelled by the user.",
                                         L"The server did not answer in time.", L"Access is denied.",
                                         L"The name or the password is wrong.", L"The device is not ready."};

constexpr std::uint32_t Statuses[] = {0, 0x80070005, 0xC000006D, 0xC0000064, 0x80240022, 0xC0000005, 0x8007045B};

Words WordsFor(FieldKind kind) {
    switch (kind) {
        case FieldKind::Account:
            return Accounts;
        case FieldKind::Domain:
            return Domains;
        case FieldKind::Workstation:
            return Workstations;
        case FieldKind::ProgramPath:
            return Programs;
        case FieldKind::ModulePath:
            return Modules;
        case FieldKind::ServiceName:
            return Services;
        case FieldKind::ServiceState:
            return States;
        case FieldKind::StartType:
            return StartTypes;
        case FieldKind::TaskName:
            return Tasks;
        case FieldKind::UpdateTitle:
            return Updates;
        case FieldKind::PackageName:
            return Packages;
        case FieldKind::DeviceName:
            return Devices;
        case FieldKind::Drive:
            return Drives;
        case FieldKind::HostName:
            return Hosts;
        case FieldKind::PrinterName:
            return Printers;
        case FieldKind::DocumentName:
            return Documents;
        case FieldKind::ThreatName:
            return Threats;
        case FieldKind::PolicyName:
            return Policies;
        case FieldKind::ScriptText:
            return Scripts;
        case FieldKind::JobName:
            return Jobs;
        case FieldKind::FolderPath:
            return Folders;
        default:
            return Reasons;
    }
}

std::vector<std::byte> SidBytes(std::wstring_view text) {
    const auto sid = ParseSid(text);
    return sid ? std::vector<std::byte>(sid->begin(), sid->end()) : std::vector<std::byte>();
}

void AppendNumber(std::uint64_t number, std::wstring& text) {
    wchar_t digits[20];
    std::size_t count = 0;
    do {
        digits[count++] = static_cast<wchar_t>(L'0' + number % 10);
        number /= 10;
    } while (number != 0);
    while (count != 0) {
        text += digits[--count];
    }
}

// Numbers with dots between them, each below its limit.
void MakeDotted(std::initializer_list<std::uint64_t> limits, SampleRandom& random, std::wstring& text) {
    for (const std::uint64_t limit : limits) {
        if (!text.empty()) {
            text += L'.';
        }
        AppendNumber(random.Below(limit), text);
    }
}

void MakeText(FieldKind kind, SampleRandom& random, std::wstring& text) {
    text.clear();
    switch (kind) {
        case FieldKind::Address:
            text = L"10";
            MakeDotted({16, 256, 254}, random, text);
            break;
        case FieldKind::Port:
            AppendNumber(49152 + random.Below(16384), text);
            break;
        case FieldKind::VersionText:
            MakeDotted({11, 10, 20000, 3000}, random, text);
            break;
        default: {
            const Words words = WordsFor(kind);
            text = words[random.Below(words.size())];
        }
    }
}

void MakeBytes(std::size_t count, SampleRandom& random, std::vector<std::byte>& bytes) {
    bytes.clear();
    for (std::size_t index = 0; index < count; ++index) {
        bytes.push_back(static_cast<std::byte>(random.Next() & 0xFF));
    }
}

std::uint64_t MakeNumber(FieldKind kind, std::uint64_t time, SampleRandom& random) {
    constexpr std::uint64_t LogonTypes[] = {2, 3, 3, 3, 5, 7, 10};
    switch (kind) {
        case FieldKind::SmallNumber:
            return random.Below(100);
        case FieldKind::Milliseconds:
            return random.Below(120'000);
        case FieldKind::LogonType:
            return LogonTypes[random.Below(std::size(LogonTypes))];
        case FieldKind::SignedOffset:
            return random.Below(2'000) - 1'000;
        case FieldKind::ByteSize:
            return random.Below(std::uint64_t{1} << (10 + random.Below(30)));
        case FieldKind::Status:
            return Statuses[random.Below(std::size(Statuses))];
        case FieldKind::LogonId:
            return random.OneIn(4) ? 0x3E7 : random.Below(0x10000000);
        case FieldKind::ProcessIdentifier:
            return 4 + 4 * random.Below(4'000);
        case FieldKind::Flag:
            return random.Below(2);
        case FieldKind::PointInTime:
            return time - random.Below(3'600 * FileTimeTicksPerSecond);
        default:
            return random.Below(100'000);
    }
}

}  // namespace

const std::vector<std::byte>& SystemSid() {
    static const std::vector<std::byte> sid = SidBytes(L"S-1-5-18");
    return sid;
}

const std::vector<std::byte>& AccountSid(SampleRandom& random) {
    static const std::array<std::vector<std::byte>, 5> sids = {
        SidBytes(L"S-1-5-21-1004336348-1177238915-682003330-1104"),
        SidBytes(L"S-1-5-21-1004336348-1177238915-682003330-1105"),
        SidBytes(L"S-1-5-21-1004336348-1177238915-682003330-500"), SidBytes(L"S-1-5-19"), SidBytes(L"S-1-5-20")};
    return sids[random.Below(sids.size())];
}

void MakeValue(FieldKind kind, std::uint64_t time, SampleRandom& random, evtx::WriterValue& value) {
    constexpr std::size_t ShortestBytes = 4;
    switch (value.Type) {
        case evtx::WriterValue::Kind::Text:
            MakeText(kind, random, value.Text);
            break;
        case evtx::WriterValue::Kind::Guid:
            MakeBytes(std::tuple_size_v<GuidBytes>, random, value.Bytes);
            break;
        case evtx::WriterValue::Kind::Sid:
            value.Bytes = random.OneIn(3) ? SystemSid() : AccountSid(random);
            break;
        case evtx::WriterValue::Kind::Binary:
            MakeBytes(ShortestBytes + random.Below(40), random, value.Bytes);
            break;
        default:
            value.Number = MakeNumber(kind, time, random);
    }
}

}  // namespace corvina::samples
