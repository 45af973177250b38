// The embedded record manager under rubbish: files that are damaged, operations in any order,
// position blocks, lengths, buffers and keys of any kind, memory that runs out at any moment. Every
// call ends with a status, and a file that was sound before is sound afterwards.
#include <sqlite3.h>

#include <filesystem>
#include <memory>

#include "btrieve/file_description.h"
#include "fuzz/failing_memory.h"
#include "fuzz/input.h"
#include "recordmanager/patient_files.h"
#include "recordmanager/sql.h"
#include "testkit/engine_entry_point.h"
#include "testkit/files.h"

namespace {

namespace fs = std::filesystem;
using fuzz::Input;
using recordmanager::Call;
using recordmanager::Connection;
using recordmanager::Engine;

constexpr std::size_t kRecordLength = 40;

// Memory that ends where its last byte does.
using Buffer = std::unique_ptr<std::uint8_t[]>;
Buffer MemoryOf(const std::string& bytes) {
  Buffer memory(new std::uint8_t[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), memory.get());
  return memory;
}

std::string Padded(std::string bytes, std::size_t length) {
  bytes.resize(length);
  return bytes;
}

// What Create takes: a key of each type.
std::string Description() {
  using namespace btrieve;
  constexpr unsigned kFree = kKeyDuplicates | kKeyModifiable;
  return DescribeFile(
      kRecordLength,
      {DescribeKey(0, 4, kAutoincrementKey), DescribeKey(4, 4, kIntegerKey, kFree),
       DescribeKey(8, 8, kStringKey, kFree), DescribeKey(16, 2, kIntegerKey, kFree)});
}

// The folder with the files, and the bytes of a sound one with some records.
struct Files {
  Files() {
    fuzz::WatchMemory();
    LackMemoryAtFirst();
    {
      Engine engine;
      btrieve::Client client(testkit::EntryPointOf(engine));
      Must(client.Create(Path("A.KRV"), Description()));
      Must(client.Open(Path("A.KRV")));
      for (char c = 'a'; c < 'k'; ++c) {
        std::string record = Padded(std::string(4, '\0') + std::string(20, c), kRecordLength);
        Must(client.Call(btrieve::kInsert, 0, record));
      }
    }
    sound = testkit::ReadAll(Path("A.KRV"));
  }

  // SQLite sets itself up once, at its first use.
  void LackMemoryAtFirst() const {
    for (int nth = 1; nth < 20; ++nth) {
      Connection connection;
      fuzz::LetMemoryFail(nth, false);
      try {
        if (connection.Open(Path("FIRST.KRV"), Connection::Way::kNew) != btrieve::kSuccess)
          continue;
      } catch (...) {
        continue;
      }
      fuzz::LetMemoryFail(0, false);
      sqlite3_vfs* files = nullptr;
      sqlite3_file_control(connection.Handle(), "main", SQLITE_FCNTL_VFS_POINTER, &files);
      if (files != sqlite3_vfs_find(recordmanager::PatientFiles())) fuzz::Found("impatience");
    }
  }

  std::string Path(const std::string& name) const { return folder.Path() / name; }

  // A.KRV with these bytes and a folder, nothing else.
  void Arrange(const std::string& bytes) const {
    for (const auto& entry : fs::directory_iterator(folder.Path())) fs::remove_all(entry);
    fs::create_directory(Path("FOLDER.KRV"));
    testkit::WriteAll(Path("A.KRV"), bytes);
  }

  testkit::TemporaryFolder folder;
  std::string sound;
};

const Files& TheFiles() {
  static const Files files;
  return files;
}

// Calls as the input says them, each with the record and the key that the one before it left, like
// a careful caller's, and then with one thing wrong or none.
class Caller {
 public:
  explicit Caller(Engine& engine, Input& input) : engine_(engine), input_(input) {
    SetKey(TheFiles().Path("A.KRV"));
    for (std::uint8_t* block : {blocks_[0].get(), blocks_[1].get()}) {
      Serve({.operation = btrieve::kOpen, .positionBlock = block}, Wrong::kNothing);
    }
  }

