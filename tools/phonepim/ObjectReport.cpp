#include "ObjectReport.h"

namespace phonepim::tool {

void AppendVisible(std::string& line, std::string_view utf8) {
  for (char c : utf8) {
    switch (c) {
      case '\r':
        line += "\\r";
        break;
      case '\n':
        line += "\\n";
        break;
      case '\t':
        line += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
          static const char kHex[] = "0123456789ABCDEF";
          line += "\\x";
          line += kHex[static_cast<unsigned char>(c) >> 4];
          line += kHex[c & 0x0F];
        } else {
          line += c;
        }
    }
  }
}

std::string ShortObjectHeading(const std::string& sourceName, std::size_t index,
                               const VersitObjectSpan& span) {
  return sourceName + ": object " + std::to_string(index + 1) + " (line " +
         std::to_string(span.firstLine) + ")";
}

std::string ObjectHeading(const std::string& sourceName, std::size_t index,
                          const VersitObjectSpan& span, std::string_view object) {
  std::string_view line = object.substr(0, object.find('\n'));
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  std::string heading = sourceName + ": object " + std::to_string(index + 1) + " (line " +
                        std::to_string(span.firstLine) + ", \"";
  AppendVisible(heading, line.substr(0, 60));
  return heading + "\")";
}

std::string Counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace phonepim::tool
