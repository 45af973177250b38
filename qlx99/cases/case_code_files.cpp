#include "cases/case_code_files.h"

#include <algorithm>
#include <array>

#include "store/record_file.h"

namespace qlx99 {
namespace {

// The upper half of the DOS code page of German offices, 850, in Windows-1252; where that lacks the
// character, the lookalike that a German Windows takes. A table, because Windows' own conversion
// goes by the host's code pages: in a host of UTF-8 it would make more bytes of a mark than fit.
constexpr std::array<std::uint8_t, 128> kAnsiOfOem{
    0xC7, 0xFC, 0xE9, 0xE2, 0xE4, 0xE0, 0xE5, 0xE7, 0xEA, 0xEB, 0xE8, 0xEF, 0xEE, 0xEC, 0xC4, 0xC5,
    0xC9, 0xE6, 0xC6, 0xF4, 0xF6, 0xF2, 0xFB, 0xF9, 0xFF, 0xD6, 0xDC, 0xF8, 0xA3, 0xD8, 0xD7, 0x83,
    0xE1, 0xED, 0xF3, 0xFA, 0xF1, 0xD1, 0xAA, 0xBA, 0xBF, 0xAE, 0xAC, 0xBD, 0xBC, 0xA1, 0xAB, 0xBB,
    0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xC1, 0xC2, 0xC0, 0xA9, 0xA6, 0xA6, 0x2B, 0x2B, 0xA2, 0xA5, 0x2B,
    0x2B, 0x2D, 0x2D, 0x2B, 0x2D, 0x2B, 0xE3, 0xC3, 0x2B, 0x2B, 0x2D, 0x2D, 0xA6, 0x2D, 0x2B, 0xA4,
    0xF0, 0xD0, 0xCA, 0xCB, 0xC8, 0x69, 0xCD, 0xCE, 0xCF, 0x2B, 0x2B, 0xA6, 0x5F, 0xA6, 0xCC, 0xAF,
    0xD3, 0xDF, 0xD4, 0xD2, 0xF5, 0xD5, 0xB5, 0xFE, 0xDE, 0xDA, 0xDB, 0xD9, 0xFD, 0xDD, 0xAF, 0xB4,
    0xAD, 0xB1, 0x3D, 0xBE, 0xB6, 0xA7, 0xF7, 0xB8, 0xB0, 0xA8, 0xB7, 0xB9, 0xB3, 0xB2, 0xA6, 0xA0};

char AnsiOfOem(char oem) {
  constexpr std::size_t kUpperHalf = 128;
  const auto byte = static_cast<std::uint8_t>(oem);
  return byte < kUpperHalf ? oem : static_cast<char>(kAnsiOfOem[byte - kUpperHalf]);
}

// The mark was typed in the days of the DOS version and kept its code page.
void AddMark(std::string_view mark, ResultRecord& dest) {
  std::array<char, ArchiveRecord::mark.width> ansi{};
  std::transform(mark.begin(), mark.end(), ansi.begin(), AnsiOfOem);
  dest.AddField({ansi.data(), ansi.size()});
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