  void CallOnce() {
    const std::uint8_t operation = input_.Byte();
    Call call{.operation = operation > 250
                               ? input_.Word()
                               : static_cast<WORD>(operation % (btrieve::kAbortTransaction + 1)),
              .positionBlock = blocks_[input_.Choice(std::size(blocks_))].get(),
              .keyNumber = static_cast<int>(input_.Choice(6)) - 1};
    Change(record_);
    Change(key_);
    if (NamesFile(call)) ChooseFile();
    Serve(call, static_cast<Wrong>(input_.Byte()));
  }

  bool HasReplacedFile() const { return hasReplaced_; }

 private:
  enum class Wrong : std::uint8_t {
    kNothing,
    kNoBlock,
    kRubbishBlock,
    kCopiedBlock,
    kChangedBlock,
    kNoData,
    kDataLength,
    kNoDataLength,
    kNoKey,
    kKeyLength,
    kKeyNumber,
    kOtherClient,
    kNoMemory,
    kNeverAnyMemory,
    kReplacedFile,
  };

  void Change(std::string& bytes) {
    for (std::size_t i = input_.Choice(4); i > 0; --i) {
      bytes[input_.Byte() % bytes.size()] = static_cast<char>(input_.Byte());
    }
  }

  void SetKey(const std::string& text) { key_ = Padded(text, btrieve::kMaxKeyLength); }

  void ChooseFile() {
    constexpr const char* kNames[] = {"A.KRV", "B.KRV", "FOLDER.KRV", "NONE/A.KRV", "NONE.KRV", ""};
    const std::size_t choice = input_.Choice(std::size(kNames) + 2);
    if (choice < std::size(kNames)) return SetKey(TheFiles().Path(kNames[choice]));
    std::string name = input_.Text();
    std::erase_if(name, [](char c) { return c == '/' || c == '\\'; });
    SetKey(choice == std::size(kNames) ? "" : TheFiles().Path(name));
  }

  // The data of a call: for Create a description, else the record.
  std::string Data(const Call& call) {
    if (call.operation != btrieve::kCreate) return record_;
    std::string description = Description();
    Change(description);
    return description;
  }

  static bool NamesFile(const Call& call) {
    return call.operation == btrieve::kOpen || call.operation == btrieve::kCreate;
  }

  void Serve(Call call, Wrong wrong) {
    std::string data = Data(call);
    std::string key = key_;
    if (wrong == Wrong::kDataLength) data.resize(input_.Word());
    // A path that ends within the folder's would lead to files of others.
    const std::size_t least = NamesFile(call) ? TheFiles().Path("").size() : 0;
    if (wrong == Wrong::kKeyLength) key.resize(std::max<std::size_t>(input_.Byte(), least));
    const Buffer dataBuffer = MemoryOf(data);
    const Buffer keyBuffer = MemoryOf(key);
    auto length = static_cast<std::uint16_t>(data.size());
    call.dataBuffer = wrong == Wrong::kNoData ? nullptr : dataBuffer.get();
    call.dataLength = wrong == Wrong::kNoDataLength ? nullptr : &length;
    call.keyBuffer = wrong == Wrong::kNoKey ? nullptr : keyBuffer.get();
    call.keyLength = key.size();
    if (wrong == Wrong::kKeyNumber) call.keyNumber = input_.Byte() - 128;
    if (wrong == Wrong::kOtherClient) call.client[0] = 1;
    if (wrong == Wrong::kReplacedFile) ReplaceFile();
    SpoilBlock(call, wrong);
    ServeWithMemory(call, wrong);
    if (data.size() == record_.size()) {
      record_.assign(dataBuffer.get(), dataBuffer.get() + data.size());
    }
    if (key.size() == key_.size()) key_.assign(keyBuffer.get(), keyBuffer.get() + key.size());
  }

  // A backup is put in its place while it is open; the log is still the former file's.
  void ReplaceFile() {
    testkit::WriteAll(TheFiles().Path("BACKUP.KRV"), TheFiles().sound);
    fs::rename(TheFiles().Path("BACKUP.KRV"), TheFiles().Path("A.KRV"));
    hasReplaced_ = true;
  }

