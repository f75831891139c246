#include "VersitDump.h"

#include "ObjectReport.h"

#include <phonepim/encoding/Encoding.h>
#include <phonepim/encoding/base64.h>
#include <phonepim/platform/String.h>
#include <phonepim/versit/ObjectSplitter.h>
#include <phonepim/versit/vParser.h>

#include <cstring>
#include <memory>
#include <ostream>
#include <string_view>
#include <vector>

namespace phonepim::tool {
namespace {

struct ParserDeleter {
  void operator()(VP* parser) const { CARD_ParserFree(parser); }
};

struct Parameter {
  std::string name;
  std::string value;
  bool bare = false;
};

// What the callbacks collect for the property being read. The tokenizer's
// pointers die with each callback, so everything is copied.
struct PropertyDump {
  std::ostream* out = nullptr;
  std::string name;
  std::vector<Parameter> parameters;
  std::string value;
  int properties = 0;
};

// The value-encoding and charset words, the way the vCard reader takes them:
// case-sensitive, bare words allowed for the encoding.
void Classify(const std::vector<Parameter>& parameters, int* encoding, int* charset) {
  *encoding = kEncodingNone;
  *charset = kCharsetUTF8;
  for (const Parameter& p : parameters) {
    const std::string& word = p.bare ? p.name : p.value;
    if (p.bare || p.name == "ENCODING") {
      if (word == "QUOTED-PRINTABLE") *encoding = kEncodingQuotedPrintable;
      else if (word == "BASE64") *encoding = kEncodingBase64;
      else if (!p.bare) *encoding = kEncodingUnknown;
    } else if (p.name == "CHARSET" && p.value == "SHIFT_JIS") {
      *charset = kCharsetShiftJIS;
    }
  }
}

std::string DescribeValue(const PropertyDump& p) {
  int encoding = 0;
  int charset = 0;
  Classify(p.parameters, &encoding, &charset);
  if (encoding == kEncodingBase64) {
    // The tokenizer decodes BASE64 on the first line only and passes folded
    // lines on as text; a reader decodes that text, so count what it gets.
    std::string text = p.value;
    std::vector<char> bytes(static_cast<std::size_t>(Base64decode_len(text.c_str())));
    const int n = Base64decode(bytes.data(), text.c_str());
    return "<BASE64, " + std::to_string(n) + " bytes>";
  }
  const std::optional<String> decoded =
      Decode(p.value.data(), static_cast<int>(p.value.size()), charset, encoding);
  std::string line;
  if (!decoded) {
    line = "<not valid ";
    line += charset == kCharsetShiftJIS ? "Shift_JIS" : "UTF-8";
    line += ", " + std::to_string(p.value.size()) + " bytes> ";
    AppendVisible(line, p.value);
    return line;
  }
  AppendVisible(line, ToDisplayUTF8(*decoded));
  return line;
}

void OnProperty(void* userData, const char* name, char** params) {
  auto* p = static_cast<PropertyDump*>(userData);
  p->name = name;
  p->parameters.clear();
  p->value.clear();
  for (char** pair = params; pair && (pair[0] || pair[1]); pair += 2) {
    Parameter parameter;
    parameter.name = pair[0] ? pair[0] : "";
    parameter.bare = pair[1] == nullptr;
    if (pair[1]) parameter.value = pair[1];
    p->parameters.push_back(std::move(parameter));
  }
}

void OnData(void* userData, const char* data, int length) {
  auto* p = static_cast<PropertyDump*>(userData);
  if (data) {
    p->value.append(data, static_cast<std::size_t>(length));
    return;
  }
  ++p->properties;
  if (!p->out) return;
  std::string line = "  " + p->name;
  if (!p->parameters.empty()) {
    line += " [";
    for (std::size_t i = 0; i < p->parameters.size(); ++i) {
      if (i) line += "; ";
      line += p->parameters[i].name;
      if (!p->parameters[i].bare) line += "=" + p->parameters[i].value;
    }
    line += "]";
  }
  line += ": " + DescribeValue(*p);
  *p->out << line << '\n';
}

}  // namespace

int DumpVersitText(const std::string& text, const std::string& sourceName,
                   const DumpOptions& options, std::ostream& out, std::ostream& err) {
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  if (spans.empty()) {
    err << sourceName << ": no versit object (no BEGIN: line)\n";
    return 2;
  }
  int rejected = 0;
  for (std::size_t index = 0; index < spans.size(); ++index) {
    const VersitObjectSpan& span = spans[index];
    const std::string_view object(text.data() + span.offset, span.length);
    PropertyDump dump;
    dump.out = options.quiet ? nullptr : &out;
    if (!options.quiet) {
      out << "object " << index + 1 << " (line " << span.firstLine << ")\n";
    }
    std::unique_ptr<VP, ParserDeleter> parser(CARD_ParserCreate());
    if (!parser) throw std::bad_alloc();
    CARD_SetUserData(parser.get(), &dump);
    CARD_SetPropHandler(parser.get(), &OnProperty);
    CARD_SetDataHandler(parser.get(), &OnData);
    const bool ok = object.size() <= static_cast<std::size_t>(INT32_MAX) &&
                    CARD_Parse(parser.get(), object.data(),
                               static_cast<int>(object.size()), 1) == 1;
    if (!ok) {
      ++rejected;
      err << ObjectHeading(sourceName, index, span, object)
          << ": the tokenizer rejected it after " << dump.properties << " properties\n";
    } else if (!span.terminated) {
      err << ShortObjectHeading(sourceName, index, span)
          << ": no END line before the end of the file\n";
    }
  }
  out << Counted(spans.size(), "object") << ", " << rejected << " rejected\n";
  return rejected ? 1 : 0;
}

}  // namespace phonepim::tool
