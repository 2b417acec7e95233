#include "embedded/samples/sample_catalog.h"

namespace corvina::samples {

evtx::WriterValue::Kind KindOf(FieldKind kind) {
    using Kind = evtx::WriterValue::Kind;
    switch (kind) {
        case FieldKind::AccountSid:
            return Kind::Sid;
        case FieldKind::Count:
        case FieldKind::Milliseconds:
        case FieldKind::SmallNumber:
        case FieldKind::LogonType:
            return Kind::UInt32;
        case FieldKind::SignedOffset:
            return Kind::Int32;
        case FieldKind::ByteSize:
            return Kind::UInt64;
        case FieldKind::Status:
            return Kind::HexInt32;
        case FieldKind::LogonId:
        case FieldKind::ProcessIdentifier:
            return Kind::HexInt64;
        case FieldKind::Flag:
            return Kind::Boolean;
        case FieldKind::Identifier:
            return Kind::Guid;
        case FieldKind::PointInTime:
            return Kind::FileTime;
        case FieldKind::Bytes:
            return Kind::Binary;
        default:
            return Kind::Text;
    }
}

const std::vector<SampleChannel>& Channels() {
    static const std::vector<SampleChannel> channels = {
        {.Path = L"Application", .Share = 140, .Type = L"Admin", .IsClassic = true, .MaxSize = 20971520},
        {.Path = L"Security", .Share = 250, .Type = L"Admin", .IsClassic = true, .MaxSize = 134217728},
        {.Path = L"Setup", .Share = 10, .MaxSize = 1052672},
        {.Path = L"System", .Share = 330, .Type = L"Admin", .IsClassic = true, .MaxSize = 20971520},
        {.Path = L"ForwardedEvents", .MaxSize = 20971520},
        {.Path = L"HardwareEvents", .Share = 5, .Type = L"Admin", .IsClassic = true, .MaxSize = 20971520},
        {.Path = L"Windows PowerShell", .Share = 20, .Type = L"Admin", .IsClassic = true, .MaxSize = 15728640},
        {.Path = L"Contoso-Backup-Engine/Operational",
         .Share = 20,
         .Publisher = L"Contoso-Backup-Engine",
         .MaxSize = 8388608,
         .Retention = true,
         .AutoBackup = true},
        {.Path = L"Microsoft-Windows-DNS-Client/Operational",
         .Publisher = L"Microsoft-Windows-DNS-Client",
         .IsEnabled = false},
        {.Path = L"Microsoft-Windows-GroupPolicy/Operational",
         .Share = 30,
         .Publisher = L"Microsoft-Windows-GroupPolicy",
         .MaxSize = 4194304},
        {.Path = L"Microsoft-Windows-Kernel-Power/Thermal-Operational",
         .Share = 5,
         .Publisher = L"Microsoft-Windows-Kernel-Power"},
        {.Path = L"Microsoft-Windows-PowerShell/Admin",
         .Share = 5,
         .Type = L"Admin",
         .Publisher = L"Microsoft-Windows-PowerShell"},
        {.Path = L"Microsoft-Windows-PowerShell/Operational",
         .Share = 60,
         .Publisher = L"Microsoft-Windows-PowerShell",
         .MaxSize = 15728640},
        {.Path = L"Microsoft-Windows-PrintService/Admin",
         .Share = 8,
         .Type = L"Admin",
         .Publisher = L"Microsoft-Windows-PrintService"},
        {.Path = L"Microsoft-Windows-PrintService/Operational",
         .Share = 15,
         .Publisher = L"Microsoft-Windows-PrintService"},
        {.Path = L"Microsoft-Windows-TaskScheduler/Operational",
         .Share = 50,
         .Publisher = L"Microsoft-Windows-TaskScheduler",
         .MaxSize = 10485760},
        {.Path = L"Microsoft-Windows-TerminalServices-LocalSessionManager/Admin",
         .Share = 2,
         .Type = L"Admin",
         .Publisher = L"Microsoft-Windows-TerminalServices-LocalSessionManager"},
        {.Path = L"Microsoft-Windows-TerminalServices-LocalSessionManager/Operational",
         .Share = 15,
         .Publisher = L"Microsoft-Windows-TerminalServices-LocalSessionManager"},
        {.Path = L"Microsoft-Windows-Windows Defender/Operational",
         .Share = 15,
         .Publisher = L"Microsoft-Windows-Windows Defender",
         .MaxSize = 16777216},
        {.Path = L"Microsoft-Windows-WindowsUpdateClient/Operational",
         .Share = 20,
         .Publisher = L"Microsoft-Windows-WindowsUpdateClient"},
    };
    return channels;
}

const std::vector<SampleProvider>& Providers() {
    static const std::vector<SampleProvider> providers = [] {
        std::vector<SampleProvider> all;
        AddSystemProviders(all);
        AddSecurityProviders(all);
        AddApplicationProviders(all);
        AddServiceProviders(all);
        AddProductProviders(all);
        return all;
    }();
    return providers;
}

}  // namespace corvina::samples
