#include "support/manager_script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace qlx99::tests {
namespace {

// In the order of the operations' codes.
constexpr const char* kSigns[] = {"+",      "-",   "insert ", "update ", "delete ",
                                  "=",      ">",   "<",       "above ",  "from ",
                                  "below ", "to ", "first ",  "last "};

bool IsRead(WORD operation) {
  return operation >= btrieve::kGetEqual && operation <= btrieve::kGetLast;
}

}  // namespace

std::string ManagerCall::Text() const {
  const bool keyed = operation != btrieve::kOpen && operation != btrieve::kClose;
  return kSigns[operation] + file.substr(2, file.find('.') - 2) +
         (keyed ? std::to_string(keyNumber) : "");
}

ManagerScript::ManagerScript(FoundManagers& managers) {
  const std::string file = (managers.Are({{"w3btrv7"}}) / LibraryFile("w3btrv7")).string();
  HMODULE library = LoadLibraryA(file.c_str());
  SetHandlerFunction* const setHandler = FoundExport(library, "SetHandler");
  setHandler(
      [](void* script, const btrieve::Arguments& arguments) {
        return static_cast<ManagerScript*>(script)->Answer(arguments);
      },
      this);
}

void ManagerScript::Answers(WORD operation, const std::string& file, int status, int times) {
  rules_.push_back({operation, file, times, [status] { return status; }});
}

void ManagerScript::FailsCall(std::size_t n, int status) {
  failingCall_ = calls_.size() + n;
  failure_ = status;
}

void ManagerScript::Meanwhile(WORD operation, const std::string& file,
                              std::function<void()> action) {
  rules_.push_back({operation, file, 1, [action = std::move(action)] {
                      action();
                      return std::optional<int>();
                    }});
}

std::string ManagerScript::CallText() const {
  std::string calls;
  std::string last;
  for (const ManagerCall& call : calls_) {
    const std::string text = call.Text();
    if (text != last) calls += (calls.empty() ? "" : " ") + text;
    if (text == last && !calls.ends_with(" ..")) calls += " ..";
    last = text;
  }
  return calls;
}

std::vector<std::string> ManagerScript::OpenFiles() const {
  std::vector<std::string> names;
  for (const auto& [positionBlock, name] : files_) names.push_back(name);
  return names;
}

void ManagerScript::Forget() {
  calls_.clear();
  rules_.clear();
  failingCall_ = 0;
  longest_.reset();
}

// A copied position block is known by its content at first, and by its place once it has moved on.
std::string ManagerScript::FileOf(const void* positionBlock) {
  if (files_.contains(positionBlock)) return files_[positionBlock];
  for (const auto& [original, name] : files_) {
    if (std::memcmp(original, positionBlock, btrieve::kPositionBlockSize) == 0)
      copies_[positionBlock] = name;
  }
  return copies_[positionBlock];
}

std::optional<int> ManagerScript::ScriptedStatus(const ManagerCall& call) {
  if (calls_.size() + 1 == failingCall_) return failure_;
  const auto rule = std::ranges::find_if(rules_, [&](const Rule& one) {
    return one.operation == call.operation && one.file == call.file && one.times != 0;
  });
  if (rule == rules_.end()) return std::nullopt;
  if (rule->times != kForEver) --rule->times;
  const auto status = rule->status;  // which may tell us to forget
  return status();
}

void ManagerScript::Keep(const ManagerCall& call, const void* positionBlock) {
  if (call.operation == btrieve::kOpen && call.status == btrieve::kSuccess) {
    files_[positionBlock] = call.file;
  }
  const bool comesAgain = btrieve::IsBusy(static_cast<btrieve::Status>(call.status));
  if (call.operation == btrieve::kClose && !comesAgain) files_.erase(positionBlock);
  calls_.push_back(call);
}

int ManagerScript::Answer(const btrieve::Arguments& arguments) {
  ManagerCall call{.operation = arguments.operation,
                   .file = {},
                   .path = {},
                   .key = {static_cast<const char*>(arguments.keyBuffer), arguments.keyLength},
                   .keyNumber = static_cast<signed char>(arguments.keyNumber),
                   .keyLength = arguments.keyLength,
                   .dataLength = *arguments.dataLength,
                   .data = {},
                   .plain = arguments.clientId == nullptr};
  const bool hasPath = call.operation == btrieve::kOpen || call.operation == btrieve::kCreate;
  if (hasPath) call.path = call.key.substr(0, call.key.find('\0'));
  call.file = hasPath ? call.path.substr(call.path.find_last_of("\\/") + 1)
                      : FileOf(arguments.positionBlock);
  EXPECT_TRUE(!call.file.empty() || call.operation >= btrieve::kBeginTransaction)
      << "operation " << call.operation << " on a file that is not open";
  if (BringsData(call.operation)) {
    call.data.assign(static_cast<const char*>(arguments.dataBuffer), call.dataLength);
  }

  const std::optional<int> scripted = ScriptedStatus(call);
  call.status = scripted ? *scripted : EmbeddedEntryPoint()(arguments);
  if (IsRead(call.operation) && call.status == btrieve::kSuccess) {
    if (longest_) *arguments.dataLength = std::min(*arguments.dataLength, *longest_);
  }
  Keep(call, arguments.positionBlock);
  return call.status;
}

}  // namespace qlx99::tests
