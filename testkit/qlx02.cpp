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

std::int32_t WINAPI GetAdressTyp(Argument a, Argument b) { return Remember("GetAdressTyp", a, b); }
std::int32_t WINAPI GetAdrFields(Argument a, Argument b, Argument c, Argument d) {
  return Remember("GetAdrFields", a, b, c, d);
}
std::int32_t WINAPI GetAdrFieldsMain(Argument a, Argument b, Argument c, Argument d) {
  return Remember("GetAdrFieldsMain", a, b, c, d);
}
std::int32_t WINAPI GetCountOfUser() { return Remember("GetCountOfUser"); }
std::int32_t WINAPI GetUserFields(Argument a, Argument b) {
  return Remember("GetUserFields", a, b);
}
std::int32_t WINAPI GetCountOfWV() { return Remember("GetCountOfWV"); }
std::int32_t WINAPI GetWVFields(Argument a, Argument b) { return Remember("GetWVFields", a, b); }
std::int32_t WINAPI GetPartFields(Argument a, Argument b, Argument c, Argument d, Argument e) {
  return Remember("GetPartFields", a, b, c, d, e);
}
std::int32_t WINAPI GetNextDoc(Argument a) {
  if (std::strcmp(static_cast<const char*>(a), kWithMessage) == 0) {
    constexpr WCHAR kNothing[] = {0};
    MessageBoxW(nullptr, kNothing, kNothing, MB_OK);
  }
  return Remember("GetNextDoc", a);
}
std::int32_t WINAPI GetCaseFields(Argument a, Argument b) {
  return Remember("GetCaseFields", a, b);
}
std::int32_t WINAPI GetCountOfParts(Argument a) { return Remember("GetCountOfParts", a); }
std::int32_t WINAPI GetAdrFieldsWithNumber(Argument a, Argument b, Argument c) {
  return Remember("GetAdrFieldsWithNumber", a, b, c);
}
std::int32_t WINAPI GetCountOfWVFromCase(Argument a) { return Remember("GetCountOfWVFromCase", a); }
std::int32_t WINAPI GetWVFieldsFromCase(Argument a, Argument b, Argument c) {
  return Remember("GetWVFieldsFromCase", a, b, c);
}
std::int32_t WINAPI GetProgramRoot(Argument a, Argument b) {
  return Remember("GetProgramRoot", a, b);
}
std::int32_t WINAPI GetDocuRoot(Argument a, Argument b) { return Remember("GetDocuRoot", a, b); }

}  // extern "C"

}  // namespace testkit
