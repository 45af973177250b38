// The login handshake, which precedes every call in the delegated kind.
#pragma once

namespace qlx99 {

// Confirms with the office's login server that the user is logged in under the case-management
// system, and makes the sibling library ready. Where nobody is logged in yet, it starts the inquiry
// program and waits, without a time limit, until the user has logged in or given up; meanwhile the
// host's messages are dispatched. False means that the call must not be handed on.
bool ConfirmLogin();

}  // namespace qlx99
