// A list box of a dialog: its lines and what is selected.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/windows_api.h"

namespace platform {

// The lines of a list box and what its messages did to them.
class ListBox {
 public:
  // `style`: the control's, of which LBS_USETABSTOPS counts.
  explicit ListBox(DWORD style) : style_(style) {}

  // Returns the new line's index.
  int Add(std::string line);

  // Windows' answer to an LB_ message without a text; nothing for a message that this layer does
  // not know.
  std::optional<LRESULT> Receive(UINT message, WPARAM wordParam, LPARAM longParam);

  int Count() const { return static_cast<int>(lines_.size()); }
  const std::string& Line(int index) const {
    return lines_.at(static_cast<std::size_t>(index)).text;
  }
  int Selected() const { return selected_; }                  // -1: no line
  int TabStop() const { return tabStop_; }                    // in dialog units; 0: none is set
  int HorizontalExtent() const { return horizontalExtent_; }  // in pixels

  // False, and nothing changes, when there is no such line; -1 takes the selection away.
  bool Select(int index);

 private:
  struct Entry {
    std::string text;
    LPARAM data;
  };

  Entry* EntryAt(WPARAM index);
  LRESULT SetTabStops(WPARAM count, LPARAM stops);

  DWORD style_;
  std::vector<Entry> lines_;
  int selected_ = -1;
  int tabStop_ = 0;
  int horizontalExtent_ = 0;
};

}  // namespace platform
