// Sessions with computers: what is opened, what happens when a computer cannot be reached, and the secrets of a login.
#include <gtest/gtest.h>

#include "eventlog/channel_config.h"
#include "eventlog/event_log_reachability.h"
#include "eventlog/event_log_session.h"
#include "support/doubles_event_log.h"
#include "support/log_machinery.h"

namespace corvina::test {
namespace {

class Sessions : public ::testing::Test, public StoreMachinery {
  protected:
    void SetUp() override {
        ASSERT_TRUE(Files.AddLog(L"localhost", L"Application", NumberedEvents(1)));
        ASSERT_TRUE(Files.AddLog(L"REMOTE", L"System", NumberedEvents(1)));
        ASSERT_TRUE(Files.SetAccount(L"REMOTE", "reader", "secret"));
        SystemTexts.Texts[1722] = L"unreachable";
        SystemTexts.Texts[1326] = L"refused";
    }
    void TearDown() override {
        if (Logic != nullptr) {
            EXPECT_EQ(End(), 0U);
        }
    }

    bool Connect(std::wstring_view computer, const std::optional<Credentials>& credentials = std::nullopt) {
        Registered.clear();
        return Logic->Session.ConnectToComputer(computer, 1, credentials,
                                                [this](const std::wstring& path) { Registered.push_back(path); });
    }

