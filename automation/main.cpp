// qlx99server: the library as an automation object, for programs that cannot load it.
#include <cstdlib>
#include <string>
#include <string_view>

#include "desk.h"
#include "library_class.h"
#include "registration.h"
// Windows' own must come before it.
#include <objbase.h>

namespace automation {
namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kWrongUsage = 2 };

// To whoever started this by hand; the program has no window, and none of its own to write to.
int Say(const std::string& line, ExitCode code) {
  AttachConsole(ATTACH_PARENT_PROCESS);
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written,
            nullptr);
  return code;
}

int SayRegistered(Registered where) {
  switch (where) {
    case Registered::kForAllUsers:
      return Say("qlx99.Library is registered for all users.\r\n", kDone);
    case Registered::kForThisUser:
      return Say(
          "qlx99.Library is registered for this user only: to register it for all, start"
          " this as an administrator.\r\n",
          kDone);
    default:
      return Say("qlx99.Library could not be registered.\r\n", kFailed);
  }
}

int SayUnregistered(bool isRemoved) {
  if (isRemoved) return Say("qlx99.Library is registered no more.\r\n", kDone);
  return Say("qlx99.Library stays registered: start this as an administrator.\r\n", kFailed);
}

// The process ends as it stands: nobody is served any more, and Windows' threads may still be busy
// with a client that is gone.
[[noreturn]] void Serve() {
  SetErrorMode(SEM_FAILCRITICALERRORS);  // a library that is damaged is told to the client alone
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);  // as the word processor's thread is
  Desk desk;
  OfferClass(desk);
  desk.Serve();
  ExitProcess(kDone);
}

int Run(std::string_view option) {
  const auto is = [option](const char* name) {
    const std::string given(option.empty() ? option : option.substr(1));
    return lstrcmpiA(given.c_str(), name) == 0 && (option[0] == '/' || option[0] == '-');
  };
  if (is("Embedding")) Serve();  // Windows starts it so
  if (is("regserver")) return SayRegistered(Register());
  if (is("unregserver")) return SayUnregistered(Unregister());
  return Say("Usage: qlx99server /regserver | /unregserver\r\n", kWrongUsage);
}

}  // namespace
}  // namespace automation

// The line itself may have quotes, and blanks at its end, as shells leave them.
int WINAPI WinMain(HINSTANCE /*program*/, HINSTANCE /*previous*/, LPSTR /*line*/, int /*show*/) {
  return automation::Run(__argc == 2 ? __argv[1] : "");
}
