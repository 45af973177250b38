#include "support/office.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "record_files.h"
#include "support/open_file.h"
#include "support/record_managers.h"
#include "support/text.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

constexpr char kRubbish = '#';

template <class Value>
std::string BytesOf(Value value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

bool IsText(const FieldInfo& field) {
  return field.kind == FieldKind::kText || field.kind == FieldKind::kOemText;
}

void SetFields(const FieldValues& values, std::string& record) {
  for (const FieldValue& value : values) {
    value.bytes.copy(record.data() + value.field.offset, value.field.width);
  }
}

std::string Compose(const RecordLayout& layout, const FieldValues& values) {
  std::string record(layout.file.length, kRubbish);
  for (const FieldInfo& field : layout.fields) {
    std::fill_n(record.data() + field.offset, field.width, IsText(field) ? ' ' : '\0');
  }
  SetFields(values, record);
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

FieldValue::FieldValue(const Int32Field& at, std::int32_t value)
    : field(at), bytes(BytesOf(value)) {}

FieldValue::FieldValue(const DayField& at, std::uint16_t value)
    : field(at), bytes(BytesOf(value)) {}

FieldValue::FieldValue(const AmountField& at, double value) : field(at), bytes(BytesOf(value)) {}

FieldValue::FieldValue(const TextField& at, std::string_view text)
    : field(at), bytes(at.kind == FieldKind::kOemText ? std::string(text) : Ansi(text)) {
  EXPECT_LE(bytes.size(), at.width) << "for the field " << at.name;
  bytes.resize(at.width, ' ');
}

Office::Office() {
  static const EmptyOffice emptyOffice;
  fs::copy(emptyOffice.Folder(), DataFolder());
  IsConfigured("DataRoot", DataFolder().string());
}

void Office::Insert(const RecordLayout& layout, const FieldValues& values) const {
  std::string record = Compose(layout, values);
  OpenFile file(layout, DataFolder());
  EXPECT_EQ(file.Call(btrieve::kInsert, 0, record), btrieve::kSuccess) << layout.file.name;
}

void Office::Update(const RecordLayout& layout, const Key& key, std::int32_t keyValue,
                    const FieldValues& values) const {
  std::string record(layout.file.length, '\0');
  OpenFile file(layout, DataFolder());
  file.SetKey(BytesOf(keyValue));
  EXPECT_EQ(file.Call(btrieve::kGetEqual, key.number, record), btrieve::kSuccess);
  SetFields(values, record);
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
