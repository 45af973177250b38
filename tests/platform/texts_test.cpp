// Texts in the three code pages.
#include <gmock/gmock.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/windows_api.h"

namespace {

constexpr UINT kOem = 850;
constexpr UINT kAnsi = 1252;

// From one code page to the other.
std::string Recoded(UINT from, std::string_view bytes, UINT to) {
  std::array<WCHAR, 50> wide{};
  std::string recoded(100, '\0');
  const int length =
      MultiByteToWideChar(from, 0, bytes.data(), static_cast<int>(bytes.size()), wide.data(), 50);
  const int size = WideCharToMultiByte(to, to == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(),
                                       length, recoded.data(), 100, nullptr, nullptr);
  recoded.resize(static_cast<std::size_t>(size));
  return recoded;
}

TEST(CodePage, SpellsTheSameTextInBothDirections) {
  const struct {
    UINT codePage;
    std::string_view bytes;
    std::string_view utf8;
  } rows[] = {{CP_UTF8, "Straße € \U0001F4C1", "Straße € \U0001F4C1"},
              {kAnsi, "\xC4\xD6\xDC\xA7\x80\x9F", "ÄÖÜ§€Ÿ"},
              {kAnsi, "\x81\x8D\x8F\x90\x9D", "\u0081\u008D\u008F\u0090\u009D"},
              {kOem, "\x8E\x99\x9A\xE1\xF5\xC4", "ÄÖÜß§─"}};
  for (const auto& [codePage, bytes, utf8] : rows) {
    EXPECT_EQ(Recoded(codePage, bytes, CP_UTF8), utf8);
    EXPECT_EQ(Recoded(CP_UTF8, utf8, codePage), bytes) << utf8;
  }
}

TEST(CodePage, CountsTheTerminatorOfATextWithoutLengthAndRefusesWhatIsNone) {
  std::array<WCHAR, 2> room{};
  const auto convert = [&](UINT codePage, DWORD flags, const char* bytes, int length) {
    return MultiByteToWideChar(codePage, flags, bytes, length, room.data(), 2);
  };
  EXPECT_EQ(convert(CP_UTF8, 0, "\xC3\xA4", -1), 2);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, room.data(), -1, nullptr, 0, nullptr, nullptr), 3);
  EXPECT_EQ(convert(kAnsi, 0, "abc", 3), 0) << "no room";
  EXPECT_EQ(convert(kAnsi, 0, "abc", 0), 0);
  for (const char* broken : {"\xFFz", "\xE2z", "\xE2\x82", "\xC0\x80"}) {
    EXPECT_EQ(convert(CP_UTF8, MB_ERR_INVALID_CHARS, broken, 2), 0);
  }
}

}  // namespace
