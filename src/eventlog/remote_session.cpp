#include "eventlog/remote_session.h"

#include <cstddef>
#include <string>

#include "platform/error_codes.h"

namespace corvina {
namespace {

// Overwrites memory that held a secret; the writes are volatile so that they are not left out as useless.
void Wipe(void* memory, std::size_t bytes) {
    volatile unsigned char* place = static_cast<unsigned char*>(memory);
    while (bytes-- > 0) {
        *place++ = 0;
    }
}

// Zero-terminated copies of the login's texts, which are wiped as soon as they are no longer needed.
struct LoginTexts {
    std::wstring Computer;
    std::wstring User;
    std::wstring Password;

    ~LoginTexts() {
        Wipe(User.data(), User.size() * sizeof(wchar_t));
        Wipe(Password.data(), Password.size() * sizeof(wchar_t));
    }
};

}  // namespace

EvtHandle OpenRemoteSession(EventLogApi& api, std::wstring_view computer, const std::optional<Credentials>& credentials,
                            std::uint32_t& error) {
    LoginTexts texts;
    texts.Computer = computer;
    if (credentials) {
        // Exactly sized at once, so that no growing buffer leaves a copy behind.
        texts.User.assign(credentials->User);
        texts.Password.assign(credentials->Password);
    }
    EVT_RPC_LOGIN login{};
    login.Server = texts.Computer.data();
    login.User = credentials ? texts.User.data() : nullptr;
    login.Password = credentials ? texts.Password.data() : nullptr;
    login.Flags = EvtRpcLoginAuthNegotiate;
    EvtHandle session(api, api.EvtOpenSession(EvtRpcLogin, &login, 0, 0));
    error = session ? error::Success : api.GetLastError();
    Wipe(&login, sizeof login);
    return session;
}

}  // namespace corvina
