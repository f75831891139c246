#include "phonepim/platform/Log.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace phonepim {

bool gVCARD_DEBUGMODE = false;

namespace {
std::atomic<LogSink> g_sink{&StderrLogSink};
}  // namespace

void StderrLogSink(std::string_view message) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
}

LogSink SetLogSink(LogSink sink) {
  return g_sink.exchange(sink ? sink : &StderrLogSink);
}

void Log(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  const int needed = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::string message;
  if (needed > 0) {
    message.resize(static_cast<std::size_t>(needed) + 1);
    std::vsnprintf(message.data(), message.size(), format, args);
    message.resize(static_cast<std::size_t>(needed));
  }
  va_end(args);
  g_sink.load()(message);
}

}  // namespace phonepim
