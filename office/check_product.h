// Whether what this package brings is where macros, and programs that cannot load it, find it.
#pragma once

#include <string>

#include "office/report.h"
#include "platform/windows_api.h"

namespace office {

// The library that a macro would get, loaded as long as this exists. Until then the record manager
// is looked for as that library does, which is also beside it.
class ExaminedLibrary {
 public:
  // Reports the library and the automation server. `library` is given as LoadModule takes it;
  // empty, it is qlx99.dll, as a program in this one's folder would find it.
  ExaminedLibrary(const std::string& library, Report& report);
  ~ExaminedLibrary();
  ExaminedLibrary(const ExaminedLibrary&) = delete;
  ExaminedLibrary& operator=(const ExaminedLibrary&) = delete;

 private:
  std::string Load(const std::string& library);
  void LookAtAutomation(Report& report) const;

  HMODULE program_;  // that was attached before
  HMODULE library_ = nullptr;
};

}  // namespace office
