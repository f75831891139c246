// Reading and writing cards in tests: the codec's process-wide options
// reset around each test, a one-line description of everything a contact
// holds (so that a table row can state the whole expected result), and the
// bytes a writer gives.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "phonepim/model/CContact.h"
#include "phonepim/model/CCustomType.h"
#include "phonepim/platform/String.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

// The codec's options and the custom-label table are process-wide: every
// test starts from the defaults and an empty table and leaves them so.
namespace phonepim::testing_support {

class ScopedWriterDefaults {
 public:
  ScopedWriterDefaults() { Reset(); }
  ~ScopedWriterDefaults() { Reset(); }
  ScopedWriterDefaults(const ScopedWriterDefaults&) = delete;
  ScopedWriterDefaults& operator=(const ScopedWriterDefaults&) = delete;

  static void Reset() {
    vCard::NonstandardEscChar(false);
    vCard::UseReadingLastName(false);
    vCard::URLNotQPEncode(false);
    vCard::LenientReading(false);
    CCustomType::Inst().DeleteAllItem();
  }
};

/// The text a writer appends to an empty string.
template <class Writer>
String Written(Writer writer) {
  String out;
  writer(out);
  return out;
}

/// The bytes of a vObject as text (the writer stores UTF-8).
inline std::string BytesOf(const vObject& object) {
  const auto* data = object.object()->GetData();
  return data == nullptr ? std::string()
                         : std::string(reinterpret_cast<const char*>(data),
                                       object.object()->GetSize());
}

}  // namespace phonepim::testing_support

namespace phonepim::testing_vcard {

inline vObject MakeObject(std::string_view text) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  return object;
}

/// `lines` (each ending in CRLF) inside BEGIN:VCARD / VERSION:2.1 / END:VCARD.
inline std::string Card(std::string_view lines) {
  return "BEGIN:VCARD\r\nVERSION:2.1\r\n" + std::string(lines) + "END:VCARD\r\n";
}

inline std::unique_ptr<CContact> Read(std::string_view text, const String& kind = u"Contact") {
  auto contact = std::make_unique<CContact>(kind);
  const vObject object = MakeObject(text);
  vCard::Parse(contact.get(), &object);
  return contact;
}

/// The card Generate writes of `contact`.
inline std::string Generated(const CContact& contact, int phoneStyle = 0) {
  vObject object;
  vCard::Generate(&contact, &object, phoneStyle);
  return testing_support::BytesOf(object);
}

inline DateComponents Day(std::int64_t year, std::int64_t month, std::int64_t day) {
  return {.year = year, .month = month, .day = day};
}

inline std::shared_ptr<const String> Label(String text) {
  return std::make_shared<const String>(std::move(text));
}

inline std::string Hex(std::uint32_t value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%x", value);
  return buffer;
}

