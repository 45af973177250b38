#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/windows_api.h"

namespace platform {

// The lines of a list box and what its messages did to them.
class ListBox {
 public:
  // `style`: the control's, of which LBS_SORT and LBS_USETABSTOPS count.
  explicit ListBox(DWORD style) : style_(style) {}

  // Windows' answer to an LB_ message; nothing for a message that this layer does not know.
  std::optional<LRESULT> Receive(UINT message, WPARAM wordParam, LPARAM longParam);

  int Count() const { return static_cast<int>(lines_.size()); }
  const std::string& Line(int index) const {
    return lines_.at(static_cast<std::size_t>(index)).text;
  }
  int Selected() const { return selected_; }                      // -1: no line
  const std::vector<int>& TabStops() const { return tabStops_; }  // in dialog units
  int HorizontalExtent() const { return horizontalExtent_; }      // in pixels

  // False, and nothing changes, when there is no such line; -1 takes the selection away.
  bool Select(int index);

 private:
  struct Entry {
    std::string text;
    LPARAM data;
  };

  Entry* EntryAt(WPARAM index);
  LRESULT Add(const char* text);
  LRESULT CopyText(const Entry* entry, LPARAM buffer) const;
  LRESULT SetTabStops(WPARAM count, LPARAM stops);

  DWORD style_;
  std::vector<Entry> lines_;
  int selected_ = -1;
  std::vector<int> tabStops_;
  int horizontalExtent_ = 0;
};

}  // namespace platform
