// Results: the one line of text in which an export answers, composed field by field and
// handed over by one rule.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "frame/exports.h"
#include "store/text_buffer.h"

namespace qlx99 {

// Ends a field of `width` bytes that was just copied to `dest`: trailing blanks become zero bytes,
// "|" goes behind what is left. Returns the bytes that the field now takes, "|" included.
std::size_t EndField(char* dest, std::size_t width);

// The text without its trailing blanks.
std::string_view TrimBlanks(std::string_view text);

// The memory in which a result is composed, about twice what may be handed over.
inline constexpr std::size_t kScratchSize = 2000;

// A result being composed. Each Add... appends one field and its "|"; Append adds no "|". What does
// not fit is left out.
class ResultLine : public TextBuffer<kScratchSize> {
 public:
  // A stored text at its full width, ended by EndField.
  void AddField(std::string_view stored);

  // The bytes as they stand.
  void AddVerbatim(std::string_view bytes);

  // Signed decimal.
  void AddNumber(std::int32_t number);

  // DD.MM.YYYY, or an empty field for no date.
  void AddDay(std::uint16_t dayNumber);

  void AddEmptyField();

  // Takes back the "|" that was written last, if anything was.
  void DropLastEnd();
};

// The length of the caller's buffer. The result and its end mark may take all of it.
inline constexpr std::size_t kCallerBufferSize = QLX99_RECORD_SIZE;

enum class HandOverForm : std::uint8_t {
  kLineOnly,     // nothing is written behind the line, not even a terminator
  kWithEndMark,  // the line, five zero bytes and a byte of value 1
};

// Copies the line into the caller's buffer and returns what the export returns: -1, or 0 when the
// buffer then begins with two empty fields. A line that is too long shows a message; then, and for
// a null buffer, nothing is written and 0 is returned.
std::int32_t HandOver(const ResultLine& line, char* buffer, HandOverForm form);

}  // namespace qlx99