/// A person with every field both directions share, in several types.
inline void FillPerson(CContact& c) {
  for (unsigned int i = 0; i < CName::kNamePartCount; ++i) {
    c.Name().SetName(u"part" + String(1, static_cast<char16_t>(u'0' + i)), i);
  }
  c.SetFName(u"Dr. John Q. Public");
  c.SetNickNames({u"JQ", u"Johnny"});
  c.SetRLName(u"paburikku");
  c.SetBirthDate(Day(1970, 1, 2));
  c.SetBirthDateType(1);
  c.SetAnniversary_Date(Day(1999, 12, 31));
  c.SetAnniversary_Luna(2);
  c.NewTelephone("+1 555 0100", kTelephoneTypeCell | kTelephoneTypePref, 0);
  c.NewTelephone("+1 555 0101", kTelephoneTypeWork | kTelephoneTypeVoice | kTelephoneTypeFax, 1);
  c.NewTelephone("0101", kTelephoneTypeCar | kTelephoneTypeISDN | kTelephoneTypeEtc, 2);
  // PREF with HOME would be 0x10000001, the code of the first custom label
  // read (the address label below): see the loss table.
  c.NewEmail("john@example.com", kEmailTypeWork | kEmailTypePref, 0);
  c.NewEmail("jq@work.example", kEmailTypeWork | kEmailTypeCell | kEmailTypeEtc, 1);
  c.NewURL("http://example.com/~jq?a=b", kURLTypeWork | kURLTypePref, 0);
  c.NewAddress("PO 1", "Apt 2", "1 Main St", "Springfield", "IL", "62701", "USA", "Downtown",
               kAddressTypeHome | kAddressTypePref, 0);
  c.NewAddress(nullptr, nullptr, "Lake Rd 3", nullptr, nullptr, nullptr, nullptr, nullptr,
               kAddressTypeCustom, 1, Label(u"Summer house"));
  c.NewNotes("First line\r\nsecond line = 2", 0);
  c.NewNotes("Another note", 1);
  c.SetTitle(u"Chief");
  c.SetRole(u"Owner");
  COrganization* org =
      c.NewOrg("Acme Inc.", "R&D", "Head of Lab", "Building 7", kOrganizationTypeWork);
  org->Additional().push_back(u"Floor 3");
  c.NewOrg("Chess Club", nullptr, nullptr, nullptr, kOrganizationTypeHome | kOrganizationTypeEtc);
  c.SetBloodType(4);
  c.SetHobby(u"Chess");
  c.SetGroups({1, 4, 12});
  c.SetAccount(u"Phone memory");
  c.setSpouse(u"Jane Public");
  c.setChildren(u"Tim, Tom");
  c.setAssistant(u"Ann Other");
  c.setAssistantNumber(u"+1 555 0199");
  c.NewMessengerID("jq.public", kMessengerTypeSkype, 0);
  c.NewMessengerID("12345", kMessengerTypeICQ, 1);
  c.SetSpeedDial(2, 0);
  c.SetSpeedDial(9, 2);
  c.SetPhotoData(Bytes{0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 'J', 'F', 'I', 'F', 0x00});
}

