// The library's log and its debug switch.
#pragma once

#include <string_view>

namespace phonepim {

/// Receives one formatted message, without a line end.
using LogSink = void (*)(std::string_view message);

/// Formats like printf and hands the message to the installed sink. Strings
/// are passed as UTF-8 (`%s`).
void Log(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Installs `sink` (nullptr restores the default, one line on stderr) and
/// returns the previous one. Process-wide.
LogSink SetLogSink(LogSink sink);

/// The default sink: the message and a line end on stderr.
void StderrLogSink(std::string_view message);

/// When true the codecs log warnings such as unknown properties. Off by
/// default. Process-wide and unguarded: set it before use.
extern bool gVCARD_DEBUGMODE;

}  // namespace phonepim
