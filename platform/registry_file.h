// The registration text file, in the familiar REGEDIT4 form, read whole and written whole.
//
//   REGEDIT4
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Example]
//   @="the key's nameless value"
//   "DataRoot"="C:\\data"
//   "Unterminated"=hex(1):61,62
//   "Number"=dword:0000002a
//
// Bytes go on in the next line behind a backslash. Texts are the bytes of the file as they are
// (Windows-1252 by custom). The file may be other programs' and people's, too: what a change does
// not concern stays byte for byte.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows_types.h"

namespace platform {

struct RegistryValue {
  std::string name;   // empty for the nameless one
  std::string bytes;  // as stored; the terminator, if a text has one, included
  DWORD type = 1;     // REG_SZ; only texts are ever written
};

// The keys and values of one file. Names and paths are found whatever their case and kept as first
// written. Of a value that stands there twice the later one counts.
class RegistryFile {
 public:
  // Lines that are not understood are kept and mean nothing.
  static RegistryFile Parse(std::string_view text);

  // The text that was parsed, with what has changed since.
  std::string Format() const;

  // Whether `path`, which begins with the root's name, or a key below it is there.
  bool Has(const std::string& path) const;

  // Null when the key has no value of that name or does not exist. Valid until the next change.
  const RegistryValue* Find(const std::string& path, const std::string& name) const;

  // Does nothing when the key is there.
  void AddKey(const std::string& path);
  void Set(const std::string& path, RegistryValue value);
  void Remove(const std::string& path, const std::string& name);

 private:
  // Of a key or a value, with the lines that continue it, or anything else.
  struct Line {
    std::string text;  // with its end
    std::string key;   // the path that it opens or stands below; empty above the first
    bool opensKey;
    std::optional<RegistryValue> value;
  };

  const Line* FindLine(const std::string& path, const std::string& name) const;
  void EndLastLine();

  std::vector<Line> lines_;
  std::string lineEnd_ = "\r\n";
};

// Where this process has its registry; the environment variable QLX99_REGISTRY may name the file.
std::filesystem::path RegistryFilePath();

// A file that is not there is a registry without keys. Nothing when it cannot be read, because it
// is a folder, or without the right to, or in UTF-16.
std::optional<RegistryFile> ReadRegistryFile();

}  // namespace platform
