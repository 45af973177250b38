// Records along the keys of a file, read ahead of whoever walks there, and given out from memory as
// long as nobody has written.
//
// A search costs two locks and a way down the key's tree; its neighbours then come cheaply. So a
// walk reads a block of them at once, and the longer it goes on, the larger the block. A mere
// lookup reads no neighbours. A search is taken for the beginning of a walk if the one before it
// was.
//
// No read stays open between two calls, so readers hold up nobody. No stale record is given out:
// before each use the reader says in which state the log is, and any change by anybody leads to
// another state, which makes the blocks void.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "recordmanager/record_block.h"
#include "recordmanager/sql.h"

namespace recordmanager {

// Records that were looked up one by one: a table with a place for each way to begin a search,
// whose last answer stays there. Much cheaper to fill than to search among all blocks.
class LookedUp {
 public:
  struct Place {
    std::size_t key = SIZE_MAX;  // none
    RecordBlock block;
    std::size_t bytes = 0;  // that are counted
  };

  const RecordBlock* Find(std::size_t key, const Cut& cut, Direction direction) const;
  Place& PlaceFor(std::size_t key, const Cut& cut);
  void Keep(Place& place, std::size_t key);
  void Clear();
  std::size_t Bytes() const { return bytes_; }

 private:
  static std::size_t IndexOf(std::size_t key, const Cut& cut);

  std::vector<Place> places_;
  std::size_t bytes_ = 0;
};

// Why a record is read: to look up a unique key value, for any other search, or as a step from the
// reader's position.
enum class Purpose : std::uint8_t { kLookUp, kSearch, kStep };

class ReadAhead {
 public:
  // Before anything else: how many keys there are.
  void SetKeys(std::size_t count) { keys_.resize(count); }

  // To be called before each use: in which state the log is. All zero means that it cannot be seen;
  // then nothing is kept. False when it is another one than before.
  bool LookAt(const LogState& state);

  // What is known of the first record from `cut` on, in that direction, of the key with that index.
  // Unless it is found, `cut` moves on as far as there is known to be none.
  enum class Answer : std::uint8_t { kUnknown, kFound, kNoMore };
  Answer Find(std::size_t key, Cut& cut, Direction direction, Purpose purpose, KeyedRecord& record);

  // A block for what is read from the cut on if it is not known, and how many records it should
  // have: one unless a walk is to be expected, then more and more in a row of blocks.
  RecordBlock& Begin(std::size_t key, const Cut& cut, Direction direction, Purpose purpose);
  std::size_t CountToRead(std::size_t recordLength) const;

  // Keeps that block, as long as nobody writes.
  void Keep();

  // Gives back all memory.
  void Forget();

  // How much memory that would be.
  std::size_t Bytes() const { return bytes_ + lookedUp_.Bytes() + reading_.block.Bytes(); }

 private:
  using Blocks = std::map<Cut, RecordBlock>;  // by their low ends; none overlaps another
  struct KeyBlocks {
    Blocks blocks;
    // Where the last record was found: the next one on a walk is its neighbour.
    const RecordBlock* block = nullptr;
    std::size_t index = 0;
    bool stepped = false;  // since the last search
    bool walks = false;    // before it
  };

  void Clear();
  static const RecordBlock* BlockBeyond(const Blocks& blocks, const Cut& cut, Direction direction);
  static bool StepOn(KeyBlocks& kept, const Cut& cut, Direction direction);
  Blocks::iterator DropOverlapping(Blocks& blocks, const RecordBlock& block);

  // What is being read.
  struct Reading {
    RecordBlock block;
    LookedUp::Place* place = nullptr;  // or a place for it
    std::size_t key = 0;
    std::size_t count = 0;
  };

  LogState state_{};
  Reading reading_;
  LookedUp lookedUp_;
  std::vector<KeyBlocks> keys_;
  std::size_t bytes_ = 0;  // of the keys' blocks
  std::size_t count_ = 0;
};

}  // namespace recordmanager
