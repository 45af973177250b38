// An office: its record files and its configuration, in a folder of the test's own. At first every
// file is there and empty, and nothing but the data path is configured.
//
//   office.Has<UserRecord>("number: 17, name: Müller");
//   office.Lacks<UserRecord>();
//   office.IsConfigured("DocuRoot", "C:\\Akten");
//   EXPECT_EQ(office.Records<DocumentNumberRecord>().size(), 1);
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "record_files.h"
#include "store/record.h"
#include "testkit/process.h"

namespace qlx99::tests {

using namespace testkit;

class Office {
 public:
  Office();
  ~Office() = default;
  Office(const Office&) = delete;
  Office& operator=(const Office&) = delete;

  // One more record, of fields as the tool knows them (see office/record_text.h). Those that are
  // not given are blank, 0 or no date; the bytes between the fields are rubbish, as they are none
  // of the library's business.
  template <class Layout>
  void Has(const std::string& fields) {
    Insert(LayoutOf<Layout>(), fields);
  }

  // Another workstation changes the record whose key has this value.
  template <class Layout>
  void Changes(const Key& key, std::int32_t keyValue, const std::string& fields) {
    const RecordLayout layout = LayoutOf<Layout>();
    Update(layout, key, keyValue, [&](std::string& record) { SetFields(layout, fields, record); });
  }

  // The same with bytes that no text says, at an offset in the record.
  template <class Layout>
  void ChangesBytes(const Key& key, std::int32_t keyValue, std::size_t offset,
                    const std::string& bytes) {
    Update(LayoutOf<Layout>(), key, keyValue,
           [&](std::string& record) { record.replace(offset, bytes.size(), bytes); });
  }

  // All records, in the order of key 0.
  template <class Layout>
  std::vector<Record<Layout>> Records() {
    std::vector<Record<Layout>> records;
    for (const std::string& bytes : ReadAll(LayoutOf<Layout>())) {
      std::copy(bytes.begin(), bytes.end(), records.emplace_back().bytes.begin());
    }
    return records;
  }

  // The file is not there (any more).
  template <class Layout>
  void Lacks() {
    Remove(Layout::file.name);
  }

  // A value of the library's configuration, by its bare name, as the registry editor would store
  // it, or with exactly these bytes.
  void IsConfigured(const std::string& name, const std::string& text);
  void IsConfiguredWithBytes(const std::string& name, const std::string& bytes);
  void IsNotConfigured(const std::string& name);

  // A folder that a test may use, and the one of the record files.
  const std::filesystem::path& Folder() const { return folder_.Path(); }
  std::filesystem::path DataFolder() const { return Folder() / "data"; }

 private:
  void Insert(const RecordLayout& layout, const std::string& fields) const;
  void Update(const RecordLayout& layout, const Key& key, std::int32_t keyValue,
              const std::function<void(std::string&)>& change) const;
  static void SetFields(const RecordLayout& layout, const std::string& fields, std::string& record);
  std::vector<std::string> ReadAll(const RecordLayout& layout) const;
  void Remove(const char* fileName) const;

  PrivateRegistry registry_;
  TemporaryFolder folder_;
};

}  // namespace qlx99::tests
