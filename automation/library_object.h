// The object that clients call: qlx99.Library.
#pragma once

#include "client.h"
#include "desk.h"
// Windows' own must come before it.
#include <oaidl.h>

namespace automation {

// Late-bound only, without a type library: its methods are the exports, and nothing has to be kept
// in step with them. The desk ends with it.
class LibraryObject final : public IDispatch {
 public:
  explicit LibraryObject(Desk& desk) : desk_(desk), client_(desk) {}
  LibraryObject(const LibraryObject&) = delete;
  LibraryObject& operator=(const LibraryObject&) = delete;

  HRESULT WINAPI QueryInterface(REFIID wanted, void** object) override;
  ULONG WINAPI AddRef() override { return ++references_; }
  ULONG WINAPI Release() override;

  HRESULT WINAPI GetTypeInfoCount(UINT* count) override;
  HRESULT WINAPI GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT WINAPI GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) override;
  HRESULT WINAPI Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) override;

 private:
  ~LibraryObject() { desk_.End(); }

  Desk& desk_;
  Client client_;
  std::atomic<ULONG> references_ = 0;
};

}  // namespace automation
