#include "frame/delegated_calls.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <string_view>
#include <utility>

#include "frame/messages.h"
#include "frame/sibling_library.h"

namespace qlx99 {
namespace {

template <std::size_t>
using Argument = const void*;

template <std::size_t... index>
std::int32_t Call(FARPROC address, [[maybe_unused]] const GateArguments& arguments,
                  std::index_sequence<index...> /*first*/) {
  using Function = std::int32_t WINAPI(Argument<index>...);
  return std::bit_cast<Function*>(address)(arguments[index]...);
}

// Calls a function with the first `count` arguments. It must take exactly that many, because it is
// the called function that removes them.
template <std::size_t count>
std::int32_t With(FARPROC address, const GateArguments& arguments) {
  return Call(address, arguments, std::make_index_sequence<count>());
}

struct Delegate {
  const char* exportName;
  const char* name;  // in the sibling library; null when it has nothing for this export
  std::int32_t (*call)(FARPROC address, const GateArguments& arguments);
};

constexpr Delegate kDelegates[] = {
    {"GetAdressTyp", "GetAdressTyp", With<2>},
    {"ALesenDLL", "GetAdrFields", With<4>},
    {"GetAdrFieldsMain", "GetAdrFieldsMain", With<4>},
    {"UserInit", "GetCountOfUser", With<0>},
    {"UserNext", "GetUserFields", With<2>},
    {"ZtkodoliInit", "GetCountOfWV", With<0>},
    {"ZtkodoliNext", "GetWVFields", With<2>},
    {"BLesenDLL", "GetPartFields", With<5>},
    {"GetDokuNr", "GetNextDoc", With<1>},
    {"SLesenDLL", "GetCaseFields", With<2>},
    {"BListeInit", "GetCountOfParts", With<1>},
    {"BListeNext", "GetAdrFieldsWithNumber", With<3>},
    {"WVInit", "GetCountOfWVFromCase", With<1>},
    {"WVNext", "GetWVFieldsFromCase", With<3>},
    {"GetProgramRoot", "GetProgramRoot", With<2>},
    {"GetDocuRoot", "GetDocuRoot", With<2>},
    {"WVDelete", nullptr, nullptr},
    {"WVNew", nullptr, nullptr},
    {"WVChange", nullptr, nullptr},
};

}  // namespace

void ForwardCall(const char* exportName, const GateArguments& arguments, std::int32_t* result) {
  const std::string_view wanted = exportName;
  const auto* const delegate =
      std::find_if(std::begin(kDelegates), std::end(kDelegates),
                   [wanted](const Delegate& one) { return one.exportName == wanted; });
  if (delegate == std::end(kDelegates) || delegate->name == nullptr) {
    ShowMessage(kNotImplemented, exportName);
    return;
  }
  FARPROC address = SiblingFunction(delegate->name);
  if (address == nullptr) {
    ShowMessage(kDelegateNotFound, delegate->name);
    return;
  }
  *result = delegate->call(address, arguments);
}

}  // namespace qlx99
