#include "registration.h"

#include <string>

#include "class_names.h"
#include "program.h"

namespace automation {
namespace {

// 32-bit clients look for classes in one view of the registry, 64-bit ones in the other. A 32-bit
// Windows has one, and both names mean it.
constexpr REGSAM kViews[] = {KEY_WOW64_32KEY, KEY_WOW64_64KEY};

const std::wstring kClasses = L"Software\\Classes\\";

struct Entry {
  std::wstring key;  // below Classes
  std::wstring text;
};

std::wstring ClassKey() { return std::wstring(L"CLSID\\") + kClassId; }

// Unregister removes these keys with all that is below them.
const std::wstring kKeys[] = {kClassName, kVersionedName, ClassKey()};

bool Write(HKEY users, REGSAM view, const Entry& entry) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(users, (kClasses + entry.key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_WRITE | view, nullptr, &key, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const auto size = static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t));
  const LSTATUS status = RegSetValueExW(key, nullptr, 0, REG_SZ,
                                        reinterpret_cast<const BYTE*>(entry.text.c_str()), size);
  RegCloseKey(key);
  return status == ERROR_SUCCESS;
}

bool WriteAll(HKEY users) {
  const std::wstring title = L"qlx99";
  const Entry entries[] = {
      {kVersionedName, title},
      {std::wstring(kVersionedName) + L"\\CLSID", kClassId},
      {kClassName, title},
      {std::wstring(kClassName) + L"\\CLSID", kClassId},
      {std::wstring(kClassName) + L"\\CurVer", kVersionedName},
      {ClassKey(), title},
      {ClassKey() + L"\\ProgID", kVersionedName},
      {ClassKey() + L"\\VersionIndependentProgID", kClassName},
      {ClassKey() + L"\\LocalServer32", L'"' + ProgramPath() + L'"'},
  };
  for (const REGSAM view : kViews) {
    for (const Entry& entry : entries) {
      if (!Write(users, view, entry)) return false;
    }
  }
  return true;
}

// The key and all below it; `view` says in which view.
bool RemoveTree(HKEY users, REGSAM view, const std::wstring& path) {
  HKEY key = nullptr;
  const LSTATUS opened = RegOpenKeyExW(users, path.c_str(), 0, KEY_ALL_ACCESS | view, &key);
  if (opened != ERROR_SUCCESS) return opened == ERROR_FILE_NOT_FOUND;
  const LSTATUS emptied = RegDeleteTreeW(key, nullptr);
  RegCloseKey(key);
  return emptied == ERROR_SUCCESS && RegDeleteKeyExW(users, path.c_str(), view, 0) == ERROR_SUCCESS;
}

bool RemoveAll(HKEY users) {
  bool isRemoved = true;
  for (const REGSAM view : kViews) {
    for (const std::wstring& key : kKeys) isRemoved &= RemoveTree(users, view, kClasses + key);
  }
  return isRemoved;
}

}  // namespace

Registered Register() {
  // What is registered for a user goes before what is for all.
  RemoveAll(HKEY_CURRENT_USER);
  if (RemoveAll(HKEY_LOCAL_MACHINE) && WriteAll(HKEY_LOCAL_MACHINE)) {
    return Registered::kForAllUsers;
  }
  return WriteAll(HKEY_CURRENT_USER) ? Registered::kForThisUser : Registered::kNot;
}

bool Unregister() {
  const bool isRemoved = RemoveAll(HKEY_CURRENT_USER);
  return RemoveAll(HKEY_LOCAL_MACHINE) && isRemoved;
}

}  // namespace automation
