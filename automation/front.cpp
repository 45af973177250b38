#include "front.h"

namespace automation {
namespace {

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process;
}

// Threads that share their input may pass it on among themselves. Only for as long as that takes:
// one that hangs would hold up the other.
void MoveKeyboard(HWND from, HWND to) {
  const DWORD itsThread = GetWindowThreadProcessId(from, nullptr);
  const BOOL shared = AttachThreadInput(GetCurrentThreadId(), itsThread, TRUE);
  SetForegroundWindow(to);
  if (shared != FALSE) AttachThreadInput(GetCurrentThreadId(), itsThread, FALSE);
}

}  // namespace

void Front::Take(HWND dialog, DWORD client) {
  SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  HWND const front = GetForegroundWindow();
  if (front == nullptr || ProcessOf(front) != client) return;
  MoveKeyboard(front, dialog);
  takenFrom_[dialog] = front;
}

void Front::Leave(HWND dialog) {
  const auto taken = takenFrom_.extract(dialog);
  if (!taken.empty()) SetForegroundWindow(taken.mapped());
}

}  // namespace automation
