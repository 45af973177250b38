#include "office/check_office.h"

#include <algorithm>
#include <optional>
#include <string>
#include <system_error>

#include "frame/attach.h"
#include "frame/registry.h"
#include "frame/sibling_library.h"
#include "office/check_product.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/readiness.h"
#include "office/record_manager.h"
#include "office/report.h"
#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::RecordLayout;

constexpr const char* kManager = "record manager";

std::string ReasonForKind() {
  const qlx99::WholeText programName = qlx99::ReadWholeText(qlx99::kProgramName);
  if (programName == nullptr) return "it is not set";
  if (*programName == '\0') return "it is empty";
  return "\"" + Decode(programName.get()) + "\" " +
         (IsDelegated() ? "names TELQ32" : "does not name TELQ32");
}

std::string KindOfInstallation() {
  return std::string(KindName()) + ", as " + ReasonForKind() +
         (IsDelegated() ? "; the library hands every call on to the sibling library"
                        : "; the library reads the record files itself");
}

// The key as the file must have it, or why not.
std::string KeyProblem(const qlx99::Key& key, const btrieve::FileFacts& facts) {
  const auto found = std::ranges::find(facts.keys, key.number, &btrieve::KeyDescription::keyNumber);
  const std::string name = "key " + std::to_string(key.number);
  if (found == facts.keys.end()) return "it has no " + name;
  if (found->position != key.field.offset + 1 || found->length != key.field.width) {
    return name + " does not lie over " + key.field.name;
  }
  const bool duplicates = (found->flags & btrieve::kKeyDuplicates) != 0;
  if (duplicates != (key.kind == qlx99::Key::kDuplicates)) {
    return name + (duplicates ? " allows duplicates" : " does not allow duplicates");
  }
  return {};
}

[[noreturn]] void Refuse(const std::string& why) {
  throw Failure(why + "; put back the file that belongs to this office.");
}

std::string LookAtFile(const RecordManager& manager, const std::filesystem::path& directory,
                       const RecordLayout& layout) {
  TableFile file(manager, directory, layout);
  const btrieve::FileFacts facts = file.Facts();
  const std::string length = std::to_string(layout.file.length);
  if (facts.file.recordLength != layout.file.length) {
    Refuse("its records have " + std::to_string(facts.file.recordLength) + " bytes, not " + length);
  }
  for (const qlx99::Key& key : layout.keys) {
    const std::string problem = key.isUsed ? KeyProblem(key, facts) : "";
    if (!problem.empty()) Refuse(problem);
  }
  return std::to_string(facts.file.recordCount) + " records of " + length + " bytes";
}

template <const qlx99::RegistryValue& value>
std::string LookAtValue() {
  return ShownText(ConfiguredText<value>());
}

std::string LookAtDataRoot() {
  std::string text = LookAtValue<qlx99::kDataRoot>();
  const std::string lack = LackOf(ConfiguredDataRoot());
  if (lack.empty()) return text;
  throw Failure("there is " + lack +
                "; connect its drive, or name another folder with `qlx setup DIR`.");
}

// Tried, as rights are not all that keeps somebody from writing.
void LookForRightToWrite(Report& report, const char* what, const std::filesystem::path& folder) {
  std::error_code error;
  const std::filesystem::path trial = folder / "qlx-check";
  if (std::filesystem::create_directory(trial, error)) std::filesystem::remove(trial, error);
  if (!error) return;
  report.Doubtful(what, "nothing can be made in " + PathText(folder) +
                            ": it is not there, or you lack the right to write.");
}

std::string DescribeManager(const RecordManager& manager) {
  return manager.Name() + (manager.IsEmbedded() ? ", embedded" : ", client/server") + ", in " +
         PathText(manager.File().parent_path());
}

// Which programs find it elsewhere, this one cannot know: it finds one beside itself, too.
void LookAtPlaceOf(Report& report, const RecordManager& manager) {
  const std::filesystem::path library = PathOfModule(qlx99::CurrentAttachment().module);
  std::error_code error;
  if (!manager.IsEmbedded() ||
      std::filesystem::equivalent(manager.File().parent_path(), library.parent_path(), error)) {
    return;
  }
  report.Doubtful(
      kManager,
      "it does not lie beside the library, so other programs find it only if its folder "
      "is on their PATH. Put it into " +
          PathText(library.parent_path()) + ".");
}

