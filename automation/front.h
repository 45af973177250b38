// Dialogs and messages of a program that the user never sees otherwise.
//
// Windows lets only the program that the user is in put a window in front, and that is the client.
// So dialogs stand above all other windows, and where the user is in a window of the client, they
// take the keyboard from it and give it back, unless that window does not answer.
#pragma once

#include <map>

#include "platform/windows_api.h"

namespace automation {

class Front {
 public:
  // Once the dialog is on the screen. `client` is the process whose user it is for.
  void Take(HWND dialog, DWORD client);

  // When the dialog goes.
  void Leave(HWND dialog);

 private:
  std::map<HWND, HWND> takenFrom_;  // by dialog: the client's window
};

}  // namespace automation
