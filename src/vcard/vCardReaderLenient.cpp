// The vCard reader's decisions under lenient reading, where the standard
// rules lose what real phones send, and the per-property account.
#include <algorithm>
#include <string_view>
#include <utility>

#include "phonepim/encoding/Charset.h"
#include "phonepim/encoding/Encoding.h"
#include "phonepim/model/CContact.h"
#include "vcard/vCardReaderInternal.h"

namespace phonepim::vcard_reader {
namespace {

bool SameWordNoCase(std::string_view text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
    return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b;
  });
}

// The properties whose field holds one value: a second one replaces it.
bool HoldsOneValue(int propertyID) {
  switch (propertyID) {
    case kvCardPropertyFN: case kvCardPropertyN: case kvCardPropertySOUND:
    case kvCardPropertyBDAY: case kvCardPropertyBLOOD: case kvCardPropertyTITLE:
    case kvCardPropertyROLE: case kvCardPropertyHOBBY: case kvCardPropertyPHOTO:
    case kvCardPropertyGN: case kvCardPropertyGT: case kvCardPropertyGROUP:
    case kvCardPropertySPEEDDIAL: case kvCardPropertyACCOUNT: case kvCardPropertyACCOUNT_N:
    case kvCardPropertyACCOUNT_TYPE: case kvCardPropertyREV: case kvCardPropertyANNIVERSARY:
    case kvCardPropertyGDISPN: case kvCardPropertySPOUSE: case kvCardPropertyCHILDREN:
    case kvCardPropertyASSISTANT:
      return true;
    default:
      return false;
  }
}

// The value decoded by its charset word, with a note in the account when
// that took a fallback.
void DecodeNoted(vCard::vCardParseData& d, CharsetText* decoded) {
  DecodeCharsetInto(d.value, d.charsetName, d.encoding, decoded);
  if (d.account != nullptr) d.decodeNote = CharsetNote(*decoded, d.charsetName);
}

// The parts of a structured value, in the thread's scratch list: the caller
// takes them before the next value. The decoded whole is a scratch too; a
// card has a name and an address or two, each a whole and a list otherwise.
std::vector<String>& Components(vCard::vCardParseData& d) {
  constexpr std::size_t kKeptScratch = 64 * 1024;
  thread_local CharsetText decoded;
  thread_local std::vector<String> parts;
  // A hostile value of thousands of separators does not pin its list.
  if (parts.capacity() > kKeptScratch / sizeof(String)) parts = std::vector<String>();
  DecodeNoted(d, &decoded);
  // Escapes are one option both ways: the writer escapes only with it, so
  // the reader undoes them only with it, and a value round-trips either way.
  SplitStructuredValueInto(decoded.text, vCard::sm_fNonstandardEscChar, &parts);
  if (decoded.text.capacity() > kKeptScratch) decoded.text = String();
  return parts;
}

std::optional<String> NonEmpty(const std::vector<String>& parts, std::size_t index) {
  if (index >= parts.size() || parts[index].empty()) return std::nullopt;
  return parts[index];
}

}  // namespace

void AddToAccount(vCard::vCardParseData& d, Outcome outcome) {
  std::string where = outcome.where != nullptr ? outcome.where : "extension item " + d.propertyName;
  d.account->properties.push_back({d.propertyName, outcome.fate, std::move(where), d.decodeNote});
}

bool ClassifyEncodingWordLenient(vCard::vCardParseData& d, const char* parameter,
                                 const char* value) {
  // One look at the first letter sends most parameters (the type words)
  // past every comparison below: the tokenizer has upper-cased the names,
  // and a bare encoding word starts with Q or B in either case.
  const char first = parameter[0];
  const char lower = static_cast<char>(first | 0x20);
  if (first != 'C' && first != 'E' && lower != 'q' && lower != 'b') return false;
  const std::string_view name = parameter;
  if (name == "CHARSET") {
    d.charsetName = value != nullptr ? value : "";
    d.charset = NamesUTF8(d.charsetName)                 ? kCharsetUTF8
                : SameWordNoCase(d.charsetName, "SHIFT_JIS") ? kCharsetShiftJIS
                                                             : kCharsetOther;
    return true;
  }
  if (name == "ENCODING") {
    d.encoding = EncodingOfWord(value != nullptr ? value : "");
    return true;
  }
  // A bare word names an encoding only when it is one ("B" alone is not).
  if (value != nullptr || name == "B") return false;
  const int encoding = EncodingOfWord(name);
  if (encoding == kEncodingUnknown) return false;
  d.encoding = encoding;
  return true;
}

std::optional<String> DecodeTextLenient(vCard::vCardParseData& d, bool undoEscapes) {
  CharsetText decoded;
  DecodeNoted(d, &decoded);
  if (undoEscapes && vCard::sm_fNonstandardEscChar) return UnescapeValue(decoded.text);
  return std::move(decoded.text);
}

// The text an extension item keeps of the value: decoded, except BASE64,
// which stays the text it came as (a picture is no text).
String ItemText(std::string_view value, std::string_view charsetName, int encoding) {
  if (encoding == kEncodingBase64) return StringFromASCII(value);
  return DecodeCharset(value, charsetName, encoding).text;
}