// A log without its file, or beside one of a record manager that makes none, waits for a file to
// spoil. What lies beside a file of the embedded record manager, that one judges when it opens it.
void LookForLeftovers(Report& report, const RecordManager& manager,
                      const std::filesystem::path& directory) {
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    const bool isJudged =
        manager.IsEmbedded() && std::filesystem::exists(directory / layout.file.name);
    for (const char* ending : {"-wal", "-journal"}) {
      const std::string name = std::string(layout.file.name) + ending;
      std::error_code error;
      const auto size = std::filesystem::file_size(directory / name, error);
      if (isJudged || error || size == 0) continue;
      report.Doubtful(layout.file.name, name +
                                            " lies in the folder, but belongs to no file in it. "
                                            "Move it away, or put back its file.");
    }
  }
}

void LookAtDocuRoot(Report& report) {
  report.Add(qlx99::kDocuRoot.name, LookAtValue<qlx99::kDocuRoot>);
  const auto documents = qlx99::ReadConfiguration<qlx99::kDocuRoot>();
  if (documents && documents->front() != '\0') {
    LookForRightToWrite(report, qlx99::kDocuRoot.name, PathOfNative(documents->data()));
  }
}

void LookAtFolderOfRecords(Report& report, const RecordManager& manager) {
  const std::filesystem::path directory = ConfiguredDataRoot();
  if (manager.IsEmbedded() && IsOnNetworkDrive(directory)) {
    report.Doubtful(qlx99::kDataRoot.name,
                    "lies on a network drive, but the embedded record manager is for the programs "
                    "of one machine: several workstations need a client/server one.");
  }
  LookForRightToWrite(report, qlx99::kDataRoot.name, directory);
  LookForLeftovers(report, manager, directory);
}

void LookAtRecordFiles(Report& report) {
  const bool hasFolder = report.Add(qlx99::kDataRoot.name, LookAtDataRoot);
  LookAtDocuRoot(report);
  report.Add(qlx99::kProgramRoot.name, LookAtValue<qlx99::kProgramRoot>);
  std::optional<RecordManager> manager;
  const bool hasManager = report.Add(kManager, [&] { return DescribeManager(manager.emplace()); });
  if (hasManager) LookAtPlaceOf(report, *manager);
  if (!hasFolder || !hasManager) return;
  LookAtFolderOfRecords(report, *manager);
  const std::filesystem::path directory = ConfiguredDataRoot();
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    report.Add(layout.file.name, [&] { return LookAtFile(*manager, directory, layout); });
  }
}

std::string LookAtInquiryProgram(const qlx99::MappingRoot& root) {
  std::string file = qlx99::PathBelow(root, qlx99::kInquiryProgram).data();
  if (_access(file.c_str(), 0) == 0) return ShownText(file);
  throw Failure("there is no " + ShownText(file) +
                "; connect its drive, or install the office's programs.");
}

std::string LookAtSiblingLibrary(const qlx99::MappingRoot& root) {
  std::string file = qlx99::PathBelow(root, qlx99::kSiblingFile).data();
  HMODULE library = LoadLibraryA(file.c_str());
  if (library == nullptr) {
    throw Failure(ShownText(file) + " cannot be loaded (error " + std::to_string(GetLastError()) +
                  "); install the office's programs again.");
  }
  FreeLibrary(library);
  return ShownText(file);
}

void LookAtOtherPrograms(Report& report) {
  if (!report.Add(qlx99::kMappingRoot.name, LookAtValue<qlx99::kMappingRoot>)) return;
  const auto root = qlx99::ReadConfiguration<qlx99::kMappingRoot>();
  if (!root) return;
  report.Add("inquiry program", [&] { return LookAtInquiryProgram(*root); });
  report.Add("sibling library", [&] { return LookAtSiblingLibrary(*root); });
}

}  // namespace

bool CheckOffice(const std::string& library, std::ostream& out) {
  Report report(out);
  const ExaminedLibrary examined(library, report);
  report.Good(qlx99::kProgramName.name, KindOfInstallation());
  if (IsDelegated()) {
    LookAtOtherPrograms(report);
  } else {
    LookAtRecordFiles(report);
  }
  return report.IsSound();
}

}  // namespace office
