// The record manager's published interface: operations, statuses, the two entry points and the
// buffers of Create and Stat. The library, the embedded record manager, the tool and the tests all
// speak it; none of them needs another's headers for it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/windows_api.h"

namespace btrieve {

// Operation codes. Transactions are for bulk work; the library itself uses Open to GetLast.
inline constexpr WORD kOpen = 0;
inline constexpr WORD kClose = 1;
inline constexpr WORD kInsert = 2;
inline constexpr WORD kUpdate = 3;
inline constexpr WORD kDelete = 4;
inline constexpr WORD kGetEqual = 5;
inline constexpr WORD kGetNext = 6;
inline constexpr WORD kGetPrevious = 7;
inline constexpr WORD kGetGreater = 8;
inline constexpr WORD kGetGreaterOrEqual = 9;
inline constexpr WORD kGetLess = 10;
inline constexpr WORD kGetLessOrEqual = 11;
inline constexpr WORD kGetFirst = 12;
inline constexpr WORD kGetLast = 13;
inline constexpr WORD kCreate = 14;
inline constexpr WORD kStat = 15;
inline constexpr WORD kBeginTransaction = 19;
inline constexpr WORD kEndTransaction = 20;
inline constexpr WORD kAbortTransaction = 21;

// What an operation came to. The entry points return it as a number.
enum [[nodiscard]] Status : int{
    kSuccess = 0,
    kInvalidOperation = 1,
    kIoError = 2,
    kFileNotOpen = 3,
    kKeyNotFound = 4,
    kDuplicateKey = 5,
    kInvalidKeyNumber = 6,
    kDifferentKeyNumber = 7,
    kInvalidPositioning = 8,
    kEndOfFile = 9,
    kModifiableKey = 10,
    kInvalidFileName = 11,
    kFileNotFound = 12,
    kLogError = 14,  // published for the pre-images, which a log is for
    kDiskFull = 18,
    kKeyBufferTooShort = 21,
    kDataBufferLength = 22,
    kInvalidKeyCount = 26,
    kInvalidKeyPosition = 27,
    kInvalidRecordLength = 28,
    kInvalidKeyLength = 29,
    kNotARecordFile = 30,
    kTransactionActive = 37,
    kNoTransaction = 39,
    kNotAllowedInTransaction = 41,
    kInvalidRecordAddress = 43,
    kInvalidKeyFlags = 45,
    kAccessDenied = 46,
    kInvalidKeyType = 49,
    kFileExists = 59,
    kWaitError = 77,
    kConflict = 80,
    kLockError = 81,
    kRecordInUse = 84,
    kFileInUse = 85,
    kFileTableFull = 86,
    kPermissionError = 94,
    kOutOfMemory = 101,
};

// Whether somebody else has the record or the file just now: the same call may succeed later.
constexpr bool IsBusy(Status status) {
  return status == kWaitError || status == kLockError || status == kRecordInUse ||
         status == kFileInUse;
}

// Open's modes and Create's ways, both given as the key number.
inline constexpr char kOpenNormal = 0;
inline constexpr char kOpenReadOnly = -2;
inline constexpr char kCreateOver = 0;   // replaces a file of that name
inline constexpr char kCreateOnly = -1;  // status 59 when there is one

inline constexpr std::size_t kPositionBlockSize = 128;
inline constexpr std::size_t kClientIdSize = 16;
inline constexpr std::size_t kMaxKeyLength = 255;

// The entry points. The data length is 16 bits wide behind a 32-bit pointer; the key buffer holds
// the file's path for Open and Create. Each returns a status.
using BtrCall = short WINAPI(WORD operation, void* positionBlock, void* dataBuffer,
                             ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber);
using BtrCallId = short WINAPI(WORD operation, void* positionBlock, void* dataBuffer,
                               ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                               void* clientId);

inline constexpr const char* kBtrCallName = "BTRCALL";
inline constexpr const char* kBtrCallIdName = "BTRCALLID";

// Flags of a file's description.
inline constexpr std::uint16_t kPreallocated = 0x0004;     // Create sets `pages` aside
inline constexpr std::uint16_t kKeyNumbersGiven = 0x0400;  // by `keyNumber`; else by their order

// Key flags of a key's description.
inline constexpr std::uint16_t kKeyDuplicates = 0x0001;
inline constexpr std::uint16_t kKeyModifiable = 0x0002;
inline constexpr std::uint16_t kKeySegmented = 0x0010;  // the next description is of the same key
inline constexpr std::uint16_t kKeyExtendedType = 0x0100;

// Extended key types.
inline constexpr std::uint8_t kStringKey = 0;
inline constexpr std::uint8_t kIntegerKey = 1;
inline constexpr std::uint8_t kAutoincrementKey = 15;

// Create takes a file description followed by one key description a key, or a segment of it; Stat
// gives the same back, with the number of records and, in each key, the number of its unique
// values. All little-endian; Windows and this project's hosts are.
#pragma pack(push, 1)
struct FileDescription {
  std::uint16_t recordLength;
  std::uint16_t pageSize;
  std::uint8_t keyCount;
  std::uint8_t fileVersion;
  std::uint32_t recordCount;  // Stat only
  std::uint16_t fileFlags;
  std::uint8_t duplicatePointers;
  std::uint8_t reserved;
  std::uint16_t pages;
};

struct KeyDescription {
  std::uint16_t position;  // of the key's first byte in the record, counted from 1
  std::uint16_t length;
  std::uint16_t flags;
  std::uint32_t uniqueValues;  // Stat only
  std::uint8_t extendedType;
  std::uint8_t nullValue;
  std::uint16_t reserved;
  std::uint8_t keyNumber;
  std::uint8_t collation;
};
#pragma pack(pop)

static_assert(sizeof(FileDescription) == 16);
static_assert(sizeof(KeyDescription) == 16);

}  // namespace btrieve