    std::vector<std::wstring> Registered;
};

TEST_F(Sessions, LocalComputerIsOpenedByNameWithoutCredentials) {
    LogMachinery& logic = Start();
    ASSERT_EQ(Api->Sessions.size(), 1U);
    EXPECT_EQ(Api->Sessions[0].Server, L"TESTPC");
    EXPECT_EQ(Api->Sessions[0].User, std::nullopt);
    EXPECT_EQ(Api->Sessions[0].Password, std::nullopt);
    EXPECT_EQ(Api->Sessions[0].Domain, std::nullopt);
    EXPECT_EQ(Api->Sessions[0].LoginFlags, 1U);
    EXPECT_EQ(Api->Sessions[0].Timeout, 0U);
    EXPECT_EQ(logic.Session.SessionComputer(), L"TESTPC");
    EXPECT_EQ(logic.Session.LocalSession(), logic.Session.CurrentSession());
    EXPECT_TRUE(Debug.Has(L"List of Channels\n\n"));
}

TEST_F(Sessions, CredentialsServeTheFirstConnectionOnly) {
    LogMachinery& logic = Start();
    EVT_HANDLE local = logic.Session.LocalSession();
    ASSERT_TRUE(Connect(L"REMOTE", Credentials{L"reader", L"secret"}));
    EXPECT_EQ(Registered, std::vector<std::wstring>{L"System"});
    EXPECT_EQ(Api->Sessions.back().User, L"reader");
    EXPECT_EQ(Api->Sessions.back().Password, L"secret");
    EXPECT_EQ(logic.Session.CurrentComputerIndex(), 1U);
    EXPECT_EQ(logic.Session.FilterSection(), L"FilterREMOTE");
    EXPECT_EQ(logic.Session.LocalSession(), local) << "saved logs are read through it";
    EXPECT_TRUE(Store->EvtOpenChannelEnum(local, 0) != nullptr && Store->OpenHandleCount() == 3);

    logic.Session.SwitchToComputer(L"TESTPC", 0);
    EXPECT_EQ(logic.Session.CurrentComputerIndex(), 0U);
    logic.Session.SwitchToComputer(L"REMOTE", 1);
    EXPECT_EQ(Api->Sessions.back().User, std::nullopt);
    ASSERT_EQ(Boxes.Errors.size(), 1U);
    EXPECT_EQ(Boxes.Errors[0].Text, L"Error occured. Open Session failed.\r\nrefused");
    EXPECT_EQ(logic.Session.CurrentSession(), nullptr);
    EXPECT_EQ(logic.Session.OpenError(), error::LogonFailure);
    EXPECT_EQ(logic.Session.SessionComputer(), L"REMOTE");
    Logic.reset();
    Store.reset();  // takes the enumeration that this test left open
}

TEST_F(Sessions, UnreachableComputerLeavesThePreviousOneCurrent) {
    LogMachinery& logic = Start();
    EXPECT_FALSE(Connect(L"NOWHERE"));
    ASSERT_EQ(Boxes.Errors.size(), 1U);
    EXPECT_EQ(Boxes.Errors[0].Text, L"Error occured ConnectToRemote\r\nunreachable");
    EXPECT_EQ(Boxes.Errors[0].Title, L"Information");
    EXPECT_EQ(logic.Session.CurrentComputer(), L"TESTPC");
    EXPECT_EQ(logic.Session.CurrentComputerIndex(), 0U);
    EXPECT_NE(logic.Session.CurrentSession(), nullptr);
    EXPECT_EQ(Api->Sessions.back().Server, L"TESTPC");

    Api->FailAlways(Operation::OpenSession, 1722);
    EXPECT_FALSE(Connect(L"NOWHERE"));
    ASSERT_EQ(Boxes.Errors.size(), 3U);
    EXPECT_EQ(Boxes.Errors[2].Text, L"Error occured. Open Session failed.\r\nunreachable");
    EXPECT_EQ(logic.Session.CurrentSession(), nullptr);
    EXPECT_EQ(logic.Builder.BuildRemoteTree(L"NOWHERE", std::nullopt), NodeId::None);
    EXPECT_EQ(logic.Tree.Roots().size(), 1U);
}

TEST_F(Sessions, RefusedEnumerationLeavesThePreviousComputerAndItsChannels) {
    LogMachinery& logic = Start();
    logic.Channels.Append(1, {L"Kept", L"", true, false});
    Api->FailNextCall(Operation::OpenChannelEnum, 5);
    EXPECT_FALSE(Connect(L"REMOTE", Credentials{L"reader", L"secret"}));
    ASSERT_EQ(Boxes.Errors.size(), 1U);
    EXPECT_EQ(Boxes.Errors[0].Text, L"Error: 0x5");
    EXPECT_TRUE(Debug.Has(L"EvtOpenChannelEnum failed with 5.\n"));
    EXPECT_EQ(logic.Session.CurrentComputer(), L"TESTPC");
    EXPECT_EQ(logic.Session.CurrentComputerIndex(), 0U);
    EXPECT_EQ(Api->Sessions.back().Server, L"TESTPC");
    EXPECT_EQ(logic.Channels.Of(1).size(), 1U);
    EXPECT_EQ(Api->OpenHandles(), 1U + (logic.Session.LocalSession() != logic.Session.CurrentSession() ? 1U : 0U));
}

TEST_F(Sessions, FailingEnumerationRepeatsThePathBeforeAndEnds) {
    ASSERT_TRUE(Files.AddLog(L"localhost", L"System", NumberedEvents(1)));
    Start();
    const std::size_t before = Api->Calls(Operation::NextChannelPath);
    // The first path takes two calls (the size probe); the third call is the next path.
    Api->FailCall(Operation::NextChannelPath, before + 3, 8);
    EXPECT_TRUE(Connect(L"TESTPC"));
    EXPECT_EQ(Registered, (std::vector<std::wstring>{L"Application", L"Application", L"System"}));
    EXPECT_TRUE(Debug.Has(L"EvtNextChannelPath failed with 8.\n"));

    Api->FailAlways(Operation::NextChannelPath, 8);
    EXPECT_FALSE(Connect(L"TESTPC")) << "an enumeration that fails for ever ends, and brings nothing";
    EXPECT_TRUE(Registered.empty());
    Api->StopFailing();
}

TEST_F(Sessions, AComputerIsReachableWhenItsApplicationLogAnswers) {
    ASSERT_TRUE(Files.AddLog(L"OPEN", L"Application", NumberedEvents(1)));
    ASSERT_TRUE(Files.AddLog(L"BARE", L"System", NumberedEvents(1)));
    const LogMachinery& logic = Start();
    EventLogReachability reachability(*Api, Debug);
    const std::size_t handles = Api->OpenHandles();
    EXPECT_TRUE(reachability.IsReachable(L"OPEN"));
    EXPECT_EQ(Api->Sessions.back().Server, L"OPEN");
    EXPECT_EQ(Api->Sessions.back().User, std::nullopt);
    const std::size_t lines = Debug.Lines.size();
    const auto failsWith = [&](const std::wstring& computer, const std::wstring& code) {
        EXPECT_FALSE(reachability.IsReachable(computer));
        EXPECT_EQ(Debug.Lines.back(), L"Failed to connect to remote computer. Error code is " + code + L".\n");
    };
    failsWith(L"NOWHERE", L"1722");
    failsWith(L"REMOTE", L"1326");
    failsWith(L"BARE", L"15007");
    EXPECT_EQ(Debug.Lines.size(), lines + 3);
    EXPECT_EQ(Api->OpenHandles(), handles);
    EXPECT_EQ(logic.Session.OpenError(), error::Success) << "the current session has not failed";
    EXPECT_TRUE(Boxes.Errors.empty());
}

// Refuses a session after a look at the login record.
class LoginWatcher final : public RefusingEventLog {
  public:
    EVT_HANDLE EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD, DWORD) override {
        EXPECT_EQ(loginClass, EvtRpcLogin);
        Password = static_cast<const EVT_RPC_LOGIN*>(login)->Password;
        LastError = 1722;
        return nullptr;
    }

