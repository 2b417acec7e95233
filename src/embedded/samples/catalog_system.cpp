// Providers of the System and HardwareEvents logs.
#include "embedded/samples/sample_catalog.h"

namespace corvina::samples {
namespace {

constexpr const wchar_t* SystemChannel = L"System";

SampleProvider ServiceControlManager() {
    using enum FieldKind;
    return {
        .Name = L"Service Control Manager",
        .Guid = L"{555908D1-A6D7-4695-8E1E-26931D2012F4}",
        .IsClassic = true,
        .User = SampleUser::System,
        .Events =
            {
                {.Id = 7036,
                 .Qualifiers = 16384,
                 .Channel = SystemChannel,
                 .Weight = 40,
                 .Fields = {{L"param1", ServiceName}, {L"param2", ServiceState}, {L"", Bytes}},
                 .Message = L"The service %1 is now in the state \"%2\"."},
                {.Id = 7040,
                 .Qualifiers = 16384,
                 .Channel = SystemChannel,
                 .Weight = 6,
                 .Fields = {{L"param1", ServiceName}, {L"param2", StartType}, {L"param3", StartType}},
                 .Message = L"The way in which service %1 starts was changed from %2 to %3."},
                {.Id = 7000,
                 .Level = 2,
                 .Qualifiers = 49152,
                 .Channel = SystemChannel,
                 .Weight = 3,
                 .Fields = {{L"param1", ServiceName}, {L"param2", Reason}},
                 .Message = L"The service %1 could not be started: %2"},
                {.Id = 7031,
                 .Level = 2,
                 .Qualifiers = 49152,
                 .Channel = SystemChannel,
                 .Weight = 2,
                 .Fields = {{L"param1", ServiceName}, {L"param2", SmallNumber}, {L"param3", Milliseconds}},
                 .Message = L"The service %1 ended without being asked to. This has happened %2 time(s). It is started "
                            L"again in %3 milliseconds."},
                {.Id = 7045,
                 .Qualifiers = 16384,
                 .Channel = SystemChannel,
                 .Weight = 1,
                 .Fields = {{L"ServiceName", ServiceName},
                            {L"ImagePath", ProgramPath},
                            {L"StartType", StartType},
                            {L"AccountName", Account}},
                 .Message = L"A new service is on this computer.%n%nName:%t%1%nFile:%t%2%nStart:%t%3%nAccount:%t%4"},
            },
    };
}

SampleProvider KernelGeneral() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-Kernel-General",
        .Guid = L"{A68CA8B7-004F-D7B6-A698-07E2DE0F1F5D}",
        .User = SampleUser::System,
        .Tasks = {{L"Time", 5, L"Time"}, {L"Registry", 6, L"Registry"}, {L"Boot", 7, L"Start and shutdown"}},
        .Keywords = {{L"Clock", 0x10, L"Clock"}},
        .Events =
            {
                {.Id = 1,
                 .Version = 2,
                 .Task = 5,
                 .Keywords = 0x10,
                 .Channel = SystemChannel,
                 .Weight = 6,
                 .Fields = {{L"NewTime", PointInTime}, {L"OldTime", PointInTime}, {L"Reason", SmallNumber}},
                 .Message = L"The clock was set to %1; before, it was %2. Cause: %3."},
                {.Id = 12,
                 .Task = 7,
                 .Opcode = 1,
                 .Channel = SystemChannel,
                 .Weight = 1,
                 .Fields = {{L"MajorVersion", SmallNumber}, {L"BuildVersion", Count}, {L"StartTime", PointInTime}},
                 .Message = L"The operating system, version %1 build %2, was started at %3."},
                {.Id = 13,
                 .Task = 7,
                 .Opcode = 2,
                 .Channel = SystemChannel,
                 .Weight = 1,
                 .Fields = {{L"StopTime", PointInTime}},
                 .Message = L"The operating system is being shut down at %1."},
                {.Id = 16,
                 .Version = 1,
                 .Level = 5,
                 .Task = 6,
                 .Channel = SystemChannel,
                 .Weight = 12,
                 .Fields = {{L"HiveName", FolderPath}, {L"KeysUpdated", Count}, {L"DirtyPages", SmallNumber}},
                 .Message = L"The access history of hive %1 was cleared: %2 keys, %3 changed pages."},
            },
    };
}

