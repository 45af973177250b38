#include "platform/registry_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>

namespace platform {

namespace {

bool SameIgnoringCase(std::string_view a, std::string_view b) {
  // To the end: a file may hold zero bytes.
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// Takes what stands before the mark off `text`, and the mark.
std::string_view TakeUntil(char mark, std::string_view& text) {
  const std::string_view taken = text.substr(0, text.find(mark));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return Trim(taken);
}

// Takes a text in quotation marks off the front of `line`.
std::optional<std::string> TakeQuoted(std::string_view& line) {
  if (!line.starts_with('"')) return std::nullopt;
  std::string text;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '"') {
      line = Trim(line.substr(i + 1));
      return text;
    }
    i += line[i] == '\\' ? 1 : 0;
    text += i < line.size() ? line[i] : '\\';
  }
  return std::nullopt;
}

// Takes a value's name and the "=" behind it off the front of `line`.
std::optional<std::string> TakeName(std::string_view& line) {
  std::optional<std::string> name;
  if (line.starts_with('@')) {
    name.emplace();
    line = Trim(line.substr(1));
  } else {
    name = TakeQuoted(line);
  }
  if (!name || !line.starts_with('=')) return std::nullopt;
  line = Trim(line.substr(1));
  return name;
}

// Of what stands outside of quotation marks.
std::string_view WithoutComment(std::string_view data) { return TakeUntil(';', data); }

template <class Number>
std::optional<Number> HexIn(std::string_view digits) {
  Number number = 0;
  const auto [stop, error] = std::from_chars(digits.begin(), digits.end(), number, 16);
  const bool isWhole = error == std::errc{} && stop == digits.end();
  return isWhole ? std::optional(number) : std::nullopt;
}

// "hex:" for plain bytes, "hex(2):" for those of another type.
std::optional<DWORD> TakeTypeOfBytes(std::string_view& data) {
  const std::string_view kind = TakeUntil(':', data);
  if (kind == "hex") return DWORD{3};
  if (!kind.starts_with("hex(") || !kind.ends_with(')')) return std::nullopt;
  return HexIn<DWORD>(kind.substr(4, kind.size() - 5));
}

std::optional<std::string> BytesOf(std::string_view numbers) {
  std::string bytes;
  while (!numbers.empty()) {
    const auto byte = HexIn<unsigned char>(TakeUntil(',', numbers));
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  return bytes;
}

std::optional<RegistryValue> TextValue(const std::string& name, std::string_view data) {
  const std::optional<std::string> text = TakeQuoted(data);
  if (!text || !WithoutComment(data).empty()) return std::nullopt;
  return RegistryValue{name, *text + '\0'};
}

std::optional<RegistryValue> NumberValue(const std::string& name, std::string_view digits) {
  const auto number = HexIn<DWORD>(WithoutComment(digits));
  if (!number) return std::nullopt;
  std::string bytes;
  for (DWORD left = *number; bytes.size() < sizeof left; left >>= 8U) {
    bytes += static_cast<char>(left & 0xFFU);
  }
  return RegistryValue{name, bytes, 4};
}

std::optional<RegistryValue> ParseValue(std::string_view line) {
  constexpr std::string_view kNumber = "dword:";
  const std::optional<std::string> name = TakeName(line);
  if (!name) return std::nullopt;
  if (line.starts_with('"')) return TextValue(*name, line);
  if (line.starts_with(kNumber)) return NumberValue(*name, line.substr(kNumber.size()));
  const auto type = TakeTypeOfBytes(line);
  const auto bytes = BytesOf(WithoutComment(line));
  if (!type || !bytes) return std::nullopt;
  return RegistryValue{*name, *bytes, *type};
}

// Only bytes go on in the next line; a comment or a text may end in a backslash of its own.
bool IsContinued(std::string_view line) {
  return line.ends_with('\\') && TakeName(line) && line.starts_with("hex");
}

// A line as it stands, with those that continue it, and as if it were one.
struct WholeLine {
  std::string text;
  std::string joined;
};

WholeLine TakeLine(std::string_view& text) {
  WholeLine line;
  do {
    if (!line.joined.empty()) line.joined.pop_back();  // the backslash
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    line.text += text.substr(0, size);
    line.joined += Trim(text.substr(0, size));
    text.remove_prefix(size);
  } while (!text.empty() && IsContinued(line.joined));
  return line;
}

std::optional<std::string> KeyIn(std::string_view line) {
  if (line.size() <= 2 || !line.starts_with('[') || !line.ends_with(']')) return std::nullopt;
  return std::string(line.substr(1, line.size() - 2));
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// Whether Parse would give exactly these bytes back from a text in quotation marks.
bool FitsQuotes(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  return bytes.find_first_of("\0\r\n"sv) + 1 == bytes.size() && bytes.ends_with('\0');
}

std::string FormatBytes(std::string_view bytes) {
  if (FitsQuotes(bytes)) return Quoted(bytes.substr(0, bytes.size() - 1));
  std::string numbers("hex(1):");
  for (const char c : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(c));
    numbers += digits;
  }
  if (!bytes.empty()) numbers.pop_back();
  return numbers;
}

std::string FormatValue(const RegistryValue& value) {
  return (value.name.empty() ? "@" : Quoted(value.name)) + '=' + FormatBytes(value.bytes);
}

}  // namespace

RegistryFile RegistryFile::Parse(std::string_view text) {
  RegistryFile file;
  const std::size_t firstEnd = text.find('\n');
  if (firstEnd != std::string_view::npos && !text.substr(0, firstEnd).ends_with('\r'))
    file.lineEnd_ = "\n";
  std::string key;
  while (!text.empty()) {
    WholeLine line = TakeLine(text);
    const std::optional<std::string> opened = KeyIn(line.joined);
    if (opened) key = *opened;
    std::optional<RegistryValue> value;
    if (!key.empty()) value = ParseValue(line.joined);
    file.lines_.push_back({std::move(line.text), key, opened.has_value(), std::move(value)});
  }
  return file;
}

std::string RegistryFile::Format() const {
  std::string text;
  for (const Line& line : lines_) text += line.text;
  return text;
}

bool RegistryFile::Has(const std::string& path) const {
  const std::string below = path + '\\';
  return std::ranges::any_of(lines_, [&](const Line& line) {
    return SameIgnoringCase(line.key, path) ||
           SameIgnoringCase(line.key.substr(0, below.size()), below);
  });
}

const RegistryFile::Line* RegistryFile::FindLine(const std::string& path,
                                                 const std::string& name) const {
  const auto found = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
    return line.value && SameIgnoringCase(line.key, path) &&
           SameIgnoringCase(line.value->name, name);
  });
  return found == lines_.rend() ? nullptr : &*found;
}

