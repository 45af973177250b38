// The library under test, used as a macro's host uses it: loaded, its exports found by name, freed.
#pragma once

#include "frame/exports.h"
#include "platform/windows_api.h"

// The table of exports.
#define QLX99_EXPORTS(EXPORT)                                                                \
  EXPORT(GetDocuRoot)                                                                        \
  EXPORT(GetProgramRoot)                                                                     \
  EXPORT(MainWndProc)                                                                        \
  EXPORT(UserInit) EXPORT(UserNext) EXPORT(ZtkodoliInit) EXPORT(ZtkodoliNext) EXPORT(WVInit) \
      EXPORT(WVNext) EXPORT(WVNew) EXPORT(WVChange) EXPORT(WVDelete) EXPORT(SLesenDLL)       \
          EXPORT(ALesenDLL) EXPORT(BLesenDLL) EXPORT(BListeInit) EXPORT(BListeNext)          \
              EXPORT(GetAdrFieldsMain) EXPORT(GetAdressTyp) EXPORT(GetDokuNr)

namespace qlx99::tests {

// The exports under their own names.
struct Exports {
#define QLX99_MEMBER(name) decltype(&qlx99::name) name = nullptr;
  QLX99_EXPORTS(QLX99_MEMBER)
#undef QLX99_MEMBER
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
  HMODULE module_ = nullptr;
  Exports exports_;
};

}  // namespace qlx99::tests
