// Writing a contact as vCard 2.1: Generate, the line builders and the
// writers of the contact's own fields. The element writers (telephone,
// e-mail, web and postal addresses, organizations, messenger IDs) are in
// vCardWriterElements.cpp.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>

#include "phonepim/datetime/DateComponents.h"
#include "phonepim/encoding/base64.h"
#include "phonepim/model/CContact.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/text/NSStringCustom.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"
#include "vcard/vCardWriterText.h"

namespace phonepim {

using vcard_writer::AppendEncodedText;
using vcard_writer::EncodeText;
using vcard_writer::IsQuotedPrintable;
using vcard_writer::TextOf;

namespace {

// Turns every "::" from `start` on into ":", left to right. Values are
// written as they are, so a value that starts with ':' (or holds "::")
// loses a colon here; phones' parsers choke on the doubled colon.
void CollapseDoubleColons(String& out, std::size_t start) {
  // Most lines hold no colon past the one AddItem puts in, and a photo's
  // line is kilobytes of Base64: look for the colon's byte with memchr over
  // the units' storage, and check the unit each hit falls in (whatever the
  // byte order).
  const char* const bytes = reinterpret_cast<const char*>(out.data());
  const char* const end = bytes + out.size() * sizeof(char16_t);
  const char* hit = bytes + start * sizeof(char16_t);
  std::size_t read = String::npos;
  while ((hit = static_cast<const char*>(
              std::memchr(hit, ':', static_cast<std::size_t>(end - hit)))) != nullptr) {
    const std::size_t unit = static_cast<std::size_t>(hit - bytes) / sizeof(char16_t);
    if (out[unit] == u':' && unit + 1 < out.size() && out[unit + 1] == u':') {
      read = unit;
      break;
    }
    ++hit;
  }
  if (read == String::npos) return;
  std::size_t write = read;
  while (read < out.size()) {
    if (out[read] == u':' && read + 1 < out.size() && out[read + 1] == u':') {
      out[write++] = u':';
      read += 2;
    } else {
      out[write++] = out[read++];
    }
  }
  out.resize(write);
}

// An ordinary text property: quoted-printable where needed, escaped only
// when the reader undoes escapes.
void AddTextProperty(String& out, std::u16string_view name, const String& text) {
  if (text.empty()) return;
  thread_local String encoded;  // reused: most properties are short
  encoded.clear();
  AppendEncodedText(encoded, text, vCard::sm_fNonstandardEscChar);
  vCard::AddItem(out, name, IsQuotedPrintable(encoded) ? vCard::szParams_QPEncodedUTF8 : u"",
                 encoded);
  if (encoded.capacity() > 64 * 1024) String().swap(encoded);
}

String Widen(const char* ascii) {
  return String(ascii, ascii + std::char_traits<char>::length(ascii));
}

// "%d" of a date component: the low 32 bits, as a C vararg int reads it.
int AsPrintfInt(std::int64_t value) {
  return static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

// The date-type suffixes: 0 plain, 1 'L', 2 'Y'.
constexpr std::array<char, 3> chTypes = {' ', 'L', 'Y'};

// "YYYYMMDD" and the suffix of `dateType`. The assertion callers make is
// one entry too lenient (it allows the table's size) and, through the int
// cast, lets every type above 0x7FFFFFFF through; such types get no suffix
// rather than a byte from beyond the table.
String FormatDate(const DateComponents& date, std::uint32_t dateType) {
  const std::size_t index = dateType;
  const char suffix = index < chTypes.size() ? chTypes[index] : ' ';
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%04d%02d%02d%c", AsPrintfInt(date.year),
                AsPrintfInt(date.month), AsPrintfInt(date.day), suffix);
  return Trim(Widen(buffer));
}

void AddSpeedDialLine(String& out, const CContact& contact) {
  const int count = contact.GetTelephoneCount();
  const int inTable = std::min(count, CContact::kSpeedDialCount);
  int used = 0;
  for (int i = 0; i < inTable; ++i) {
    if (contact.SpeedDial(i) != -1) ++used;
  }
  if (used == 0) return;
  // Every number gets an entry, also those past the ten slots the phone
  // keeps: they have no slot and are written as empty.
  for (int i = 0; i < count; ++i) {
    const std::int32_t slot = i < CContact::kSpeedDialCount ? contact.SpeedDial(i) : -1;
    const String value = slot == -1 ? String(u" ") : Widen(std::to_string(slot).c_str());
    vCard::AddSpeedDial(out, i == 0 ? u"X-SPEEDDIAL:" : u",", value);
  }
  // Phones read a list, and one entry without a comma is no list to them.
  if (count == 1) vCard::AddSpeedDial(out, u",", u"");
  out += u"\r\n";
}

void AddPerson(String& out, const CContact& contact, bool zandor) {
  vCard::AddName(out, contact.Name());
  vCard::AddFName(out, contact.FName());
  for (const String& nickname : contact.NickNames()) vCard::AddNName(out, nickname);
  vCard::AddRName(out, contact.RFName(), contact.RLName());
  vCard::AddBirtyDate(out, contact.BirthDate(), contact.BirthDateType());
  vCard::AddAnnivesaryDate(out, contact.Anniversary_Date(), contact.Anniversary_Luna());
  for (int i = 0; i < contact.GetTelephoneCount(); ++i) {
    if (zandor) {
      vCard::AddTelephoneAtZandor(out, *contact.GetTelephone(i));
    } else {
      vCard::AddTelephone(out, *contact.GetTelephone(i));
    }
  }
  for (int i = 0; i < contact.GetEmailCount(); ++i) vCard::AddEmail(out, *contact.GetEmail(i));
  for (int i = 0; i < contact.GetURLCount(); ++i) vCard::AddURL(out, *contact.GetURL(i));
  for (int i = 0; i < contact.GetAddressCount(); ++i) {
    vCard::AddAddress(out, *contact.GetAddress(i));
  }
  for (int i = 0; i < contact.GetNotesCount(); ++i) {
    vCard::AddNote(out, contact.GetNotes(i)->GetNote());
  }
  vCard::AddTitle(out, contact.Title());
  vCard::AddRole(out, contact.Role());
  for (int i = 0; i < contact.GetOrgCount(); ++i) vCard::AddOrganization(out, *contact.GetOrg(i));
  vCard::AddBloodType(out, contact.BloodType());
  vCard::AddHobby(out, contact.Hobby());
  vCard::AddGroups(out, contact.Groups());
  vCard::AddAccount(out, contact.Account());
  vCard::AddSpouse(out, contact.spouse());
  vCard::AddChildren(out, contact.children());
  vCard::AddAssistant(out, contact.assistant(), contact.assistantNumber());
  for (int i = 0; i < contact.GetMessengerIDCount(); ++i) {
    vCard::AddMessengerID(out, *contact.GetMessengerID(i));
  }
  AddSpeedDialLine(out, contact);
  // The photo comes last; Generate writes it (see there).
}

void AddGroup(String& out, const CContact& contact) {
  vCard::AddGroupName(out, contact.GroupName());
  vCard::AddGroupType(out, contact.GroupType());
  vCard::AddGroupDisplayName(out, contact.GroupDisplayName());
}

}  // namespace

void vCard::Generate(const CContact* contact, vObject* object) { Generate(contact, object, 0); }

void vCard::Generate(const CContact* contact, vObject* object, int phoneStyle) {
  if (contact == nullptr || object == nullptr) return;
  vcard_writer::FetchObject(*contact);
  String out;
  out.reserve(1024);
  out += u"BEGIN:VCARD\r\nVERSION:2.1\r\n";
  const Bytes* photo = nullptr;
  if (contact->ContactType() == 0) {
    AddPerson(out, *contact, phoneStyle != 0);
    photo = contact->GetPhotoRef();
  } else if (contact->ContactType() == 1) {
    AddGroup(out, *contact);
    photo = contact->GetPhotoRef();
  }
  // The photo, the last property of both kinds and most of a card's bytes,
  // is encoded straight into the object's storage behind the rest, which
  // is stored as UTF-8 (every value but a telephone number went through the
  // quoted-printable encoder and is ASCII).
  vcard_writer::StoreCard(out, photo, object->object());
}

void vCard::AddItem(String& out, std::u16string_view name, std::u16string_view params,
                    std::u16string_view value) {
  const std::size_t start = out.size();
  out.append(name);
  out.append(params);
  out += u':';
  out.append(value);
  out += u"\r\n";
  CollapseDoubleColons(out, start);
}

void vCard::AddItemEncoding(String& out, std::u16string_view name, std::u16string_view params,
                            std::u16string_view value) {
  out.append(name);
  out.append(params);
  out.append(value);
  out += u"\r\n";
}

void vCard::AddSpeedDial(String& out, std::u16string_view prefix, std::u16string_view value) {
  out.append(prefix);
  out.append(value);
}

void vCard::AddName(String& out, const CName& name) {
  if (name.IsEmpty()) return;
  const String* parts[] = {&name.Family(),          &name.Given(),          &name.Middle(),
                           &name.Prefix(),          &name.Suffix(),         &name.Phonetic_Family(),
                           &name.Phonetic_Given(),  &name.Phonetic_Middle()};
  String value;
  for (const String* part : parts) {
    if (part != parts[0]) value += u';';
    AppendEncodedText(value, *part, sm_fNonstandardEscChar);
  }
  AddItem(out, u"N", IsQuotedPrintable(value) ? szParams_QPEncodedUTF8 : u"", value);
}

void vCard::AddFName(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"FN", TextOf(text));
}
void vCard::AddNName(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"NICKNAME", TextOf(text));
}
void vCard::AddTitle(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"TITLE", TextOf(text));
}
void vCard::AddRole(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"ROLE", TextOf(text));
}
void vCard::AddNote(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"NOTE", TextOf(text));
}
void vCard::AddHobby(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"X-HOBBY", TextOf(text));
}
void vCard::AddAccount(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"X-ACCOUNT", TextOf(text));
}
void vCard::AddSpouse(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"X-SPOUSE", TextOf(text));
}
void vCard::AddChildren(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"X-CHILDREN", TextOf(text));
}
void vCard::AddGroupName(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"GN", TextOf(text));
}
void vCard::AddGroupDisplayName(String& out, const std::optional<String>& text) {
  AddTextProperty(out, u"X-GDISPN", TextOf(text));
}

