#include "bench/managers.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/scripted_manager/handler.h"

namespace bench {
namespace {

using qlx99::tests::ManagerHandler;
using qlx99::tests::SetHandlerFunction;

struct Loaded {
  btrieve::BtrCall* library = nullptr;  // what the library calls
  btrieve::BtrCall* embedded = nullptr;
  SetHandlerFunction* setHandler = nullptr;
};

Loaded loaded;

template <class Function>
Function* Find(HMODULE module, const char* name) {
  auto* const found = std::bit_cast<Function*>(GetProcAddress(module, name));
  if (found == nullptr) throw std::runtime_error(std::string(name) + " is missing");
  return found;
}

short ToEmbedded(void* /*context*/, WORD operation, void* positionBlock, void* dataBuffer,
                 ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                 void* /*clientId*/) {
  return loaded.embedded(operation, positionBlock, dataBuffer, dataLength, keyBuffer, keyLength,
                         keyNumber);
}

bool BringsData(WORD operation) {
  return operation == btrieve::kOpen || operation == btrieve::kInsert ||
         operation == btrieve::kUpdate;
}

std::vector<char> Bytes(const void* begin, std::size_t size) {
  const auto* const bytes = static_cast<const char*>(begin);
  return {bytes, bytes + size};
}

class Recorder {
 public:
  static short Handle(void* recorder, WORD operation, void* positionBlock, void* dataBuffer,
                      ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                      void* /*clientId*/) {
    return static_cast<Recorder*>(recorder)->Record(operation, positionBlock, dataBuffer,
                                                    dataLength, keyBuffer, keyLength, keyNumber);
  }

  Calls calls;

 private:
  short Record(WORD operation, void* positionBlock, void* dataBuffer, ULONG* dataLength,
               void* keyBuffer, BYTE keyLength, char keyNumber) {
    if (operation == btrieve::kOpen) files_.insert_or_assign(positionBlock, opened_++);
    RecordedCall call{.operation = operation,
                      .file = files_.at(positionBlock),
                      .data = {},
                      .key = {},
                      .length = *dataLength,
                      .keyNumber = keyNumber,
                      .keyIsInserted = false,
                      .status = 0,
                      .answer = {},
                      .answerKey = {}};
    if (BringsData(operation)) call.data = Bytes(dataBuffer, *dataLength);
    std::memcpy(call.key.data(), keyBuffer, keyLength);
    call.keyIsInserted = operation == btrieve::kGetEqual && !inserted_.empty() &&
                         std::equal(inserted_.begin(), inserted_.end(), call.key.begin());
    const short status = loaded.embedded(operation, positionBlock, dataBuffer, dataLength,
                                         keyBuffer, keyLength, keyNumber);
    call.status = status;
    if (operation != btrieve::kOpen && operation != btrieve::kClose) {
      call.answer = Bytes(dataBuffer, *dataLength);
    }
    std::memcpy(call.answerKey.data(), keyBuffer, keyLength);
    if (operation == btrieve::kInsert) inserted_ = Bytes(dataBuffer, sizeof(std::int32_t));
    calls.push_back(std::move(call));
    return status;
  }

  std::map<const void*, std::size_t> files_;
  std::size_t opened_ = 0;
  std::vector<char> inserted_;
};

class Memory {
 public:
  static short Handle(void* memory, WORD operation, void* /*positionBlock*/, void* dataBuffer,
                      ULONG* dataLength, void* keyBuffer, BYTE /*keyLength*/, char /*keyNumber*/,
                      void* /*clientId*/) {
    auto& self = *static_cast<Memory*>(memory);
    const RecordedCall& call = (*self.calls)[self.next];
    if (++self.next == self.calls->size()) self.next = 0;
    if (call.operation != operation) std::abort();  // not the calls that were recorded
    if (call.status != btrieve::kSuccess || call.answer.empty()) {
      return static_cast<short>(call.status);
    }
    std::memcpy(dataBuffer, call.answer.data(), call.answer.size());
    *dataLength = static_cast<ULONG>(call.answer.size());
    std::memcpy(keyBuffer, call.answerKey.data(), sizeof(std::int32_t));
    return btrieve::kSuccess;
  }

  const Calls* calls = nullptr;
  std::size_t next = 0;
};

Recorder recorder;
Memory memory;

}  // namespace

void LoadManagers() {
  const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  SetDllDirectoryA((program.parent_path() / "bench").c_str());
  HMODULE embedded = LoadLibraryA("atbtrv32.dll");
  HMODULE inFront = LoadLibraryA("w3btrv7.dll");
  loaded = {Find<btrieve::BtrCall>(inFront, btrieve::kBtrCallName),
            Find<btrieve::BtrCall>(embedded, btrieve::kBtrCallName),
            Find<SetHandlerFunction>(inFront, "SetHandler")};
  UseEmbedded();
}

btrieve::BtrCall& Embedded() { return *loaded.embedded; }

void UseEmbedded() { loaded.setHandler(&ToEmbedded, nullptr); }

void UseMemory(const Calls& calls) {
  memory = {};
  memory.calls = &calls;
  loaded.setHandler(&Memory::Handle, &memory);
}

void StartRecording() {
  recorder = {};
  loaded.setHandler(&Recorder::Handle, &recorder);
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
    const int status =
        loaded.library(call.operation, positionBlocks_[call.file].data(), buffer_.data(), &length,
                       call.key.data(), kKeyLength, call.keyNumber);
    if (status != call.status) throw std::runtime_error("a repeated call was answered otherwise");
    if (call.operation == btrieve::kInsert) {
      std::copy_n(buffer_.begin(), inserted_.size(), inserted_.begin());
    }
  }
}

}  // namespace bench
