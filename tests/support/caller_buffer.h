// The memory that a macro hands over. The buffer has 1024 blanks and not one byte more, so
// that the sanitizers see an overrun.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/text.h"

namespace qlx99::tests {

class CallerBuffer {
 public:
  explicit CallerBuffer(std::size_t size = 1024) : size_(size), bytes_(new char[size]) {
    std::fill_n(bytes_.get(), size, ' ');
  }

  // For an argument of an export.
  operator char*() { return bytes_.get(); }  // NOLINT(google-explicit-constructor)

  std::string_view Bytes() const { return {bytes_.get(), size_}; }

  // What a reader takes for the record: all before the first zero byte or, without one, before the
  // blanks at the end.
  std::string_view Record() const {
    const std::string_view bytes = Bytes();
    const std::size_t zero = bytes.find('\0');
    return bytes.substr(0, zero != std::string_view::npos ? zero : bytes.find_last_not_of(' ') + 1);
  }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> bytes_;
};

// A copy of the text without a terminator, which stays. Sanitizers see what is read behind it.
inline const char* Unterminated(const std::string& text) {
  static std::vector<std::unique_ptr<char[]>> kept;
  kept.emplace_back(new char[text.size()]);
  text.copy(kept.back().get(), text.size());
  return kept.back().get();
}

inline const std::string kTerminator(1, '\0');
inline const std::string kEndMark = std::string(5, '\0') + '\1';

// An export's result and all that it left in its caller's buffer, as one text in UTF-8:
//
//   "-1 Meier|MEI|17"       the record and nothing behind it
//   "-1 4711|25|0|815<0>"   the record and a terminator
//   "0 ||<end>"             the record and an end mark
//   "-1 "                   the buffer as it was
inline std::string OutcomeText(std::int32_t result, const CallerBuffer& buffer) {
  const std::string_view record = buffer.Record();
  std::string_view rest = buffer.Bytes().substr(record.size());
  rest = rest.substr(0, rest.find_last_not_of(' ') + 1);
  std::string tail = rest.empty() ? "" : "<rubbish>";
  if (rest == kTerminator) tail = "<0>";
  if (rest == kEndMark) tail = "<end>";
  return std::to_string(result) + ' ' + Utf8(record) + tail;
}

// The outcome of a call with a fresh buffer.
std::string OutcomeOf(const auto& call) {
  CallerBuffer buffer;
  const std::int32_t result = call(static_cast<char*>(buffer));
  return OutcomeText(result, buffer);
}

}  // namespace qlx99::tests
