// Writing the contact's element lists: telephone numbers (two dialects),
// e-mail, web and postal addresses, organizations and messenger IDs.
#include <cstdint>
#include <optional>

#include "phonepim/model/CEmail.h"
#include "phonepim/model/CMessengerID.h"
#include "phonepim/model/COrganization.h"
#include "phonepim/model/CPostalAddress.h"
#include "phonepim/model/CTelephoneNumber.h"
#include "phonepim/model/CURL.h"
#include "phonepim/model/TypeMasks.h"
#include "phonepim/vcard/vCard.h"
#include "vcard/vCardWriterText.h"

namespace phonepim {

using vcard_writer::CustomLabelParameter;
using vcard_writer::AppendEncodedText;
using vcard_writer::EncodeText;
using vcard_writer::IsQuotedPrintable;
using vcard_writer::PrintedLabel;
using vcard_writer::TableLabel;

namespace {

struct TypeWord {
  std::uint32_t bit;
  const char16_t* word;
};

// Appends the word of every bit of `type` in `words`, in table order: the
// order phones expect, which is not the order of the bits.
template <std::size_t N>
void AddTypeWords(String& params, std::uint32_t type, const TypeWord (&words)[N]) {
  for (const TypeWord& entry : words) {
    if ((type & entry.bit) != 0) params += entry.word;
  }
}

constexpr TypeWord kTelephoneWords[] = {
    {kTelephoneTypePref, u";PREF"},   {kTelephoneTypeWork, u";WORK"},
    {kTelephoneTypeHome, u";HOME"},   {kTelephoneTypeVoice, u";VOICE"},
    {kTelephoneTypeFax, u";FAX"},     {kTelephoneTypeMsg, u";MSG"},
    {kTelephoneTypeCell, u";CELL"},   {kTelephoneTypePager, u";PAGER"},
    {kTelephoneTypeBBS, u";BBS"},     {kTelephoneTypeModem, u";MODEM"},
    {kTelephoneTypeCar, u";CAR"},     {kTelephoneTypeISDN, u";ISDN"},
    {kTelephoneTypeEtc, u";X-ETC"},   {kTelephoneTypeInternet, u";INTERNET"},
    {kTelephoneTypeVideo, u";VIDEO"}, {kTelephoneTypeDTMF, u";DTMF"},
    {kTelephoneTypePTT, u";PTT"},
};

// These phones know no VOICE, file a mobile number under home and take a
// callback number.
constexpr TypeWord kZandorTelephoneWords[] = {
    {kTelephoneTypePref, u";PREF"},          {kTelephoneTypeWork, u";WORK"},
    {kTelephoneTypeHome, u";HOME"},          {kTelephoneTypeFax, u";FAX"},
    {kTelephoneTypeMsg, u";MSG"},            {kTelephoneTypeCell, u";HOME;CELL"},
    {kTelephoneTypePager, u";PAGER"},        {kTelephoneTypeBBS, u";BBS"},
    {kTelephoneTypeModem, u";MODEM"},        {kTelephoneTypeCar, u";CAR"},
    {kTelephoneTypeISDN, u";ISDN"},          {kTelephoneTypeEtc, u";X-ETC"},
    {kTelephoneTypeInternet, u";INTERNET"},  {kTelephoneTypeVideo, u";VIDEO"},
    {kTelephoneTypeDTMF, u";DTMF"},          {kTelephoneTypePTT, u";PTT"},
    {kTelephoneTypeCallback, u";X-CALLBACK"},
};

constexpr TypeWord kEmailWords[] = {
    {kEmailTypePref, u";PREF"}, {kEmailTypeWork, u";WORK"}, {kEmailTypeHome, u";HOME"},
    {kEmailTypeCell, u";CELL"}, {kEmailTypeEtc, u";X-ETC"},
};

constexpr TypeWord kAddressWords[] = {
    {kAddressTypePref, u";PREF"}, {kAddressTypeCell, u";CELL"}, {kAddressTypeHome, u";HOME"},
    {kAddressTypeWork, u";WORK"}, {kAddressTypeEtc, u";X-ETC"},
};

constexpr TypeWord kURLWords[] = {
    {kURLTypePref, u";PREF"}, {kURLTypeWork, u";WORK"}, {kURLTypeHome, u";HOME"}};

constexpr TypeWord kOrganizationWords[] = {
    {kOrganizationTypeHome, u";HOME"},
    {kOrganizationTypeWork, u";WORK"},
    {kOrganizationTypeEtc, u";X-ETC"},
};

// A phone keeps one service per ID; the first of these that is set wins.
constexpr TypeWord kMessengerWords[] = {
    {kMessengerTypeAIM, u";AIM"},           {kMessengerTypeGoogleTalk, u";GOOGLETALK"},
    {kMessengerTypeICQ, u";ICQ"},           {kMessengerTypeJabber, u";JABBER"},
    {kMessengerTypeQQ, u";QQ"},             {kMessengerTypeSkype, u";SKYPE"},
    {kMessengerTypeWindowsLive, u";WINDOWSLIVE"}, {kMessengerTypeYahoo, u";YAHOO"},
};

// `params` set to the custom-label parameter when the label table knows
// `type`, else to the type words.
template <std::size_t N>
void SetTypeParameters(String& params, std::uint32_t type, const TypeWord (&words)[N]) {
  params.clear();
  if (const std::optional<String> label = TableLabel(type)) {
    params = CustomLabelParameter(*label);
  } else {
    AddTypeWords(params, type, words);
  }
}

// ";X-CUSTOM(label)" of an element's own label, escaped and without the
// charset prefix inside the brackets (these phones take the label as it
// comes), or ";X-ETC" when there is no label.
String OwnLabelParameter(const std::shared_ptr<const String>& label) {
  if (!label || label->empty()) return u";X-ETC";
  return u";X-CUSTOM(" + EncodeText(PrintedLabel(*label), true) + u")";
}

// The EMAIL and X-IM value: always escaped. When it came out
// quoted-printable its parameters go behind the type parameters, in the
// value slot, since AddItem would put them first.
void AddEscapedValue(String& out, std::u16string_view name, const String& params,
                     const String& text) {
  const String encoded = EncodeText(text, true);
  if (IsQuotedPrintable(encoded)) {
    vCard::AddItemEncoding(out, name, params,
                           vCard::szParams_QPEncodedUTF8 + (u':' + encoded));
  } else {
    vCard::AddItem(out, name, params, encoded);
  }
}

}  // namespace

void vCard::AddTelephone(String& out, const CTelephoneNumber& tel) {
  if (tel.GetNumber().empty()) return;
  thread_local String params;  // reused: a card has several numbers
  SetTypeParameters(params, tel.GetType(), kTelephoneWords);
  AddItem(out, u"TEL", params, tel.GetNumber());
}

void vCard::AddTelephoneAtZandor(String& out, const CTelephoneNumber& tel) {
  if (tel.GetNumber().empty()) return;
  const std::uint32_t type = tel.GetType();
  String params;
  if (const std::optional<String> label = TableLabel(type)) {
    params = CustomLabelParameter(*label);
  } else {
    AddTypeWords(params, type, kZandorTelephoneWords);
    if (type == kTelephoneTypeMain) params += u";X-CUSTOM(Main)";
    if ((type & kTelephoneTypeCustom) != 0) params += OwnLabelParameter(tel.GetLabel());
  }
  AddItem(out, u"TEL", params, tel.GetNumber());
}

void vCard::AddEmail(String& out, const CEmail& email) {
  if (email.GetEmail().empty()) return;
  const std::uint32_t type = email.GetType();
  String params;
  if (const std::optional<String> label = TableLabel(type)) {
    params = CustomLabelParameter(*label);
  } else {
    AddTypeWords(params, type, kEmailWords);
    if ((type & kEmailTypeCustom) != 0) params += OwnLabelParameter(email.GetLabel());
  }
  AddEscapedValue(out, u"EMAIL", params, email.GetEmail());
}

void vCard::AddMessengerID(String& out, const CMessengerID& messengerID) {
  if (messengerID.GetMessengerID().empty()) return;
  const std::uint32_t type = messengerID.GetType();
  String params;
  if (const std::optional<String> label = TableLabel(type)) {
    params = CustomLabelParameter(*label);
  } else {
    for (const TypeWord& entry : kMessengerWords) {
      if ((type & entry.bit) != 0) {
        params = entry.word;
        break;
      }
    }
  }
  AddEscapedValue(out, u"X-IM", params, messengerID.GetMessengerID());
}

void vCard::AddURL(String& out, const CURL& url) {
  if (url.GetURL().empty()) return;
  // The address goes through the quoted-printable encoder like any text
  // (stringByEncodingQuotedPrintable is that encoder), but never escaped.
  const String value = sm_fURLNotQPEncode ? url.GetURL() : EncodeText(url.GetURL(), false);
  String params;
  AddTypeWords(params, url.GetType(), kURLWords);
  // Decided on the text written, so a plain URL with a '=' in its query
  // carries the parameters too.
  if (IsQuotedPrintable(value)) params += szParams_QPEncodedUTF8;
  AddItem(out, u"URL", params, value);
}

void vCard::AddAddress(String& out, const CPostalAddress& address) {
  if (address.IsEmpty()) return;
  String params;
  const std::shared_ptr<const String>& label = address.Label();
  if ((address.Type() & kAddressTypeCustom) != 0 && label && !label->empty()) {
    params = CustomLabelParameter(*label);
  } else {
    AddTypeWords(params, address.Type(), kAddressWords);
  }
  const String* parts[] = {&address.POBox(),    &address.ExtAddr(),  &address.Street(),
                           &address.Locality(), &address.Region(),   &address.PostalCode(),
                           &address.Country(),  &address.Neighbor()};
  String value;
  for (const String* part : parts) {
    if (part != parts[0]) value += u';';
    AppendEncodedText(value, *part, sm_fNonstandardEscChar);
  }
  if (IsQuotedPrintable(value)) params += szParams_QPEncodedUTF8;
  AddItem(out, u"ADR", params, value);
}

void vCard::AddOrganization(String& out, const COrganization& org) {
  if (org.IsEmpty()) return;
  String params;
  SetTypeParameters(params, org.Type(), kOrganizationWords);
  String value = EncodeText(org.Name(), sm_fNonstandardEscChar);
  value += u';';
  AppendEncodedText(value, org.Unit(), sm_fNonstandardEscChar);
  value += u';';
  AppendEncodedText(value, org.Position(), sm_fNonstandardEscChar);
  for (const String& line : org.Additional()) {
    value += u';';
    AppendEncodedText(value, line, sm_fNonstandardEscChar);
  }
  if (IsQuotedPrintable(value)) params += szParams_QPEncodedUTF8;
  AddItem(out, u"ORG", params, value);
}

}  // namespace phonepim
