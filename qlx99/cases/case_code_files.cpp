#include "cases/case_code_files.h"

#include <array>

#include "frame/bytes.h"
#include "platform/windows_api.h"
#include "store/record_file.h"

namespace qlx99 {
namespace {

// The mark was typed in the days of the DOS version and kept its code page.
void AddMark(std::string_view mark, ResultRecord& dest) {
  std::array<char, ArchiveRecord::mark.width + 1> oem{};
  std::array<char, oem.size()> ansi{};
  CopyBytes(mark, oem.data(), ArchiveRecord::mark.width);
  OemToCharA(oem.data(), ansi.data());
  dest.AddField({ansi.data(), ArchiveRecord::mark.width});
}

}  // namespace

void LookupCaseType(const DataRoot& dataRoot, std::int32_t caseTypeId, ResultRecord& dest) {
  RecordFile<CaseTypeRecord> caseTypes(dataRoot);
  if (!caseTypes.IsOpen() ||
      caseTypes.GetEqual(CaseTypeRecord::byId, caseTypeId) != btrieve::kSuccess) {
    dest.AddEmptyFields(1);
    return;
  }
  dest.AddField(caseTypes.Current()[CaseTypeRecord::text]);
}

void LookupArchiveEntry(const DataRoot& dataRoot, std::int32_t archiveEntryId, ResultRecord& dest) {
  RecordFile<ArchiveRecord> archive(dataRoot);
  if (!archive.IsOpen() ||
      archive.GetEqual(ArchiveRecord::byId, archiveEntryId) != btrieve::kSuccess) {
    dest.AddEmptyFields(2);
    return;
  }
  dest.AddDay(archive.Current()[ArchiveRecord::date]);
  AddMark(archive.Current()[ArchiveRecord::mark], dest);
}

}  // namespace qlx99