    std::wstring Password;
};

TEST(SessionLogin, FailedLoginIsReportedWithTheCodeOfTheOpening) {
    LoginWatcher api;
    LogSurroundings around;
    LogMachinery logic(api, around);
    EXPECT_EQ(logic.Session.OpenComputerSession(L"PC", Credentials{L"user", L"password"}), nullptr);
    EXPECT_EQ(api.Password, L"password");
    ASSERT_EQ(around.Boxes.Errors.size(), 1U);
    EXPECT_EQ(around.Boxes.Errors[0].Text, L"Error: 0x6ba");
}

TEST_F(Sessions, ConfigurationIsReadUntilTheFirstFailure) {
    ASSERT_TRUE(Files.AddLog(L"localhost", L"Contoso/Main", NumberedEvents(1)));
    ASSERT_TRUE(Files.SetChannelsIni(L"localhost", "[Contoso/Main]\nEnabled=false\n"));
    LogMachinery& logic = Start();
    EvtHandle config(*Api, Api->EvtOpenChannelConfig(logic.Session.CurrentSession(), L"Application", 0));
    ChannelConfig snapshot;
    const std::size_t before = Api->Calls(Operation::GetChannelConfigProperty);
    EXPECT_EQ(ReadChannelConfig(*Api, Debug, config.Get(), snapshot), 0U);
    EXPECT_TRUE(snapshot.Enabled);
    EXPECT_GT(snapshot.MaxSizeKB, 0);
    EXPECT_NE(snapshot.LogFilePath.find(L"Application.evtx"), std::wstring::npos);
    EXPECT_GE(Api->Calls(Operation::GetChannelConfigProperty) - before, 21U);

    // The sixth call at the latest asks for one of the properties before the size and the path.
    Api->FailCall(Operation::GetChannelConfigProperty, Api->Calls(Operation::GetChannelConfigProperty) + 6, 5);
    EXPECT_EQ(ReadChannelConfig(*Api, Debug, config.Get(), snapshot), 5U);
    EXPECT_EQ(snapshot.LogFilePath, L"N/A");
    EXPECT_EQ(snapshot.MaxSizeKB, -1);
    EXPECT_TRUE(Debug.Has(L"EvtGetChannelConfigProperty failed with 5\n"));
    EXPECT_EQ(logic.Tree.FindByPath(L"Application and Service Logs/Contoso/Main"), NodeId::None)
        << "a disabled channel is not in the tree";
}

}  // namespace
}  // namespace corvina::test
