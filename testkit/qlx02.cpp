#include "qlx02.h"

#include <cstring>

#include "platform/windows_api.h"

namespace testkit {
namespace {

using Argument = const void*;

DelegateCall lastCall{};

template <class... Arguments>
std::int32_t Remember(const char* name, Arguments... arguments) {
  lastCall = {name, sizeof...(arguments), {arguments...}, {}};
  const auto* const text = static_cast<const char*>(lastCall.arguments[0]);
  if (text != nullptr) std::strncpy(lastCall.firstText, text, sizeof lastCall.firstText - 1);
  return kDelegateAnswer;
}

}  // namespace

extern "C" {

const DelegateCall* LastCall() { return &lastCall; }

#define DELEGATE(name, parameters, ...) \
  std::int32_t WINAPI name parameters { return Remember(#name __VA_OPT__(, ) __VA_ARGS__); }
DELEGATE(GetAdressTyp, (Argument a, Argument b), a, b)
DELEGATE(GetAdrFields, (Argument a, Argument b, Argument c, Argument d), a, b, c, d)
DELEGATE(GetAdrFieldsMain, (Argument a, Argument b, Argument c, Argument d), a, b, c, d)
DELEGATE(GetCountOfUser, ())
DELEGATE(GetUserFields, (Argument a, Argument b), a, b)
DELEGATE(GetCountOfWV, ())
DELEGATE(GetWVFields, (Argument a, Argument b), a, b)
DELEGATE(GetPartFields, (Argument a, Argument b, Argument c, Argument d, Argument e), a, b, c, d, e)
DELEGATE(GetCaseFields, (Argument a, Argument b), a, b)
DELEGATE(GetCountOfParts, (Argument a), a)
DELEGATE(GetAdrFieldsWithNumber, (Argument a, Argument b, Argument c), a, b, c)
DELEGATE(GetCountOfWVFromCase, (Argument a), a)
DELEGATE(GetWVFieldsFromCase, (Argument a, Argument b, Argument c), a, b, c)
DELEGATE(GetProgramRoot, (Argument a, Argument b), a, b)
DELEGATE(GetDocuRoot, (Argument a, Argument b), a, b)
#undef DELEGATE

std::int32_t WINAPI GetNextDoc(Argument a) {
  if (std::strcmp(static_cast<const char*>(a), kWithMessage) == 0) {
    constexpr WCHAR kNothing[] = {0};
    MessageBoxW(nullptr, kNothing, kNothing, MB_OK);
  }
  return Remember("GetNextDoc", a);
}

}  // extern "C"

}  // namespace testkit