const RegistryValue* RegistryFile::Find(const std::string& path, const std::string& name) const {
  const Line* line = FindLine(path, name);
  return line == nullptr ? nullptr : &*line->value;
}

// So that another can follow it.
void RegistryFile::EndLastLine() {
  if (lines_.empty()) lines_.push_back({"REGEDIT4", "", false, std::nullopt});
  std::string& last = lines_.back().text;
  if (!last.ends_with('\n')) last += lineEnd_;
  if (IsContinued(Trim(last))) last += lineEnd_;
}

void RegistryFile::AddKey(const std::string& path) {
  if (std::ranges::any_of(lines_, [&](const Line& line) {
        return line.opensKey && SameIgnoringCase(line.key, path);
      })) {
    return;
  }
  EndLastLine();
  lines_.push_back({lineEnd_, lines_.back().key, false, std::nullopt});
  lines_.push_back({"[" + path + "]" + lineEnd_, path, true, std::nullopt});
}

void RegistryFile::Set(const std::string& path, RegistryValue value) {
  if (const Line* old = FindLine(path, value.name); old != nullptr) {
    Line& line = lines_[static_cast<std::size_t>(old - lines_.data())];
    value.name = line.value->name;
    line.text = FormatValue(value) + lineEnd_;
    line.value = std::move(value);
    return;
  }
  AddKey(path);
  EndLastLine();
  // Behind the key's other values, but before a comment on what follows.
  const auto last = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
    return SameIgnoringCase(line.key, path) && (line.opensKey || line.value);
  });
  const std::string text = FormatValue(value) + lineEnd_;
  lines_.insert(last.base(), {text, path, false, std::move(value)});
}

void RegistryFile::Remove(const std::string& path, const std::string& name) {
  std::erase_if(lines_, [&](const Line& line) {
    return line.value && SameIgnoringCase(line.key, path) &&
           SameIgnoringCase(line.value->name, name);
  });
}

}  // namespace platform
