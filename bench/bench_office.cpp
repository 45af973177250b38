#include "bench/bench_office.h"

#include "frame/bytes.h"
#include "office/host.h"

namespace bench {
namespace {

Offices offices;

}  // namespace

const Offices& TheOffices() { return offices; }

void SetOffices(const std::filesystem::path& folder) {
  // Without the links of scripts/bench, which each look at a file would have to follow.
  const auto office = [&](const char* name) { return std::filesystem::canonical(folder / name); };
  offices = {folder / "work", office("small"), office("usual"), office("large")};
  std::filesystem::remove_all(offices.work);
  std::filesystem::create_directories(offices.work);
}

void UseOffice(const std::filesystem::path& office) { SetDataRoot(office::NativeText(office)); }

qlx99::DataRoot DataRootOf(const std::filesystem::path& office) {
  qlx99::DataRoot root{};
  const std::string text = office::NativeText(office);
  qlx99::CopyBytes(text, root.data(), root.size() - 1);
  return root;
}

}  // namespace bench
