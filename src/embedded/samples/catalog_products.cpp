// Providers of sessions, protection, printing and backup, with channels of their own.
#include "embedded/samples/sample_catalog.h"

namespace corvina::samples {
namespace {

SampleProvider SessionManager() {
    using enum FieldKind;
    const auto operational = L"Microsoft-Windows-TerminalServices-LocalSessionManager/Operational";
    const auto admin = L"Microsoft-Windows-TerminalServices-LocalSessionManager/Admin";
    return {
        .Name = L"Microsoft-Windows-TerminalServices-LocalSessionManager",
        .Guid = L"{5D896912-022D-40AA-A3A8-4FA5515C76D7}",
        .HasActivities = true,
        .User = SampleUser::System,
        .Events =
            {
                {.Id = 21,
                 .Channel = operational,
                 .Weight = 6,
                 .Fields = {{L"User", Account}, {L"SessionID", SmallNumber}, {L"Address", Address}},
                 .Message = L"%1 logged on to session %2 from %3."},
                {.Id = 23,
                 .Channel = operational,
                 .Weight = 5,
                 .Fields = {{L"User", Account}, {L"SessionID", SmallNumber}},
                 .Message = L"%1 logged off from session %2."},
                {.Id = 24,
                 .Level = 3,
                 .Channel = operational,
                 .Weight = 4,
                 .Fields = {{L"User", Account}, {L"SessionID", SmallNumber}, {L"Address", Address}},
                 .Message = L"The connection of session %2 (%1, %3) was lost."},
                {.Id = 20,
                 .Level = 2,
                 .Channel = admin,
                 .Weight = 1,
                 .Fields = {{L"Step", Reason}, {L"ErrorCode", Status}},
                 .Message = L"A session could not be prepared: %1 (%2)"},
            },
    };
}

SampleProvider Defender() {
    using enum FieldKind;
    const auto channel = L"Microsoft-Windows-Windows Defender/Operational";
    return {
        .Name = L"Microsoft-Windows-Windows Defender",
        .Guid = L"{11CD958A-C507-4EF3-B3F2-5FD9DFBD2C78}",
        .User = SampleUser::System,
        .Events =
            {
                {.Id = 1000,
                 .Opcode = 1,
                 .Channel = channel,
                 .Weight = 5,
                 .Fields = {{L"Scan ID", Identifier}, {L"User", Account}},
                 .Message = L"Scan %1 was started by %2."},
                {.Id = 1001,
                 .Opcode = 2,
                 .Channel = channel,
                 .Weight = 5,
                 .Fields = {{L"Scan ID", Identifier}, {L"Files", Count}, {L"Milliseconds", Milliseconds}},
                 .Message = L"Scan %1 looked at %2 files in %3 milliseconds."},
                {.Id = 1116,
                 .Level = 3,
                 .Channel = channel,
                 .Weight = 2,
                 .Fields = {{L"Threat Name", ThreatName}, {L"Path", FolderPath}, {L"Detection User", Account}},
                 .Message = L"Unwanted software was found.%n%nName:%t%1%nPlace:%t%2%nUser:%t%3"},
                {.Id = 1118,
                 .Level = 1,
                 .Channel = channel,
                 .Weight = 1,
                 .Fields = {{L"Threat Name", ThreatName}, {L"Path", FolderPath}, {L"Error Code", Status}},
                 .Message = L"Unwanted software could not be removed.%n%nName:%t%1%nPlace:%t%2%nError:%t%3"},
            },
    };
}

SampleProvider Printing() {
    using enum FieldKind;
    const auto operational = L"Microsoft-Windows-PrintService/Operational";
    const auto admin = L"Microsoft-Windows-PrintService/Admin";
    return {
        .Name = L"Microsoft-Windows-PrintService",
        .Guid = L"{747EF6FD-E535-4D16-B510-42C90F6873A1}",
        .User = SampleUser::Account,
        .Tasks = {{L"Print", 26, L"Printing a document"}, {L"Spooler", 29, L"Print spooler"}},
        .Opcodes = {{L"Spool", 11, L"Spooling"}},
        .Events =
            {
                {.Id = 307,
                 .Task = 26,
                 .Opcode = 11,
                 .Channel = operational,
                 .Weight = 6,
                 .Fields = {{L"Document", DocumentName},
                            {L"User", Account},
                            {L"Computer", Workstation},
                            {L"Printer", PrinterName},
                            {L"Bytes", ByteSize},
                            {L"Pages", SmallNumber}},
                 .Message = L"%2 on %3 printed \"%1\" on %4: %6 page(s), %5 bytes."},
                {.Id = 801,
                 .Level = 5,
                 .Task = 26,
                 .Channel = operational,
                 .Weight = 3,
                 .Fields = {{L"Job", SmallNumber}},
                 .Message = L"Job %1 is being prepared."},
                {.Id = 372,
                 .Level = 2,
                 .Task = 26,
                 .Channel = admin,
                 .Weight = 3,
                 .Fields = {{L"Document", DocumentName},
                            {L"User", Account},
                            {L"Printer", PrinterName},
                            {L"ErrorCode", Status}},
                 .Message = L"The document \"%1\" of %2 was not printed on %3. Error: %4."},
                {.Id = 823,
                 .Level = 3,
                 .Task = 29,
                 .Channel = admin,
                 .Weight = 1,
                 .Fields = {{L"Printer", PrinterName}},
                 .Message = L"%1 is now the default printer."},
            },
    };
}

SampleProvider BackupEngine() {
    using enum FieldKind;
    const auto channel = L"Contoso-Backup-Engine/Operational";
    return {
        .Name = L"Contoso-Backup-Engine",
        .HasActivities = true,
        .User = SampleUser::Account,
        .Tasks = {{L"Backup", 1, L"Backup"}, {L"Restore", 2, L"Restore"}, {L"Verify", 3, L"Verification"}},
        .Opcodes = {{L"Copy", 20, L"Copying"}, {L"Compare", 21, L"Comparing"}},
        .Keywords = {{L"Storage", 0x1, L"Storage"}, {L"Network", 0x2, L"Network"}, {L"Schedule", 0x4, L"Schedule"}},
        .Events =
            {
                {.Id = 1,
                 .Level = 0,
                 .Task = 1,
                 .Opcode = 1,
                 .Keywords = 0x4,
                 .Channel = channel,
                 .Weight = 5,
                 .Fields = {{L"JobName", JobName}, {L"JobId", Identifier}},
                 .Message = L"Job %1 was started.%n%nIdentifier: %2"},
                {.Id = 2,
                 .Task = 1,
                 .Opcode = 2,
                 .Keywords = 0x5,
                 .Channel = channel,
                 .Weight = 5,
                 .Fields = {{L"JobName", JobName},
                            {L"JobId", Identifier},
                            {L"BytesCopied", ByteSize},
                            {L"FileCount", Count},
                            {L"Duration", Milliseconds}},
                 .Message = L"Job %1 is complete: %4 files, %3 bytes, %5 milliseconds."},
                {.Id = 3,
                 .Level = 5,
                 .Task = 1,
                 .Opcode = 20,
                 .Keywords = 0x1,
                 .Channel = channel,
                 .Weight = 12,
                 .Fields = {{L"SourcePath", FolderPath}, {L"Size", ByteSize}, {L"Changed", Flag}},
                 .Message = L"Copied %1 (%2 bytes)."},
                {.Id = 10,
                 .Level = 3,
                 .Task = 3,
                 .Opcode = 21,
                 .Keywords = 0x1,
                 .Channel = channel,
                 .Weight = 2,
                 .Fields = {{L"JobName", JobName}, {L"FileCount", Count}},
                 .Message = L"%2 file(s) of job %1 are not the same as their copies."},
                {.Id = 11,
                 .Level = 2,
                 .Task = 2,
                 .Keywords = 0x2,
                 .Channel = channel,
                 .Weight = 2,
                 .Fields = {{L"JobName", JobName}, {L"Server", HostName}, {L"Status", Status}, {L"Checksum", Bytes}},
                 .Message = L"The restore of %1 from %2 failed with status %3."},
                {.Id = 99,
                 .Level = 1,
                 .Task = 1,
                 .Keywords = 0x3,
                 .Channel = channel,
                 .Weight = 1,
                 .Fields = {{L"Drive", Drive}, {L"FreeBytes", ByteSize}},
                 .Message = L"There is no room left for backups on drive %1 (%2 bytes free)."},
                {.Id = 50,
                 .Level = 3,
                 .Task = 1,
                 .Qualifiers = 0,
                 .Channel = L"Application",
                 .Weight = 5,
                 .Fields = {{L"JobName", JobName}, {L"LastRun", PointInTime}},
                 .Message = L"Job %1 was last complete at %2 and is overdue."},
            },
    };
}

}  // namespace

void AddProductProviders(std::vector<SampleProvider>& providers) {
    providers.push_back(SessionManager());
    providers.push_back(Defender());
    providers.push_back(Printing());
    providers.push_back(BackupEngine());
}

}  // namespace corvina::samples