void vCard::AddRName(String& out, const std::optional<String>& firstName,
                     const std::optional<String>& lastName) {
  const String& first = TextOf(firstName);
  const String& last = TextOf(lastName);
  if (first.empty() && last.empty()) return;
  if (!sm_fUseReadingLastName) {
    AddTextProperty(out, u"SOUND", last);
    return;
  }
  // X-IRMC-N carries the reading like N: last name first, then the given
  // name, and the remaining parts empty.
  const String encodedLast = EncodeText(last, true);
  const String encodedFirst = EncodeText(first, true);
  String params = u";X-IRMC-N";
  if (IsQuotedPrintable(encodedLast) || IsQuotedPrintable(encodedFirst)) {
    params += szParams_QPEncodedUTF8;
  }
  AddItem(out, u"SOUND", params, encodedLast + u';' + encodedFirst + u";;;");
}

void vCard::AddBirtyDate(String& out, const std::optional<DateComponents>& date,
                         std::uint32_t birthDateType) {
  if (!date) return;
  PHONEPIM_ASSERT(static_cast<int>(birthDateType) <= static_cast<int>(chTypes.size()),
                  "(int)birthDateType <= _countof(chTypes)");
  AddItem(out, u"BDAY", u"", FormatDate(*date, birthDateType));
}

