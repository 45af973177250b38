// The registration text file: the familiar REGEDIT4 form, read whole and written whole.
//
//   REGEDIT4
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Example]
//   "DataRoot"="C:\\data"
//   "Unterminated"=hex(1):61,62
//
// Texts are the bytes of the file as they are (Windows-1252 by custom). No other kind of value is
// ever asked for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct RegistryValue {
  std::string name;
  std::string bytes;  // as stored; the terminator, if the text has one, included
};

struct RegistryKey {
  std::string path;  // beginning with the root's name
  std::vector<RegistryValue> values;
};

// The keys and values of one file. Names and paths are found whatever their case and kept as first
// written.
class RegistryFile {
 public:
  // Lines that are not understood are passed over.
  static RegistryFile Parse(std::string_view text);

  // A form that Parse reads back to the same keys and values.
  std::string Format() const;

  // Whether `path` or a key below it is there.
  bool Has(const std::string& path) const;

  // Null when the key has no value of that name or does not exist. Valid until the next change.
  const RegistryValue* Find(const std::string& path, const std::string& name) const;

  // The key of that path, which it makes if it is not there.
  RegistryKey& KeyAt(const std::string& path);
  void Set(const std::string& path, RegistryValue value);
  void Remove(const std::string& path, const std::string& name);

 private:
  std::vector<RegistryKey> keys_;
};

}  // namespace platform
