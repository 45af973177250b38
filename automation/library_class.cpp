#include "library_class.h"

#include "access.h"
#include "class_names.h"
#include "library_object.h"

namespace automation {
namespace {

// For a client that dies before it has its object, in milliseconds.
constexpr DWORD kPatience = 60'000;

// Makes one object: what the library remembers between calls is its client's.
class Factory final : public IClassFactory {
 public:
  explicit Factory(Desk& desk) : desk_(desk) {}

  HRESULT WINAPI QueryInterface(REFIID wanted, void** object) override {
    const bool isThis = wanted == IID_IUnknown || wanted == IID_IClassFactory;
    *object = isThis ? static_cast<IClassFactory*>(this) : nullptr;
    return isThis ? S_OK : E_NOINTERFACE;
  }

  // Lives as long as the program.
  ULONG WINAPI AddRef() override { return 2; }
  ULONG WINAPI Release() override { return 1; }

  HRESULT WINAPI CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    if (hasMade_.exchange(true)) return CLASS_E_CLASSNOTAVAILABLE;
    auto* const made = new (std::nothrow) LibraryObject(desk_);
    if (made == nullptr) {
      desk_.End();
      return E_OUTOFMEMORY;
    }
    made->AddRef();
    const HRESULT status = made->QueryInterface(wanted, object);
    made->Release();
    return status;
  }

  // There is nothing to keep the program for when its one object is gone.
  HRESULT WINAPI LockServer(BOOL /*lock*/) override { return S_OK; }

  bool HasMade() const { return hasMade_; }

 private:
  Desk& desk_;
  std::atomic<bool> hasMade_ = false;
};

DWORD WINAPI Offer(void* desk) {
  static Factory factory(*static_cast<Desk*>(desk));
  DWORD registration = 0;
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  const bool isOffered = AdmitOnlyThisUser() && SUCCEEDED(CoRegisterClassObject(
                                                    kLibraryClass, &factory, CLSCTX_LOCAL_SERVER,
                                                    REGCLS_SINGLEUSE, &registration));
  if (isOffered) Sleep(kPatience);
  if (!factory.HasMade()) static_cast<Desk*>(desk)->End();
  Sleep(INFINITE);
  return 0;
}

}  // namespace

void OfferClass(Desk& desk) {
  HANDLE const thread = CreateThread(nullptr, 0, Offer, &desk, 0, nullptr);
  if (thread == nullptr) return desk.End();
  CloseHandle(thread);
}

}  // namespace automation
