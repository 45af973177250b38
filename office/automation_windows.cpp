// Is there somebody who answers for the automation object?
#include <array>
#include <sstream>
#include <string>

#include "automation/class_names.h"
#include "office/host.h"
#include "platform/windows_api.h"
// <windows.h> first: this builds on it.
#include <oaidl.h>
#include <objbase.h>

namespace office {
namespace {

class Automation {
 public:
  Automation() : isReady_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~Automation() {
    if (isReady_) CoUninitialize();
  }
  Automation(const Automation&) = delete;
  Automation& operator=(const Automation&) = delete;

 private:
  bool isReady_;  // or somebody else has made it ready in his own way
};

// Without its quotation marks; empty when there is none.
std::filesystem::path ProgramOf(const CLSID& id) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(id, text.data(), text.size());
  const std::wstring key = std::wstring(L"CLSID\\") + text.data() + L"\\LocalServer32";
  std::wstring program(MAX_PATH * 2, L'\0');
  auto size = static_cast<DWORD>(program.size() * sizeof(wchar_t));
  if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, program.data(),
                   &size) != ERROR_SUCCESS) {
    return {};
  }
  program.resize(program.find(L'\0'));
  std::erase(program, L'"');
  return program;
}

// As it is looked up: "0x80080005".
std::string NumberOf(HRESULT failure) {
  std::ostringstream text;
  text << "0x" << std::hex << static_cast<unsigned long>(failure);
  return text.str();
}

HRESULT Ask(const CLSID& id) {
  IDispatch* library = nullptr;
  HRESULT result = CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                    reinterpret_cast<void**>(&library));
  if (FAILED(result)) return result;
  std::wstring name = L"UserInit";
  LPOLESTR names = name.data();
  DISPID method = 0;
  result = library->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_NEUTRAL, &method);
  library->Release();
  return result;
}

}  // namespace

std::optional<AutomationServer> LookForAutomationServer() {
  const Automation automation;
  AutomationServer server;
  CLSID id{};
  if (FAILED(CLSIDFromProgID(automation::kClassName, &id))) return server;
  server.program = ProgramOf(id);
  if (server.program.empty()) return server;
  const HRESULT answer = Ask(id);
  if (FAILED(answer)) server.error = NumberOf(answer);
  return server;
}

}  // namespace office
