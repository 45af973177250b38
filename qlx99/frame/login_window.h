// The library's hidden window, and what the login side tells it about the user's login.
#pragma once

#include <cstdint>

#include "platform/windows_api.h"

namespace qlx99 {

inline constexpr const char* kLoginWindow = "KrvQLX";  // its class and title

enum class LoginState : std::int32_t {
  kNoAnswer = -1,  // the login mask has not reported yet
  kLoggedIn = 1,   // it reports a login
  kCancelled = 2,  // it was closed without a login
};

LoginState CurrentLoginState();
void SetLoginState(LoginState state);

// Creates the hidden window unless there is one. A failure is not reported; nothing is heard from
// the login mask then.
void CreateLoginWindow();

// Whether the window was created and has gone: with its owner, or closed by a host that ends.
// Nothing is heard from the login mask then.
bool LoginWindowHasGone();

// Called when the process detaches the library.
void DestroyLoginWindow();

// Called when the process lives on without the library. Afterwards nothing in Windows refers to the
// library's code, even if the window belongs to another thread or could not be created.
void DisownLoginWindow();

}  // namespace qlx99
