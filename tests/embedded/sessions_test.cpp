// Which computers a store has and who may open them.
#include <filesystem>
#include <system_error>

#include "embedded/embedded_log_test.h"

namespace corvina::test {
namespace {

class SessionsTest : public EmbeddedLogTest {};

TEST_F(SessionsTest, ThisComputerHasSeveralNamesAndOthersAreFoundWithoutCase) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Application", {}));
    ASSERT_TRUE(Store.AddLog(L"FileSrv-02", L"System", {}));
    for (const wchar_t* name : {L"", L".", L"LOCALHOST", L"testpc", L"FILESRV-02"}) {
        EXPECT_TRUE(OpenSession(name)) << Log->GetLastError();
    }
    for (const wchar_t* name : {L"FileSrv", L"..", L"FileSrv-02/", L"publishers"}) {
        EXPECT_FALSE(OpenSession(name));
        EXPECT_EQ(Log->GetLastError(), error::RpcServerUnavailable);
    }
}

TEST_F(SessionsTest, FolderOfLogsIsThisComputerAlone) {
    TestStore inner(Store.Folder());
    ASSERT_TRUE(inner.AddLog(L"", L"Application", NumberedEvents(1)));
    ASSERT_TRUE(inner.AddLog(L"OTHER", L"System", {}));
    EXPECT_TRUE(OpenSession(L"TESTPC"));
    EXPECT_FALSE(OpenSession(L"OTHER"));
    EXPECT_EQ(EventIds(Query(L"Application")), std::vector<std::uint16_t>{1});
}

TEST_F(SessionsTest, StoreWithoutThisComputerServesFilesOnly) {
    EXPECT_FALSE(OpenSession(L"TESTPC"));
    EXPECT_EQ(Log->GetLastError(), error::RpcServerUnavailable);
    EXPECT_FALSE(Query(L"Application"));
    EXPECT_EQ(Log->GetLastError(), error::RpcServerUnavailable);
    const std::filesystem::path file = Folder.Path() / "saved.evtx";
    ASSERT_EQ(WriteLog(file, NumberedEvents(2)), 0u);
    EXPECT_EQ(EventIds(Query(file.wstring(), nullptr, 0x1002)), (std::vector<std::uint16_t>{1, 2}));
}

TEST_F(SessionsTest, AccountIsAskedForNameAndPassword) {
    ASSERT_TRUE(Store.AddLog(L"GUARDED", L"System", {}));
    ASSERT_TRUE(Store.SetAccount(L"GUARDED", "Ädmin", "Geheim 1"));
    EXPECT_TRUE(OpenSession(L"guarded", L"äDMIN", L"Geheim 1"));
    const std::pair<const wchar_t*, const wchar_t*> refused[] = {
        {L"", L""}, {L"Ädmin", L""}, {L"Ädmin", L"geheim 1"}, {L"Other", L"Geheim 1"}};
    for (const auto& [user, password] : refused) {
        EXPECT_FALSE(OpenSession(L"GUARDED", user, password));
        EXPECT_EQ(Log->GetLastError(), error::LogonFailure);
    }
}

TEST_F(SessionsTest, UnreadableFoldersRefuse) {
    ASSERT_TRUE(Store.AddLog(L"ODD", L"System", {}));
    std::filesystem::create_directories(Store.Folder() / "ODD" / "account.ini");
    EXPECT_FALSE(OpenSession(L"ODD"));
    EXPECT_EQ(Log->GetLastError(), error::AccessDenied);
    std::error_code error;
    std::filesystem::create_directory_symlink("NOWHERE", Store.Folder() / "GONE", error);
    if (error) {
        GTEST_SKIP() << "no symbolic links here";
    }
    EXPECT_FALSE(OpenSession(L"GONE"));
    EXPECT_EQ(Log->GetLastError(), error::AccessDenied);
}

TEST_F(SessionsTest, ArgumentsAreChecked) {
    ASSERT_TRUE(Store.AddLog(L"localhost", L"Application", {}));
    EVT_RPC_LOGIN login{};
    EXPECT_TRUE(Held(Log->EvtOpenSession(EvtRpcLogin, &login, 0, 0)));
    const auto refused = [&](int loginClass, PVOID record, DWORD timeout, DWORD flags) {
        return !Held(Log->EvtOpenSession(static_cast<EVT_LOGIN_CLASS>(loginClass), record, timeout, flags)) &&
               Log->GetLastError() == error::InvalidParameter;
    };
    EXPECT_TRUE(refused(0, &login, 0, 0));
    EXPECT_TRUE(refused(EvtRpcLogin, nullptr, 0, 0));
    EXPECT_TRUE(refused(EvtRpcLogin, &login, 1, 0));
    EXPECT_TRUE(refused(EvtRpcLogin, &login, 0, 1));
}

// What was opened through a session still works when the session is gone.
TEST_F(SessionsTest, ObjectsOutliveTheirSession) {
    ASSERT_TRUE(Store.AddLog(L"OTHER", L"System", NumberedEvents(3)));
    EvtHandle session = OpenSession(L"OTHER");
    const EvtHandle query = Held(Log->EvtQuery(session.Get(), L"System", nullptr, 0x1201));
    session.Close();
    EXPECT_EQ(EventIds(query), (std::vector<std::uint16_t>{3, 2, 1}));
}

}  // namespace
}  // namespace corvina::test
