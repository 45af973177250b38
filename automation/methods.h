// The methods of the library object: the library's exports, under their names and with their
// arguments.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "arguments.h"
#include "desk.h"

namespace automation {

struct Method {
  const char* name;
  const char* argumentNames;  // with blanks between them, and without the buffer's
  UINT argumentCount;
  std::int32_t (*call)(FARPROC address, Arguments& arguments, const Desk& desk);
};

// The identifier of a method by its name, in any letter case.
std::optional<DISPID> MethodNamed(std::wstring_view name);

// Null for an identifier that no method has.
const Method* MethodOf(DISPID id);

// Calls the export of the qlx99.dll beside this program, at the desk, and returns its result.
// Throws Failure when the library or the export is not there, or an argument cannot be passed on.
std::int32_t Call(const Method& method, Arguments& arguments, const Desk& desk);

}  // namespace automation
