#include "automation/late_bound_client.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>

#include "support/text.h"

namespace qlx99::tests {
namespace {

VARIANT Argument(const wchar_t* text, BSTR& record) {
  VARIANT argument{};
  if (text == LateBoundClient::kRecord) {
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = &record;
  } else {
    argument.vt = VT_BSTR;
    argument.bstrVal = SysAllocString(text);
  }
  return argument;
}

}  // namespace

LateBoundClient::LateBoundClient() {
  CLSID id{};
  CoInitialize(nullptr);
  CLSIDFromProgID(L"qlx99.Library", &id);
  EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&library_)),
            S_OK);
}

LateBoundClient::~LateBoundClient() {
  if (library_ != nullptr) library_->Release();
  CoUninitialize();
}

HRESULT LateBoundClient::Find(LPOLESTR name, DISPID& method) const {
  return library_->GetIDsOfNames(IID_NULL, &name, 1, 0, &method);
}

std::string LateBoundClient::Call(std::wstring name, const std::vector<const wchar_t*>& arguments) {
  DISPID method = 0;
  EXPECT_EQ(Find(name.data(), method), S_OK);
  BSTR record = nullptr;
  std::vector<VARIANT> given(arguments.size());  // the last one first
  std::ranges::transform(arguments | std::views::reverse, given.begin(),
                         [&](const wchar_t* one) { return Argument(one, record); });
  DISPPARAMS parameters{given.data(), nullptr, static_cast<UINT>(given.size()), 0};
  EXPECT_EQ(library_->Invoke(method, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                             nullptr),
            S_OK);
  for (VARIANT& one : given) VariantClear(&one);
  const std::u16string text(record, record + SysStringLen(record));
  SysFreeString(record);
  return Utf8(text);
}

}  // namespace qlx99::tests
