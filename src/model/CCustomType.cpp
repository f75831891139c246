#include "phonepim/model/CCustomType.h"

#include <unicode/uchar.h>

#include <string>
#include <string_view>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/text/NSStringCustom.h"

namespace phonepim {

namespace {

// The inner parameters a quoted-printable label is written with.
constexpr std::u16string_view kQuotedPrintablePrefix =
    u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,";

bool SameIgnoringCase(char16_t a, char16_t b) {
  return a == b || u_foldCase(a, U_FOLD_CASE_DEFAULT) == u_foldCase(b, U_FOLD_CASE_DEFAULT);
}

// Removes every occurrence of `target`, compared without regard to case, in
// one pass from the left: text that only comes together through a removal
// stays.
void RemoveAllIgnoringCase(String& s, std::u16string_view target) {
  String kept;
  kept.reserve(s.size());
  std::size_t i = 0;
  while (i < s.size()) {
    std::size_t n = 0;
    if (s.size() - i >= target.size()) {
      while (n < target.size() && SameIgnoringCase(s[i + n], target[n])) {
        ++n;
      }
    }
    if (n == target.size() && n != 0) {
      i += n;
    } else {
      kept.push_back(s[i]);
      ++i;
    }
  }
  s = std::move(kept);
}

// False when `s` holds an ASCII unit that no removed piece holds in any
// case: then the stripped text cannot come out empty, and a plain label,
// which is kept as it came, needs no stripping at all (its closing
// parenthesis settles it). Other units may fold onto a piece's letters
// (U+017F onto 's') and are left to the full stripping.
bool MayStripToNothing(const String& s) {
  constexpr std::u16string_view kRemovable =
      u"X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,";
  for (const char16_t unit : s) {
    if (unit >= 0x80) continue;
    const char16_t upper = unit >= u'a' && unit <= u'z' ? unit - (u'a' - u'A') : unit;
    if (kRemovable.find(upper) == std::u16string_view::npos) return false;
  }
  return true;
}

std::optional<String> DecodeQuotedPrintableLabel(const String& encoded) {
  const std::optional<std::string> bytes = UTF8FromString(encoded);
  if (!bytes) {
    return std::nullopt;
  }
  // The decoder may look one byte past the text; std::string keeps a NUL
  // there.
  return Decode(bytes->c_str(), static_cast<int>(bytes->size()), kCharsetUTF8,
                kEncodingQuotedPrintable);
}

}  // namespace

CCcustomTypeT::CCcustomTypeT() : m_CustomType_T(kCustomTypeBase), m_CustomType_Name(String()) {}

CCustomType::CCustomType() : m_CustomType_T(kCustomTypeBase) {}

CCustomType& CCustomType::Inst() {
  static CCustomType table;
  return table;
}

std::uint32_t CCustomType::Register(const String& str, std::optional<String>* decodedName) {
  const bool quotedPrintable = str.starts_with(kQuotedPrintablePrefix);

  const std::uint32_t code = ++m_CustomType_T;
  if (!quotedPrintable && !MayStripToNothing(str)) {
    m_arrCustomType.emplace_back();
    m_arrCustomType.back().SetCustomType_T(code);
    m_arrCustomType.back().SetCustomType_Name(str);
    decodedName->reset();
    return code;
  }

  String work = str;
  RemoveAllIgnoringCase(work, kQuotedPrintablePrefix);
  Replace(work, u"==", u"");
  RemoveAllIgnoringCase(work, u"custom(");

  CCcustomTypeT entry;
  entry.SetCustomType_T(code);
  if (work.empty()) {
    // The code is spent all the same. A nameless slot keeps every later
    // entry at the position its code gives, and answers nothing, as a code
    // without an entry does.
    entry.SetCustomType_Name(std::nullopt);
    m_arrCustomType.push_back(std::move(entry));
  }
  // The closing parenthesis, or whatever else ends the text; throws
  // std::out_of_range when nothing is left.
  deleteAtIndex(work, GetLength(work) - 1);

  if (quotedPrintable) {
    entry.SetCustomType_Name(DecodeQuotedPrintableLabel(work));
    *decodedName = entry.CustomType_Name();
  } else {
    // The stripped text is only used for decoding: a plain label is kept
    // exactly as it came.
    entry.SetCustomType_Name(str);
    decodedName->reset();
  }
  m_arrCustomType.push_back(std::move(entry));
  return code;
}

std::uint32_t CCustomType::ConvertCustomTypeFromString(const String& str) {
  std::optional<String> decodedName;
  return Register(str, &decodedName);
}

std::optional<String> CCustomType::ConvertCustomStrFromString(const String& str) {
  std::optional<String> decodedName;
  Register(str, &decodedName);
  return decodedName;
}

std::optional<String> CCustomType::ConvertStringValFromCustomType(std::uint32_t type) const {
  // Registration n (from 0) gets code kFirstCustomType + n and lands at
  // position n, so the code names its entry. The subtraction wraps like the
  // counter does: a code below kFirstCustomType gives a position past the
  // end. A second entry with the same code would need 2^32 registrations.
  const std::uint32_t position = type - kFirstCustomType;
  if (position >= m_arrCustomType.size()) {
    return std::nullopt;
  }
  return m_arrCustomType[position].CustomType_Name();
}

bool CCustomType::DeleteAllItem() {
  m_arrCustomType.clear();
  m_CustomType_T = kCustomTypeBase;
  return true;
}

}  // namespace phonepim
