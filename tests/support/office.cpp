#include "support/office.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "office/file_description.h"
#include "office/record_text.h"
#include "support/text.h"
#include "testkit/embedded_manager.h"

namespace qlx99::tests {
namespace {

namespace fs = std::filesystem;

constexpr char kRubbish = '#';

// A file of an office, as the tests open it for themselves.
class OpenFile : public btrieve::Client {
 public:
  OpenFile(const RecordLayout& layout, const fs::path& folder) : Client(EmbeddedEntryPoint()) {
    EXPECT_EQ(Open((folder / layout.file.name).string()), btrieve::kSuccess) << layout.file.name;
    SetKey("");
  }
  ~OpenFile() { EXPECT_EQ(Close(), btrieve::kSuccess); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
};

// All files of an office, created once for all tests, each of which gets a copy.
const fs::path& EmptyOffice() {
  static const TemporaryFolder kFolder;
  if (!fs::is_empty(kFolder.Path())) return kFolder.Path();
  for (const RecordLayout& layout : kRecordFiles) {
    btrieve::Client client(EmbeddedEntryPoint());
    EXPECT_EQ(
        client.Create((kFolder.Path() / layout.file.name).string(), office::DescribeFile(layout)),
        btrieve::kSuccess)
        << layout.file.name;
  }
  ReleaseEmbedded();
  return kFolder.Path();
}

const char* KeyPathOf(const std::string& valueName) {
  return valueName == "MappingRoot" ? "SOFTWARE\\Morvelix GmbH\\Palvenor\\Options"
                                    : "SOFTWARE\\Quorvane\\Stelvora\\Options";
}

// Does something with the open key of a value of the configuration.
void Configure(const std::string& valueName, const std::function<LSTATUS(HKEY)>& change) {
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, KeyPathOf(valueName), 0, nullptr,
                            REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(change(key), ERROR_SUCCESS) << valueName;
  RegCloseKey(key);
}

}  // namespace

Office::Office() {
  fs::copy(EmptyOffice(), DataFolder());
  IsConfigured("DataRoot", DataFolder().string());
}

// "number: 17, name: Müller"
void Office::SetFields(const RecordLayout& layout, const std::string& fields, std::string& record) {
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

void Office::Insert(const RecordLayout& layout, const std::string& fields) const {
  const std::string blank = office::BlankRecord(layout);
  std::string record(layout.file.length, kRubbish);
  for (const FieldInfo& field : layout.fields) {
    record.replace(field.offset, field.width, blank, field.offset, field.width);
  }
  SetFields(layout, fields, record);
  OpenFile file(layout, DataFolder());
  EXPECT_EQ(file.Call(btrieve::kInsert, 0, record), btrieve::kSuccess) << layout.file.name;
}

void Office::Update(const RecordLayout& layout, const Key& key, std::int32_t keyValue,
                    const std::function<void(std::string&)>& change) const {
  std::string record(layout.file.length, '\0');
  OpenFile file(layout, DataFolder());
  file.SetKey(keyValue);
  EXPECT_EQ(file.Call(btrieve::kGetEqual, key.number, record), btrieve::kSuccess);
  change(record);
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
  // Windows looks at the byte behind an unterminated text and stores a terminator that it finds.
  const std::string guarded = bytes + '#';
  Configure(name, [&](HKEY key) {
    return RegSetValueExA(key, name.c_str(), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(guarded.data()),
                          static_cast<DWORD>(bytes.size()));
  });
}

void Office::IsNotConfigured(const std::string& name) {
  Configure(name, [&](HKEY key) { return RegDeleteValueA(key, name.c_str()); });
}

}  // namespace qlx99::tests
