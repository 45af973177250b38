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

// Removes trailing blanks, as EndField does, from a text that goes elsewhere than into a field of
// its own.
std::string_view TrimBlanks(std::string_view text);

// The memory in which a record is composed, about twice what may be handed over.
inline constexpr std::size_t kScratchSize = 2000;

// A line being composed. Each Add... appends one field, "|" included, behind what is there; what
// Append adds has no "|" of its own. Only whole bytes that fit are written, never beyond the line's
// own memory.
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

// The length of the caller's buffer, the bytes of which the record and its end mark may take all.
inline constexpr std::size_t kCallerBufferSize = QLX99_RECORD_SIZE;

enum class HandOverForm : std::uint8_t {
  kRecordOnly,   // nothing behind the record is written, not even a terminator
  kWithEndMark,  // the record, five zero bytes and a byte of value 1
};

// Copies the record into the caller's buffer and returns the export's result: -1, or 0 when the
// buffer then begins with two empty fields. A record that is too long shows a message; then, and
// for a null buffer, nothing is written and the result is 0.
std::int32_t HandOver(const ResultLine& record, char* buffer, HandOverForm form);

}  // namespace qlx99