SampleProvider KernelPower() {
    using enum FieldKind;
    const auto thermal = L"Microsoft-Windows-Kernel-Power/Thermal-Operational";
    return {
        .Name = L"Microsoft-Windows-Kernel-Power",
        .Guid = L"{331C3B3A-2005-44C2-AC5E-77220C37D6B4}",
        .HasActivities = true,
        .User = SampleUser::System,
        .Tasks = {{L"Restart", 63, L"Restart"}, {L"Sleep", 64, L"Sleep"}, {L"Thermal", 114, L"Heat"}},
        .Keywords = {{L"Transition", 0x4, L"Change of power state"}},
        .Events =
            {
                {.Id = 41,
                 .Version = 8,
                 .Level = 1,
                 .Task = 63,
                 .Keywords = 0x2,
                 .Channel = SystemChannel,
                 .Weight = 1,
                 .Fields = {{L"BugcheckCode", Count},
                            {L"SleepInProgress", SmallNumber},
                            {L"PowerButtonTimestamp", ByteSize},
                            {L"LongPowerButtonPressDetected", Flag}},
                 .Message = L"The computer was started again without having been shut down. It may have lost power, or "
                            L"stopped answering."},
                {.Id = 42,
                 .Version = 3,
                 .Task = 64,
                 .Keywords = 0x4,
                 .Channel = SystemChannel,
                 .Weight = 5,
                 .Fields = {{L"TargetState", SmallNumber}, {L"Reason", Reason}},
                 .Message = L"The computer goes to sleep.%n%nReason: %2"},
                {.Id = 107,
                 .Version = 1,
                 .Task = 64,
                 .Keywords = 0x4,
                 .Channel = SystemChannel,
                 .Weight = 5,
                 .Fields = {{L"WakeTime", PointInTime}},
                 .Message = L"The computer woke up at %1."},
                {.Id = 125,
                 .Task = 114,
                 .Channel = thermal,
                 .Weight = 4,
                 .Fields = {{L"ThermalZone", DeviceName}, {L"TripPoint", SmallNumber}},
                 .Message = L"The thermal zone %1 was found; it acts at %2 degrees."},
                {.Id = 86,
                 .Level = 1,
                 .Task = 114,
                 .Channel = thermal,
                 .Weight = 1,
                 .Fields = {{L"ThermalZone", DeviceName}, {L"Temperature", SmallNumber}},
                 .Message = L"The computer is shut down because thermal zone %1 reached %2 degrees."},
            },
    };
}

SampleProvider EventLogService() {
    using enum FieldKind;
    return {
        .Name = L"EventLog",
        .IsClassic = true,
        .Events =
            {
                {.Id = 6005,
                 .Qualifiers = 32768,
                 .Channel = SystemChannel,
                 .Weight = 2,
                 .Fields = {{L"", Bytes}},
                 .Message = L"The service that keeps the event logs was started."},
                {.Id = 6006,
                 .Qualifiers = 32768,
                 .Channel = SystemChannel,
                 .Weight = 2,
                 .Fields = {{L"", Bytes}},
                 .Message = L"The service that keeps the event logs was stopped."},
                {.Id = 6008,
                 .Level = 2,
                 .Qualifiers = 32768,
                 .Channel = SystemChannel,
                 .Weight = 1,
                 .Fields = {{L"", PointInTime}, {L"", Count}},
                 .Message = L"The shutdown at %1 came as a surprise. The computer had been on for %2 minutes."},
                {.Id = 6013,
                 .Qualifiers = 32768,
                 .Channel = SystemChannel,
                 .Weight = 8,
                 .Fields = {{L"", Count}},
                 .Message = L"The computer has been on for %1 seconds."},
            },
    };
}

SampleProvider Disk() {
    using enum FieldKind;
    return {
        .Name = L"disk",
        .IsClassic = true,
        .Events =
            {
                {.Id = 7,
                 .Level = 2,
                 .Qualifiers = 49156,
                 .Channel = SystemChannel,
                 .Weight = 2,
                 .Fields = {{L"", DeviceName}, {L"", Bytes}},
                 .Message = L"There is a bad block on device %1."},
                {.Id = 51,
                 .Level = 3,
                 .Qualifiers = 32772,
                 .Channel = SystemChannel,
                 .Weight = 3,
                 .Fields = {{L"", DeviceName}, {L"", Bytes}},
                 .Message = L"An error occurred on device %1 while a page was read or written."},
                {.Id = 153,
                 .Level = 3,
                 .Qualifiers = 32772,
                 .Channel = SystemChannel,
                 .Weight = 3,
                 .Fields = {{L"", DeviceName}, {L"", ByteSize}, {L"", SmallNumber}},
                 .Message = L"The request at block %2 of disk %3 (%1) was tried again."},
            },
    };
}