String ItemText(vCard::vCardParseData& d) {
  if (d.encoding == kEncodingBase64) return StringFromASCII(d.value);
  return *DecodeTextLenient(d, false);
}

Outcome KeepAsExtension(vCard::vCardParseData& d) {
  d.pContact->NewXItem(StringFromASCII(d.propertyName), ItemText(d), 0, -1);
  return {PropertyFate::kExtension, nullptr};
}

Outcome StoreNameLenient(vCard::vCardParseData& d) {
  std::vector<String>& parts = Components(d);
  for (std::size_t i = 0; i < std::min<std::size_t>(parts.size(), 8); ++i) {
    d.pContact->Name().SetName(std::move(parts[i]), static_cast<unsigned int>(i));
  }
  return Read("name");
}

Outcome StoreReadingNameLenient(vCard::vCardParseData& d) {
  const std::vector<String>& parts = Components(d);
  if ((d.typeFlags & kReadingNameTypeIrmcN) != 0) d.pContact->SetRFName(NonEmpty(parts, 1));
  d.pContact->SetRLName(NonEmpty(parts, 0));
  return Read("readingLastName");
}

Outcome StoreAddressLenient(vCard::vCardParseData& d, CPostalAddress& address) {
  std::vector<String>& parts = Components(d);
  for (std::size_t i = 0; i < std::min<std::size_t>(parts.size(), kPostalAddressMax); ++i) {
    address.SetAddress(std::move(parts[i]), static_cast<unsigned int>(i));
  }
  return Read("addresses");
}

Outcome StoreOrgLenient(vCard::vCardParseData& d, COrganization& org) {
  std::vector<String>& parts = Components(d);
  parts.resize(std::max<std::size_t>(parts.size(), 3));
  org.SetName(std::move(parts[0]));
  org.SetUnit(std::move(parts[1]));
  org.SetPosition(std::move(parts[2]));
  for (std::size_t i = 3; i < parts.size(); ++i) {
    if (!parts[i].empty()) org.Additional().push_back(parts[i]);
  }
  return Read("organizations");
}

Outcome StoreAssistantLenient(vCard::vCardParseData& d) {
  const std::vector<String>& parts = Components(d);
  d.pContact->setAssistant(parts[0]);
  d.pContact->setAssistantNumber(parts.size() > 1 ? std::optional<String>(parts[1])
                                                  : std::nullopt);
  return Read("assistant");
}

namespace {
// "VCARD" in any case; some exports leave blanks after it.
bool NamesACard(std::string_view value) {
  while (!value.empty() && (value.back() == ' ' || value.back() == '\t')) value.remove_suffix(1);
  return SameWordNoCase(value, "VCARD");
}
}  // namespace

bool BeginLenientStore(vCard::vCardParseData& d) {
  d.decodeNote.clear();
  if (d.propertyID == kvCardPropertyBEGIN && NamesACard(d.value)) {
    d.begun = true;
    if (++d.depth == 2) {
      Note(d, {PropertyFate::kByDesign, "a nested card, read as a contact of its own"});
    } else if (d.depth == 1) {
      Note(d, NothingToKeep());
    }
    return false;
  }
  if (d.propertyID == kvCardPropertyEND && NamesACard(d.value) && d.depth > 0) {
    if (--d.depth == 0) {
      d.ended = true;
      Note(d, NothingToKeep());
    }
    return false;
  }
  if (d.depth > 1) return false;
  if (!d.hasValue) {
    Note(d, Empty());
    return false;
  }
  return true;
}

void EndLenientStore(vCard::vCardParseData& d, Outcome outcome) {
  Note(d, outcome);
  if (outcome.fate != PropertyFate::kRead || !HoldsOneValue(d.propertyID)) return;
  const auto inUse = d.held.begin() + static_cast<std::ptrdiff_t>(d.heldCount);
  auto held = std::find_if(d.held.begin(), inUse, [&d](const auto& entry) {
    return entry.propertyID == d.propertyID;
  });
  if (held == inUse) {
    if (d.heldCount == d.held.size()) {
      // A card has a handful of them (FN, N, a title, a photo): room at once.
      if (d.held.empty()) d.held.reserve(8);
      d.held.emplace_back();
    }
    held = d.held.begin() + static_cast<std::ptrdiff_t>(d.heldCount++);
    held->propertyID = d.propertyID;
  } else {
    // The field keeps its rule (the later value); the earlier one stays.
    d.pContact->NewXItem(StringFromASCII(d.propertyName),
                         ItemText(held->value, held->charsetName, held->encoding), 0, -1);
    if (d.account != nullptr) {
      PropertyAccount& earlier = d.account->properties[held->account];
      earlier.fate = PropertyFate::kExtension;
      earlier.where = "extension item " + d.propertyName + " (a later one took the field)";
    }
  }
  // The bytes only, taken over (the reader clears them next, and keeps the
  // spare's buffer for the next value): a second value of the property is
  // rare, and the text of a photo's BASE64 costs more than the bytes.
  held->value.swap(d.value);
  held->charsetName = d.charsetName;
  held->encoding = d.encoding;
  if (d.account != nullptr) held->account = d.account->properties.size() - 1;
}

}  // namespace phonepim::vcard_reader
