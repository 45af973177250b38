#include "store/record_manager.h"

#include <bit>
#include <cstring>

#include "frame/bytes.h"
#include "frame/messages.h"
#include "store/record_manager_library.h"
#include "store/text_buffer.h"

namespace qlx99 {
namespace {

// Loaded once, never freed: the record manager keeps threads and files of its own.
struct RecordManager {
  HMODULE library = nullptr;
  btrieve::BtrCall* btrCall = nullptr;
  btrieve::BtrCallId* btrCallId = nullptr;
  // Why no library could be loaded, for whoever looks with a debugger.
  DWORD loadError = ERROR_SUCCESS;
};

RecordManager recordManager;

// What one call hands to the record manager, beside the operation.
struct CallArguments {
  PositionBlock& positionBlock;
  void* dataBuffer;
  std::uint16_t& dataLength;
  void* keyBuffer;
  std::int16_t keyNumber;
  const ClientId& clientId;
};

HMODULE LoadFirst() {
  for (const char* name : kRecordManagerNames) {
    if (HMODULE library = LoadRecordManagerLibrary(name); library != nullptr) return library;
  }
  return nullptr;
}

// Loads without the system's own dialogs about a missing disk or file: a missing record manager is
// ordinary here.
void LoadQuietly(RecordManager& manager) {
  const UINT previousMode = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
  if (manager.library == nullptr) {
    manager.library = LoadFirst();
    manager.loadError = manager.library == nullptr ? GetLastError() : ERROR_SUCCESS;
  }
  SetErrorMode(previousMode);
}

template <class Function>
Function* EntryPoint(HMODULE library, const char* name) {
  return std::bit_cast<Function*>(GetProcAddress(library, name));
}

Status CallOnce(WORD operation, const CallArguments& arguments) {
  constexpr auto kKeyLength = static_cast<BYTE>(btrieve::kMaxKeyLength);
  constexpr ClientId kNoClient{};
  const auto keyNumber = static_cast<char>(arguments.keyNumber);
  ULONG length = arguments.dataLength;
  short status = 0;
  if (std::memcmp(arguments.clientId.data(), kNoClient.data(), kNoClient.size()) == 0) {
    status = recordManager.btrCall(operation, arguments.positionBlock.data(), arguments.dataBuffer,
                                   &length, arguments.keyBuffer, kKeyLength, keyNumber);
  } else {
    ClientId clientId = arguments.clientId;
    status = recordManager.btrCallId(operation, arguments.positionBlock.data(),
                                     arguments.dataBuffer, &length, arguments.keyBuffer, kKeyLength,
                                     keyNumber, clientId.data());
  }
  arguments.dataLength = static_cast<std::uint16_t>(length);
  return static_cast<Status>(status);
}

// Tries again at once while the record or file is busy: another workstation's operation takes a
// moment only.
Status CallWithRetries(WORD operation, const CallArguments& arguments) {
  for (int attempts = 1;; ++attempts) {
    const Status status = CallOnce(operation, arguments);
    if (attempts > kMaxAttempts) {
      ShowMessage(kRecordManagerBusy);
      return status;
    }
    if (!IsBusy(status)) return status;
  }
}

// Open takes the path as its key buffer, the owner name (here none) as its data buffer, and the
// mode (0, the normal one) as its key number.
Status Open(PositionBlock& positionBlock, const char* filePath, const ClientId& clientId) {
  std::array<char, btrieve::kMaxKeyLength + 1> path{};
  CopyBytes(filePath, path.data(), btrieve::kMaxKeyLength);
  char ownerName = '\0';
  std::uint16_t ownerNameLength = 1;
  return CallWithRetries(btrieve::kOpen,
                         {positionBlock, &ownerName, ownerNameLength, path.data(), 0, clientId});
}

// The record manager deletes its current record, so the one with this key is read first.
Status Delete(const CallArguments& arguments) {
  const Status found = CallWithRetries(btrieve::kGetEqual, arguments);
  if (found != btrieve::kSuccess) return found;
  return CallWithRetries(btrieve::kDelete, arguments);
}

}  // namespace

bool EnsureRecordManager() {
  LoadQuietly(recordManager);
  if (recordManager.library == nullptr) {
    ShowMessage(kRecordManagerNotLoaded);
    return false;
  }
  recordManager.btrCall =
      EntryPoint<btrieve::BtrCall>(recordManager.library, btrieve::kBtrCallName);
  recordManager.btrCallId =
      EntryPoint<btrieve::BtrCallId>(recordManager.library, btrieve::kBtrCallIdName);
  if (recordManager.btrCall == nullptr || recordManager.btrCallId == nullptr) {
    ShowMessage(kRecordManagerIncomplete);
    return false;
  }
  return true;
}

Status RecordCall(WORD operation, PositionBlock& positionBlock, const char* filePath,
                  void* dataBuffer, std::uint16_t& dataLength, void* keyBuffer,
                  std::int16_t keyNumber, const ClientId& clientId) {
  const CallArguments arguments{positionBlock, dataBuffer, dataLength,
                                keyBuffer,     keyNumber,  clientId};
  if (operation == btrieve::kOpen) return Open(positionBlock, filePath, clientId);
  if (operation == btrieve::kDelete) return Delete(arguments);
  if (operation > btrieve::kGetLast) return btrieve::kInvalidOperation;
  return CallWithRetries(operation, arguments);
}

Status OpenRecordFile(const char* fileName, PositionBlock& positionBlock,
                      const DataRoot& dataRoot) {
  TextBuffer<btrieve::kMaxKeyLength> path;
  for (const char* part : {dataRoot.data(), "\\", fileName}) path.Append(part);
  std::uint16_t noData = 0;
  const Status status = RecordCall(btrieve::kOpen, positionBlock, path.Terminated(), nullptr,
                                   noData, nullptr, 0, ClientId{});
  if (status != btrieve::kSuccess) ShowMessage(kFileNotOpened, fileName);
  return status;
}

void CloseRecordFile(const char* fileName, PositionBlock& positionBlock) {
  // Close uses neither data nor key, but a record manager may read at the addresses given.
  std::array<char, btrieve::kMaxKeyLength> unused{};
  std::uint16_t noData = 0;
  const Status status = RecordCall(btrieve::kClose, positionBlock, nullptr, unused.data(), noData,
                                   unused.data(), 0, ClientId{});
  if (status != btrieve::kSuccess) ShowMessage(kFileNotClosed, fileName);
}

}  // namespace qlx99
