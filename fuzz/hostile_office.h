// The office that the exports find while they are fuzzed: a configuration without terminators, a
// record manager that answers anything, records of any bytes, a user who does anything at a dialog,
// and in the delegated kind a login server that answers anything.
#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <span>
#include <string>

#include "frame/attach.h"
#include "frame/login_window.h"
#include "frame/registry.h"
#include "fuzz/input.h"
#include "platform/registry_file.h"
#include "platform/screen.h"
#include "platform/windows_api.h"
#include "record_files.h"
#include "testkit/found_export.h"
#include "testkit/process.h"
#include "testkit/scripted_manager/handler.h"

namespace fuzz {

namespace fs = std::filesystem;

// The record manager: a library beside this program that hands its calls to us.
class Manager {
 public:
  explicit Manager(Input& input) : input_(input) { SetHandler()(&Manager::Handle, this); }
  ~Manager() { SetHandler()(nullptr, nullptr); }
  Manager(const Manager&) = delete;
  Manager& operator=(const Manager&) = delete;

  std::size_t OpenFileCount() const { return open_; }

 private:
  static testkit::SetHandlerFunction* SetHandler() {
    static testkit::SetHandlerFunction* const function =
        testkit::FoundExport(LoadLibraryA(qlx99::kRecordManagerNames[0]), "SetHandler");
    return function;
  }

  static int Handle(void* self, const btrieve::Arguments& its) {
    if (its.keyLength != btrieve::kMaxKeyLength) Found("another key length");
    return static_cast<Manager*>(self)->Answer(
        its.operation, static_cast<char*>(its.positionBlock),
        {static_cast<char*>(its.dataBuffer), static_cast<std::uint16_t>(*its.dataLength)},
        *its.dataLength, static_cast<char*>(its.keyBuffer));
  }

  int Answer(WORD operation, char* block, std::span<char> data, ULONG& length, char* key) {
    constexpr char kOpenMark = 'o';
    const int status = Status();
    if (operation == btrieve::kOpen) {
      if (status == btrieve::kSuccess) {
        *block = kOpenMark;
        ++open_;
      }
      return status;
    }
    if (*block != kOpenMark) Found("a call on a file that is not open");
    if (operation == btrieve::kClose && status != btrieve::kRecordInUse) {
      *block = 'c';
      --open_;
    }
    if (status == btrieve::kSuccess && operation >= btrieve::kGetEqual) Give(data, length, key);
    return status;
  }

  int Status() {
    constexpr int kStatuses[] = {2, 3, 4, 8, 9, 22, 80, 84, 94, -1, 32767};
    if (input_.IsSpent()) return calls_++ < 40 ? btrieve::kSuccess : btrieve::kEndOfFile;
    return input_.OneIn(10) ? kStatuses[input_.Choice(std::size(kStatuses))] : btrieve::kSuccess;
  }

  // A record, most often with the key that was asked for, and any length.
  void Give(std::span<char> data, ULONG& length, const char* key) {
    const std::size_t run = input_.Choice(256);
    std::fill(data.begin(), data.end(), static_cast<char>(input_.Byte()));
    const std::string bytes = input_.Bytes(run);
    std::copy_n(bytes.begin(), std::min(bytes.size(), data.size()), data.begin());
    if (!input_.OneIn(4) && data.size() >= 8) {
      std::copy_n(key, 4, data.begin());
      std::copy_n(key, 4, data.begin() + 4);
    }
    if (input_.OneIn(8)) length = input_.Word();
  }

  Input& input_;
  std::size_t open_ = 0;
  int calls_ = 0;
};

// The user: does what the input says, and at last gives up.
class User final : public platform::Screen {
 public:
  explicit User(Input& input) : input_(input) { platform::SetScreen(this); }
  ~User() override { platform::SetScreen(nullptr); }
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  int ShowMessage(const platform::MessageBoxView& message) override {
    if (message.text.empty()) Found("an empty message");
    return IDOK;
  }

  void ShowDialog(platform::Dialog& dialog) override {
    while (dialog.IsOpen() && !input_.IsSpent()) {
      const auto& control = dialog.Controls()[input_.Choice(dialog.Controls().size())];
      const int index = input_.Byte() - 128;
      switch (input_.Choice(4)) {
        case 0:
          dialog.Select(control.id, index);
          break;
        case 1:
          dialog.DoubleClick(control.id, index);
          break;
        case 2:
          dialog.Press(control.id);
          break;
        default:
          dialog.Cancel();
      }
    }
    if (dialog.IsOpen()) dialog.Cancel();
  }

