#include "platform/list_box.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

std::string Upper(std::string text) {
  CharUpperBuffA(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

LRESULT TextLength(const std::string& text) { return static_cast<LRESULT>(text.size()); }

}  // namespace

ListBox::Entry* ListBox::EntryAt(WPARAM index) {
  return index < lines_.size() ? &lines_[index] : nullptr;
}

bool ListBox::Select(int index) {
  if (index < -1 || index >= Count()) return false;
  selected_ = index;
  return true;
}

LRESULT ListBox::Add(const char* text) {
  Entry entry{text == nullptr ? "" : text, 0};
  auto place = lines_.end();
  if ((style_ & LBS_SORT) != 0) {
    place = std::upper_bound(
        lines_.begin(), lines_.end(), entry,
        [](const Entry& a, const Entry& b) { return Upper(a.text) < Upper(b.text); });
  }
  const auto index = static_cast<int>(place - lines_.begin());
  lines_.insert(place, std::move(entry));
  selected_ += selected_ >= index ? 1 : 0;
  return index;
}

LRESULT ListBox::CopyText(const Entry* entry, LPARAM buffer) const {
  if (entry == nullptr || buffer == 0) return LB_ERR;
  std::memcpy(reinterpret_cast<char*>(buffer), entry->text.c_str(), entry->text.size() + 1);
  return TextLength(entry->text);
}

LRESULT ListBox::SetTabStops(WPARAM count, LPARAM stops) {
  if ((style_ & LBS_USETABSTOPS) == 0 || (count != 0 && stops == 0)) return FALSE;
  const auto* first = reinterpret_cast<const int*>(stops);
  tabStops_.assign(first, first + count);
  return TRUE;
}

std::optional<LRESULT> ListBox::Receive(UINT message, WPARAM wordParam, LPARAM longParam) {
  Entry* entry = EntryAt(wordParam);
  switch (message) {
    case LB_ADDSTRING:
      return Add(reinterpret_cast<const char*>(longParam));
    case LB_SETCURSEL:
      return Select(static_cast<int>(wordParam)) ? selected_ : LB_ERR;
    case LB_GETCURSEL:
      return selected_;
    case LB_GETTEXT:
      return CopyText(entry, longParam);
    case LB_GETTEXTLEN:
      return entry == nullptr ? LB_ERR : TextLength(entry->text);
    case LB_GETCOUNT:
      return Count();
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
