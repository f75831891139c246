#include "ExitStatus.h"

#include <exception>

#include "Input.h"

namespace phonepim::tool {

int RunOnFile(const std::string& file,
              const std::function<int(const std::string& text, const std::string& source)>& command,
              std::ostream& err) {
  std::string text;
  std::string error;
  if (!ReadInput(file, &text, &error)) {
    err << "phonepim: " << error << '\n';
    return kExitCannotRead;
  }
  try {
    return command(text, SourceName(file));
  } catch (const std::exception& e) {
    err << "phonepim: " << file << ": internal error: " << e.what() << '\n';
  } catch (...) {
    err << "phonepim: " << file << ": internal error\n";
  }
  return kExitInternalError;
}

}  // namespace phonepim::tool
