#include "office/check_office.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "frame/registry.h"
#include "frame/sibling_library.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/install_kind.h"
#include "office/record_manager.h"
#include "office/show_file.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::RecordLayout;

// Writes the report's lines and remembers whether all was well.
class Report {
 public:
  explicit Report(std::ostream& out) : out_(out) {}

  void Good(const std::string& line) { out_ << "  " << line << "\n"; }
  void Bad(const std::string& line) {
    out_ << "! " << line << "\n";
    sound_ = false;
  }

  // What `look` returns is well, its failure is not.
  template <class Look>
  void Add(const Look& look) {
    try {
      Good(look());
    } catch (const Failure& failure) {
      Bad(failure.what());
    }
  }

  bool IsSound() const { return sound_; }

 private:
  std::ostream& out_;
  bool sound_ = true;
};

std::string KindOfInstallation() {
  return std::string("ProgramName: ") + KindName() +
         (IsDelegated() ? ", the library hands every call on to the sibling library"
                        : ", the library reads the record files itself");
}

// The library reads a file by the last of the keys that it declares, and follow-ups also by their
// own numbers. The other keys are the case-management system's, which may make them as it likes.
bool IsReadBy(const RecordLayout& layout, const qlx99::Key& key) {
  return key.number + 1U == layout.keys.size() ||
         layout.file.name == qlx99::FollowUpRecord::file.name;
}

// The key as the file must have it, or why not.
std::string KeyProblem(const qlx99::Key& key, const FileFacts& facts) {
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

[[noreturn]] void Refuse(const RecordLayout& layout, const std::string& why) {
  throw Failure(std::string(layout.file.name) + ": " + why);
}

std::string LookAtFile(const RecordManager& manager, const std::filesystem::path& directory,
                       const RecordLayout& layout) {
  TableFile file(manager, directory, layout);
  const FileFacts facts = file.Facts();
  const std::string length = std::to_string(layout.file.length);
  if (facts.file.recordLength != layout.file.length) {
    Refuse(layout,
           "its records have " + std::to_string(facts.file.recordLength) + " bytes, not " + length);
  }
  for (const qlx99::Key& key : layout.keys) {
    const std::string problem = IsReadBy(layout, key) ? KeyProblem(key, facts) : "";
    if (!problem.empty()) Refuse(layout, problem);
  }
  return std::string(layout.file.name) + ": " + std::to_string(facts.file.recordCount) +
         " records of " + length + " bytes";
}

template <const qlx99::RegistryValue& value>
std::string LookAtValue() {
  const auto text = qlx99::ReadConfiguration<value>();
  if (!text) {
    throw Failure(std::string(value.name) + " is not set" +
                  (IsDelegated() ? "" : "; `qlx setup DIR` sets it"));
  }
  return std::string(value.name) + ": " + text->data();
}

void LookAtRecordFiles(Report& report) {
  report.Add(LookAtValue<qlx99::kDataRoot>);
  report.Add(LookAtValue<qlx99::kDocuRoot>);
  report.Add(LookAtValue<qlx99::kProgramRoot>);
  const RecordManager manager;
  report.Good("Record manager: " + manager.Name());
  const std::filesystem::path directory = ConfiguredDataRoot();
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    report.Add([&] { return LookAtFile(manager, directory, layout); });
  }
}

std::string LookAtInquiryProgram(const qlx99::MappingRoot& root) {
  const std::string file = qlx99::PathBelow(root, qlx99::kInquiryProgram).data();
  if (_access(file.c_str(), 0) != 0) throw Failure(file + ": there is no such file");
  return "Inquiry program: " + file;
}

std::string LookAtSiblingLibrary(const qlx99::MappingRoot& root) {
  const std::string file = qlx99::PathBelow(root, qlx99::kSiblingFile).data();
  HMODULE library = LoadLibraryA(file.c_str());
  if (library == nullptr) {
    throw Failure(file + ": it cannot be loaded (error " + std::to_string(GetLastError()) + ")");
  }
  FreeLibrary(library);
  return "Sibling library: " + file;
}

void LookAtOtherPrograms(Report& report) {
  report.Add(LookAtValue<qlx99::kMappingRoot>);
  const auto root = qlx99::ReadConfiguration<qlx99::kMappingRoot>();
  if (!root) return;
  report.Add([&] { return LookAtInquiryProgram(*root); });
  report.Add([&] { return LookAtSiblingLibrary(*root); });
}

}  // namespace

bool CheckOffice(std::ostream& out) {
  Report report(out);
  report.Good(KindOfInstallation());
  try {
    if (IsDelegated()) {
      LookAtOtherPrograms(report);
    } else {
      LookAtRecordFiles(report);
    }
  } catch (const Failure& failure) {
    report.Bad(failure.what());
  }
  return report.IsSound();
}

}  // namespace office
