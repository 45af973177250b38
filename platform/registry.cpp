// The registry: a registration text file that is looked at anew at every question, so that a change
// by hand or by another process counts at once. An open key is only the path that it was opened by.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

#include "platform/registry_file.h"
#include "platform/unsupported.h"
#include "platform/windows_api.h"

namespace {

using platform::RegistryFile;
using platform::RegistryValue;

struct OpenKeys {
  std::mutex mutex;
  std::uintptr_t lastNumber = 0;
  std::map<HKEY, std::string> paths;
};

// Never destroyed: libraries may still close keys while the process ends.
OpenKeys& Keys() {
  static auto& keys = *new OpenKeys;
  return keys;
}

constexpr LSTATUS Status(DWORD error) { return static_cast<LSTATUS>(error); }

std::string PathOf(HKEY key) {
  if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
  OpenKeys& keys = Keys();
  const std::lock_guard lock(keys.mutex);
  const auto found = keys.paths.find(key);
  if (found == keys.paths.end()) platform::Unsupported("the registry", "a key that is not open");
  return found->second;
}

HKEY NewHandle(std::string path) {
  OpenKeys& keys = Keys();
  const std::lock_guard lock(keys.mutex);
  auto* handle = reinterpret_cast<HKEY>(keys.lastNumber += 4);
  keys.paths.emplace(handle, std::move(path));
  return handle;
}

// An empty text when the environment does not say it.
std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

std::string FilePath() {
  if (std::string path = Environment("QLX99_REGISTRY"); !path.empty()) return path;
  const std::string settings = Environment("XDG_CONFIG_HOME");
  const std::filesystem::path directory =
      settings.empty() ? std::filesystem::path(Environment("HOME")) / ".config"
                       : std::filesystem::path(settings);
  return directory / "qlx99" / "registry.reg";
}

// The file as it was read last, and what it looked like then.
struct KnownFile {
  std::mutex mutex;
  struct stat facts {};
  std::shared_ptr<const RegistryFile> content;
};

KnownFile& LastRead() {
  static auto& known = *new KnownFile;
  return known;
}

bool IsSameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool IsUnchanged(const struct stat& before, const struct stat& now) {
  return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
         before.st_size == now.st_size && IsSameTime(before.st_ctim, now.st_ctim);
}

// Whether a later change is sure to show: the clock of files goes in steps of milliseconds.
bool IsSettled(const struct stat& facts) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  constexpr double kNanoseconds = 1e9;
  constexpr double kStep = 0.1;  // seconds, with plenty to spare
  const auto age = static_cast<double>(now.tv_sec - facts.st_ctim.tv_sec) +
                   static_cast<double>(now.tv_nsec - facts.st_ctim.tv_nsec) / kNanoseconds;
  return age > kStep;
}

RegistryFile ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return RegistryFile::Parse(text);
}

// A file that cannot be read is a registry without keys. One that has not changed is not read
// again: the library asks a dozen times for each letter.
std::shared_ptr<const RegistryFile> Read() {
  const std::string path = FilePath();
  KnownFile& known = LastRead();
  const std::lock_guard lock(known.mutex);
  struct stat facts {};
  const bool present = stat(path.c_str(), &facts) == 0;
  if (present && known.content != nullptr && IsUnchanged(known.facts, facts)) return known.content;
  auto content = std::make_shared<const RegistryFile>(ReadFile(path));
  const bool keep = present && IsSettled(facts);
  known.facts = facts;
  known.content = keep ? content : nullptr;
  return content;
}

// Replaces the file in one step, so that readers see the old or the new one whole.
LSTATUS Write(const RegistryFile& registry) {
  const std::filesystem::path path = FilePath();
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
  const std::string draft = path.string() + "." + std::to_string(getpid());
  std::ofstream file(draft, std::ios::binary | std::ios::trunc);
  file << registry.Format();
  file.close();
  if (file) std::filesystem::rename(draft, path, error);
  if (!file || error) {
    std::filesystem::remove(draft, error);
    return Status(ERROR_ACCESS_DENIED);
  }
  return ERROR_SUCCESS;
}

std::string Below(const std::string& path, LPCSTR subKey) {
  std::string below = subKey == nullptr ? "" : subKey;
  while (below.ends_with('\\')) below.pop_back();
  return below.empty() ? path : path + '\\' + below;
}

std::string Text(LPCSTR text) { return text == nullptr ? "" : text; }

// Hands over a value's bytes as all of Windows' queries do; see RegQueryValueExA.
LSTATUS Deliver(const RegistryValue& value, DWORD* type, BYTE* data, DWORD* size) {
  if (type != nullptr) *type = value.type;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = *size;
  *size = static_cast<DWORD>(value.bytes.size());
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < *size) return Status(ERROR_MORE_DATA);
  std::copy(value.bytes.begin(), value.bytes.end(), data);
  return ERROR_SUCCESS;
}

}  // namespace

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD /*options*/, REGSAM /*access*/,
                             HKEY* result) {
  const std::string path = Below(PathOf(key), subKey);
  const bool isThere = Read()->Has(path);
  *result = isThere ? NewHandle(path) : nullptr;
  return isThere ? ERROR_SUCCESS : Status(ERROR_FILE_NOT_FOUND);
}

// NOLINTNEXTLINE(readability-non-const-parameter): `reserved` has Windows' type
LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR valueName, DWORD* /*reserved*/, DWORD* type,
                                BYTE* data, DWORD* size) {
  const std::shared_ptr<const RegistryFile> registry = Read();
  const RegistryValue* value = registry->Find(PathOf(key), Text(valueName));
  return value == nullptr ? Status(ERROR_FILE_NOT_FOUND) : Deliver(*value, type, data, size);
}

LSTATUS WINAPI RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD /*reserved*/, LPSTR /*keyClass*/,
                               DWORD options, REGSAM /*access*/, void* security, HKEY* result,
                               // NOLINTNEXTLINE(readability-non-const-parameter): Windows' type
                               DWORD* disposition) {
  if (options != REG_OPTION_NON_VOLATILE || security != nullptr || disposition != nullptr) {
    platform::Unsupported("RegCreateKeyExA", "anything but a plain key");
  }
  const std::string path = Below(PathOf(key), subKey);
  RegistryFile registry = *Read();
  if (!registry.Has(path)) {
    registry.CreateKey(path);
    if (const LSTATUS status = Write(registry); status != ERROR_SUCCESS) return status;
  }
  *result = NewHandle(path);
  return ERROR_SUCCESS;
}

LSTATUS WINAPI RegSetValueExA(HKEY key, LPCSTR valueName, DWORD /*reserved*/, DWORD type,
                              const BYTE* data, DWORD size) {
  RegistryFile registry = *Read();
  registry.Set(PathOf(key), {Text(valueName), type, std::string(data, data + size)});
  return Write(registry);
}

LSTATUS WINAPI RegDeleteValueA(HKEY key, LPCSTR valueName) {
  RegistryFile registry = *Read();
  if (!registry.Remove(PathOf(key), Text(valueName))) return Status(ERROR_FILE_NOT_FOUND);
  return Write(registry);
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
  OpenKeys& keys = Keys();
  const std::lock_guard lock(keys.mutex);
  keys.paths.erase(key);
  return ERROR_SUCCESS;
}
