#include "TypeWords.h"

#include <phonepim/model/CCustomType.h>
#include <phonepim/model/TypeMasks.h>

#include <cstdio>
#include <span>

namespace phonepim::tool {
namespace {

struct Word {
  std::uint32_t bit;
  const char* word;
};

constexpr Word kTelephoneWords[] = {
    {kTelephoneTypePref, "PREF"},       {kTelephoneTypeWork, "WORK"},
    {kTelephoneTypeHome, "HOME"},       {kTelephoneTypeVoice, "VOICE"},
    {kTelephoneTypeFax, "FAX"},         {kTelephoneTypeMsg, "MSG"},
    {kTelephoneTypeCell, "CELL"},       {kTelephoneTypePager, "PAGER"},
    {kTelephoneTypeBBS, "BBS"},         {kTelephoneTypeModem, "MODEM"},
    {kTelephoneTypeCar, "CAR"},         {kTelephoneTypeISDN, "ISDN"},
    {kTelephoneTypeEtc, "X-ETC"},       {kTelephoneTypeInternet, "INTERNET"},
    {kTelephoneTypeVideo, "VIDEO"},     {kTelephoneTypeDTMF, "DTMF"},
    {kTelephoneTypePTT, "PTT"},         {kTelephoneTypeCallback, "X-CALLBACK"},
    {kTelephoneTypeMain, "MAIN"},       {kTelephoneTypeAssistant, "ASSISTANT"},
    {kTelephoneTypeCustom, "X-CUSTOM"},
};
constexpr Word kEmailWords[] = {
    {kEmailTypePref, "PREF"}, {kEmailTypeWork, "WORK"}, {kEmailTypeHome, "HOME"},
    {kEmailTypeCell, "CELL"}, {kEmailTypeEtc, "X-ETC"}, {kEmailTypeCustom, "X-CUSTOM"},
};
constexpr Word kAddressWords[] = {
    {kAddressTypePref, "PREF"}, {kAddressTypeWork, "WORK"}, {kAddressTypeHome, "HOME"},
    {kAddressTypeCell, "CELL"}, {kAddressTypeEtc, "X-ETC"}, {kAddressTypeCustom, "X-CUSTOM"},
};
constexpr Word kURLWords[] = {
    {kURLTypePref, "PREF"}, {kURLTypeWork, "WORK"}, {kURLTypeHome, "HOME"}};
constexpr Word kMessengerWords[] = {
    {kMessengerTypeAIM, "AIM"},
    {kMessengerTypeGoogleTalk, "GOOGLETALK"},
    {kMessengerTypeICQ, "ICQ"},
    {kMessengerTypeJabber, "JABBER"},
    {kMessengerTypeQQ, "QQ"},
    {kMessengerTypeSkype, "SKYPE"},
    {kMessengerTypeWindowsLive, "WINDOWSLIVE"},
    {kMessengerTypeYahoo, "YAHOO"},
};
constexpr Word kOrganizationWords[] = {{kOrganizationTypeWork, "WORK"},
                                       {kOrganizationTypeHome, "HOME"},
                                       {kOrganizationTypeEtc, "X-ETC"}};
// The reader's category table; 0x40 is no word but the to-do mark, and two
// words give 0x1, of which the writer knows the first.
constexpr Word kCategoryWords[] = {
    {0x1, "APPOINTMENT"},    {0x2, "ANNIVERSARY"},
    {0x4, "HOLIDAY"},        {0x8, "IMPORTANT"},
    {0x10, "PRIVATE"},       {0x20, "MISCELLANEOUS"},
    {0x80, "MEMO"},          {0x100, "BUSINESS"},
    {0x200, "EDUCATION"},    {0x400, "MEETING"},
    {0x800, "PERSONAL"},     {0x1000, "PHONE CALL"},
    {0x2000, "SICK DAY"},    {0x4000, "SPECIAL OCCASION"},
    {0x8000, "TRAVEL"},      {0x10000, "VACATION"},
    {0x20000, "BIRTHDAY"},   {0x40000, "DATE"},
    {0x80000, "SHOPPING"},   {0x100000, "ACCOUNT"},
    {0x200000, "NOCATEGORY"},
};

std::span<const Word> WordsOf(ElementKind kind) {
  switch (kind) {
    case ElementKind::kTelephone:
      return kTelephoneWords;
    case ElementKind::kEmail:
      return kEmailWords;
    case ElementKind::kAddress:
      return kAddressWords;
    case ElementKind::kURL:
      return kURLWords;
    case ElementKind::kMessenger:
      return kMessengerWords;
    case ElementKind::kOrganization:
      return kOrganizationWords;
    case ElementKind::kCalendarCategory:
      return kCategoryWords;
  }
  return {};
}

}  // namespace

std::vector<std::string> TypeWords(ElementKind kind, std::uint32_t mask) {
  std::vector<std::string> words;
  std::uint32_t rest = mask;
  for (const Word& word : WordsOf(kind)) {
    if ((mask & word.bit) != 0) {
      words.emplace_back(word.word);
      rest &= ~word.bit;
    }
  }
  for (std::uint32_t bit = 1; rest != 0; bit <<= 1) {
    if ((rest & bit) == 0) continue;
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%X", static_cast<unsigned>(bit));
    words.emplace_back(hex);
    rest &= ~bit;
  }
  return words;
}

std::string LabelText(const String& label) {
  static constexpr std::u16string_view kOpen = u"X-CUSTOM(";
  std::size_t at = String::npos;
  for (std::size_t i = 0; i + kOpen.size() <= label.size() && at == String::npos; ++i) {
    bool match = true;
    for (std::size_t k = 0; k < kOpen.size() && match; ++k) {
      char16_t c = label[i + k];
      if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - u'a' + u'A');
      match = c == kOpen[k];
    }
    if (match) at = i;
  }
  if (at == String::npos) return ToDisplayUTF8(label);
  String inner = label.substr(at + kOpen.size());
  if (!inner.empty() && inner.back() == u')') inner.pop_back();
  return ToDisplayUTF8(inner);
}

std::optional<std::string> TableLabelText(std::uint32_t type) {
  const std::optional<String> label = CCustomType::Inst().ConvertStringValFromCustomType(type);
  if (!label || label->empty()) return std::nullopt;
  return LabelText(*label);
}

}  // namespace phonepim::tool
