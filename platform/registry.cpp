// The registry: a registration text file that is looked at anew at every question, so that a change
// by hand or by another process counts at once. An open key is only the path that it was opened by.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "platform/registry_file.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::ReadRegistryFile;
using platform::RegistryFile;
using platform::RegistryFilePath;
using platform::RegistryValue;

constexpr LSTATUS Status(DWORD error) { return static_cast<LSTATUS>(error); }

std::string PathOf(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
  return *reinterpret_cast<const std::string*>(key);
}

// On the heap, so that the sanitizers see a key that is not closed.
HKEY NewHandle(const std::string& path) {
  return reinterpret_cast<HKEY>(std::make_unique<std::string>(path).release());
}

// An empty text when the environment does not say it.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// The file itself, when the path leads to it by links, also where there is none yet.
std::filesystem::path WrittenPath() {
  constexpr int kMostLinks = 40;
  std::filesystem::path path = RegistryFilePath();
  std::error_code error;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

// Replaces the file in one step, so that readers see the old or the new one whole. Who may read it
// stays the same.
LSTATUS Write(const RegistryFile& registry) {
  const std::filesystem::path path = WrittenPath();
  std::error_code error;
  const std::filesystem::file_status old = std::filesystem::status(path, error);
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
  const std::string draft = path.string() + "." + std::to_string(getpid());
  std::ofstream file(draft, std::ios::binary | std::ios::trunc);
  file << registry.Format();
  file.close();
  if (exists(old)) std::filesystem::permissions(draft, old.permissions(), error);
  if (file) std::filesystem::rename(draft, path, error);
  if (!file || error) {
    std::filesystem::remove(draft, error);
    return Status(ERROR_ACCESS_DENIED);
  }
  return ERROR_SUCCESS;
}

// What cannot be read is not replaced either.
template <class Action>
LSTATUS Change(const Action& change) {
  std::optional<RegistryFile> registry = ReadRegistryFile();
  if (!registry) return Status(ERROR_ACCESS_DENIED);
  change(*registry);
  return Write(*registry);
}

std::string Below(HKEY key, LPCSTR subKey) { return PathOf(key) + '\\' + subKey; }

}  // namespace

std::filesystem::path platform::RegistryFilePath() {
  if (std::string path = Environment("QLX99_REGISTRY"); !path.empty()) return path;
  const std::string settings = Environment("XDG_CONFIG_HOME");
  const std::filesystem::path directory =
      settings.empty() ? std::filesystem::path(Environment("HOME")) / ".config"
                       : std::filesystem::path(settings);
  return directory / "qlx99" / "registry.reg";
}

std::optional<RegistryFile> platform::ReadRegistryFile() {
  const std::filesystem::path path = RegistryFilePath();
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return RegistryFile();
  // First, as opening a pipe would wait for its writer.
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const bool isUtf16 = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
  if (isUtf16) return std::nullopt;
  return RegistryFile::Parse(text);
}

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD /*options*/, REGSAM /*access*/,
                             HKEY* result) {
  const std::string path = Below(key, subKey);
  const std::optional<RegistryFile> registry = ReadRegistryFile();
  const bool isThere = registry && registry->Has(path);
  *result = isThere ? NewHandle(path) : nullptr;
  return isThere ? ERROR_SUCCESS : Status(ERROR_FILE_NOT_FOUND);
}

LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR valueName, DWORD* /*reserved*/, DWORD* type,
                                BYTE* data, DWORD* size) {
  const std::optional<RegistryFile> registry = ReadRegistryFile();
  const RegistryValue* value = registry ? registry->Find(PathOf(key), valueName) : nullptr;
  if (value == nullptr) return Status(ERROR_FILE_NOT_FOUND);
  *type = value->type;
  const DWORD room = std::exchange(*size, static_cast<DWORD>(value->bytes.size()));
  if (room < *size) return Status(ERROR_MORE_DATA);
  std::copy(value->bytes.begin(), value->bytes.end(), data);
  return ERROR_SUCCESS;
}

LSTATUS WINAPI RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD /*reserved*/, LPSTR /*keyClass*/,
                               DWORD options, REGSAM /*access*/, void* security, HKEY* result,
                               DWORD* /*disposition*/) {
  if (options != REG_OPTION_NON_VOLATILE || security != nullptr) {
    platform::Unsupported("RegCreateKeyExA", "anything but a plain key");
  }
  const std::string path = Below(key, subKey);
  const LSTATUS status = Change([&](RegistryFile& registry) { registry.AddKey(path); });
  if (status == ERROR_SUCCESS) *result = NewHandle(path);
  return status;
}

LSTATUS WINAPI RegSetValueExA(HKEY key, LPCSTR valueName, DWORD /*reserved*/, DWORD type,
                              const BYTE* data, DWORD size) {
  if (type != REG_SZ) platform::Unsupported("RegSetValueExA", "anything but a text");
  return Change([&](RegistryFile& registry) {
    registry.Set(PathOf(key), {valueName, std::string(data, data + size)});
  });
}

LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR valueName) {
  return Change([&](RegistryFile& registry) { registry.Remove(PathOf(key), valueName); });
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
  const std::unique_ptr<std::string> closed(reinterpret_cast<std::string*>(key));
  return ERROR_SUCCESS;
}
