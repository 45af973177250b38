#include "platform/recoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/unsupported.h"

namespace platform {

namespace {

// As iconv_open names them.
constexpr auto kUtf16 = "UTF-16LE";

const char* NameOf(Encoding encoding) {
  switch (encoding) {
    case Encoding::kAnsi:
      return "CP1252";
    case Encoding::kOem:
      return "CP850";
    case Encoding::kUtf8:
      return "UTF-8";
  }
  return "";
}

class Converter {
 public:
  Converter(const char* to, const char* from) : iconv_(iconv_open(to, from)) {
    if (iconv_ == reinterpret_cast<iconv_t>(-1)) {
      Unsupported("iconv_open", std::string(from) + " to " + to);
    }
  }
  ~Converter() { iconv_close(iconv_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // Takes what can be converted off the front of `input` and appends the result to `output`.
  void Convert(std::string_view& input, std::string& output) {
    int error = E2BIG;
    while (error == E2BIG) {
      std::array<char, 1024> chunk{};
      auto* source = const_cast<char*>(input.data());  // iconv writes nothing there
      std::size_t sourceLeft = input.size();
      char* target = chunk.data();
      std::size_t targetLeft = chunk.size();
      const bool done =
          iconv(iconv_, &source, &sourceLeft, &target, &targetLeft) != static_cast<std::size_t>(-1);
      error = done ? 0 : errno;
      output.append(chunk.data(), chunk.size() - targetLeft);
      input.remove_prefix(input.size() - sourceLeft);
    }
  }

 private:
  iconv_t iconv_;
};

// `substituteFor(rest)` takes at least one byte off the front of `rest` and returns what stands
// for it.
std::string Recode(const char* to, const char* from, std::string_view input,
                   const auto& substituteFor) {
  Converter converter(to, from);
  std::string output;
  converter.Convert(input, output);
  while (!input.empty()) {
    output += substituteFor(input);
    converter.Convert(input, output);
  }
  return output;
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// A broken UTF-8 sequence counts as one character, however many of its bytes are there.
void SkipBrokenSequence(std::string_view& rest) {
  rest.remove_prefix(1);
  while (!rest.empty() && IsContinuation(rest.front())) rest.remove_prefix(1);
}

std::string Bytes(char16_t unit) {
  std::string bytes(sizeof unit, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  return bytes;
}

char16_t TakeUnit(std::string_view& rest) {
  char16_t unit = 0;
  std::memcpy(&unit, rest.data(), std::min(rest.size(), sizeof unit));
  rest.remove_prefix(std::min(rest.size(), sizeof unit));
  return unit;
}

bool IsFreeInAnsi(char16_t unit) {
  return unit == 0x81 || unit == 0x8D || unit == 0x8F || unit == 0x90 || unit == 0x9D;
}

}  // namespace

WideText ToUtf16(Encoding encoding, std::string_view bytes) {
  constexpr char16_t kReplacement = 0xFFFD;
  bool broken = false;
  const std::string wide = Recode(kUtf16, NameOf(encoding), bytes, [&](std::string_view& rest) {
    if (encoding == Encoding::kUtf8) {
      broken = true;
      SkipBrokenSequence(rest);
      return Bytes(kReplacement);
    }
    const auto freeByte = static_cast<unsigned char>(rest.front());
    rest.remove_prefix(1);
    return Bytes(freeByte);
  });
  std::u16string text(wide.size() / sizeof(char16_t), u'\0');
  std::memcpy(text.data(), wide.data(), text.size() * sizeof(char16_t));
  return {text, broken};
}

NarrowText FromUtf16(Encoding encoding, std::u16string_view text, std::string_view substitute) {
  bool substituted = false;
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()),
                               text.size() * sizeof(char16_t));
  std::string narrow = Recode(NameOf(encoding), kUtf16, bytes, [&](std::string_view& rest) {
    const char16_t unit = TakeUnit(rest);
    if (encoding == Encoding::kAnsi && IsFreeInAnsi(unit)) {
      return std::string(1, static_cast<char>(unit));
    }
    substituted = true;
    return std::string(substitute);
  });
  return {std::move(narrow), substituted};
}

std::string Utf8(const char16_t* text) {
  return text == nullptr ? "" : FromUtf16(Encoding::kUtf8, text, "\xEF\xBF\xBD").text;
}

std::uint32_t CopyPath(const std::string& utf8, char16_t* path, std::uint32_t room) {
  const std::u16string wide = ToUtf16(Encoding::kUtf8, utf8).text;
  const auto length = static_cast<std::uint32_t>(wide.size());
  if (length >= room) return length + 1;
  std::copy_n(wide.c_str(), length + 1, path);
  return length;
}

std::string AnsiText(const char16_t* text) {
  return text == nullptr ? "" : FromUtf16(Encoding::kAnsi, text, "?").text;
}

}  // namespace platform
