// Assertions for programming errors (an index out of range, a missing
// entry). They are always on, whatever NDEBUG says.
#pragma once

#include <stdexcept>
#include <string>

namespace phonepim {

/// Called with the assertion text, the function, the source file and the
/// line of a failed assertion. It must not return: it aborts or throws.
using AssertionHandler = void (*)(const char* text, const char* function,
                                  const char* file, int line);

/// Thrown by ThrowingAssertionHandler.
class AssertionFailure : public std::logic_error {
 public:
  AssertionFailure(std::string text, std::string function, std::string file,
                   int line);
  /// The assertion text as written at the assertion.
  const std::string& text() const { return text_; }
  const std::string& function() const { return function_; }
  const std::string& file() const { return file_; }
  int line() const { return line_; }

 private:
  std::string text_;
  std::string function_;
  std::string file_;
  int line_;
};

/// Prints "Assertion failed: (TEXT), function FUNCTION, file FILE, line
/// LINE." on stderr and aborts. Installed at start-up.
[[noreturn]] void DefaultAssertionHandler(const char* text, const char* function,
                                          const char* file, int line);

/// Throws AssertionFailure. Hosts that must survive bad data install it.
[[noreturn]] void ThrowingAssertionHandler(const char* text, const char* function,
                                           const char* file, int line);

/// Installs `handler` (nullptr restores the default) and returns the previous
/// one. Process-wide; install it before calling the library from any thread.
AssertionHandler SetAssertionHandler(AssertionHandler handler);

/// Reports a failed assertion through the installed handler; aborts if the
/// handler returns, so the failed operation never continues.
[[noreturn]] void AssertionFailed(const char* text, const char* function,
                                  const char* file, int line);

/// Installs a handler for the lifetime of a scope.
class ScopedAssertionHandler {
 public:
  explicit ScopedAssertionHandler(AssertionHandler handler)
      : previous_(SetAssertionHandler(handler)) {}
  ~ScopedAssertionHandler() { SetAssertionHandler(previous_); }
  ScopedAssertionHandler(const ScopedAssertionHandler&) = delete;
  ScopedAssertionHandler& operator=(const ScopedAssertionHandler&) = delete;

 private:
  AssertionHandler previous_;
};

}  // namespace phonepim

/// Checks `condition`; on failure reports `text` (the assertion's own text)
/// with the function, file and line.
#define PHONEPIM_ASSERT(condition, text)                                \
  do {                                                                  \
    if (!(condition)) {                                                 \
      ::phonepim::AssertionFailed((text), __func__, __FILE__, __LINE__); \
    }                                                                   \
  } while (0)
