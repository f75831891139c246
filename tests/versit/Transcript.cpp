#include "versit/Transcript.h"

#include <cstdio>

#include "versit/vParserInternal.h"

namespace phonepim::testing_versit {
namespace {

std::string PropertyEntry(const char* name, char** params) {
  if (params == nullptr) return "!params null";
  std::string entry = "P:" + RenderBytes(name, true);
  for (char** pair = params; pair[0] != nullptr || pair[1] != nullptr; pair += 2) {
    if (pair[0] == nullptr) return "!value without name";
    entry += ";" + RenderBytes(pair[0], true) + (pair[1] != nullptr ? "=" + RenderBytes(pair[1], true) : "");
  }
  return entry;
}

std::string DataEntry(const char* data, int length) {
  if (data == nullptr) return length == 0 ? "E" : "!null data with length";
  if (length <= 0) return "!data with length " + std::to_string(length);
  return "D:" + RenderBytes(std::string_view(data, length), false);
}

ParserPtr MakeParser(Transcript* transcript, Handlers handlers, bool lenient = false) {
  ParserPtr parser(CARD_ParserCreate());
  CARD_SetLenient(parser.get(), lenient ? 1 : 0);
  CARD_SetUserData(parser.get(), transcript);
  if (handlers == Handlers::kBoth || handlers == Handlers::kPropOnly) {
    CARD_SetPropHandler(parser.get(), [](void* userData, const char* name, char** params) {
      static_cast<Transcript*>(userData)->push_back(PropertyEntry(name, params));
    });
  }
  if (handlers == Handlers::kBoth || handlers == Handlers::kDataOnly) {
    CARD_SetDataHandler(parser.get(), [](void* userData, const char* data, int length) {
      static_cast<Transcript*>(userData)->push_back(DataEntry(data, length));
    });
  }
  return parser;
}

}  // namespace

std::string RenderBytes(std::string_view bytes, bool inParameter) {
  std::string out;
  for (const char ch : bytes) {
    const auto c = static_cast<unsigned char>(ch);
    if (c < 0x20 || c >= 0x7F || c == '\\' || (inParameter && (c == ';' || c == '='))) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      out += hex;
    } else {
      out += ch;
    }
  }
  return out;
}

Transcript Tokenize(std::string_view input, const std::vector<std::size_t>& cuts,
                    Handlers handlers, void (*afterEachCall)(const VP*), bool lenient) {
  Transcript transcript;
  ParserPtr parser = MakeParser(&transcript, handlers, lenient);
  std::size_t start = 0;
  for (std::size_t i = 0; i <= cuts.size(); ++i) {
    const std::size_t stop = i < cuts.size() ? cuts[i] : input.size();
    const int final = i == cuts.size() ? 1 : 0;
    const int ok = CARD_Parse(parser.get(), input.data() + start, static_cast<int>(stop - start), final);
    if (afterEachCall != nullptr) afterEachCall(parser.get());
    if (ok == 0) {
      transcript.push_back("R:0");
      return transcript;
    }
    start = stop;
  }
  transcript.push_back("R:1");
  return transcript;
}

Transcript TokenizeByteByByte(std::string_view input, Handlers handlers, bool lenient) {
  std::vector<std::size_t> cuts;
  for (std::size_t i = 1; i < input.size(); ++i) cuts.push_back(i);
  return Tokenize(input, cuts, handlers, nullptr, lenient);
}

Transcript TokenizeReference(std::string_view input, Handlers handlers) {
  Transcript transcript;
  ParserPtr parser = MakeParser(&transcript, handlers);
  VP* vp = parser.get();
  auto isSpace = [](unsigned char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
  };
  for (const char ch : input) {
    const auto c = static_cast<unsigned char>(ch);
    if (vp->atLineStart) {
      if (c == '\n') continue;
      if (!vp->isContinuation && isSpace(c)) {
        vp->isContinuation = 1;
        continue;
      }
      if (vp->encoding == VP_ENCODING_BASE64) vp->encoding = VP_ENCODING_NONE;
      vp->atLineStart = 0;
      if (!vp->isContinuation) {
        if (vcard_process_char(vp, '\n') == 0) {
          transcript.push_back("R:0");
          return transcript;
        }
      } else if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE) {
        vp->qpPending = 0;
      }
    }
    if (c == '\n') {
      vp->atLineStart = 1;
      vp->isContinuation = 0;
    } else if (vcard_process_char(vp, ch) == 0) {
      transcript.push_back("R:0");
      return transcript;
    }
  }
  transcript.push_back(vcard_process_char(vp, '\n') == 0 ? "R:0" : "R:1");
  return transcript;
}

}  // namespace phonepim::testing_versit
