// Two exports that exist for the delegated kind, where the sibling library answers them; here there
// is nothing to do.
#include "frame/call_gate.h"
#include "frame/exports.h"

namespace qlx99 {
namespace {

std::int32_t NothingToDo(const char* /*first*/, const char* /*second*/, const char* /*third*/,
                         const char* /*fourth*/) {
  return -1;
}

std::int32_t NothingToDoForType(const char* /*first*/, const char* /*second*/) { return -1; }

}  // namespace

std::int32_t WINAPI GetAdrFieldsMain(const char* first, const char* second, const char* third,
                                     const char* fourth) {
  return PassGate("GetAdrFieldsMain", NothingToDo, first, second, third, fourth);
}

std::int32_t WINAPI GetAdressTyp(const char* first, const char* second) {
  return PassGate("GetAdressTyp", NothingToDoForType, first, second);
}

}  // namespace qlx99
