// The buffer that a macro hands over: 1024 blanks and not one byte more, so that the sanitizers see
// an overrun.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

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

inline void PrintTo(const CallerBuffer& buffer, std::ostream* out) {
  *out << '"' << Utf8(buffer.Record()) << '"';
}

inline const std::string kTerminator(1, '\0');
inline const std::string kEndMark = std::string(5, '\0') + '\1';

// Whether the buffer holds exactly this text (UTF-8), then these bytes, then the caller's blanks.
inline bool HoldsExactly(const CallerBuffer& buffer, std::string_view utf8, std::string_view tail) {
  std::string expected = Ansi(utf8);
  expected += tail;
  if (expected.size() > buffer.Bytes().size()) return false;
  expected.resize(buffer.Bytes().size(), ' ');
  return buffer.Bytes() == expected;
}

// The three forms in which an export leaves its caller's buffer, down to the last byte.
MATCHER_P(HoldsRecordOnly, record, "") { return HoldsExactly(arg, record, ""); }
MATCHER_P(HoldsRecordWithEndMark, record, "") { return HoldsExactly(arg, record, kEndMark); }
MATCHER_P(HoldsTerminated, text, "") { return HoldsExactly(arg, text, kTerminator); }
MATCHER(IsUntouched, "") { return HoldsExactly(arg, "", ""); }

// Behind a record there is nothing, a terminator or an end mark, and then the caller's own bytes.
MATCHER(HasNothingBehindTheRecord, "") {
  const std::string_view rest = arg.Bytes().substr(arg.Record().size());
  const std::string_view tail = rest.substr(0, rest.find_last_not_of(' ') + 1);
  return tail.empty() || tail == kTerminator || tail == kEndMark;
}

}  // namespace qlx99::tests
