#include "support/office.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "office/record_text.h"
#include "record_files.h"
#include "support/open_file.h"
#include "support/record_managers.h"
#include "support/text.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

constexpr char kRubbish = '#';

// "number: 17, name: Müller"
void SetFields(const RecordLayout& layout, const std::string& fields, std::string& record) {
  for (std::size_t at = 0; at < fields.size();) {
    const std::size_t colon = fields.find(": ", at);
    const std::size_t end = std::min(fields.find(", ", colon), fields.size());
    const std::string name = fields.substr(at, colon - at);
    const auto field = std::find_if(layout.fields.begin(), layout.fields.end(),
                                    [&](const FieldInfo& one) { return one.name == name; });
    if (field == layout.fields.end()) throw std::runtime_error("no field " + name);
    office::SetField(*field, fields.substr(colon + 2, end - colon - 2), record);
    at = end + 2;
  }
}

std::string Compose(const RecordLayout& layout, const std::string& fields) {
  const std::string blank = office::BlankRecord(layout);
  std::string record(layout.file.length, kRubbish);
  for (const FieldInfo& field : layout.fields) {
    record.replace(field.offset, field.width, blank, field.offset, field.width);
  }
  SetFields(layout, fields, record);
  return record;
}

// All files of an office, created once for all tests, each of which gets a copy.
class EmptyOffice {
 public:
  EmptyOffice() {
    for (const RecordLayout& layout : kRecordFiles) OpenFile::Create(layout, Folder());
    ReleaseEmbedded();
  }

  const fs::path& Folder() const { return folder_.Path(); }

 private:
  TemporaryFolder folder_;
};

const char* KeyPathOf(const std::string& valueName) {
  return valueName == "MappingRoot" ? "SOFTWARE\\Morvelix GmbH\\Palvenor\\Options"
                                    : "SOFTWARE\\Quorvane\\Stelvora\\Options";
}

class ConfigurationKey {
 public:
  explicit ConfigurationKey(const std::string& valueName) {
    EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, KeyPathOf(valueName), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key_, nullptr),
              ERROR_SUCCESS);
  }
  ~ConfigurationKey() { RegCloseKey(key_); }
  ConfigurationKey(const ConfigurationKey&) = delete;
  ConfigurationKey& operator=(const ConfigurationKey&) = delete;

  HKEY Get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

}  // namespace

Office::Office() {
  static const EmptyOffice emptyOffice;
  fs::copy(emptyOffice.Folder(), DataFolder());
  IsConfigured("DataRoot", DataFolder().string());
}

void Office::Insert(const RecordLayout& layout, const std::string& fields) const {
  std::string record = Compose(layout, fields);
  OpenFile file(layout, DataFolder());
  EXPECT_EQ(file.Call(btrieve::kInsert, 0, record), btrieve::kSuccess) << layout.file.name;
}

void Office::Update(const RecordLayout& layout, const Key& key, std::int32_t keyValue,
                    const std::string& fields) const {
  std::string record(layout.file.length, '\0');
  OpenFile file(layout, DataFolder());
  file.SetKey({reinterpret_cast<const char*>(&keyValue), sizeof keyValue});
  EXPECT_EQ(file.Call(btrieve::kGetEqual, key.number, record), btrieve::kSuccess);
  SetFields(layout, fields, record);
  EXPECT_EQ(file.Call(btrieve::kUpdate, key.number, record), btrieve::kSuccess);
}

std::vector<std::string> Office::ReadAll(const RecordLayout& layout) const {
  std::vector<std::string> records;
  OpenFile file(layout, DataFolder());
  std::string record(layout.file.length, '\0');
  for (WORD operation = btrieve::kGetFirst; file.Call(operation, 0, record) == btrieve::kSuccess;
       operation = btrieve::kGetNext) {
    records.push_back(record);
  }
  return records;
}

void Office::Remove(const char* fileName) const {
  ReleaseEmbedded();
  EXPECT_TRUE(fs::remove(DataFolder() / fileName));
}

void Office::IsConfigured(const std::string& name, const std::string& text) {
  IsConfiguredWithBytes(name, text + '\0');
}

void Office::IsConfiguredWithBytes(const std::string& name, const std::string& bytes) {
  const ConfigurationKey key(name);
  // Windows looks at the byte behind an unterminated text and stores a terminator that it finds.
  const std::string guarded = bytes + '#';
  EXPECT_EQ(RegSetValueExA(key.Get(), name.c_str(), 0, REG_SZ,
                           reinterpret_cast<const BYTE*>(guarded.data()),
                           static_cast<DWORD>(bytes.size())),
            ERROR_SUCCESS);
}

void Office::IsNotConfigured(const std::string& name) {
  const ConfigurationKey key(name);
  EXPECT_EQ(RegDeleteValueA(key.Get(), name.c_str()), ERROR_SUCCESS);
}

}  // namespace qlx99::tests
