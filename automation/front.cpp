#include "front.h"

namespace automation {
namespace {

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process;
}

// Who is given the keyboard, or loses it to a thread that shares its input, is told so and waited
// for: a client whose thread waits for the very call would wait for ever.
bool Answers(HWND window) {
  constexpr UINT kPatience = 200;
  DWORD_PTR ignored = 0;
  return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kPatience, &ignored) != 0;
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
  if (front == nullptr || ProcessOf(front) != client || !Answers(front)) return;
  MoveKeyboard(front, dialog);
  takenFrom_[dialog] = front;
}

void Front::Leave(HWND dialog) {
  const auto taken = takenFrom_.extract(dialog);
  if (!taken.empty() && Answers(taken.mapped())) SetForegroundWindow(taken.mapped());
}

}  // namespace automation
