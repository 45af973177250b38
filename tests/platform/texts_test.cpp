#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "platform/windows_api.h"

namespace {

constexpr UINT kOem = 850;
constexpr UINT kAnsi = 1252;

using WideString = std::basic_string<WCHAR>;

WideString Wide(std::u16string_view text) { return {text.begin(), text.end()}; }

WideString ToWide(UINT codePage, std::string_view bytes, DWORD flags = 0) {
  WideString text(50, WCHAR{});
  text.resize(static_cast<std::size_t>(MultiByteToWideChar(
      codePage, flags, bytes.data(), static_cast<int>(bytes.size()), text.data(), 50)));
  return text;
}

std::string FromWide(UINT codePage, std::u16string_view text, const char* defaultChar = nullptr,
                     BOOL* usedDefaultChar = nullptr) {
  const WideString wide = Wide(text);
  std::string bytes(50, '\0');
  bytes.resize(static_cast<std::size_t>(WideCharToMultiByte(
      codePage, codePage == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(),
      static_cast<int>(wide.size()), bytes.data(), 50, defaultChar, usedDefaultChar)));
  return bytes;
}

TEST(CodePage, SpellsTheSameTextInBothDirections) {
  const struct {
    UINT codePage;
    std::string_view bytes;
    std::u16string_view text;
  } rows[] = {{CP_UTF8,
               "Stra\xC3\x9F"
               "e \xE2\x82\xAC \xF0\x9F\x93\x81",
               u"Stra\u00DFe \u20AC \U0001F4C1"},
              {kAnsi, "\xC4\xD6\xDC\xA7\x80\x9F", u"\u00C4\u00D6\u00DC\u00A7\u20AC\u0178"},
              {kAnsi, "\x81\x8D\x8F\x90\x9D", u"\u0081\u008D\u008F\u0090\u009D"},
              {kOem, "\x8E\x99\x9A\xE1\xF5\xC4", u"\u00C4\u00D6\u00DC\u00DF\u00A7\u2500"}};
  for (const auto& [codePage, bytes, text] : rows) {
    EXPECT_EQ(ToWide(codePage, bytes), Wide(text)) << bytes;
    EXPECT_EQ(FromWide(codePage, text), bytes);
  }
}

TEST(CodePage, SaysWhenACharacterHasNoCounterpart) {
  const struct {
    UINT codePage;
    std::u16string_view text;
    const char* defaultChar;
    std::string_view bytes;
    BOOL used;
  } rows[] = {{kAnsi, u"a\u0394b", nullptr, "a?b", TRUE},
              {kAnsi, u"\u0103\u20AC", "#", "#\x80", TRUE},
              {kOem, u"\u20AC", nullptr, "?", TRUE},
              {kAnsi, u"?", nullptr, "?", FALSE}};
  for (const auto& [codePage, text, defaultChar, bytes, used] : rows) {
    BOOL usedDefaultChar = !used;
    EXPECT_EQ(FromWide(codePage, text, defaultChar, &usedDefaultChar), bytes);
    EXPECT_EQ(usedDefaultChar, used) << bytes;
  }
  EXPECT_EQ(ToWide(CP_UTF8, "a\xFFz"), Wide(u"a\uFFFDz"));
  EXPECT_EQ(ToWide(CP_UTF8, "\xE2\x82z"), Wide(u"\uFFFDz"));
}

TEST(CodePage, CountsTheTerminatorOfATextWithoutLength) {
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA4", -1, nullptr, 0), 2);
  EXPECT_EQ(
      WideCharToMultiByte(CP_UTF8, 0, Wide(u"\u00E4").c_str(), -1, nullptr, 0, nullptr, nullptr),
      3);
}

TEST(CodePage, RefusesWithAReason) {
  std::array<WCHAR, 2> room{};
  const auto convert = [&](UINT codePage, DWORD flags, const char* bytes, int length) {
    return MultiByteToWideChar(codePage, flags, bytes, length, room.data(), 2);
  };
  const WCHAR loneSurrogate = 0xD800;
  const std::pair<DWORD, std::function<int()>> rows[] = {
      {ERROR_INSUFFICIENT_BUFFER, [&] { return convert(kAnsi, 0, "abc", 3); }},
      {ERROR_INVALID_PARAMETER, [&] { return convert(kAnsi, 0, nullptr, 3); }},
      {ERROR_INVALID_PARAMETER, [&] { return convert(kAnsi, 0, "abc", 0); }},
      {ERROR_INVALID_PARAMETER, [&] { return convert(4711, 0, "abc", 3); }},
      {ERROR_INVALID_FLAGS, [&] { return convert(CP_UTF8, 0x4000, "abc", 3); }},
      {ERROR_NO_UNICODE_TRANSLATION,
       [&] { return convert(CP_UTF8, MB_ERR_INVALID_CHARS, "\xFFz", 2); }},
      {ERROR_NO_UNICODE_TRANSLATION,
       [&] { return convert(CP_UTF8, MB_ERR_INVALID_CHARS, "\xE2\x82z", 3); }},
      {ERROR_NO_UNICODE_TRANSLATION,
       [&] { return convert(CP_UTF8, MB_ERR_INVALID_CHARS, "\xE2\x82", 2); }},
      {ERROR_NO_UNICODE_TRANSLATION,
       [&] { return convert(CP_UTF8, MB_ERR_INVALID_CHARS, "\xC0\x80", 2); }},
      {ERROR_NO_UNICODE_TRANSLATION, [&] {
         return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, &loneSurrogate, 1, nullptr, 0,
                                    nullptr, nullptr);
       }}};
  int row = 0;
  for (const auto& [reason, refuse] : rows) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(refuse(), 0) << "row " << ++row;
    EXPECT_EQ(GetLastError(), reason) << "row " << row;
  }
}

TEST(AnsiText, IsMadeFromOemTextAndOfCapitalsInItsPlace) {
  // Letters that all Western OEM code pages have in the same places.
  std::string text = "R\x94\xE1ler \x84\x81\x8E\x99\x9A";
  EXPECT_TRUE(OemToCharA(text.c_str(), text.data()));
  EXPECT_EQ(text, "R\xF6\xDFler \xE4\xFC\xC4\xD6\xDC");
  text = "az09 \xE4\xF6\xFC\xDF\xFF\xF7\x9A\x9C\x9E\xB5";
  EXPECT_EQ(CharUpperBuffA(text.data(), static_cast<DWORD>(text.size())), text.size());
  EXPECT_EQ(text, "AZ09 \xC4\xD6\xDC\xDF\x9F\xF7\x8A\x8C\x8E\xB5");
  EXPECT_EQ(CharUpperBuffA(text.data(), 0), 0U);
}

}  // namespace
