#include "support/text.h"

#include "office/text_encoding.h"
#include "platform/windows_api.h"

namespace qlx99::tests {

std::string Utf8(std::u16string_view wide) {
  std::string utf8(wide.size() * 3, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, reinterpret_cast<const WCHAR*>(wide.data()),
                                         static_cast<int>(wide.size()), utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(length));
  return utf8;
}

std::string Utf8(std::string_view ansi) {
  std::u16string wide(ansi.size(), u'\0');
  const int length = static_cast<int>(ansi.size());
  MultiByteToWideChar(1252, 0, ansi.data(), length, reinterpret_cast<WCHAR*>(wide.data()), length);
  return Utf8(wide);
}

std::string Ansi(std::string_view utf8) { return office::Encode(utf8); }

}  // namespace qlx99::tests
