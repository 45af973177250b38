// The registration text file: the familiar REGEDIT4 form, read whole and written whole.
//
//   REGEDIT4
//
//   [HKEY_LOCAL_MACHINE\SOFTWARE\Example]
//   @="value without a name"
//   "DataRoot"="C:\\data"
//   "Count"=dword:0000000a
//   "Blob"=hex:01,02,03
//   "Unterminated"=hex(1):61,62
//
// A list of numbers may go on in the next line after a backslash. Texts are the bytes of the file
// as they are (Windows-1252 by custom).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/windows_api.h"

namespace platform {

struct RegistryValue {
  std::string name;  // empty: the key's value without a name
  DWORD type;
  std::string bytes;  // as stored; the terminator of a text, if it has one, included
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

  void CreateKey(const std::string& path);
  void Set(const std::string& path, RegistryValue value);

  // False when there is no such value.
  bool Remove(const std::string& path, const std::string& name);

 private:
  RegistryKey& KeyAt(const std::string& path);

  std::vector<RegistryKey> keys_;
};

}  // namespace platform
