#include "frame/screen.h"

#include "frame/arguments.h"
#include "frame/attach.h"
#include "frame/host_messages.h"

namespace qlx99 {
namespace {

constexpr UINT kAnsi = 1252;

const AbsentUser* absentUser = nullptr;

}  // namespace

void SetAbsentUser(const AbsentUser* user) { absentUser = user; }

WideText::WideText(const char* ansi) {
  const std::string_view text = BoundedText(ansi, kLongest);
  MultiByteToWideChar(kAnsi, 0, text.data(), static_cast<int>(text.size()), text_.data(), kLongest);
}

void ShowMessageBox(const char* text, const char* title, UINT style) {
  if (absentUser != nullptr) return absentUser->tell(text, title);
  const HeldQuit untilItIsRead;
  MessageBoxW(nullptr, WideText(text).Get(), WideText(title).Get(), style);
}

void RunDialog(WORD dialog, DLGPROC procedure, LPARAM parameter) {
  if (absentUser != nullptr) return absentUser->miss();
  const HeldQuit untilItIsAnswered;
  DialogBoxParamW(CurrentAttachment().module, MAKEINTRESOURCEW(dialog), nullptr, procedure,
                  parameter);
}

void SetTitle(HWND window, const char* title) { SetWindowTextW(window, WideText(title).Get()); }

void SetControlText(HWND dialog, int id, const char* text) {
  SetDlgItemTextW(dialog, id, WideText(text).Get());
}

LRESULT AddLine(HWND dialog, int list, const char* line) {
  return SendDlgItemMessageW(dialog, list, LB_ADDSTRING, 0, WideText(line).AsParam());
}

void ReadLine(HWND dialog, int list, WPARAM index, char* line, std::size_t size) {
  std::array<WCHAR, WideText::kLongest + 1> wide{};
  SendDlgItemMessageW(dialog, list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(wide.data()));
  const int written = WideCharToMultiByte(kAnsi, WC_NO_BEST_FIT_CHARS, wide.data(), -1, line,
                                          static_cast<int>(size), nullptr, nullptr);
  if (written == 0) *line = '\0';
}

}  // namespace qlx99
