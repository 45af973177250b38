// How does the library know that the user may see the office's data? It asks the login server, a
// window of another program, by messages that all programs of the office register under the same
// names. The steps are numbered, because their order is what the other programs rely on.
#include "frame/login_handshake.h"

#include "frame/host_messages.h"
#include "frame/login_window.h"
#include "frame/messages.h"
#include "frame/sibling_library.h"

namespace qlx99 {
namespace {

constexpr LRESULT kNotKnownYet = 0;     // under which product the login was made
constexpr LRESULT kCaseManagement = 8;  // the product that this library belongs to

HWND FindLoginServer() { return FindWindowA("KRVLOGSRV32", nullptr); }

class LoginHandshake {
 public:
  bool Run();

 private:
  bool ReadMappingRoot();
  void LookAtCurrentLogin();
  bool WaitForLogin();
  bool WaitForEndOfLogin();
  bool Conclude(bool loggedIn);

  void AskToChangeLogin();
  void StartInquiryProgram() const;
  LRESULT AskServer(const char* message) const;

  MappingRoot mappingRoot_{};
  HWND server_ = nullptr;  // as it was last found
  bool loggedIn_ = false;
  LRESULT product_ = kNotKnownYet;
  bool changeRequested_ = false;
};

bool LoginHandshake::Run() {
  SetLoginState(LoginState::kNoAnswer);             // 1
  if (!ReadMappingRoot()) return Conclude(false);   // 2
  CreateLoginWindow();                              // 3
  LookAtCurrentLogin();                             // 4 to 7
  if (!ReadMappingRoot()) return Conclude(false);   // 8
  DispatchHostMessages();                           // 9
  if (!loggedIn_ && !WaitForLogin()) return false;  // 10 to 15
  if (!WaitForEndOfLogin()) return false;           // 16
  LoadSiblingLibrary(mappingRoot_);                 // 17
  return Conclude(true);                            // 18 and 19
}

bool LoginHandshake::ReadMappingRoot() {
  const auto root = ReadConfiguration<kMappingRoot>();
  if (root) mappingRoot_ = *root;
  return root.has_value();
}

void LoginHandshake::LookAtCurrentLogin() {
  server_ = FindLoginServer();  // 4
  if (server_ == nullptr) return;
  if (AskServer("WM_ISLOGGEDIN") == 0) return;                                   // 5
  if (_access(PathBelow(mappingRoot_, kInquiryProgram).data(), 0) != 0) return;  // 6
  product_ = AskServer("WM_GETCURRENTPRODUCTID");                                // 7
  loggedIn_ = product_ == kCaseManagement;
  if (loggedIn_) {
    SetLoginState(LoginState::kLoggedIn);
  } else {
    AskToChangeLogin();
  }
}

// True when the user has logged in, false when the login mask was closed without a login, or the
// host was closed and nobody waits any more.
bool LoginHandshake::WaitForLogin() {
  if (!changeRequested_) StartInquiryProgram();  // 11
  for (;; AwaitHostMessage()) {
    DispatchHostMessages();  // 12
    if (LoginWindowHasGone()) return false;
    if (changeRequested_) AskServer("WM_CHANGELOGIN");                // 13
    if (CurrentLoginState() == LoginState::kCancelled) return false;  // 14
    if (CurrentLoginState() != LoginState::kLoggedIn) continue;
    server_ = FindLoginServer();  // 15
    product_ = AskServer("WM_GETCURRENTPRODUCTID");
    if (product_ == kCaseManagement) return true;
    if (product_ == kNotKnownYet) continue;
    SetLoginState(LoginState::kNoAnswer);
    AskToChangeLogin();
  }
}

// The user is logged in, but the login procedure may still be running. A mask that reports now that
// it was closed without a login refuses the call, and so does a host that is closed. Everything
// else is waited for, also a server that is gone: it does not answer.
bool LoginHandshake::WaitForEndOfLogin() {
  for (;; AwaitHostMessage(), DispatchHostMessages()) {
    const bool ended = AskServer("WM_ISENDLOGIN") != 0;
    if (CurrentLoginState() == LoginState::kCancelled || LoginWindowHasGone()) return false;
    if (ended && product_ == kCaseManagement && CurrentLoginState() == LoginState::kLoggedIn)
      return true;
  }
}

// The inquiry program, which came to the front for the login, gives the screen back.
bool LoginHandshake::Conclude(bool loggedIn) {
  HWND inquiryProgram = FindWindowA("TELQBASE", nullptr);
  if (inquiryProgram != nullptr) {
    PostMessageA(inquiryProgram, RegisterWindowMessageA("WM_KRV_SHOWWINDOW"), 0, SW_MINIMIZE);
  }
  return loggedIn;
}

void LoginHandshake::AskToChangeLogin() {
  ShowMessage(kLoggedInElsewhere);
  changeRequested_ = true;
}

void LoginHandshake::StartInquiryProgram() const {
  WinExec(PathBelow(mappingRoot_, kInquiryCommand).data(), SW_SHOW);
}

// 0 when there is no server (any more).
LRESULT LoginHandshake::AskServer(const char* message) const {
  return SendMessageA(server_, RegisterWindowMessageA(message), 0, 0);
}

}  // namespace

bool ConfirmLogin() { return LoginHandshake().Run(); }

}  // namespace qlx99
