#include "office/check_office.h"

#include <algorithm>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "frame/registry.h"
#include "frame/sibling_library.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/record_manager.h"
#include "office/show_file.h"
#include "office/text_encoding.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::RecordLayout;

// A table of what was looked at and what was found, which remembers whether all was well.
class Report {
 public:
  explicit Report(std::ostream& out) : out_(out), inColour_(ShowsColours(out)) {}

  void Good(const std::string& what, const std::string& found) {
    Write("\x1b[32m", "  ", what, found);
  }
  void Bad(const std::string& what, const std::string& wrong) {
    Write("\x1b[31m", "! ", what, wrong);
    sound_ = false;
  }

  // Reports what `look` returns as sound, and what it throws as a fault. Returns whether it was
  // sound.
  template <class Look>
  bool Add(const std::string& what, const Look& look) {
    try {
      Good(what, look());
      return true;
    } catch (const Failure& failure) {
      Bad(what, failure.what());
      return false;
    }
  }

  bool IsSound() const { return sound_; }

 private:
  void Write(const char* colour, const char* mark, const std::string& what,
             const std::string& words) {
    constexpr std::size_t kWidth = 16;
    out_ << (inColour_ ? colour : "") << mark << PaddedRight(what, kWidth) << words
         << (inColour_ ? "\x1b[0m" : "") << "\n";
  }

  std::ostream& out_;
  bool inColour_;
  bool sound_ = true;
};

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
  const auto text = qlx99::ReadConfiguration<value>();
  if (text && text->front() != '\0') return Decode(text->data());
  throw Failure("is not set in " + RegistryPlace() +
                (IsDelegated() ? "; install the office's programs on this machine."
                               : "; `qlx setup DIR` sets it."));
}

std::string LookAtDataRoot() {
  std::string text = LookAtValue<qlx99::kDataRoot>();
  if (std::filesystem::is_directory(ConfiguredDataRoot())) return text;
  throw Failure("there is no folder " + text +
                "; connect its drive, or name another folder with `qlx setup DIR`.");
}

void LookAtRecordFiles(Report& report) {
  const bool hasFolder = report.Add(qlx99::kDataRoot.name, LookAtDataRoot);
  report.Add(qlx99::kDocuRoot.name, LookAtValue<qlx99::kDocuRoot>);
  report.Add(qlx99::kProgramRoot.name, LookAtValue<qlx99::kProgramRoot>);
  std::optional<RecordManager> manager;
  const bool hasManager = report.Add("record manager", [&] { return manager.emplace().Name(); });
  if (!hasFolder || !hasManager) return;
  const std::filesystem::path directory = ConfiguredDataRoot();
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    report.Add(layout.file.name, [&] { return LookAtFile(*manager, directory, layout); });
  }
}

std::string LookAtInquiryProgram(const qlx99::MappingRoot& root) {
  std::string file = qlx99::PathBelow(root, qlx99::kInquiryProgram).data();
  if (_access(file.c_str(), 0) == 0) return file;
  throw Failure("there is no " + file + "; connect its drive, or install the office's programs.");
}

std::string LookAtSiblingLibrary(const qlx99::MappingRoot& root) {
  std::string file = qlx99::PathBelow(root, qlx99::kSiblingFile).data();
  HMODULE library = LoadLibraryA(file.c_str());
  if (library == nullptr) {
    throw Failure(file + " cannot be loaded (error " + std::to_string(GetLastError()) +
                  "); install the office's programs again.");
  }
  FreeLibrary(library);
  return file;
}

void LookAtOtherPrograms(Report& report) {
  if (!report.Add(qlx99::kMappingRoot.name, LookAtValue<qlx99::kMappingRoot>)) return;
  const auto root = qlx99::ReadConfiguration<qlx99::kMappingRoot>();
  if (!root) return;
  report.Add("inquiry program", [&] { return LookAtInquiryProgram(*root); });
  report.Add("sibling library", [&] { return LookAtSiblingLibrary(*root); });
}

}  // namespace

bool CheckOffice(std::ostream& out) {
  Report report(out);
  report.Good(qlx99::kProgramName.name, KindOfInstallation());
  if (IsDelegated()) {
    LookAtOtherPrograms(report);
  } else {
    LookAtRecordFiles(report);
  }
  return report.IsSound();
}

}  // namespace office
