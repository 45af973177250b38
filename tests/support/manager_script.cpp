#include "support/manager_script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "support/world.h"

namespace qlx99::tests {
namespace {

constexpr const char* kOperations[] = {
    "Open",     "Close",          "Insert",      "Update",     "Delete",
    "GetEqual", "GetNext",        "GetPrevious", "GetGreater", "GetGreaterOrEqual",
    "GetLess",  "GetLessOrEqual", "GetFirst",    "GetLast"};

std::string BareName(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

std::string OperationOnFile(WORD operation, const std::string& file) {
  return std::string(operation < std::size(kOperations) ? kOperations[operation] : "Unknown") +
         ' ' + file;
}

bool BringsData(WORD operation) {
  return operation == btrieve::kOpen || operation == btrieve::kInsert ||
         operation == btrieve::kUpdate;
}

}  // namespace

std::string ManagerCall::Text() const {
  const std::string text = OperationOnFile(operation, file);
  const bool keyed = operation != btrieve::kOpen && operation != btrieve::kClose;
  return keyed ? text + ' ' + std::to_string(keyNumber) : text;
}

ManagerScript::ManagerScript(FoundManagers& managers) {
  const std::string file = (managers.Are({{"w3btrv7"}}) / world::LibraryFile("w3btrv7")).string();
  HMODULE library = LoadLibraryA(file.c_str());
  auto* const setHandler =
      std::bit_cast<SetHandlerFunction*>(GetProcAddress(library, "SetHandler"));
  setHandler(&ManagerScript::Handle, this);
}

void ManagerScript::Answers(WORD operation, const std::string& file, int status, int times) {
  rules_.push_back(
      {operation, file, times, [status](const ManagerCall&, void*, ULONG*) { return status; }});
}

void ManagerScript::FailsCall(std::size_t n, int status) { failures_[calls_.size() + n] = status; }

void ManagerScript::Gives(WORD operation, const std::string& file, const std::string& data) {
  rules_.push_back({operation, file, 1, [data](const ManagerCall&, void* buffer, ULONG* length) {
                      data.copy(static_cast<char*>(buffer), *length);
                      *length = static_cast<ULONG>(data.size());
                      return btrieve::kSuccess;
                    }});
}

void ManagerScript::Meanwhile(WORD operation, const std::string& file,
                              std::function<void()> action) {
  actions_.emplace(OperationOnFile(operation, file), std::move(action));
}

std::vector<std::string> ManagerScript::CallTexts() const {
  std::vector<std::string> texts;
  for (const ManagerCall& call : calls_) texts.push_back(call.Text());
  return texts;
}

std::vector<std::string> ManagerScript::OpenFiles() const {
  std::vector<std::string> names;
  for (const auto& [positionBlock, file] : files_) {
    if (!file.isClosed) names.push_back(file.name);
  }
  return names;
}

void ManagerScript::Forget() {
  calls_.clear();
  rules_.clear();
  failures_.clear();
  actions_.clear();
}

// A copied position block is known by its content at first, and by its place once it has moved on.
std::string ManagerScript::FileOf(const void* positionBlock) {
  const auto known = files_.find(positionBlock);
  if (known != files_.end()) return known->second.name;
  const auto original = std::find_if(files_.begin(), files_.end(), [&](const auto& file) {
    return std::memcmp(file.first, positionBlock, btrieve::kPositionBlockSize) == 0;
  });
  if (original != files_.end()) copies_[positionBlock] = original->second.name;
  return copies_[positionBlock];
}

ManagerScript::Rule* ManagerScript::RuleFor(const ManagerCall& call) {
  for (Rule& rule : rules_) {
    if (rule.operation != call.operation || rule.file != call.file || rule.times == 0) continue;
    if (rule.times != kForEver) --rule.times;
    return &rule;
  }
  return nullptr;
}

void ManagerScript::RunActions(const ManagerCall& call) {
  const auto found = actions_.find(OperationOnFile(call.operation, call.file));
  if (found == actions_.end()) return;
  const std::function<void()> action = found->second;
  actions_.erase(found);
  action();
}

void ManagerScript::Keep(const ManagerCall& call) {
  if (call.operation == btrieve::kOpen && call.status == btrieve::kSuccess) {
    files_[call.positionBlock] = {call.file};
  }
  const bool comesAgain =
      call.status == btrieve::kWaitError || call.status == btrieve::kLockError ||
      call.status == btrieve::kRecordInUse || call.status == btrieve::kFileInUse;
  if (call.operation == btrieve::kClose && !comesAgain) files_.erase(call.positionBlock);
  calls_.push_back(call);
}

// Whatever the script answers, the file is closed: after the last attempt nobody comes back to it.
int ManagerScript::Close(const ManagerCall& call, const std::function<int()>& forward) {
  const auto file = files_.find(call.positionBlock);
  if (file == files_.end() || !std::exchange(file->second.isClosed, true)) return forward();
  return btrieve::kSuccess;
}

short ManagerScript::Handle(void* script, WORD operation, void* positionBlock, void* dataBuffer,
                            ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                            void* clientId) {
  auto& self = *static_cast<ManagerScript*>(script);
  ManagerCall call{.operation = operation,
                   .positionBlock = positionBlock,
                   .file = {},
                   .path = {},
                   .key = {static_cast<const char*>(keyBuffer), keyLength},
                   .keyNumber = static_cast<signed char>(keyNumber),
                   .keyLength = keyLength,
                   .dataLength = *dataLength,
                   .data = {},
                   .plain = clientId == nullptr};
  if (operation == btrieve::kOpen) call.path = call.key.substr(0, call.key.find('\0'));
  call.file = operation == btrieve::kOpen ? BareName(call.path) : self.FileOf(positionBlock);
  EXPECT_NE(call.file, "") << "operation " << operation << " on a file that is not open";
  if (BringsData(operation)) call.data.assign(static_cast<const char*>(dataBuffer), *dataLength);

  self.RunActions(call);
  const auto failure = self.failures_.find(self.calls_.size() + 1);
  const bool fails = failure != self.failures_.end();
  Rule* const rule = fails ? nullptr : self.RuleFor(call);
  const auto forward = [&]() -> int {
    return EmbeddedCall()(operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength,
                          keyNumber);
  };
  if (operation == btrieve::kClose) {
    call.status = self.Close(call, forward);
  } else if (!fails && rule == nullptr) {
    call.status = forward();
  }
  if (fails) call.status = failure->second;
  if (rule != nullptr) call.status = rule->answer(call, dataBuffer, dataLength);
  self.Keep(call);
  return static_cast<short>(call.status);
}

}  // namespace qlx99::tests
