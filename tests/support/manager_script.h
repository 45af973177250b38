// A record manager that does what the test says and remembers what it was asked. What it is not
// told about, the embedded record manager does with the office's real files.
#pragma once

#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/library.h"
#include "testkit/scripted_manager/handler.h"

namespace qlx99::tests {

// One call as it arrived, and the status that it was given.
struct ManagerCall {
  WORD operation;
  std::string file;  // the bare name, as the position block was opened; of a transaction none
  std::string path;  // of Open and Create
  std::string key;   // all of the key buffer
  int keyNumber;
  int keyLength;
  ULONG dataLength;
  std::string data;  // as long as the data length says, of operations that bring data
  bool plain;        // through BTRCALL
  int status = 0;

  // On the file ZTCASE.KRV, "+CASE" and "-CASE" open and close it, "=CASE1" is Get Equal by key 1,
  // ">CASE1" Get Next; the others are "first CASE1", "insert CASE1", ...
  std::string Text() const;
};

class ManagerScript {
 public:
  static constexpr int kForEver = -1;

  // From now on the library finds this record manager, until UnloadRecordManagers.
  explicit ManagerScript(FoundManagers& managers);
  ~ManagerScript() = default;
  ManagerScript(const ManagerScript&) = delete;
  ManagerScript& operator=(const ManagerScript&) = delete;

  // The calls of that operation on that file get this status, and nothing is done.
  void Answers(WORD operation, const std::string& file, int status, int times = kForEver);

  // The nth call from now on, counted from 1, gets this status.
  void FailsCall(std::size_t n, int status);

  // The records that are read have no more bytes than that; what is behind them in the buffer is
  // none of theirs.
  void CutsRecordsTo(ULONG length) { longest_ = length; }

  // Just before the next call of that operation on that file, somebody else does something.
  void Meanwhile(WORD operation, const std::string& file, std::function<void()> action);

  // All calls since the start or the last Forget; as one text, in which ".." stands for the same
  // call once or more.
  const std::vector<ManagerCall>& Calls() const { return calls_; }
  std::string CallText() const;

  // Files that were opened and are not closed. (A call on a file that is not open fails the test.)
  std::vector<std::string> OpenFiles() const;

  // Forgets the calls and what it was told.
  void Forget();

 private:
  struct Rule {
    WORD operation;
    std::string file;
    int times;
    std::function<std::optional<int>()> status;  // none: what the embedded one says
  };

  int Answer(const btrieve::Arguments& arguments);

  std::string FileOf(const void* positionBlock);
  std::optional<int> ScriptedStatus(const ManagerCall& call);
  void Keep(const ManagerCall& call, const void* positionBlock);

  std::vector<ManagerCall> calls_;
  std::list<Rule> rules_;
  std::size_t failingCall_ = 0;  // its number
  int failure_ = 0;
  std::optional<ULONG> longest_;
  std::map<const void*, std::string> files_;   // that are open, by position block
  std::map<const void*, std::string> copies_;  // of position blocks, likewise
};

}  // namespace qlx99::tests
