#include "library_object.h"

#include "methods.h"

namespace automation {
namespace {

// Windows' words will do where the failure has none.
HRESULT Tell(const Failure& failure, UINT place, EXCEPINFO* exception, UINT* wrongArgument) {
  if (wrongArgument != nullptr) *wrongArgument = place;
  if (failure.text.empty() || exception == nullptr) return failure.code;
  *exception = {};
  exception->scode = failure.code;
  exception->bstrSource = SysAllocString(L"qlx99.Library");
  exception->bstrDescription = SysAllocString(failure.text.c_str());
  return DISP_E_EXCEPTION;
}

// Whether the call is one of the method, with as many arguments as that has.
HRESULT Check(const Method* method, WORD flags, const DISPPARAMS& given) {
  if (method == nullptr || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  if (given.cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  return given.cArgs == method->argumentCount ? S_OK : DISP_E_BADPARAMCOUNT;
}

}  // namespace

HRESULT WINAPI LibraryObject::QueryInterface(REFIID wanted, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool isThis = wanted == IID_IUnknown || wanted == IID_IDispatch;
  *object = isThis ? static_cast<IDispatch*>(this) : nullptr;
  if (!isThis) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG WINAPI LibraryObject::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT WINAPI LibraryObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT WINAPI LibraryObject::GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) {
  *info = nullptr;
  return DISP_E_BADINDEX;
}

// Arguments have no names here.
HRESULT WINAPI LibraryObject::GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT count,
                                            LCID /*locale*/, DISPID* ids) try {
  client_.MeetCaller();
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  const auto id = count > 0 && names[0] != nullptr ? MethodNamed(names[0]) : std::nullopt;
  if (id) ids[0] = *id;
  return id && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

HRESULT WINAPI LibraryObject::Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* wrongArgument) try {
  client_.MeetCaller();
  const Method* const method = MethodOf(id);
  const HRESULT status = Check(method, flags, *parameters);
  if (FAILED(status)) return status;
  Arguments arguments(*parameters, method->argumentNames);
  try {
    const std::int32_t answer = Call(*method, arguments, desk_);
    if (result != nullptr) {
      VariantInit(result);
      result->vt = VT_I4;
      result->lVal = answer;
    }
    return S_OK;
  } catch (const Failure& failure) {
    return Tell(failure, arguments.Place(), exception, wrongArgument);
  }
} catch (const std::bad_alloc&) {
  return E_OUTOFMEMORY;
}

}  // namespace automation
