// The record files of one office, all open for writing.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "office/record_manager.h"
#include "office/record_text.h"
#include "store/record.h"

namespace office {

class OfficeFiles {
 public:
  OfficeFiles(const RecordManager& manager, const std::filesystem::path& directory);

  // `record` as in TableFile::Insert.
  void Insert(const qlx99::RecordLayout& layout, std::string& record);

  template <class Layout>
  void Insert(qlx99::Record<Layout>& record) {
    files_.at(Layout::file.name)->Insert(record.bytes);
  }

 private:
  std::map<std::string_view, std::unique_ptr<TableFile>> files_;
};

// A record without any content, as BlankRecord makes it.
template <class Layout>
qlx99::Record<Layout> NewRecord() {
  const std::string blank = BlankRecord(qlx99::LayoutOf<Layout>());
  qlx99::Record<Layout> record;
  std::ranges::copy(blank, record.bytes.begin());
  return record;
}

}  // namespace office
