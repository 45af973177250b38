// The gate that every export passes first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qlx99 {

// An export's arguments in the order in which the macro passed them; the missing ones are null.
inline constexpr std::size_t kMaxArguments = 7;
using GateArguments = std::array<const void*, kMaxArguments>;

// What an export has to do after the gate.
enum class GateAnswer : std::int32_t {
  kRefused = 0,    // nothing: the login was not confirmed, and the result is 0
  kWorkHere = 1,   // its own work
  kDelegated = 2,  // nothing: the result is the sibling library's
};

// Sets `*result` to 0 and decides who does the work of the export of that name.
GateAnswer CallGate(const char* exportName, std::int32_t* result, const GateArguments& arguments);

// An export: passes the gate with the arguments as the macro gave them and, where the work is to be
// done here, returns what `worker` makes of them.
template <class... Arguments>
std::int32_t PassGate(const char* exportName, std::int32_t (*worker)(Arguments...),
                      Arguments... arguments) {
  static_assert(sizeof...(Arguments) <= kMaxArguments);
  std::int32_t result = 0;
  if (CallGate(exportName, &result, {arguments...}) != GateAnswer::kWorkHere) return result;
  return worker(arguments...);
}

}  // namespace qlx99
