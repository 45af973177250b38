// The record file that these tests work on, fresh for each test, and clients of it. A party has a
// number (key 0: autoincrement), a case (key 1: integer), a role of 6 characters (key 2: string), a
// rank (key 3: integer of two bytes) and a counter, which is no key; all keys but the first are
// modifiable and allow duplicates.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "btrieve/client.h"
#include "btrieve/file_description.h"
#include "testkit/embedded_manager.h"
#include "testkit/process.h"

namespace recordmanager_tests {

using testkit::ReadAll;
using testkit::WriteAll;

inline constexpr std::size_t kPartyLength = 20;
inline constexpr std::size_t kCounterOffset = 16;

// The buffer that Create takes.
std::string DescribeParties();

int Create(const std::string& path, const std::string& description = DescribeParties(),
           char way = btrieve::kCreateOver);

// A file's bytes with a rollback journal or with a log, by the file format's numbers for the two.
inline constexpr char kJournalled = 1;
inline constexpr char kLogged = 2;
std::string InMode(char mode, std::string bytes);

// A rollback journal as it is once it is synchronised, just before the file is written.
std::string Synchronised(const std::string& begun);

// A client of the embedded record manager with a record. A copy has a copy of the position block.
class Client : public btrieve::Client {
 public:
  Client() : btrieve::Client(testkit::EmbeddedEntryPoint()) {}

  std::array<std::uint8_t, btrieve::kClientIdSize> id{};
  std::array<char, 1024> record{};
  ULONG length = 1024;

  // One operation with the members of both classes. Returns its status.
  int Call(WORD operation, int keyNumber);
  int Open(const std::string& path, char mode = btrieve::kOpenNormal) {
    SetKey(path);
    return Call(btrieve::kOpen, mode);
  }

  // Takes the steps of a script and returns what came of each: the number of the record that was
  // read or inserted, "ok", or "!" and the status.
  //
  //   "insert case=7 role=M, equal case=7, next case, update rank=5 case, delete"
  //
  // Insert and update write the given fields, of a fresh record and of the present one, by the key
  // named without a value (-1 for none) or by number. "next*" goes on until it fails, "hold" is
  // for workers.
  std::string Do(const std::string& script);

  // Of the record; of any other than a party's, the integers in the same places.
  std::int32_t Number() const { return Integer(0); }
  std::int32_t Counter() const { return Integer(kCounterOffset); }

 private:
  std::int32_t Integer(std::size_t offset) const;
  std::string Take(const std::string& step);
  std::string Outcome(WORD operation, int keyNumber);
};

// A process that works on a record file beside the tests' own: this program, started anew. It takes
// a client's script, once or so many times; its exit code is 0 when all went well, and otherwise
// the first status that was not. With a "hold" in the script, the constructor returns when the
// process holds there.
class Worker : public testkit::Process {
 public:
  Worker(const std::string& file, const std::string& script, int times = 1);

  void WaitUntilItHolds() const;
  void GoOn() const { std::filesystem::remove(flag_); }

  // In the midst of its work.
  void Kill();

 private:
  std::string flag_;  // a file that is there while the process holds
};

// Its work, for main() of a program that was started with the option; returns the exit code.
inline constexpr const char* kWorkerOption = "--worker";
int Work(const std::vector<std::string>& arguments);

class PartyFile : public testing::Test {
  const testkit::TemporaryFolder temporaryFolder_;

 protected:
  PartyFile();
  ~PartyFile() override;

  std::string InFolder(const std::string& name) const { return (folder / name).string(); }

  // One more client of a file; closed at the end.
  Client& Opened(const std::string& name, char mode = btrieve::kOpenNormal);

  const std::filesystem::path& folder = temporaryFolder_.Path();
  const std::string path = InFolder("PARTIES.KRV");
  Client client;  // has the file open

 private:
  std::deque<Client> others_;
};

}  // namespace recordmanager_tests
