#include "office/check_product.h"

#include <climits>
#include <optional>
#include <system_error>

#include "frame/attach.h"
#include "office/export_call.h"
#include "office/host.h"
#include "office/module.h"

namespace office {
namespace {

constexpr const char* kLibraryName = "qlx99.dll";

std::string WhyNotLoaded(const std::string& library, DWORD error) {
  std::error_code ignored;
  if (std::filesystem::is_directory(PathOf(library), ignored)) return "it is a folder";
  if (error == ERROR_BAD_EXE_FORMAT) {
    return "it is no library for programs of " + std::to_string(sizeof(void*) * CHAR_BIT) + " bits";
  }
  if (error == ERROR_MOD_NOT_FOUND) return "it, or a library that it needs, is not there";
  return "error " + std::to_string(error);
}

// "qlx99.dll 1.0.0, 32 bits, in C:\qlx99".
std::string Described(const std::filesystem::path& file) {
  const std::string version = VersionOf(file);
  return PathText(file.filename()) + (version.empty() ? "" : " " + version) + ", " +
         std::to_string(sizeof(void*) * CHAR_BIT) + " bits, in " + PathText(file.parent_path());
}

// `otherwise` is advice for one that cannot be loaded. Throws Failure when it cannot be, or is not
// such a library.
HMODULE LoadWithExports(const std::string& library, const std::string& otherwise) {
  HMODULE const loaded = LoadModule(library);
  if (loaded == nullptr) {
    throw Failure(library + " cannot be loaded: " + WhyNotLoaded(library, GetLastError()) + ". " +
                  otherwise);
  }
  const std::filesystem::path file = PathOfModule(loaded);
  for (const Export& one : Exports()) {
    const std::string name(one.name);
    if (GetProcAddress(loaded, name.c_str()) != nullptr) continue;
    FreeLibrary(loaded);
    throw Failure(Described(file) + ", has no function " + name +
                  ": it is another library or version. Install that of this program.");
  }
  return loaded;
}

}  // namespace

ExaminedLibrary::ExaminedLibrary(const std::string& library, Report& report)
    : program_(qlx99::CurrentAttachment().module) {
  if (report.Add("library", [&] { return Load(library.empty() ? kLibraryName : library); })) {
    qlx99::AttachLibrary(library_);
  }
  LookAtAutomation(report);
}

ExaminedLibrary::~ExaminedLibrary() {
  if (library_ == nullptr) return;
  qlx99::AttachLibrary(program_);
  FreeLibrary(library_);
}

std::string ExaminedLibrary::Load(const std::string& library) {
  library_ =
      LoadWithExports(library, "Install it, or name the one that macros load with --library.");
  return Described(PathOfModule(library_));
}

void ExaminedLibrary::LookAtAutomation(Report& report) const {
  constexpr const char* kWhat = "automation";
  const std::optional<AutomationServer> server = LookForAutomationServer();
  if (!server) return;
  const std::string program = PathText(server->program);
  if (server->program.empty()) {
    return report.Good(kWhat,
                       "not registered, so only 32-bit word processors have the library; "
                       "`qlx99server /regserver` registers it");
  }
  if (!server->error.empty()) {
    return report.Bad(kWhat, program + " does not answer (error " + server->error +
                                 "). Run `qlx99server /regserver` where it lies now.");
  }
  const std::filesystem::path beside = server->program.parent_path() / kLibraryName;
  try {
    FreeLibrary(LoadWithExports(PathText(beside), "Install it there."));
  } catch (const Failure& failure) {
    return report.Bad(kWhat, program + " answers, but " + failure.what());
  }
  if (library_ != nullptr && VersionOf(beside) != VersionOf(PathOfModule(library_))) {
    return report.Doubtful(kWhat, program + " answers, with another version: " + Described(beside));
  }
  report.Good(kWhat, program + " answers");
}

}  // namespace office