/// Fields that differ from a new contact, as "KEY=value" items separated by
/// "; ": set texts (empty ones too), element lists with their types in hex
/// ("TEL(10000020)=..."), labels, dates as year-month-day/type.
inline std::string Describe(const CContact& c) {
  std::string out;
  auto item = [&](const std::string& key, const std::string& value) {
    if (!out.empty()) out += "; ";
    out += key + "=" + value;
  };
  auto text = [&](const char* key, const std::optional<String>& value) {
    if (value) item(key, ToDisplayUTF8(*value));
  };
  auto date = [&](const char* key, const std::optional<DateComponents>& d, std::uint32_t type) {
    if (d) {
      item(key, std::to_string(d->year) + "-" + std::to_string(d->month) + "-" +
                    std::to_string(d->day) + "/" + std::to_string(type));
    }
  };
  auto label = [](const std::shared_ptr<const String>& l) {
    return l ? ",label=" + ToDisplayUTF8(*l) : std::string();
  };
  auto joined = [](std::initializer_list<const String*> parts) {
    std::string out;
    for (const String* part : parts) out += "|" + ToDisplayUTF8(*part);
    return out.substr(1);
  };
  text("FN", c.FName());
  const CName& n = c.Name();
  if (!n.IsEmpty()) {
    item("N", joined({&n.Family(), &n.Given(), &n.Middle(), &n.Prefix(), &n.Suffix(),
                      &n.Phonetic_Family(), &n.Phonetic_Given(), &n.Phonetic_Middle()}));
  }
  for (const String& nickname : c.NickNames()) item("NICK", ToDisplayUTF8(nickname));
  text("RF", c.RFName());
  text("RL", c.RLName());
  date("BDAY", c.BirthDate(), c.BirthDateType());
  date("ANNIV", c.Anniversary_Date(), c.Anniversary_Luna());
  if (c.BloodType() != 0) item("BLOOD", std::to_string(c.BloodType()));
  for (int i = 0; i < c.GetTelephoneCount(); ++i) {
    const CTelephoneNumber* t = c.GetTelephone(i);
    item("TEL(" + Hex(t->GetType()) + label(t->GetLabel()) + ")", ToDisplayUTF8(t->GetNumber()));
  }
  for (int i = 0; i < c.GetEmailCount(); ++i) {
    const CEmail* e = c.GetEmail(i);
    item("EMAIL(" + Hex(e->GetType()) + label(e->GetLabel()) + ")", ToDisplayUTF8(e->GetEmail()));
  }
  for (int i = 0; i < c.GetURLCount(); ++i) {
    item("URL(" + Hex(c.GetURL(i)->GetType()) + ")", ToDisplayUTF8(c.GetURL(i)->GetURL()));
  }
  for (int i = 0; i < c.GetAddressCount(); ++i) {
    const CPostalAddress* a = c.GetAddress(i);
    item("ADR(" + Hex(a->Type()) + label(a->Label()) + ")",
         joined({&a->POBox(), &a->ExtAddr(), &a->Street(), &a->Locality(), &a->Region(),
                 &a->PostalCode(), &a->Country(), &a->Neighbor()}));
  }
  for (int i = 0; i < c.GetNotesCount(); ++i) item("NOTE", ToDisplayUTF8(c.GetNotes(i)->GetNote()));
  text("TITLE", c.Title());
  text("ROLE", c.Role());
  for (int i = 0; i < c.GetOrgCount(); ++i) {
    const COrganization* o = c.GetOrg(i);
    std::string parts = joined({&o->Name(), &o->Unit(), &o->Position()});
    for (const String& line : o->Additional()) parts += "|+" + ToDisplayUTF8(line);
    item("ORG(" + Hex(o->Type()) + ")", parts);
  }
  text("HOBBY", c.Hobby());
  if (const Bytes* photo = c.GetPhotoRef()) {
    std::string bytes = std::to_string(photo->size());
    if (photo->size() <= 8) {
      bytes += ":";
      for (std::uint8_t b : *photo) bytes += (b < 16 ? "0" : "") + Hex(b);
    }
    item("PHOTO", bytes);
  }
  text("GN", c.GroupName());
  if (c.GroupType() != 0) item("GT", std::to_string(c.GroupType()));
  if (!c.Groups().empty()) {
    std::string groups;
    for (std::int32_t g : c.Groups()) groups += (groups.empty() ? "" : ",") + std::to_string(g);
    item("GROUPS", groups);
  }
  for (int i = 0; i < c.GetMessengerIDCount(); ++i) {
    const CMessengerID* m = c.GetMessengerID(i);
    item("IM(" + Hex(m->GetType()) + ")", ToDisplayUTF8(m->GetMessengerID()));
  }
  const auto& slots = c.SpeedDial();
  if (std::any_of(slots.begin(), slots.end(), [](std::int32_t slot) { return slot != -1; })) {
    std::string speedDial;
    for (std::int32_t slot : slots) speedDial += "," + std::to_string(slot);
    item("SPEED", speedDial.substr(1));
  }
  text("ACCOUNT", c.Account());
  text("ACCOUNT-N", c.AccountName());
  text("ACCOUNT-TYPE", c.AccountType());
  if (c.LastRevision()) item("REV", "set");
  text("GDISPN", c.GroupDisplayName());
  text("SPOUSE", c.spouse());
  text("CHILDREN", c.children());
  text("ASSISTANT", c.assistant());
  text("ASSISTANT#", c.assistantNumber());
  for (int i = 0; i < c.GetXItemCount(); ++i) {
    item("X:" + ToDisplayUTF8(c.GetXItem(i)->Name()), ToDisplayUTF8(c.GetXItem(i)->Data()));
  }
  return out;
}

}  // namespace phonepim::testing_vcard
