#include "support/office_programs.h"

#include <array>
#include <utility>

#include "testkit/found_export.h"
#include "testkit/process.h"

namespace qlx99::tests {
namespace {

// The window that hears of programs that are started (telq32.cpp).
constexpr const char* kDesk = "qlx99 tests";

OfficePrograms* office = nullptr;

// Empty for messages that the office does not know.
std::string NameOf(UINT message) {
  for (const char* name : {"WM_ISLOGGEDIN", "WM_GETCURRENTPRODUCTID", "WM_CHANGELOGIN",
                           "WM_ISENDLOGIN", "WM_KRV_SHOWWINDOW", "started"}) {
    if (message == RegisterWindowMessageA(name)) return name;
  }
  return "";
}

}  // namespace

LRESULT CALLBACK OfficePrograms::Answer(HWND window, UINT message, WPARAM wordParam,
                                        LPARAM longParam) {
  const std::string name = NameOf(message);
  if (name.empty()) return DefWindowProcA(window, message, wordParam, longParam);
  if (name == "started") office->Start(kInquiryProgram);
  std::string what = window == FindWindowA(kLoginServer, nullptr) ? kLoginServer : kInquiryProgram;
  what += ": " + name;
  if (wordParam != 0 || longParam != 0) {
    what += " " + std::to_string(wordParam) + " " + std::to_string(longParam);
  }
  return office->Hear(what);
}

OfficePrograms::OfficePrograms(Office& its) : bin32_(its.Folder() / "net drive" / "bin32") {
  office = this;
  Start(kDesk);
  fs::create_directories(bin32_);
  for (const std::string& file : {std::string("telq32.exe"), LibraryFile("qlx02")}) {
    fs::copy(ProgramFolder() / file, bin32_ / file);
  }
  its.IsConfigured("ProgramName", "telq32.exe");
  its.IsConfigured("MappingRoot", bin32_.parent_path().string());
}

OfficePrograms::~OfficePrograms() {
  End();
  DestroyWindow(windows_.front());
}

void OfficePrograms::Start(const std::string& program) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Answer;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = program.c_str();
  RegisterClassA(&windowClass);  // which stays for the next test
  windows_.push_back(CreateWindowExA(0, program.c_str(), "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                     windowClass.hInstance, nullptr));
}

void OfficePrograms::WillHear(std::deque<Heard> messages) {
  DispatchAsTheHost();
  EXPECT_TRUE(expected_.empty()) << "nobody hears " << expected_.front().what;
  expected_ = std::move(messages);
}

void OfficePrograms::End() {
  WillHear({});
  for (; windows_.size() > 1; windows_.pop_back()) DestroyWindow(windows_.back());
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
