#include "stress/tally.h"

#include <ostream>
#include <utility>

namespace stress {

void Tally::Note(Fault::Kind kind, int count) {
  if (count > 0) counts_[kind] += count;
}

void Tally::NoteEnd(int code) {
  if (code == 0) return;
  const bool known = code >= Fault::kLost && code < Fault::kCrashed;
  Note(known ? static_cast<Fault::Kind>(code) : Fault::kCrashed);
}

void Tally::Add(const Tally& other) {
  for (const auto& [kind, count] : other.counts_) Note(kind, count);
}

void Tally::Write(std::ostream& report) const {
  constexpr std::pair<Fault::Kind, const char*> kWords[] = {
      {Fault::kLost, "lost "},         {Fault::kDoubled, ", doubled "}, {Fault::kTorn, ", torn "},
      {Fault::kDamaged, ", damaged "}, {Fault::kRefused, ", refused "}, {Fault::kGrown, ", grown "},
      {Fault::kCrashed, ", crashed "}};
  for (const auto& [kind, word] : kWords) {
    const auto found = counts_.find(kind);
    report << word << (found == counts_.end() ? 0 : found->second);
  }
  report << '\n';
}

}  // namespace stress
