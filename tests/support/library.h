// The library under test, used as a macro's host uses it: loaded, its exports found by name, freed.
#pragma once

#include <optional>

#include "frame/exports.h"
#include "testkit/found_export.h"

namespace qlx99::tests {

using testkit::FoundExport;

// The exports under their own names.
struct Exports {
  explicit Exports(HMODULE library) : module(library) {}

  FoundExport Find(const char* name) const { return {module, name}; }

  HMODULE module;
  decltype(&qlx99::GetDocuRoot) GetDocuRoot = Find("GetDocuRoot");
  decltype(&qlx99::GetProgramRoot) GetProgramRoot = Find("GetProgramRoot");
  decltype(&qlx99::MainWndProc) MainWndProc = Find("MainWndProc");
  decltype(&qlx99::UserInit) UserInit = Find("UserInit");
  decltype(&qlx99::UserNext) UserNext = Find("UserNext");
  decltype(&qlx99::ZtkodoliInit) ZtkodoliInit = Find("ZtkodoliInit");
  decltype(&qlx99::ZtkodoliNext) ZtkodoliNext = Find("ZtkodoliNext");
  decltype(&qlx99::WVInit) WVInit = Find("WVInit");
  decltype(&qlx99::WVNext) WVNext = Find("WVNext");
  decltype(&qlx99::WVNew) WVNew = Find("WVNew");
  decltype(&qlx99::WVChange) WVChange = Find("WVChange");
  decltype(&qlx99::WVDelete) WVDelete = Find("WVDelete");
  decltype(&qlx99::SLesenDLL) SLesenDLL = Find("SLesenDLL");
  decltype(&qlx99::ALesenDLL) ALesenDLL = Find("ALesenDLL");
  decltype(&qlx99::BLesenDLL) BLesenDLL = Find("BLesenDLL");
  decltype(&qlx99::BListeInit) BListeInit = Find("BListeInit");
  decltype(&qlx99::BListeNext) BListeNext = Find("BListeNext");
  decltype(&qlx99::GetAdrFieldsMain) GetAdrFieldsMain = Find("GetAdrFieldsMain");
  decltype(&qlx99::GetAdressTyp) GetAdressTyp = Find("GetAdressTyp");
  decltype(&qlx99::GetDokuNr) GetDokuNr = Find("GetDokuNr");
};

class Library {
 public:
  Library() = default;
  ~Library() { Free(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Loads the library at the first use, so that the test can arrange the office before.
  const Exports* operator->();

  // Fails the test when the library stays loaded all the same.
  void Free();

 private:
  std::optional<Exports> exports_;
};

}  // namespace qlx99::tests
