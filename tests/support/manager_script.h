// A record manager that does what the test says and remembers what it was asked. What it is not
// told about, the embedded record manager does with the office's real files.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/record_managers.h"
#include "support/scripted_manager/handler.h"

namespace qlx99::tests {

// One call as it arrived, and the status that it was given.
struct ManagerCall {
  WORD operation;
  void* positionBlock;
  std::string file;  // the bare name, as the position block was opened
  std::string path;  // of Open
  std::string key;   // all of the key buffer
  int keyNumber;
  int keyLength;
  ULONG dataLength;
  std::string data;  // as long as the data length says, of operations that bring data
  bool plain;        // through BTRCALL
  int status = 0;

  // "GetEqual ZTCASE.KRV 1": operation, file and, where it matters, the key number.
  std::string Text() const;
};

inline void PrintTo(const ManagerCall& call, std::ostream* out) { *out << call.Text(); }

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

  // The next call of that operation on that file succeeds with exactly these bytes.
  void Gives(WORD operation, const std::string& file, const std::string& data);

  // Just before the next call of that operation on that file, somebody else does something.
  void Meanwhile(WORD operation, const std::string& file, std::function<void()> action);

  // All calls since the start or the last Forget.
  const std::vector<ManagerCall>& Calls() const { return calls_; }
  std::vector<std::string> CallTexts() const;

  // Files that were opened and are not closed. (A call on a file that is not open fails the test.)
  std::vector<std::string> OpenFiles() const;

  // Forgets the calls and what it was told.
  void Forget();

 private:
  struct Rule {
    WORD operation;
    std::string file;
    int times;
    std::function<int(const ManagerCall&, void* dataBuffer, ULONG* dataLength)> answer;
  };

  static short Handle(void* script, WORD operation, void* positionBlock, void* dataBuffer,
                      ULONG* dataLength, void* keyBuffer, BYTE keyLength, char keyNumber,
                      void* clientId);

  struct KnownFile {
    std::string name;
    bool isClosed = false;  // in truth, although the script answered that it was busy
  };

  std::string FileOf(const void* positionBlock);
  int Close(const ManagerCall& call, const std::function<int()>& forward);
  Rule* RuleFor(const ManagerCall& call);
  void RunActions(const ManagerCall& call);
  void Keep(const ManagerCall& call);

  std::vector<ManagerCall> calls_;
  std::vector<Rule> rules_;
  std::map<std::size_t, int> failures_;                        // by the number of the call
  std::multimap<std::string, std::function<void()>> actions_;  // by the call's operation and file
  std::map<const void*, KnownFile> files_;                     // by position block
  std::map<const void*, std::string> copies_;                  // of position blocks, likewise
};

}  // namespace qlx99::tests
