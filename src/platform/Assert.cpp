#include "phonepim/platform/Assert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace phonepim {
namespace {

std::atomic<AssertionHandler> g_handler{&DefaultAssertionHandler};

std::string Describe(const std::string& text, const std::string& function,
                     const std::string& file, int line) {
  return "Assertion failed: (" + text + "), function " + function + ", file " + file +
         ", line " + std::to_string(line) + ".";
}

}  // namespace

AssertionFailure::AssertionFailure(std::string text, std::string function,
                                   std::string file, int line)
    : std::logic_error(Describe(text, function, file, line)),
      text_(std::move(text)),
      function_(std::move(function)),
      file_(std::move(file)),
      line_(line) {}

void DefaultAssertionHandler(const char* text, const char* function,
                             const char* file, int line) {
  std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n",
               text, function, file, line);
  std::fflush(stderr);
  std::abort();
}

void ThrowingAssertionHandler(const char* text, const char* function,
                              const char* file, int line) {
  throw AssertionFailure(text, function, file, line);
}

AssertionHandler SetAssertionHandler(AssertionHandler handler) {
  return g_handler.exchange(handler ? handler : &DefaultAssertionHandler);
}

void AssertionFailed(const char* text, const char* function, const char* file,
                     int line) {
  g_handler.load()(text, function, file, line);
  // A handler that returns would let the failed operation go on.
  std::abort();
}

}  // namespace phonepim
