#include "office/report.h"

#include <ostream>

#include "office/host.h"
#include "office/text_encoding.h"

namespace office {

Report::Report(std::ostream& out) : out_(out), inColour_(ShowsColours(out)) {}

void Report::Good(const std::string& what, const std::string& found) {
  Write("\x1b[32m", "  ", what, found);
}

void Report::Doubtful(const std::string& what, const std::string& found) {
  Write("\x1b[33m", "? ", what, found);
}

void Report::Bad(const std::string& what, const std::string& wrong) {
  Write("\x1b[31m", "! ", what, wrong);
  sound_ = false;
}

void Report::Write(const char* colour, const char* mark, const std::string& what,
                   const std::string& words) {
  constexpr std::size_t kWidth = 16;
  out_ << (inColour_ ? colour : "") << mark << PaddedRight(what, kWidth) << words
       << (inColour_ ? "\x1b[0m" : "") << "\n";
}

}  // namespace office
