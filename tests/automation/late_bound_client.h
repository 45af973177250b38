// A client of the automation server that is no script: it can have a window, and null texts.
#pragma once

#include <string>
#include <vector>

#include "platform/windows_api.h"
// <windows.h> first: this builds on it.
#include <oleauto.h>

namespace qlx99::tests {

class LateBoundClient {
 public:
  LateBoundClient();
  ~LateBoundClient();
  LateBoundClient(const LateBoundClient&) = delete;
  LateBoundClient& operator=(const LateBoundClient&) = delete;

  // Stands for the variable among the arguments.
  static constexpr wchar_t kRecord[] = L"record";

  // Looks up a method by its name, which may be null.
  HRESULT Find(LPOLESTR name, DISPID& method) const;

  // The record that the export writes into the variable.
  std::string Call(std::wstring name, const std::vector<const wchar_t*>& arguments);

 private:
  IDispatch* library_ = nullptr;
};

}  // namespace qlx99::tests
