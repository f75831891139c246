#include "Progress.h"

#include <unistd.h>

#include <ostream>

namespace phonepim::tool {

Progress::Progress(std::ostream& err, std::string what, std::size_t total, bool quiet)
    : err_(err),
      what_(std::move(what)),
      total_(total),
      enabled_(!quiet && total >= kMinimumItems && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() { Clear(); }

void Progress::Update(std::size_t done) {
  // A hundred redraws over the whole run are enough to see it move.
  if (!enabled_ || (shown_ && done < total_ && done - lastDrawn_ < total_ / 100)) return;
  err_ << '\r' << what_ << ": " << done << '/' << total_ << std::flush;
  shown_ = true;
  lastDrawn_ = done;
}

void Progress::Clear() {
  if (!shown_) return;
  err_ << '\r' << std::string(what_.size() + 2 + 2 * std::to_string(total_).size() + 1, ' ') << '\r'
       << std::flush;
  shown_ = false;
}

}  // namespace phonepim::tool