void vCard::AddAnnivesaryDate(String& out, const std::optional<DateComponents>& date,
                              std::uint32_t AnniversaryDateType) {
  if (!date) return;
  PHONEPIM_ASSERT(static_cast<int>(AnniversaryDateType) <= static_cast<int>(chTypes.size()),
                  "(int)AnniversaryDateType <= _countof(chTypes)");
  AddItem(out, u"X-ANNIVERSARY", u"", FormatDate(*date, AnniversaryDateType));
}

void vCard::AddBloodType(String& out, std::uint32_t bloodType) {
  static constexpr const char16_t* kWords[] = {u"A", u"B", u"AB", u"O"};
  if (bloodType < 1 || bloodType > std::size(kWords)) return;
  AddItem(out, u"X-BLOOD", u"", kWords[bloodType - 1]);
}

void vCard::AddGroupType(String& out, std::uint32_t groupType) {
  static constexpr const char16_t* kWords[] = {u"Normal", u"Smart", u"READ_ONLY"};
  if (groupType < 1 || groupType > std::size(kWords)) return;
  AddItem(out, u"GT", u"", kWords[groupType - 1]);
}

void vCard::AddGroups(String& out, const std::vector<std::int32_t>& groups) {
  if (groups.empty()) return;
  String value;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (i != 0) value += u',';
    value += Widen(std::to_string(groups[i]).c_str());
  }
  AddItem(out, u"X-GROUP", u"", value);
}

void vCard::AddAssistant(String& out, const std::optional<String>& name,
                         const std::optional<String>& number) {
  if (TextOf(name).empty() && TextOf(number).empty()) return;
  const String encodedName = EncodeText(TextOf(name), true);
  const String encodedNumber = EncodeText(TextOf(number), true);
  const bool qp = IsQuotedPrintable(encodedName) || IsQuotedPrintable(encodedNumber);
  AddItem(out, u"X-ASSISTANT", qp ? szParams_QPEncodedUTF8 : u"",
          encodedName + u';' + encodedNumber);
}

void vCard::AddPhoto(String& out, const Bytes* photo) {
  if (photo == nullptr || photo->empty()) return;
  // Encoded a piece at a time (whole groups of three bytes, so the pieces
  // join into one Base64 text): a large photo needs no second buffer.
  constexpr std::size_t kPiece = 3 * 1024;
  char piece[kPiece / 3 * 4 + 1];
  String value;
  value.reserve((photo->size() + 2) / 3 * 4 + 6);
  // The data goes on a line of its own, and a blank folded line ends it:
  // the line end AddItem adds then closes the property.
  value += u"\r\n ";
  const char* bytes = reinterpret_cast<const char*>(photo->data());
  for (std::size_t done = 0; done < photo->size(); done += kPiece) {
    const int length = static_cast<int>(std::min(kPiece, photo->size() - done));
    const int written = Base64encode(piece, bytes + done, length);
    value.append(piece, piece + (written > 0 ? written - 1 : 0));
  }
  value += u"\r\n ";
  AddItem(out, u"PHOTO", u";TYPE=JPEG;ENCODING=BASE64", value);
}

void vCard::AddLastRevision(String& /*out*/, const std::optional<DateComponents>& /*date*/) {}

}  // namespace phonepim
