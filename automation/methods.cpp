#include "methods.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <tuple>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "program.h"

namespace automation {
namespace {

template <class Function>
struct Export;

template <class... Parameter>
struct Export<int WINAPI(Parameter...)> {
  static constexpr UINT kArgumentCount = sizeof...(Parameter);

  static std::int32_t Call(FARPROC address, Arguments& arguments, const Desk& desk) {
    // In braces, so that the arguments are taken in their order.
    const std::tuple<Parameter...> values{arguments.Next<Parameter>()...};
    std::int32_t result = 0;
    desk.Do(
        [&] { result = std::apply(std::bit_cast<int(WINAPI*)(Parameter...)>(address), values); });
    return result;
  }
};

#define METHOD(name, delegate, arguments, fields, result)                 \
  Method{#name, arguments, Export<decltype(qlx99::name)>::kArgumentCount, \
         Export<decltype(qlx99::name)>::Call},

constexpr auto kMethods = std::to_array({QLX99_EXPORTS(METHOD)});

bool IsNamed(const Method& method, std::wstring_view name) {
  const std::wstring wide = Widened(method.name);
  return CompareStringOrdinal(wide.data(), static_cast<int>(wide.size()), name.data(),
                              static_cast<int>(name.size()), TRUE) == CSTR_EQUAL;
}

constexpr const wchar_t* kLibraryName = L"qlx99.dll";

// Some of them name the library in their midst, and all end with a blank.
std::wstring WordsFor(DWORD error) {
  constexpr DWORD kInOneLine = FORMAT_MESSAGE_MAX_WIDTH_MASK;
  std::array<const wchar_t*, 9> inserts{};  // as many as there can be
  inserts.fill(kLibraryName);
  std::array<wchar_t, 500> words{};
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_ARGUMENT_ARRAY | kInOneLine, nullptr, error, 0,
      words.data(), words.size(), std::bit_cast<va_list*>(inserts.data()));
  const std::wstring_view all(words.data(), length);
  return std::wstring(all.substr(0, all.find_last_not_of(L' ') + 1));
}

// Loaded at the first call, so that the client can be told why that fails, and never freed.
FARPROC AddressOf(const char* name) {
  const std::wstring path = ProgramFolder() + kLibraryName;
  HMODULE const library = LoadLibraryW(path.c_str());
  if (library == nullptr) {
    const DWORD error = GetLastError();
    throw Failure{HRESULT_FROM_WIN32(error), path + L" cannot be loaded. " + WordsFor(error)};
  }
  FARPROC const address = GetProcAddress(library, name);
  if (address == nullptr) {
    throw Failure{HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND),
                  path + L" has no function " + Widened(name)};
  }
  return address;
}

}  // namespace

std::optional<DISPID> MethodNamed(std::wstring_view name) {
  const auto* const found =
      std::ranges::find_if(kMethods, [&](const Method& one) { return IsNamed(one, name); });
  if (found == kMethods.end()) return std::nullopt;
  return static_cast<DISPID>(found - kMethods.begin()) + 1;
}

const Method* MethodOf(DISPID id) {
  return id < 1 || id > static_cast<DISPID>(kMethods.size()) ? nullptr : &kMethods.at(id - 1);
}

std::int32_t Call(const Method& method, Arguments& arguments, const Desk& desk) {
  const std::int32_t result = method.call(AddressOf(method.name), arguments, desk);
  arguments.HandBack();
  return result;
}

}  // namespace automation
