#include "office/progress.h"

#include <ostream>
#include <utility>

#include "office/host.h"

namespace office {

ProgressLine::ProgressLine(std::ostream& err, std::string what)
    : err_(err), what_(std::move(what)), drawsOver_(IsTerminal(err)) {}

void ProgressLine::Show(std::int64_t done, std::int64_t all) {
  const std::int64_t quarters = 4 * done / all;
  if (!drawsOver_ && std::exchange(quarters_, quarters) == quarters) return;
  err_ << (drawsOver_ ? "\r" : "") << done << " of " << all << " " << what_
       << (!drawsOver_ || done == all ? "\n" : "") << std::flush;
}

}  // namespace office
