#include "platform/registry_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <optional>
#include <utility>

namespace platform {

namespace {

bool SameIgnoringCase(const std::string& a, const std::string& b) {
  // To the end: a file may hold zero bytes.
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::tolower(x) == std::tolower(y);
  });
}

auto FindKey(auto& keys, const std::string& path) {
  return std::find_if(keys.begin(), keys.end(),
                      [&](const RegistryKey& key) { return SameIgnoringCase(key.path, path); });
}

auto FindValue(auto& values, const std::string& name) {
  return std::find_if(values.begin(), values.end(), [&](const RegistryValue& value) {
    return SameIgnoringCase(value.name, name);
  });
}

// --- Reading

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos
             ? std::string_view{}
             : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes the next line off `text`. Lines of numbers that end in a backslash go on in the next.
std::string TakeLine(std::string_view& text) {
  std::string line;
  bool goesOn = true;
  while (goesOn && !text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    line += Trim(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    goesOn =
        line.ends_with('\\') && !line.starts_with(';') && line.find("hex") != std::string::npos;
    line.resize(line.size() - (goesOn ? 1 : 0));
  }
  return line;
}

// Takes a text in quotation marks off the front of `line`.
std::optional<std::string> TakeQuoted(std::string_view& line) {
  std::string text;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '"') {
      line.remove_prefix(i + 1);
      return text;
    }
    i += line[i] == '\\' ? 1 : 0;
    text += i < line.size() ? line[i] : '\\';
  }
  return std::nullopt;
}

std::optional<std::uint32_t> HexNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
  return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

std::string LittleEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFF);
  return bytes;
}

std::optional<std::string> HexBytes(std::string_view list) {
  std::string bytes;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    const std::optional<std::uint32_t> byte = HexNumber(Trim(list.substr(0, end)));
    if (!byte || *byte > 0xFF) return std::nullopt;
    bytes += static_cast<char>(*byte);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return bytes;
}

// What stands behind the equals sign, as a value without its name.
std::optional<RegistryValue> ParseData(std::string_view data) {
  if (data.starts_with('"')) {
    std::optional<std::string> text = TakeQuoted(data);
    return text && data.empty() ? std::optional(RegistryValue{"", REG_SZ, *text + '\0'})
                                : std::nullopt;
  }
  const std::size_t colon = data.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const std::string_view kind = data.substr(0, colon);
  const std::string_view rest = Trim(data.substr(colon + 1));
  if (kind == "dword") {
    const std::optional<std::uint32_t> number = HexNumber(rest);
    return number ? std::optional(RegistryValue{"", REG_DWORD, LittleEndian(*number)})
                  : std::nullopt;
  }
  std::optional<std::uint32_t> type;
  if (kind == "hex") {
    type = REG_BINARY;
  } else if (kind.starts_with("hex(") && kind.ends_with(")")) {
    type = HexNumber(kind.substr(4, kind.size() - 5));
  }
  const std::optional<std::string> bytes = HexBytes(rest);
  return type && bytes ? std::optional(RegistryValue{"", *type, *bytes}) : std::nullopt;
}

std::optional<RegistryValue> ParseValue(std::string_view line) {
  std::optional<std::string> name;
  if (line.starts_with('"')) {
    name = TakeQuoted(line);
  } else if (line.starts_with('@')) {
    name = "";
    line.remove_prefix(1);
  }
  line = Trim(line);
  if (!name || !line.starts_with('=')) return std::nullopt;
  std::optional<RegistryValue> value = ParseData(Trim(line.substr(1)));
  if (value) value->name = *std::move(name);
  return value;
}

// --- Writing

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Hex(std::string_view bytes) {
  std::string list;
  for (const char c : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(c));
    list += digits;
  }
  list.resize(list.empty() ? 0 : list.size() - 1);
  return list;
}

// Whether Parse would give exactly these bytes back from a text in quotation marks.
bool FitsQuotes(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  return bytes.find_first_of("\0\r\n"sv) + 1 == bytes.size() && bytes.ends_with('\0');
}

std::string FormatValue(const RegistryValue& value) {
  const std::string name = value.name.empty() ? "@" : Quoted(value.name);
  if (value.type == REG_SZ && FitsQuotes(value.bytes)) {
    return name + '=' + Quoted(std::string_view(value.bytes).substr(0, value.bytes.size() - 1));
  }
  if (value.type == REG_BINARY) return name + "=hex:" + Hex(value.bytes);
  char kind[16];
  std::snprintf(kind, sizeof kind, "=hex(%x):", value.type);
  return name + kind + Hex(value.bytes);
}

}  // namespace

RegistryFile RegistryFile::Parse(std::string_view text) {
  RegistryFile file;
  std::string path;
  while (!text.empty()) {
    const std::string line = TakeLine(text);
    if (line.starts_with('[') && line.ends_with(']')) {
      path = line.substr(1, line.size() - 2);
      file.CreateKey(path);
    } else if (std::optional<RegistryValue> value = ParseValue(line); value && !path.empty()) {
      file.Set(path, *std::move(value));
    }
  }
  return file;
}

std::string RegistryFile::Format() const {
  std::string text = "REGEDIT4\r\n";
  for (const RegistryKey& key : keys_) {
    text += "\r\n[" + key.path + "]\r\n";
    for (const RegistryValue& value : key.values) text += FormatValue(value) + "\r\n";
  }
  return text;
}

bool RegistryFile::Has(const std::string& path) const {
  return std::any_of(keys_.begin(), keys_.end(), [&](const RegistryKey& key) {
    const bool fits = key.path.size() == path.size() ||
                      (key.path.size() > path.size() && key.path[path.size()] == '\\');
    return fits && SameIgnoringCase(key.path.substr(0, path.size()), path);
  });
}

const RegistryValue* RegistryFile::Find(const std::string& path, const std::string& name) const {
  const auto key = FindKey(keys_, path);
  if (key == keys_.end()) return nullptr;
  const auto value = FindValue(key->values, name);
  return value == key->values.end() ? nullptr : &*value;
}

RegistryKey& RegistryFile::KeyAt(const std::string& path) {
  const auto key = FindKey(keys_, path);
  return key != keys_.end() ? *key : keys_.emplace_back(RegistryKey{path, {}});
}

void RegistryFile::CreateKey(const std::string& path) { KeyAt(path); }

void RegistryFile::Set(const std::string& path, RegistryValue value) {
  RegistryKey& key = KeyAt(path);
  const auto old = FindValue(key.values, value.name);
  if (old == key.values.end()) {
    key.values.push_back(std::move(value));
    return;
  }
  old->type = value.type;
  old->bytes = std::move(value.bytes);
}

bool RegistryFile::Remove(const std::string& path, const std::string& name) {
  const auto key = FindKey(keys_, path);
  if (key == keys_.end()) return false;
  const auto value = FindValue(key->values, name);
  if (value == key->values.end()) return false;
  key->values.erase(value);
  return true;
}

}  // namespace platform