SampleProvider NameResolution() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-DNS-Client",
        .Guid = L"{1C95126E-7EEA-49A9-A3FE-A378B03DDB4D}",
        .HasActivities = true,
        .User = SampleUser::Account,
        .Tasks = {{L"Lookup", 1014, L"Name look-up"}},
        .Events =
            {
                {.Id = 1014,
                 .Level = 3,
                 .Task = 1014,
                 .Channel = SystemChannel,
                 .Weight = 8,
                 .Fields = {{L"QueryName", HostName}, {L"Address", Address}, {L"AddressLength", SmallNumber}},
                 .Message = L"No name server answered in time when %1 was looked up; %2 was the last one asked."},
                {.Id = 3008,
                 .Level = 5,
                 .Task = 1014,
                 .Channel = L"Microsoft-Windows-DNS-Client/Operational",
                 .Fields = {{L"QueryName", HostName}, {L"QueryStatus", Status}, {L"QueryResults", Address}},
                 .Message = L"The look-up of %1 ended with status %2. Result: %3"},
            },
    };
}

SampleProvider TimeService() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-Time-Service",
        .Guid = L"{06EDCFEB-0FD1-4E53-ACCA-A6F8BBF81BCB}",
        .User = SampleUser::System,
        .Events =
            {
                {.Id = 35,
                 .Channel = SystemChannel,
                 .Weight = 6,
                 .Fields = {{L"TimeSource", HostName}, {L"CurrentOffset", SignedOffset}},
                 .Message = L"The clock now follows %1. It was off by %2 milliseconds."},
                {.Id = 134,
                 .Level = 3,
                 .Channel = SystemChannel,
                 .Weight = 3,
                 .Fields = {{L"ErrorMessage", Reason}, {L"RetryMinutes", SmallNumber}, {L"DomainPeer", HostName}},
                 .Message = L"The time server %3 cannot be asked: %1 The next attempt is in %2 minutes."},
            },
    };
}

SampleProvider ComponentServices() {
    using enum FieldKind;
    return {
        .Name = L"Microsoft-Windows-DistributedCOM",
        .Guid = L"{1B562E86-B7AA-4131-BADC-B6F3A001407E}",
        .HasActivities = true,
        .User = SampleUser::Account,
        .Events =
            {
                {.Id = 10016,
                 .Level = 3,
                 .Channel = SystemChannel,
                 .Weight = 15,
                 .Fields = {{L"param1", Identifier},
                            {L"param2", Identifier},
                            {L"param3", Domain},
                            {L"param4", Account},
                            {L"param5", AccountSid},
                            {L"param6", Address}},
                 .Message = L"The account %3\\%4 (%5), calling from %6, is not allowed to start the component %1 of "
                            L"application %2."},
                {.Id = 10010,
                 .Level = 2,
                 .Channel = SystemChannel,
                 .Weight = 2,
                 .Fields = {{L"param1", Identifier}},
                 .Message = L"The component %1 was started but did not report in time."},
            },
    };
}

SampleProvider SensorBoard() {
    using enum FieldKind;
    const auto channel = L"HardwareEvents";
    return {
        .Name = L"Contoso Sensor Board",
        .IsClassic = true,
        .Events =
            {
                {.Id = 10,
                 .Qualifiers = 0,
                 .Channel = channel,
                 .Weight = 10,
                 .Fields = {{L"", DeviceName}, {L"", SmallNumber}},
                 .Message = L"Sensor %1 reads %2 degrees."},
                {.Id = 20,
                 .Level = 3,
                 .Qualifiers = 32768,
                 .Channel = channel,
                 .Weight = 2,
                 .Fields = {{L"", DeviceName}, {L"", Count}},
                 .Message = L"The fan at %1 has slowed down to %2 turns a minute."},
                {.Id = 30,
                 .Level = 2,
                 .Qualifiers = 49152,
                 .Channel = channel,
                 .Weight = 1,
                 .Fields = {{L"", DeviceName}},
                 .Message = L"Sensor %1 no longer answers."},
            },
    };
}

}  // namespace

void AddSystemProviders(std::vector<SampleProvider>& providers) {
    providers.push_back(ServiceControlManager());
    providers.push_back(KernelGeneral());
    providers.push_back(KernelPower());
    providers.push_back(EventLogService());
    providers.push_back(Disk());
    providers.push_back(NameResolution());
    providers.push_back(TimeService());
    providers.push_back(ComponentServices());
    providers.push_back(SensorBoard());
}

}  // namespace corvina::samples
