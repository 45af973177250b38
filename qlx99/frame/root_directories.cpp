// The two exports that answer with a directory of the office: where its documents lie, and where
// the case-management system's program lies. Unlike every other export they take a number, and
// answer 1 for success.
#include <algorithm>
#include <charconv>

#include "frame/arguments.h"
#include "frame/call_gate.h"
#include "frame/exports.h"
#include "frame/registry.h"

namespace qlx99 {
namespace {

// The gate passes the length on as text, as every other argument of an export is text.
class LengthText {
 public:
  explicit LengthText(std::int32_t length) {
    std::to_chars(digits_.data(), digits_.data() + digits_.size() - 1, length);
  }
  const char* Get() const { return digits_.data(); }

 private:
  std::array<char, 12> digits_{};  // "-2147483648" and its terminator
};

// Copies the configured path, zero-filled to its full width, as far as the caller's buffer goes. No
// length, or a negative one, copies nothing.
template <const RegistryValue& value>
std::optional<RegistryText<value>> CopyConfiguredPath(const char* lengthText, char* buffer) {
  const auto path = ReadConfiguration<value>();
  if (!path || buffer == nullptr) return std::nullopt;
  const auto length = std::clamp<std::int32_t>(LeadingNumber(lengthText), 0, value.size);
  std::copy_n(path->data(), length, buffer);
  return path;
}

std::int32_t DeliverDocuRoot(const char* lengthText, char* buffer) {
  return CopyConfiguredPath<kDocuRoot>(lengthText, buffer) ? 1 : 0;
}

std::int32_t DeliverProgramRoot(const char* lengthText, char* buffer) {
  const auto path = CopyConfiguredPath<kProgramRoot>(lengthText, buffer);
  return path && _access(path->data(), 0) == 0 ? 1 : 0;
}

}  // namespace

std::int32_t WINAPI GetDocuRoot(std::int32_t length, char* path) {
  return PassGate("GetDocuRoot", DeliverDocuRoot, LengthText(length).Get(), path);
}

std::int32_t WINAPI GetProgramRoot(std::int32_t length, char* path) {
  return PassGate("GetProgramRoot", DeliverProgramRoot, LengthText(length).Get(), path);
}

}  // namespace qlx99
