#include "platform/list_box.h"

#include <utility>

#include "platform/unsupported.h"

namespace platform {

ListBox::Entry* ListBox::EntryAt(WPARAM index) {
  return index < lines_.size() ? &lines_[index] : nullptr;
}

bool ListBox::Select(int index) {
  if (index < -1 || index >= Count()) return false;
  selected_ = index;
  return true;
}

int ListBox::Add(std::string line) {
  lines_.push_back({std::move(line), 0});
  return Count() - 1;
}

LRESULT ListBox::SetTabStops(WPARAM count, LPARAM stops) {
  if ((style_ & LBS_USETABSTOPS) == 0) return FALSE;
  if (count != 1) Unsupported("LB_SETTABSTOPS", "another number of stops than one");
  tabStop_ = *reinterpret_cast<const int*>(stops);
  return TRUE;
}

std::optional<LRESULT> ListBox::Receive(UINT message, WPARAM wordParam, LPARAM longParam) {
  Entry* entry = EntryAt(wordParam);
  switch (message) {
    case LB_SETCURSEL:
      return Select(static_cast<int>(wordParam)) ? selected_ : LB_ERR;
    case LB_GETCURSEL:
      return selected_;
    case LB_SETTABSTOPS:
      return SetTabStops(wordParam, longParam);
    case LB_GETHORIZONTALEXTENT:
      return horizontalExtent_;
    case LB_SETHORIZONTALEXTENT:
      horizontalExtent_ = static_cast<int>(wordParam);
      return 0;
    case LB_GETITEMDATA:
      return entry == nullptr ? LB_ERR : entry->data;
    case LB_SETITEMDATA:
      if (entry == nullptr) return LB_ERR;
      entry->data = longParam;
      return TRUE;
    default:
      return std::nullopt;
  }
}

}  // namespace platform
