#include "store/result_line.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/bytes.h"
#include "frame/messages.h"
#include "store/dates.h"

namespace qlx99 {
namespace {

constexpr std::array<char, 6> kEndMark{0, 0, 0, 0, 0, 1};

// Leaves out blanks at the end eight at a time. Most fields are mostly blank, and some are hundreds
// of bytes wide.
std::string_view WithoutRunsOfBlanks(std::string_view text) {
  constexpr std::string_view kRun = "        ";
  while (text.ends_with(kRun)) text.remove_suffix(kRun.size());
  return text;
}

}  // namespace

std::size_t EndField(char* dest, std::size_t width) {
  while (width > 0 && dest[width - 1] == ' ') dest[--width] = '\0';
  dest[width] = '|';
  return width + 1;
}

std::string_view TrimBlanks(std::string_view text) {
  return Part(text, 0, text.find_last_not_of(' ') + 1);  // no such byte: -1 + 1
}

void ResultLine::AddField(std::string_view stored) {
  if (size_ + stored.size() + 1 > kScratchSize) return;
  const std::string_view text = WithoutRunsOfBlanks(stored);
  char* const dest = bytes_.data() + size_;
  CopyBytes(text, dest, text.size());
  size_ += EndField(dest, text.size());
}

void ResultLine::AddVerbatim(std::string_view bytes) {
  Append(bytes);
  Append("|");
}

void ResultLine::AddNumber(std::int32_t number) {
  AppendNumber(number);
  Append("|");
}

void ResultLine::AddDay(std::uint16_t dayNumber) { AddVerbatim(FormatDay(dayNumber).Bytes()); }

void ResultLine::AddEmptyField() { Append("|"); }

void ResultLine::DropLastEnd() {
  if (size_ > 0) bytes_[--size_] = '\0';
}

std::int32_t HandOver(const ResultLine& line, char* buffer, HandOverForm form) {
  const std::string_view text = line.Text();
  if (text.size() + kEndMark.size() > kCallerBufferSize) {
    ShowMessage(kResultTooLong);
    return 0;
  }
  if (buffer == nullptr) return 0;
  CopyBytes(text, buffer, text.size());
  if (form == HandOverForm::kWithEndMark) {
    std::copy(kEndMark.begin(), kEndMark.end(), buffer + text.size());
  }
  return std::memcmp(buffer, "||", 2) == 0 ? 0 : -1;
}

}  // namespace qlx99
