#include <windows.h>

#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "platform/error_codes.h"
#include "platform/temporary_folder.h"
#include "platform/win32/debugger_log.h"
#include "platform/win32/process_token.h"
#include "platform/win32/windows_accounts.h"
#include "platform/win32/windows_locale.h"
#include "platform/win32/windows_system_errors.h"
#include "platform/win32/windows_system_services.h"

namespace corvina {
namespace {

std::vector<std::byte> Sid(std::initializer_list<int> bytes) {
    std::vector<std::byte> sid;
    for (const int byte : bytes) {
        sid.push_back(static_cast<std::byte>(byte));
    }
    return sid;
}

TEST(WindowsSystemErrorsTest, GivesTheSystemsTextWithoutItsLineBreak) {
    const WindowsSystemErrors errors;
    const auto text = errors.MessageText(error::FileNotFound);
    ASSERT_TRUE(text);
    EXPECT_GT(text->size(), 5u);
    EXPECT_EQ(text->find_first_of(L"\r\n"), std::wstring::npos);
    EXPECT_NE(errors.MessageText(ERROR_BAD_EXE_FORMAT).value_or(L"").find(L"%1"), std::wstring::npos);
    EXPECT_FALSE(errors.MessageText(0x2FFFFFFF));
}

TEST(WindowsAccountsTest, NamesKnownIdentifiersOnly) {
    WindowsAccounts accounts;
    const auto everyone = Sid({1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0});
    const auto stranger =
        Sid({1, 5, 0, 0, 0, 0, 0, 5, 21, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0xE9, 3, 0, 0});
    for (int round = 0; round < 2; ++round) {  // looked up, then remembered
        const auto name = accounts.AccountName(everyone);
        ASSERT_TRUE(name);
        EXPECT_FALSE(name->empty());
        EXPECT_EQ(name->find(L'\\'), std::wstring::npos);
        EXPECT_FALSE(accounts.AccountName(stranger));
    }
    // Bytes that announce more parts than there are must not be read beyond their end.
    EXPECT_FALSE(accounts.AccountName(std::span(stranger).first(20)));
    EXPECT_FALSE(accounts.AccountName(std::span(everyone).first(7)));
    EXPECT_FALSE(accounts.AccountName({}));
    EXPECT_FALSE(accounts.AccountName(Sid({9, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0})));
}

TEST(WindowsAccountsTest, FindsTheIdentifiersOfKnownNamesOnly) {
    WindowsAccounts accounts;
    const auto name = accounts.AccountName(Sid({1, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
    ASSERT_TRUE(name);
    EXPECT_EQ(accounts.AccountSid(*name), L"S-1-1-0");
    EXPECT_FALSE(accounts.AccountSid(L"no such account at all"));
    EXPECT_FALSE(accounts.AccountSid(*name + std::wstring(1, L'\0') + L"more"));
    EXPECT_FALSE(accounts.AccountSid(std::wstring(100'000, L'x')));
}

TEST(WindowsLocaleTest, ConvertsToLocalTimeWithTodaysDifference) {
    const WindowsLocale locale;
    TIME_ZONE_INFORMATION zone{};
    const DWORD season = GetTimeZoneInformation(&zone);
    const LONG seasonBias = season == TIME_ZONE_ID_DAYLIGHT   ? zone.DaylightBias
                            : season == TIME_ZONE_ID_STANDARD ? zone.StandardBias
                                                              : 0;
    constexpr std::int64_t Minute = 600'000'000;
    const std::int64_t difference = -(std::int64_t{zone.Bias} + seasonBias) * Minute;
    constexpr std::uint64_t January = 133'485'408'000'000'000;
    constexpr std::uint64_t July = 133'642'656'001'234'567;
    EXPECT_EQ(static_cast<std::int64_t>(locale.ToLocalTime(January) - January), difference);
    EXPECT_EQ(static_cast<std::int64_t>(locale.ToLocalTime(July) - July), difference);
    EXPECT_EQ(locale.ToUniversalTime(locale.ToLocalTime(July)), July);
}

TEST(WindowsLocaleTest, ComparesAsTheUserReads) {
    const WindowsLocale locale;
    EXPECT_EQ(locale.CompareIgnoringCase(L"Microsoft-Windows", L"MICROSOFT-windows"), 0);
    EXPECT_EQ(locale.CompareIgnoringCase(L"\u00C4nderung", L"\u00E4nderung"), 0);
    // A reader's order, not that of the code points: accented letters beside their plain ones.
    EXPECT_LT(locale.CompareIgnoringCase(L"\u00E4", L"b"), 0);
    EXPECT_GT(locale.CompareIgnoringCase(L"b", L"A"), 0);
    const std::wstring_view text = L"Audit Success";
    EXPECT_EQ(locale.CompareIgnoringCase(text.substr(0, 5), L"audit"), 0);
    EXPECT_LT(locale.CompareIgnoringCase(L"", L"a"), 0);
    EXPECT_GT(locale.CompareIgnoringCase(L"a", std::wstring_view()), 0);
    EXPECT_EQ(locale.CompareIgnoringCase(L"", L""), 0);
}

TEST(WindowsSystemServicesTest, KnowsItselfAndItsComputer) {
    const WindowsSystemServices services;
    EXPECT_TRUE(services.ModulePath().ends_with(L"\\platform_win32_test.exe"));
    EXPECT_TRUE(services.FileExists(services.ModulePath()));
    EXPECT_FALSE(services.ComputerName().empty());
    EXPECT_TRUE(services.UserInterfaceLanguage());
    const WindowsVersion version = services.Version();
    EXPECT_GE(version.Major, 6u);
    EXPECT_GT(version.Build, 0u);
    EXPECT_LT(version.Build, 0x10000000u);
}

TEST(WindowsSystemServicesTest, CreatesFoldersWithThoseAbove) {
    WindowsSystemServices services;
    const TemporaryFolder folder;
    const std::wstring deep = (folder.Path / L"Settings \u65E5" / L"b" / L"c").wstring();
    EXPECT_FALSE(services.FolderExists(deep));
    services.CreateFolders(deep);
    EXPECT_TRUE(services.FolderExists(deep));
    EXPECT_FALSE(services.FileExists(deep));
    const auto file = folder.Path / "file";
    std::ofstream(file) << "x";
    services.CreateFolders((file / "below").wstring());
    EXPECT_FALSE(services.FolderExists(file.wstring()));
    EXPECT_TRUE(services.FileExists(file.wstring()));
}

TEST(ProcessTokenTest, EnablesPrivilegesThatItHolds) {
    ProcessToken token;
    std::uint64_t value = 0;
    std::uint32_t error = 0;
    EXPECT_FALSE(token.EnablePrivilege(23, error)) << "not opened yet";
    EXPECT_NE(error, error::Success);
    ASSERT_TRUE(token.Open());
    ASSERT_TRUE(token.Open());
    ASSERT_EQ(token.LookUpPrivilege(L"SeChangeNotifyPrivilege", value), error::Success);
    EXPECT_TRUE(token.EnablePrivilege(value, error));
    EXPECT_EQ(error, error::Success);
    EXPECT_TRUE(token.EnablePrivilege(0x0000000700000000, error));
    EXPECT_EQ(error, error::NotAllAssigned);
    EXPECT_EQ(token.LookUpPrivilege(L"SeNoSuchPrivilege", value), std::uint32_t{ERROR_NO_SUCH_PRIVILEGE});
}

TEST(DebuggerLogTest, LeavesTheLastErrorAlone) {
    DebuggerLog log;
    SetLastError(1234);
    log.Write(L"EvtNext failed with 1234\n");
    EXPECT_EQ(GetLastError(), 1234u);
}

}  // namespace
}  // namespace corvina
