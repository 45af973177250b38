#include "platform/registry_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view kBytesAsNumbers = "hex(1):";

bool SameIgnoringCase(std::string_view a, std::string_view b) {
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

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
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

std::optional<std::string> BytesOf(std::string_view numbers) {
  std::string bytes;
  while (!numbers.empty()) {
    const std::string_view number = TakeUntil(',', numbers);
    unsigned char byte = 0;
    const auto [stop, error] = std::from_chars(number.begin(), number.end(), byte, 16);
    if (error != std::errc{} || stop != number.end()) return std::nullopt;
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

std::optional<RegistryValue> ParseValue(std::string_view line) {
  const std::optional<std::string> name = TakeQuoted(line);
  if (!name || !line.starts_with('=')) return std::nullopt;
  line = Trim(line.substr(1));
  std::optional<std::string> bytes;
  if (line.starts_with(kBytesAsNumbers)) {
    bytes = BytesOf(line.substr(kBytesAsNumbers.size()));
  } else if (bytes = TakeQuoted(line); bytes && line.empty()) {
    *bytes += '\0';
  } else {
    bytes.reset();
  }
  return bytes ? std::optional(RegistryValue{*name, *bytes}) : std::nullopt;
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
  std::string numbers(kBytesAsNumbers);
  for (const char c : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(c));
    numbers += digits;
  }
  if (!bytes.empty()) numbers.pop_back();
  return numbers;
}

}  // namespace

RegistryFile RegistryFile::Parse(std::string_view text) {
  RegistryFile file;
  RegistryKey* key = nullptr;
  while (!text.empty()) {
    const std::string_view line = TakeUntil('\n', text);
    if (line.size() > 2 && line.starts_with('[') && line.ends_with(']')) {
      key = &file.KeyAt(std::string(line.substr(1, line.size() - 2)));
    } else if (std::optional<RegistryValue> value = ParseValue(line); value && key != nullptr) {
      file.Set(key->path, *std::move(value));
    }
  }
  return file;
}

std::string RegistryFile::Format() const {
  std::string text = "REGEDIT4\r\n";
  for (const RegistryKey& key : keys_) {
    text += "\r\n[" + key.path + "]\r\n";
    for (const auto& [name, bytes] : key.values) {
      text += Quoted(name) + '=' + FormatBytes(bytes) + "\r\n";
    }
  }
  return text;
}

bool RegistryFile::Has(const std::string& path) const {
  return std::any_of(keys_.begin(), keys_.end(), [&](const RegistryKey& key) {
    const std::string below = path + '\\';
    return SameIgnoringCase(key.path, path) ||
           SameIgnoringCase(key.path.substr(0, below.size()), below);
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

void RegistryFile::Set(const std::string& path, RegistryValue value) {
  RegistryKey& key = KeyAt(path);
  const auto old = FindValue(key.values, value.name);
  if (old == key.values.end()) {
    key.values.push_back(std::move(value));
  } else {
    old->bytes = std::move(value.bytes);
  }
}

void RegistryFile::Remove(const std::string& path, const std::string& name) {
  std::erase_if(KeyAt(path).values,
                [&](const RegistryValue& value) { return SameIgnoringCase(value.name, name); });
}

}  // namespace platform
