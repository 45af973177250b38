#include "office/copy_office.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "office/copied_file.h"
#include "office/failure.h"
#include "office/host.h"
#include "office/readiness.h"
#include "office/text_encoding.h"
#include "office/working_folder.h"
#include "record_files.h"

namespace office {
namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 5;

// Tells a command's progress: not at every record, and never more than there was to do.
class Counter {
 public:
  Counter(const Progress& progress, std::uint32_t all) : progress_(progress), all_(all) {}

  void Step() {
    constexpr std::uint32_t kStride = 1000;
    if (++done_ % kStride == 0 && done_ < all_) progress_(done_, all_);
  }
  void End() const {
    if (all_ != 0) progress_(all_, all_);
  }

 private:
  const Progress& progress_;
  std::uint32_t all_;
  std::uint32_t done_ = 0;
};

bool IsRecordFile(const fs::directory_entry& entry) {
  return UpperCase(PathText(entry.path().extension())) == ".KRV" && entry.is_regular_file();
}

// Those that the library knows, which have to be there, and the case-management system's other
// ones. To Windows a name is the same in small letters.
std::vector<fs::path> RecordFilesIn(const fs::path& directory) {
  std::vector<fs::path> names(qlx99::kRecordFiles.size());
  std::ranges::transform(qlx99::kRecordFiles, names.begin(),
                         [](const qlx99::RecordLayout& layout) { return layout.file.name; });
  for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
    const fs::path name = entry.path().filename();
    const bool isKnown = std::ranges::any_of(qlx99::kRecordFiles, [&](const auto& layout) {
      return UpperCase(PathText(name)) == layout.file.name;
    });
    if (IsRecordFile(entry) && !isKnown) names.push_back(name);
  }
  return names;
}

// Refuses also a log that former files have left: it would be taken for that of a copy.
void RefuseToOverwrite(const fs::path& target, const std::vector<fs::path>& names) {
  for (const fs::path& name : names) {
    for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
      fs::path there = target / name;
      there += ending;
      if (!fs::exists(there)) continue;
      throw Failure("There is " + PathText(there) +
                    " already. Nothing was copied; name another folder.");
    }
  }
}

// Tells `progress`, and does something with each of the files and a step for the progress.
template <class Body>
void WithEach(const std::vector<CopiedFile>& files, const Progress& progress, const Body& body) {
  std::uint32_t all = 0;
  for (const CopiedFile& file : files) all += file.CountRecords();
  Counter counter(progress, all);
  for (const CopiedFile& file : files) body(file, [&counter] { counter.Step(); });
  counter.End();
}

// What is equal in the last round was read before it began: so all files of the copy are what the
// others were when it did.
void CopyUntilAllAreEqual(const std::vector<CopiedFile>& files, const CopyProgress& progress) {
  std::vector<CopiedFile> unequal = files;
  for (int round = 0; round < kRounds && !unequal.empty(); ++round) {
    WithEach(unequal, progress.copied,
             [](const CopiedFile& file, const auto& step) { file.Copy(step); });
    unequal.clear();
    WithEach(files, progress.compared, [&](const CopiedFile& file, const auto& step) {
      if (!file.IsComplete(step)) unequal.push_back(file);
    });
  }
  if (unequal.empty()) return;
  const std::string name = PathText(unequal.front().Name());
  if (!unequal.front().KeepsItsOrder()) {
    throw Failure(name +
                  " cannot be copied: several of its keys allow repeated values, and the order of "
                  "the records along all of them cannot be made again. Copy the files themselves "
                  "while nobody works.");
  }
  throw Failure(name + " and its copy differed " + std::to_string(kRounds) +
                " times. It is changed all the time, so copy it when less is going on; or the "
                "record manager does not keep what it is given.");
}

// Closed files are let go of at the record manager's next opening; this one fails.
void LetGo(const RecordManager& manager) {
  std::ignore = btrieve::Client(manager.EntryPoint()).Open("qlx-copy.nil");
}

}  // namespace

std::size_t CopyOffice(const CopyOrder& order, const CopyProgress& progress) {
  const fs::path directory = ExistingDataRoot();
  const std::vector<fs::path> names = RecordFilesIn(directory);
  RefuseToOverwrite(order.target, names);
  const RecordManager from(order.from);
  const RecordManager to(order.to);
  WorkingFolder folder(order.target, [&to] { LetGo(to); });
  std::vector<CopiedFile> files;
  files.reserve(names.size());
  for (const fs::path& name : names) {
    files.emplace_back(from, directory / name, to, folder.Path() / name);
  }
  CopyUntilAllAreEqual(files, progress);
  folder.Deliver(names);
  return files.size();
}

}  // namespace office
