#include "platform/dialog.h"

#include <algorithm>

#include "platform/desktop.h"
#include "platform/recoding.h"
#include "platform/screen.h"
#include "platform/unsupported.h"

namespace platform {

namespace {

constexpr auto kList = u"LISTBOX";

// The dialogs that exist, each opened by the one before it.
std::vector<Dialog*>& Existing() {
  static auto& existing = *new std::vector<Dialog*>;
  return existing;
}

}  // namespace

Dialog::Dialog(const DialogTemplate& form, DLGPROC procedure)
    : title_(AnsiText(form.title.c_str())), procedure_(procedure) {
  for (const ControlTemplate& control : form.controls) {
    controls_.push_back(
        {control.id, control.windowClass, AnsiText(control.text.c_str()), control.style});
  }
  Existing().push_back(this);
}

Dialog::~Dialog() { std::erase(Existing(), this); }

HWND Dialog::Handle() { return reinterpret_cast<HWND>(this); }

INT_PTR Dialog::Run(LPARAM parameter, Screen& screen) {
  procedure_(Handle(), WM_INITDIALOG, 0, parameter);
  if (Hears()) screen.ShowDialog(*this);
  if (!ended_) Unsupported("DialogBoxParamW", "a dialog that its screen leaves open");
  procedure_(Handle(), WM_DESTROY, 0, 0);
  return result_;
}

void Dialog::End(INT_PTR result) {
  ended_ = true;
  result_ = result;
}

Control* Dialog::FindControl(int id) {
  const auto found = std::ranges::find(controls_, id, &Control::id);
  return found == controls_.end() ? nullptr : &*found;
}

void Dialog::Notify(int id, WORD code) {
  procedure_(Handle(), WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), code),
             reinterpret_cast<LPARAM>(FindControl(id)));
}

// Dispatches the pending messages, which come before a person's next action. Returns false when the
// dialog has ended, also by a WM_QUIT among them.
bool Dialog::Hears() {
  if (!ended_ && !DispatchInModalLoop()) ended_ = true;
  return !ended_;
}

bool Dialog::CanBeUsed(int id, const char16_t* windowClass) {
  const Control* control = FindControl(id);
  return Hears() && control != nullptr && control->windowClass == windowClass &&
         control->IsVisible();
}

bool Dialog::Select(int listId, int index) {
  Control* list = FindControl(listId);
  if (!CanBeUsed(listId, kList) || !list->HasLine(static_cast<WPARAM>(index))) return false;
  list->selected = index;
  if ((list->style & LBS_NOTIFY) != 0) Notify(listId, LBN_SELCHANGE);
  return true;
}

bool Dialog::DoubleClick(int listId, int index) {
  if (!Select(listId, index)) return false;
  if (IsOpen() && (FindControl(listId)->style & LBS_NOTIFY) != 0) Notify(listId, LBN_DBLCLK);
  return true;
}

bool Dialog::Press(int buttonId) {
  if (!CanBeUsed(buttonId, u"BUTTON")) return false;
  Notify(buttonId, BN_CLICKED);
  return true;
}

void Dialog::Cancel() {
  if (Hears()) Notify(IDCANCEL, BN_CLICKED);
}

Dialog* DialogOf(HWND window) {
  const auto found = std::ranges::find(Existing(), window, &Dialog::Handle);
  return found == Existing().end() ? nullptr : *found;
}

}  // namespace platform
