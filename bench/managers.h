// The record managers that the exports are measured with. The library finds one that hands every
// call to this program (testkit/scripted_manager); what becomes of the calls is set here.
#pragma once

#include <array>
#include <vector>

#include "btrieve/btrieve.h"

namespace bench {

// One call as the library made it, and what it was answered.
struct RecordedCall {
  WORD operation;
  std::size_t file;  // which of the files that were opened
  std::vector<char> data;
  std::array<char, btrieve::kMaxKeyLength> key;
  ULONG length;
  char keyNumber;
  bool keyIsInserted;  // the key is the number that the last Insert was given
  int status;
  std::vector<char> answer;
  std::array<char, btrieve::kMaxKeyLength> answerKey;
};

using Calls = std::vector<RecordedCall>;

// Loads the record manager that hands the calls here, and the embedded one behind it. To be called
// before the first export.
void LoadManagers();

// From now on calls go to the embedded record manager.
void UseEmbedded();

// What the library asks for while `work` is done; the embedded record manager answers.
template <class Work>
Calls CallsOf(const Work& work);

// From now on the calls, asked for again and again in this order, are answered as they were then,
// from memory. `calls` must stay.
void UseMemory(const Calls& calls);

// Makes the calls without the library, of the record manager in use. Memory and keys are where they
// are needed: this is what cannot be saved.
class BareCalls {
 public:
  explicit BareCalls(Calls calls);

  void Run();
  std::size_t Size() const { return calls_.size(); }

 private:
  Calls calls_;
  std::vector<std::array<char, btrieve::kPositionBlockSize>> positionBlocks_;
  std::array<char, 2048> buffer_{};
  std::array<char, sizeof(std::int32_t)> inserted_{};
};

void StartRecording();
Calls StopRecording();

template <class Work>
Calls CallsOf(const Work& work) {
  StartRecording();
  work();
  return StopRecording();
}

}  // namespace bench
