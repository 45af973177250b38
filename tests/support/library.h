// The library under test, used as a macro's host uses it: loaded, its exports found by name, freed.
#pragma once

#include <bit>
#include <optional>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "platform/windows_api.h"

namespace qlx99::tests {

// A function that a library exports, whatever the type it is taken for. Throws when the library has
// none of that name.
class FoundExport {
 public:
  FoundExport(HMODULE module, const char* name);

  template <class Function>
  operator Function*() const {
    return std::bit_cast<Function*>(address_);
  }

 private:
  FARPROC address_;
};

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
