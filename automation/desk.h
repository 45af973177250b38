// The desk at which the library works: the program's main thread, which is like a word processor's.
// It has a message loop and dialogs, and nobody else calls the library.
#pragma once

#include <atomic>
#include <functional>

#include "front.h"
#include "platform/windows_api.h"

namespace automation {

class Desk {
 public:
  // Belongs to the calling thread. There may be one at a time.
  Desk();
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  // Works until the end is called and nothing is under way any more.
  void Serve();

  // From any other thread: does the work at the desk and returns when it is done. While a dialog is
  // open, other work may begin and end. Throws Failure when the end has been called.
  void Do(const std::function<void()>& work) const;

  // From any thread. Open dialogs, and those to come, are closed as if the user had done so, and no
  // login is waited for any more.
  void End() const;

  // The process whose user sees the dialogs.
  void SetClient(DWORD process) { client_ = process; }

 private:
  struct Task;

  static LRESULT CALLBACK Hear(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);
  static LRESULT CALLBACK Watch(int code, WPARAM wordParam, LPARAM longParam);
  static BOOL CALLBACK EndWait(HWND window, LPARAM unused);

  void Work(Task& task);
  void Show(HWND dialog);

  static Desk* desk;  // for the two functions that Windows calls

  HWND window_;
  HHOOK hook_;
  Front front_;
  std::atomic<DWORD> client_ = 0;
  bool ended_ = false;
};

}  // namespace automation
