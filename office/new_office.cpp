#include "office/new_office.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "office/failure.h"
#include "office/generated_cases.h"
#include "office/host.h"
#include "office/office_files.h"
#include "office/sample_file.h"
#include "record_files.h"

namespace office {
namespace {

using qlx99::RecordLayout;

// The files that cases refer to. A generated office takes them from the sample office.
constexpr std::array<std::string_view, 8> kCatalogues = {
    qlx99::UserRecord::file.name,     qlx99::CaseTypeRecord::file.name,
    qlx99::ArchiveRecord::file.name,  qlx99::NationalityRecord::file.name,
    qlx99::TitleRecord::file.name,    qlx99::SalutationRecord::file.name,
    qlx99::RelationRecord::file.name, qlx99::FollowUpKindRecord::file.name};

bool IsCatalogue(const RecordLayout& layout) {
  return std::ranges::find(kCatalogues, layout.file.name) != kCatalogues.end();
}

bool IsAny(const RecordLayout& /*layout*/) { return true; }

void RefuseToOverwrite(const std::filesystem::path& directory) {
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    if (!std::filesystem::exists(directory / layout.file.name)) continue;
    throw Failure("There is an office in " + PathText(directory) + " already: " + layout.file.name +
                  ". Nothing was changed; name an empty folder.");
  }
}

void MakeFolders(const std::filesystem::path& directory) {
  std::error_code error;
  std::filesystem::create_directories(DocumentFolder(directory), error);
  if (error) {
    throw Failure("The folder " + PathText(directory) + " cannot be made: " + error.message());
  }
}

void InsertSample(OfficeFiles& files, bool (*isWanted)(const RecordLayout&)) {
  for (const RecordLayout& layout : qlx99::kRecordFiles) {
    if (!isWanted(layout)) continue;
    for (std::string& record : SampleRecords(layout)) files.Insert(layout, record);
  }
}

// `fill` gets the record manager and the open, empty files. What it leaves when it fails is not
// taken away again: it may be the disk that is full or gone.
template <class Fill>
void MakeOffice(const std::filesystem::path& directory, const Fill& fill) {
  RefuseToOverwrite(directory);
  const RecordManager manager;
  MakeFolders(directory);
  try {
    for (const RecordLayout& layout : qlx99::kRecordFiles) {
      TableFile::Create(manager, directory, layout);
    }
    OfficeFiles files(manager, directory);
    fill(manager, files);
  } catch (const Failure& failure) {
    throw Failure(std::string(failure.what()) + "\nThe office in " + PathText(directory) +
                  " is not complete: remove its files and try again.");
  }
}

}  // namespace

void MakeSampleOffice(const std::filesystem::path& directory) {
  MakeOffice(directory, [](const RecordManager& manager, OfficeFiles& files) {
    Transaction transaction(manager);
    InsertSample(files, IsAny);
    transaction.Commit();
  });
}

void MakeGeneratedOffice(const std::filesystem::path& directory, std::int32_t cases,
                         const Progress& progress) {
  MakeOffice(directory, [&](const RecordManager& manager, OfficeFiles& files) {
    Transaction catalogues(manager);
    InsertSample(files, IsCatalogue);
    catalogues.Commit();
    InsertGeneratedCases(manager, files, cases, progress);
  });
}

std::filesystem::path DocumentFolder(const std::filesystem::path& directory) {
  return directory / "Dokumente";
}

}  // namespace office
