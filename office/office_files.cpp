#include "office/office_files.h"

#include "record_files.h"

namespace office {

OfficeFiles::OfficeFiles(const RecordManager& manager, const std::filesystem::path& directory) {
  for (const qlx99::RecordLayout& layout : qlx99::kRecordFiles) {
    files_[layout.file.name] = std::make_unique<TableFile>(manager, directory, layout);
  }
}

void OfficeFiles::Insert(const qlx99::RecordLayout& layout, std::string& record) {
  files_.at(layout.file.name)->Insert(record);
}

}  // namespace office
