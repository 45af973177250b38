// What the login side tells the library's hidden window about the user's login.
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

}  // namespace qlx99
