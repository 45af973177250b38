#include "frame/delegated_calls.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <string_view>
#include <utility>

#include "frame/exports.h"
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

using Caller = std::int32_t(FARPROC address, const GateArguments& arguments);

// Calls a function with as many arguments as the export has. The called function takes them off the
// stack, so one too many or too few would damage it.
template <std::size_t count, class... Arguments>
consteval Caller* With(std::int32_t(WINAPI* /*theExport*/)(Arguments...)) {
  static_assert(sizeof...(Arguments) == count);
  return [](FARPROC address, const GateArguments& arguments) {
    return Call(address, arguments, std::make_index_sequence<count>());
  };
}

struct Delegate {
  const char* exportName;
  const char* name;  // in the sibling library; null when it has nothing for this export
  Caller* call;
};

constexpr Delegate kDelegates[] = {
    {"GetAdressTyp", "GetAdressTyp", With<2>(GetAdressTyp)},
    {"ALesenDLL", "GetAdrFields", With<4>(ALesenDLL)},
    {"GetAdrFieldsMain", "GetAdrFieldsMain", With<4>(GetAdrFieldsMain)},
    {"UserInit", "GetCountOfUser", With<0>(UserInit)},
    {"UserNext", "GetUserFields", With<2>(UserNext)},
    {"ZtkodoliInit", "GetCountOfWV", With<0>(ZtkodoliInit)},
    {"ZtkodoliNext", "GetWVFields", With<2>(ZtkodoliNext)},
    {"BLesenDLL", "GetPartFields", With<5>(BLesenDLL)},
    {"GetDokuNr", "GetNextDoc", With<1>(GetDokuNr)},
    {"SLesenDLL", "GetCaseFields", With<2>(SLesenDLL)},
    {"BListeInit", "GetCountOfParts", With<1>(BListeInit)},
    {"BListeNext", "GetAdrFieldsWithNumber", With<3>(BListeNext)},
    {"WVInit", "GetCountOfWVFromCase", With<1>(WVInit)},
    {"WVNext", "GetWVFieldsFromCase", With<3>(WVNext)},
    {"GetProgramRoot", "GetProgramRoot", With<2>(GetProgramRoot)},
    {"GetDocuRoot", "GetDocuRoot", With<2>(GetDocuRoot)},
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
