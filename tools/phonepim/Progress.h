// A progress line for long work: "\rcontacts: 3000/20000" on standard error.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace phonepim::tool {

/// Shown only when standard error is a terminal (a log file or a pipe would
/// fill with carriage returns) and the work is long enough to wait for. The
/// line is cleared when the object goes, so that messages printed after it
/// start on a clean line.
class Progress {
 public:
  /// Work of fewer items than this finishes before a person would look.
  static constexpr std::size_t kMinimumItems = 2000;

  /// `what` names the items ("contacts"); `total` is their number.
  Progress(std::ostream& err, std::string what, std::size_t total, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `done` items are finished. Redraws now and then, not for every item.
  void Update(std::size_t done);

  /// Clears the line so that a message can be printed; the next Update draws
  /// it again.
  void Clear();

 private:
  std::ostream& err_;
  std::string what_;
  std::size_t total_;
  bool shown_ = false;
  bool enabled_;
  std::size_t lastDrawn_ = 0;
};

}  // namespace phonepim::tool
