// Every export under rubbish: arguments that are null, endless or no numbers, in an office where
// nothing is as it should be. No call may crash, look or write where it must not, or leave a file
// open.
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "frame/export_list.h"
#include "frame/exports.h"
#include "fuzz/hostile_office.h"

namespace {

using fuzz::Found;
using fuzz::Input;

// An export's arguments. Texts end where their memory does, with or without a terminator where the
// export knows how much of them counts.
class Arguments {
 public:
  explicit Arguments(Input& input) : input_(input) {}

  template <class Type>
  Type Take();

 private:
  char* Keep(const std::string& bytes) {
    memory_.emplace_back(new char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), memory_.back().get());
    return memory_.back().get();
  }

  Input& input_;
  std::vector<std::unique_ptr<char[]>> memory_;
};

template <>
const char* Arguments::Take<const char*>() {
  constexpr const char* kUsual[] = {"12345678", "1", "2", "M ", "31.12.2024", "G ", "4711", "0"};
  const std::uint8_t choice = input_.Byte();
  if (choice == 255) return nullptr;
  if (choice < 160) return Keep(kUsual[choice % std::size(kUsual)] + std::string(1, '\0'));
  return Keep(input_.Text() + '\0');
}

template <>
char* Arguments::Take<char*>() {
  constexpr std::size_t kResultSize = 1024;
  return input_.OneIn(64) ? nullptr : Keep(std::string(kResultSize, ' '));
}

template <class... Types>
void Call(std::int32_t(WINAPI* function)(Types...), Input& input) {
  Arguments arguments(input);
  const std::tuple<Types...> taken{arguments.Take<Types>()...};
  std::apply(function, taken);
}

// These say how large their buffer is.
void Call(std::int32_t(WINAPI* function)(std::int32_t, char*), Input& input) {
  constexpr std::int32_t kLengths[] = {0, 1, 13, 259, 260, 261, 1 << 20, -1, -(1 << 30)};
  const std::int32_t length = kLengths[input.Choice(std::size(kLengths))];
  const std::size_t room = length > 0 ? static_cast<std::size_t>(length) : 0;
  const std::unique_ptr<char[]> buffer(new char[room]);
  function(length, input.OneIn(16) ? nullptr : buffer.get());
}

// The export that only Windows calls.
void SendToWindow(Input& input) { qlx99::MainWndProc(nullptr, input.Word(), input.Word(), 0); }

void CallAny(Input& input) {
#define CALL(name, delegate, arguments, fields, result) [](Input& i) { Call(qlx99::name, i); },
  constexpr void (*kCalls[])(Input&) = {QLX99_EXPORTS(CALL) SendToWindow};
#undef CALL
  kCalls[input.Choice(std::size(kCalls))](input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzz::Configuration configuration;
  Input input(bytes, size);
  configuration.Change(input);
  const fuzz::User user(input);
  const fuzz::Manager manager(input);
  const bool delegated = qlx99::CurrentAttachment().installKind == qlx99::InstallKind::kDelegated;
  // Several, as some exports remember something of the one before.
  for (int i = 1 + input.Byte() % 3; i > 0; --i) {
    std::optional<fuzz::LoginServer> server;
    if (delegated) server.emplace(input);
    CallAny(input);
    if (manager.OpenFileCount() != 0) Found("a file stays open");
  }
  return 0;
}
