#include "frame/delegated_calls.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <string_view>
#include <utility>

#include "frame/export_list.h"
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
template <class... Arguments>
consteval Caller* CallerFor(std::int32_t(WINAPI* /*theExport*/)(Arguments...)) {
  return [](FARPROC address, const GateArguments& arguments) {
    return Call(address, arguments, std::index_sequence_for<Arguments...>());
  };
}

struct Delegate {
  const char* exportName;
  const char* name;  // in the sibling library; null when it has nothing for this export
  Caller* call;
};

#define DELEGATE(name, delegate, arguments, fields, result) {#name, delegate, CallerFor(name)},
constexpr Delegate kDelegates[] = {QLX99_EXPORTS(DELEGATE)};
#undef DELEGATE

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