  void SpoilBlock(Call& call, Wrong wrong) {
    std::uint8_t* const spare = blocks_[2].get();
    if (wrong == Wrong::kNoBlock) call.positionBlock = nullptr;
    if (wrong == Wrong::kCopiedBlock) {
      std::copy_n(call.positionBlock, btrieve::kPositionBlockSize, spare);
      call.positionBlock = spare;
    }
    if (wrong == Wrong::kRubbishBlock) {
      const std::string rubbish = Padded(input_.Bytes(128), btrieve::kPositionBlockSize);
      std::copy(rubbish.begin(), rubbish.end(), spare);
      call.positionBlock = spare;
    }
    if (wrong == Wrong::kChangedBlock) {
      call.positionBlock[input_.Byte() % btrieve::kPositionBlockSize] ^= input_.Byte();
    }
  }

  void ServeWithMemory(const Call& call, Wrong wrong) {
    const bool fails = wrong == Wrong::kNoMemory || wrong == Wrong::kNeverAnyMemory;
    fuzz::LetMemoryFail(fails ? input_.Byte() : 0, wrong == Wrong::kNeverAnyMemory);
    const int status = engine_.Serve(call);
    fuzz::LetMemoryFail(0, false);
    if (status < 0 || status > btrieve::kOutOfMemory) fuzz::Found("no published status");
    // Before that is told, all is given back that has only been read.
    if (status == btrieve::kOutOfMemory && wrong == Wrong::kNoMemory && !inTransaction_) {
      fuzz::Found("not tried again with the memory of what was read");
    }
    if (call.operation == btrieve::kBeginTransaction && status == btrieve::kSuccess) {
      inTransaction_ = true;
    }
    const bool ends =
        call.operation == btrieve::kEndTransaction || call.operation == btrieve::kAbortTransaction;
    if (ends && status != btrieve::kFileInUse) inTransaction_ = false;
  }

  Engine& engine_;
  Input& input_;
  Buffer blocks_[3] = {MemoryOf(kEmptyBlock), MemoryOf(kEmptyBlock), MemoryOf(kEmptyBlock)};
  std::string record_ = std::string(kRecordLength, '\0');
  std::string key_;
  bool inTransaction_ = false;
  bool hasReplaced_ = false;

  inline static const std::string kEmptyBlock = std::string(btrieve::kPositionBlockSize, '\0');
};

std::string DamagedBy(Input& input) {
  std::string bytes = TheFiles().sound;
  for (std::size_t i = input.Choice(16); i > 0; --i) {
    bytes[input.Word() % bytes.size()] = static_cast<char>(input.Byte());
  }
  if (input.OneIn(8)) bytes.resize(input.Word() % bytes.size());
  return bytes;
}

bool IsSound(const std::string& file) {
  Connection connection;
  std::string verdict;
  return connection.Open(file, Connection::Way::kExisting) == btrieve::kSuccess &&
         connection.QueryText("PRAGMA integrity_check", verdict) == btrieve::kSuccess &&
         verdict == "ok";
}

// Whether a folder has an entry that leads to such a path, or is called so.
bool HasAny(const fs::path& folder, const std::string& begin) {
  return std::ranges::any_of(fs::directory_iterator(folder), [&](const auto& entry) {
    std::error_code none;  // no link; or the descriptor that the iterator itself uses
    return entry.path().string().starts_with(begin) ||
           read_symlink(entry, none).string().starts_with(begin);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Input input(bytes, size);
  const Files& files = TheFiles();
  bool sound = !input.OneIn(2);
  files.Arrange(sound ? files.sound : DamagedBy(input));
  {
    Engine engine;
    Caller caller(engine, input);
    while (!input.IsSpent()) caller.CallOnce();
    sound = sound && !caller.HasReplacedFile();
  }
  if (HasAny("/proc/self/fd", files.Path(""))) fuzz::Found("a file stays open");
  if (HasAny(files.folder.Path(), files.Path("new-"))) fuzz::Found("a draft stays behind");
  if (sound && !IsSound(files.Path("A.KRV"))) fuzz::Found("a sound file has been damaged");
  return 0;
}
