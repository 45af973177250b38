// The library's hidden window, and what the login side tells it about the user's login.
#pragma once

#include <cstdint>

#include "platform/windows_api.h"

namespace qlx99 {

enum class LoginState : std::int32_t {
  kNoAnswer = -1,  // from the login mask, yet
  kLoggedIn = 1,   // the login mask reports a login
  kCancelled = 2,  // it was closed without one
};

LoginState CurrentLoginState();
void SetLoginState(LoginState state);

// Makes sure that there is the hidden window. A failure is not reported: the handshake then hears
// nothing of the login mask.
void CreateLoginWindow();

// The window was there and has gone, together with its owner: nobody hears the login mask any more.
bool LoginWindowHasGone();

// When the process detaches the library.
void DestroyLoginWindow();

// When it goes on without the library: afterwards nothing in the system refers to the library's
// code, even where the window could not be made, or could not be destroyed by this thread.
void DisownLoginWindow();

}  // namespace qlx99
