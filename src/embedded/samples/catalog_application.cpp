// Providers of the Application and Windows PowerShell logs.
#include "embedded/samples/sample_catalog.h"

namespace corvina::samples {
namespace {

constexpr const wchar_t* ApplicationChannel = L"Application";

SampleProvider ApplicationError() {
    using enum FieldKind;
    return {
        .Name = L"Application Error",
        .IsClassic = true,
        .User = SampleUser::Account,
        .Tasks = {{L"Crash", 100, L"Application Crashing Events"}},
        .Events =
            {
                {.Id = 1000,
                 .Level = 2,
                 .Task = 100,
                 .Channel = ApplicationChannel,
                 .Weight = 8,
                 .Fields = {{L"AppName", ProgramPath},
                            {L"AppVersion", VersionText},
                            {L"ModuleName", ModulePath},
                            {L"ModuleVersion", VersionText},
                            {L"ExceptionCode", Status},
                            {L"FaultingOffset", LogonId},
                            {L"IntegratorReportId", Identifier}},
                 .Message =
                     L"The program %1 (version %2) failed in module %3 (version %4).%n%nException:%t%5%nOffset:%t"
                     L"%6%nReport:%t%7"},
            },
    };
}

SampleProvider ApplicationHang() {
    using enum FieldKind;
    return {
        .Name = L"Application Hang",
        .IsClassic = true,
        .User = SampleUser::Account,
        .Tasks = {{L"Hang", 101, L"Hanging Events"}},
        .Events =
            {
                {.Id = 1002,
                 .Level = 2,
                 .Task = 101,
                 .Channel = ApplicationChannel,
                 .Weight = 4,
                 .Fields = {{L"", ProgramPath}, {L"", VersionText}, {L"", ProcessIdentifier}, {L"", Bytes}},
                 .Message = L"The program %1 (version %2, process %3) no longer answered and was closed."},
            },
    };
}

SampleProvider Installer() {
    using enum FieldKind;
    return {
        .Name = L"MsiInstaller",
        .IsClassic = true,
        .User = SampleUser::Account,
        .Events =
            {
                {.Id = 1033,
                 .Channel = ApplicationChannel,
                 .Weight = 10,
                 .Fields = {{L"", PackageName}, {L"", VersionText}, {L"", Status}, {L"", Bytes}},
                 .Message = L"The product %1, version %2, was installed. Status: %3."},
                {.Id = 11708,
                 .Level = 2,
                 .Channel = ApplicationChannel,
                 .Weight = 2,
                 .Fields = {{L"", PackageName}, {L"", Reason}},
                 .Message = L"The product %1 was not installed: %2"},
                {.Id = 1042,
                 .Channel = ApplicationChannel,
                 .Weight = 10,
                 .Fields = {{L"", FolderPath}},
                 .Message = L"The installer has finished with %1."},
            },
    };
}

SampleProvider DatabaseEngine() {
    using enum FieldKind;
    return {
        .Name = L"ESENT",
        .IsClassic = true,
        .Tasks = {{L"General", 1, L"General"}, {L"Logging", 3, L"Logging and recovery"}},
        .Events =
            {
                {.Id = 102,
                 .Task = 1,
                 .Channel = ApplicationChannel,
                 .Weight = 14,
                 .Fields = {{L"", ProgramPath}, {L"", Count}, {L"", VersionText}},
                 .Message = L"%1 (%2): the database engine, version %3, was started."},
                {.Id = 326,
                 .Task = 1,
                 .Channel = ApplicationChannel,
                 .Weight = 10,
                 .Fields = {{L"", ProgramPath}, {L"", Count}, {L"", FolderPath}, {L"", Milliseconds}},
                 .Message = L"%1 (%2): the database %3 was opened in %4 milliseconds."},
                {.Id = 455,
                 .Level = 2,
                 .Task = 3,
                 .Channel = ApplicationChannel,
                 .Weight = 2,
                 .Fields = {{L"", ProgramPath}, {L"", Count}, {L"", Status}, {L"", FolderPath}},
                 .Message = L"%1 (%2): error %3 while the log file %4 was opened."},
            },
    };
}

SampleProvider ShadowCopies() {
    using enum FieldKind;
    return {
        .Name = L"VSS",
        .IsClassic = true,
        .Events =
            {
                {.Id = 8224,
                 .Channel = ApplicationChannel,
                 .Weight = 8,
                 .Fields = {{L"", Bytes}},
                 .Message = L"The shadow copy service is idle and stops."},
                {.Id = 12289,
                 .Level = 2,
                 .Channel = ApplicationChannel,
                 .Weight = 1,
                 .Fields = {{L"", Drive}, {L"", Status}},
                 .Message = L"The shadow copy of drive %1 met the unexpected error %2."},
            },
    };
}

SampleProvider UserProfiles() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-User Profiles Service",
        .Guid = L"{89B1E9F0-5AFF-44A6-9B44-0A07A7CE5845}",
        .HasActivities = true,
        .User = SampleUser::System,
        .Events =
            {
                {.Id = 1530,
                 .Level = 3,
                 .Channel = ApplicationChannel,
                 .Weight = 6,
                 .Fields = {{L"Detail", Reason}, {L"Handles", Count}},
                 .Message = L"The registry of a user is still in use by other programs (%2 handles) and is now taken "
                            L"away from them. %1"},
                {.Id = 1531,
                 .Channel = ApplicationChannel,
                 .Weight = 6,
                 .Message = L"The service for user profiles was started."},
                {.Id = 5,
                 .Level = 5,
                 .Channel = ApplicationChannel,
                 .Weight = 12,
                 .Fields = {{L"File", FolderPath}, {L"Key", AccountSid}},
                 .Message = L"The registry file %1 is loaded at %2."},
            },
    };
}

