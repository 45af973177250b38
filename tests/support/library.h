// The library under test, used as a macro's host uses it: loaded, its exports found by name, freed.
#pragma once

#include <optional>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "testkit/found_export.h"

namespace qlx99::tests {

using testkit::FoundExport;

// The exports under their own names.
struct Exports {
  explicit Exports(HMODULE library) : module(library) {}

  FoundExport Find(const char* name) const { return {module, name}; }

  HMODULE module;
  decltype(&qlx99::MainWndProc) MainWndProc = Find("MainWndProc");
#define FOUND(name, delegate, arguments, fields, result) decltype(&qlx99::name) name = Find(#name);
  QLX99_EXPORTS(FOUND)
#undef FOUND
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
