// The tool's exit statuses, and the one place that turns a command's
// failures into them.
#pragma once

#include <functional>
#include <iostream>
#include <string>

namespace phonepim::tool {

inline constexpr int kExitOk = 0;
/// Some objects could not be read; the others were processed.
inline constexpr int kExitSomeObjectsFailed = 1;
/// The input cannot be read or holds nothing to work on, or an output
/// cannot be written.
inline constexpr int kExitCannotRead = 2;
inline constexpr int kExitInternalError = 3;
/// `check`: a card lost something in the round trip.
inline constexpr int kExitLost = 4;
/// The command line is wrong, whatever CLI11 found wrong with it.
inline constexpr int kExitUsage = 106;

/// Reads `file` (- for standard input) and runs `command` on its text and
/// the name to report it by; answers the command's status. An unreadable
/// file gives kExitCannotRead, an exception out of the command
/// kExitInternalError, each with one line on `err`.
int RunOnFile(const std::string& file,
              const std::function<int(const std::string& text, const std::string& source)>& command,
              std::ostream& err = std::cerr);

}  // namespace phonepim::tool
