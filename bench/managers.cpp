#include "bench/managers.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>

#include "testkit/embedded_manager.h"
#include "testkit/found_export.h"
#include "testkit/scripted_manager/handler.h"

namespace bench {
namespace {

btrieve::BtrCall* library = nullptr;  // what the library calls
testkit::SetHandlerFunction* setHandler = nullptr;

const btrieve::EntryPoint& Embedded() {
  static const auto entryPoint = btrieve::EntryPointOf(testkit::EmbeddedCall());
  return entryPoint;
}

int ToEmbedded(void* /*context*/, const btrieve::Arguments& arguments) {
  return Embedded()(arguments);
}

std::vector<char> Bytes(const void* begin, std::size_t size) {
  const auto* const bytes = static_cast<const char*>(begin);
  return {bytes, bytes + size};
}

class Recorder {
 public:
  int Record(const btrieve::Arguments& its) {
    const WORD operation = its.operation;
    if (operation == btrieve::kOpen) files_.insert_or_assign(its.positionBlock, opened_++);
    RecordedCall call{.operation = operation,
                      .file = files_.at(its.positionBlock),
                      .data = {},
                      .key = {},
                      .length = *its.dataLength,
                      .keyNumber = its.keyNumber,
                      .keyIsInserted = false,
                      .status = 0,
                      .answer = {},
                      .answerKey = {}};
    if (testkit::BringsData(operation)) call.data = Bytes(its.dataBuffer, *its.dataLength);
    std::memcpy(call.key.data(), its.keyBuffer, its.keyLength);
    call.keyIsInserted = operation == btrieve::kGetEqual && !inserted_.empty() &&
                         std::equal(inserted_.begin(), inserted_.end(), call.key.begin());
    call.status = Embedded()(its);
    if (operation != btrieve::kOpen && operation != btrieve::kClose) {
      call.answer = Bytes(its.dataBuffer, *its.dataLength);
    }
    std::memcpy(call.answerKey.data(), its.keyBuffer, its.keyLength);
    if (operation == btrieve::kInsert) inserted_ = Bytes(its.dataBuffer, sizeof(std::int32_t));
    calls.push_back(std::move(call));
    return calls.back().status;
  }

  Calls calls;

 private:
  std::map<const void*, std::size_t> files_;
  std::size_t opened_ = 0;
  std::vector<char> inserted_;
};

class Memory {
 public:
  int Answer(const btrieve::Arguments& its) {
    const RecordedCall& call = (*calls)[next];
    if (++next == calls->size()) next = 0;
    if (call.operation != its.operation) std::abort();  // not the calls that were recorded
    if (call.status != btrieve::kSuccess || call.answer.empty()) return call.status;
    std::memcpy(its.dataBuffer, call.answer.data(), call.answer.size());
    *its.dataLength = static_cast<ULONG>(call.answer.size());
    std::memcpy(its.keyBuffer, call.answerKey.data(), sizeof(std::int32_t));
    return btrieve::kSuccess;
  }

  const Calls* calls = nullptr;
  std::size_t next = 0;
};

Recorder recorder;
Memory memory;

}  // namespace

void LoadManagers() {
  testkit::EmbeddedCall();
  SetDllDirectoryA((testkit::ProductFolder() / ".." / "bench").c_str());
  HMODULE inFront = LoadLibraryA("w3btrv7.dll");
  library = testkit::FoundExport(inFront, btrieve::kBtrCallName);
  setHandler = testkit::FoundExport(inFront, "SetHandler");
  UseEmbedded();
}

void UseEmbedded() { setHandler(&ToEmbedded, nullptr); }

void UseMemory(const Calls& calls) {
  memory = {};
  memory.calls = &calls;
  setHandler([](void*, const btrieve::Arguments& its) { return memory.Answer(its); }, nullptr);
}

void StartRecording() {
  recorder = {};
  setHandler([](void*, const btrieve::Arguments& its) { return recorder.Record(its); }, nullptr);
}

Calls StopRecording() {
  UseEmbedded();
  return std::move(recorder.calls);
}

BareCalls::BareCalls(Calls calls) : calls_(std::move(calls)) {
  std::size_t files = 0;
  for (const RecordedCall& call : calls_) files = std::max(files, call.file + 1);
  positionBlocks_.resize(files);
}

void BareCalls::Run() {
  constexpr auto kKeyLength = static_cast<BYTE>(btrieve::kMaxKeyLength);
  for (RecordedCall& call : calls_) {
    ULONG length = call.length;
    std::copy(call.data.begin(), call.data.end(), buffer_.begin());
    if (call.keyIsInserted) std::copy(inserted_.begin(), inserted_.end(), call.key.begin());
    const int status = library(call.operation, positionBlocks_[call.file].data(), buffer_.data(),
                               &length, call.key.data(), kKeyLength, call.keyNumber);
    if (status != call.status) throw std::runtime_error("a repeated call was answered otherwise");
    if (call.operation == btrieve::kInsert) {
      std::copy_n(buffer_.begin(), inserted_.size(), inserted_.begin());
    }
  }
}

}  // namespace bench
