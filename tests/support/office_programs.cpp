#include "support/office_programs.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <utility>

#include "support/library.h"
#include "support/office_programs/program.h"
#include "support/world.h"

namespace qlx99::tests {
namespace {

constexpr struct {
  const char* name;
  const char* file;
} kPrograms[] = {{kLoginServer, "krvlogsrv32.exe"}, {kInquiryProgram, "telq32.exe"}};

OfficePrograms* listener = nullptr;
std::map<HWND, std::string> directors;  // the program whose questions come to the window

// Empty for messages that the office does not know.
std::string NameOf(UINT message) {
  for (const char* name : {"WM_ISLOGGEDIN", "WM_GETCURRENTPRODUCTID", "WM_CHANGELOGIN",
                           "WM_ISENDLOGIN", "WM_KRV_SHOWWINDOW"}) {
    if (message == RegisterWindowMessageA(name)) return name;
  }
  return message == RegisterWindowMessageA(kStartedMessage) ? "started" : "";
}

LRESULT CALLBACK Direct(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
  const std::string name = NameOf(message);
  if (name.empty()) return DefWindowProcA(window, message, wordParam, longParam);
  std::string what = directors[window] + ": " + name;
  if (wordParam != 0 || longParam != 0) {
    what += " " + std::to_string(wordParam) + " " + std::to_string(longParam);
  }
  return listener->Hear(what);
}

void CreateDirectors() {
  HINSTANCE program = GetModuleHandleA(nullptr);
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Direct;
  windowClass.hInstance = program;
  windowClass.lpszClassName = kDirectorClass;
  RegisterClassA(&windowClass);  // which stays for the next test
  for (const auto& [name, file] : kPrograms) {
    directors[CreateWindowExA(0, kDirectorClass, name, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                              program, nullptr)] = name;
  }
}

void DispatchUntil(const std::function<bool()>& done, const std::string& what) {
  using Clock = std::chrono::steady_clock;
  const auto limit = Clock::now() + std::chrono::seconds(10);
  while (!done() && Clock::now() < limit) {
    MSG message{};
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 1, QS_ALLINPUT);
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
  }
  EXPECT_TRUE(done()) << what;
}

}  // namespace

OfficePrograms::OfficePrograms(Office& office) : bin32_(office.Folder() / "net drive" / "bin32") {
  listener = this;
  CreateDirectors();
  fs::create_directories(bin32_);
  for (const std::string& file : {std::string("telq32.exe"), world::LibraryFile("qlx02")}) {
    fs::copy(world::ProgramFolder() / file, bin32_ / file);
  }
  office.IsConfigured("ProgramName", "telq32.exe");
  office.IsConfigured("MappingRoot", bin32_.parent_path().string());
}

OfficePrograms::~OfficePrograms() {
  // A program's file cannot be removed before the program has really ended.
  std::error_code error;
  DispatchUntil([&] { return fs::remove(bin32_ / "telq32.exe", error) || !error; }, "telq32 runs");
  for (const auto& [director, program] : std::exchange(directors, {})) DestroyWindow(director);
}

void OfficePrograms::Start(const std::string& program) {
  const fs::path file = program == kInquiryProgram ? bin32_ / "telq32.exe"
                                                   : world::ProgramFolder() / "krvlogsrv32.exe";
  expected_.push_front({program + ": started 5 0"});
  const std::size_t rest = expected_.size() - 1;
  EXPECT_GT(WinExec(("\"" + file.string() + "\"").c_str(), SW_SHOW), 31U) << file;
  DispatchUntil([&] { return expected_.size() == rest; }, program + " does not start");
}

void OfficePrograms::WillHear(std::deque<Heard> messages) {
  AwaitExpected();
  expected_ = std::move(messages);
}

void OfficePrograms::End() {
  AwaitExpected();
  for (const auto& program : kPrograms) {
    if (HWND window = FindWindowA(program.name, nullptr); window != nullptr) {
      PostMessageA(window, WM_CLOSE, 0, 0);
    }
    // Where it runs within this process, it leaves that, too.
    const auto hasEnded = [&program] {
      return FindWindowA(program.name, nullptr) == nullptr &&
             GetModuleHandleA(program.file) == nullptr;
    };
    DispatchUntil(hasEnded, program.file);
  }
}

void OfficePrograms::AwaitExpected() {
  DispatchUntil([&] { return expected_.empty(); },
                expected_.empty() ? "" : "nobody hears " + expected_.front().what);
  expected_.clear();
}

void OfficePrograms::LoginMaskReports(int state) {
  PostMessageA(FindWindowA("KrvQLX", nullptr), RegisterWindowMessageA("WM_KRV_LOGINMASK"),
               static_cast<WPARAM>(state), 0);
}

DelegateCall OfficePrograms::LastDelegateCall() {
  HMODULE library = GetModuleHandleA("qlx02.dll");
  if (library == nullptr) return {};
  LastCallFunction* lastCall = FoundExport(library, "LastCall");
  return *lastCall();
}

LRESULT OfficePrograms::Hear(const std::string& what) {
  if (expected_.empty() || expected_.front().what != what) {
    ADD_FAILURE() << "heard " << what << ", not "
                  << (expected_.empty() ? "nothing" : expected_.front().what);
    LoginMaskReports(2);
    return 0;
  }
  const Heard heard = std::move(expected_.front());
  expected_.pop_front();
  heard.deed();
  return heard.answer;
}

}  // namespace qlx99::tests