 private:
  Input& input_;
};

// The configuration, in a registration file of this process's own, and what lies below the mapping
// root.
class Configuration {
 public:
  Configuration() {
    const fs::path programs = root_.Path() / "bin32";
    fs::create_directories(programs);
    testkit::WriteAll(programs / "telq32.exe", "no program");
    fs::copy(testkit::ProgramFolder() / testkit::LibraryFile("qlx02"), programs);
    // For good: the fuzzer's counters lie in it.
    LoadLibraryA((programs / "qlx02.dll").c_str());
    Take({});
  }

  // What the input makes of it, most often nothing; then what it was before.
  void Change(Input& input) {
    if (changed_) Take({});
    changed_ = input.OneIn(8);
    if (!changed_) return;
    constexpr const char* kNames[] = {"DocuRoot", "DataRoot", "MappingRoot", "ProgramName"};
    std::string bytes = input.Text();
    std::replace(bytes.begin(), bytes.end(), '"', '_');  // no path has any
    if (input.OneIn(4)) bytes += std::string(300, 'x');
    Take({kNames[input.Choice(std::size(kNames))], bytes}, input.OneIn(2));
  }

 private:
  // And attaches the library, which looks for the kind of installation then.
  void Take(const platform::RegistryValue& change, bool delegated = false) const {
    platform::RegistryFile registry;
    const auto set = [&](const platform::RegistryValue& value) {
      const bool maps = value.name == qlx99::kMappingRoot.name;
      const char* key = maps ? qlx99::kMappingKey : qlx99::kOptionsKey;
      registry.Set(std::string("HKEY_LOCAL_MACHINE\\") + key, value);
    };
    for (const char* name : {"DataRoot", "DocuRoot", "ProgramRoot"}) {
      set({name, std::string("C:\\Akten") + '\0'});
    }
    set({"MappingRoot", root_.Text() + '\0'});
    if (delegated) set({"ProgramName", std::string("telq32.exe") + '\0'});
    if (!change.name.empty()) set(change);
    testkit::WriteAll(registry_.Folder() / "office.reg", registry.Format());
    qlx99::DetachLibrary(qlx99::Detachment::kFreed);
    qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  }

  testkit::PrivateRegistry registry_;
  testkit::TemporaryFolder root_;
  bool changed_ = false;
};

// The login server of the delegated kind, and the user at the login mask. Both do what the input
// says, and at last the mask is closed.
class LoginServer {
 public:
  explicit LoginServer(Input& input) {
    current = &input;
    qlx99::CreateLoginWindow();
    if (input.OneIn(4)) {
      Report(qlx99::LoginState::kCancelled);
      return;
    }
    WNDCLASSA its{};
    its.lpfnWndProc = Answer;
    its.hInstance = GetModuleHandleA(nullptr);
    its.lpszClassName = kName;
    RegisterClassA(&its);
    window_ = CreateWindowExA(0, kName, "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, its.hInstance,
                              nullptr);
  }
  ~LoginServer() {
    if (window_ != nullptr) DestroyWindow(window_);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    std::filesystem::current_path(folder_);  // out of the sibling library's
  }
  LoginServer(const LoginServer&) = delete;
  LoginServer& operator=(const LoginServer&) = delete;

 private:
  static constexpr const char* kName = "KRVLOGSRV32";

  static void Report(qlx99::LoginState state) {
    PostMessageA(FindWindowA("KrvQLX", nullptr), RegisterWindowMessageA("WM_KRV_LOGINMASK"),
                 static_cast<WPARAM>(state), 0);
  }

  static void UseMask() {
    if (current->OneIn(4)) Report(static_cast<qlx99::LoginState>(current->Byte()));
    Report(current->OneIn(2) ? qlx99::LoginState::kCancelled : qlx99::LoginState::kLoggedIn);
  }

  static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wordParam, LPARAM longParam) {
    constexpr UINT kFirstRegistered = 0xC000;
    constexpr LRESULT kAnswers[] = {8, 1, 0, 3};  // the first is the product that it should be
    if (message < kFirstRegistered) return DefWindowProcA(window, message, wordParam, longParam);
    // Who is not logged in yet is waited for.
    if (message == RegisterWindowMessageA("WM_ISLOGGEDIN") || current->OneIn(4)) UseMask();
    if (current->IsSpent()) Report(qlx99::LoginState::kCancelled);
    return kAnswers[current->Choice(std::size(kAnswers))];
  }

  static inline Input* current = nullptr;
  HWND window_ = nullptr;
  std::filesystem::path folder_ = std::filesystem::current_path();
};

}  // namespace fuzz