SampleProvider RestartManager() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-RestartManager",
        .Guid = L"{0888E5EF-9B98-4695-979D-E92CE4247224}",
        .User = SampleUser::Account,
        .Events =
            {
                {.Id = 10000,
                 .Opcode = 1,
                 .Channel = ApplicationChannel,
                 .Weight = 8,
                 .Fields = {{L"RmSessionId", SmallNumber}, {L"UTCStartTime", PointInTime}},
                 .Message = L"Session %1 for closing programs was begun at %2."},
                {.Id = 10001,
                 .Opcode = 2,
                 .Channel = ApplicationChannel,
                 .Weight = 8,
                 .Fields = {{L"RmSessionId", SmallNumber}, {L"UTCStartTime", PointInTime}},
                 .Message = L"Session %1 for closing programs, begun at %2, has ended."},
            },
    };
}

SampleProvider ClassicPowerShell() {
    using enum FieldKind;
    const auto channel = L"Windows PowerShell";
    return {
        .Name = L"PowerShell",
        .IsClassic = true,
        .Tasks = {{L"Engine", 4, L"Engine Lifecycle"},
                  {L"Provider", 6, L"Provider Lifecycle"},
                  {L"Pipeline", 8, L"Pipeline Execution Details"}},
        .Events =
            {
                {.Id = 400,
                 .Task = 4,
                 .Channel = channel,
                 .Weight = 6,
                 .Fields = {{L"", ServiceState}, {L"", VersionText}},
                 .Message = L"The engine went to state \"%1\".%n%nVersion: %2"},
                {.Id = 403,
                 .Task = 4,
                 .Channel = channel,
                 .Weight = 6,
                 .Fields = {{L"", ServiceState}, {L"", VersionText}},
                 .Message = L"The engine left for state \"%1\".%n%nVersion: %2"},
                {.Id = 600,
                 .Task = 6,
                 .Channel = channel,
                 .Weight = 12,
                 .Fields = {{L"", Drive}, {L"", VersionText}},
                 .Message = L"The provider of drive %1 was started by host version %2."},
                {.Id = 800,
                 .Level = 3,
                 .Task = 8,
                 .Channel = channel,
                 .Weight = 2,
                 .Fields = {{L"", ScriptText}, {L"", Account}},
                 .Message = L"%2 ran the pipeline:%n%1"},
            },
    };
}

}  // namespace

void AddApplicationProviders(std::vector<SampleProvider>& providers) {
    providers.push_back(ApplicationError());
    providers.push_back(ApplicationHang());
    providers.push_back(Installer());
    providers.push_back(DatabaseEngine());
    providers.push_back(ShadowCopies());
    providers.push_back(UserProfiles());
    providers.push_back(RestartManager());
    providers.push_back(ClassicPowerShell());
}

}  // namespace corvina::samples
