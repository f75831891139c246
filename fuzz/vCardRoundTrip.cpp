// Round trip of the vCard codec: whatever the reader accepts, the writer
// must turn into text that the reader takes back, and reading and writing
// that text again and again must settle on one text.
//
// Why it may take more than one pass (all by design of the codec):
// - a '_' in a quoted-printable value reads back as a space, and "::"
//   becomes ":" when written; both change the text once;
// - in a structured value (N, ADR, ORG, plain SOUND) the reader's
//   unescaping keeps a backslash and drops the character after it, and
//   the writer does not escape unless asked, so a backslash eats one
//   character per pass until it stands last; a URL does the same when the
//   reader unescapes text (sm_fNonstandardEscChar).
// So the bound is three times the length of the first text written, plus
// three passes: a '_' read as a space comes back as "=20", so the text may
// grow to three times its length, and every other pass that changes it
// removes a character of content or is one of the few one-time changes.
//
// Some texts never settle, also by design, and are taken out after the
// first read:
// - e-mail addresses and messenger IDs holding a backslash or ';': the
//   writer always escapes them and the reader never undoes it, so they gain
//   backslashes on every pass;
// - custom labels holding one while the writer escapes labels
//   (sm_fNonstandardEscChar): parameters are never unescaped either;
// - structured values holding one whenever the writer escapes them
//   (X-ASSISTANT always, SOUND;X-IRMC-N with sm_fUseReadingLastName, the
//   others with sm_fNonstandardEscChar): a component that ends in a
//   backslash is written with it doubled, the reader, which looks back one
//   character only, takes the doubled backslash for an escaped separator,
//   and the next pass doubles it again. Such backslashes and semicolons
//   become '/';
// - an address label long enough for the encoder to break its line: the
//   break lands in the parameter, the label table drops the "==" that a
//   break right after an escape leaves, and the label loses a character,
//   which moves the next break; the text flips between two forms. Such
//   addresses are dropped.
// A contact with so many numbers that the speed-dial line reaches 256 bytes
// is written, but the reader stops at it ("len < 256"); that ends the run.
//
// The input's length picks the options, the contact kind and the telephone
// dialect, so that the fuzzer explores them all as it grows and shrinks
// inputs. Inputs the reader rejects are skipped.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "phonepim/model/CCustomType.h"
#include "phonepim/model/CContact.h"
#include "phonepim/platform/Assert.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"
#include "vcard/vCardWriterText.h"

namespace {

using namespace phonepim;

[[noreturn]] void Fail(const char* what, const std::string& text) {
  std::fprintf(stderr, "vCardRoundTrip: %s\n%s\n", what, text.c_str());
  std::abort();
}

std::string Generate(const CContact& contact, int phoneStyle) {
  vObject object;
  vCard::Generate(&contact, &object, phoneStyle);
  const auto* bytes = object.object()->GetData();
  return bytes == nullptr ? std::string()
                          : std::string(reinterpret_cast<const char*>(bytes),
                                        object.object()->GetSize());
}

std::unique_ptr<CContact> Parse(const std::string& text, const String& kind) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(text.data()), text.size());
  auto contact = std::make_unique<CContact>(kind);
  vCard::Parse(contact.get(), &object);
  return contact;
}

bool NeverSettles(const String& text) {
  return text.find_first_of(u"\\;") != String::npos;
}

bool LabelNeverSettles(std::uint32_t type) {
  if (!vCard::sm_fNonstandardEscChar) return false;
  const std::optional<String> label = CCustomType::Inst().ConvertStringValFromCustomType(type);
  return label && NeverSettles(*label);
}

String Slashed(String text) {
  for (char16_t& unit : text) {
    if (unit == u'\\' || unit == u';') unit = u'/';
  }
  return text;
}

// Takes out what never settles (see above).
void TakeOutWhatNeverSettles(CContact& contact) {
  for (int i = contact.GetEmailCount() - 1; i >= 0; --i) {
    const CEmail* email = contact.GetEmail(i);
    if (NeverSettles(email->GetEmail()) || LabelNeverSettles(email->GetType())) {
      contact.DeleteEmailAtIndex(i);
    }
  }
  for (int i = contact.GetMessengerIDCount() - 1; i >= 0; --i) {
    const CMessengerID* im = contact.GetMessengerID(i);
    if (NeverSettles(im->GetMessengerID()) || LabelNeverSettles(im->GetType())) {
      contact.DeleteMessengerIDAtIndex(i);
    }
  }
  for (int i = contact.GetAddressCount() - 1; i >= 0; --i) {
    const std::shared_ptr<const String>& label = contact.GetAddress(i)->Label();
    if (label && vcard_writer::CustomLabelParameter(*label).find(u'\n') != String::npos) {
      contact.DeleteAddressAtIndex(i);
    }
  }
  for (int i = contact.GetTelephoneCount() - 1; i >= 0; --i) {
    if (LabelNeverSettles(contact.GetTelephone(i)->GetType())) contact.DeleteTelephoneAtIndex(i);
  }
  for (int i = contact.GetOrgCount() - 1; i >= 0; --i) {
    if (LabelNeverSettles(contact.GetOrg(i)->Type())) contact.DeleteOrgAtIndex(i);
  }
  if (contact.assistant()) contact.setAssistant(Slashed(*contact.assistant()));
  if (contact.assistantNumber()) contact.setAssistantNumber(Slashed(*contact.assistantNumber()));
  if (vCard::sm_fUseReadingLastName || vCard::sm_fNonstandardEscChar) {
    if (contact.RFName()) contact.SetRFName(Slashed(*contact.RFName()));
    if (contact.RLName()) contact.SetRLName(Slashed(*contact.RLName()));
  }
  if (vCard::sm_fNonstandardEscChar) {
    CName& name = contact.Name();
    const CName original = name;
    const String* parts[] = {&original.Family(),         &original.Given(),
                             &original.Middle(),         &original.Prefix(),
                             &original.Suffix(),         &original.Phonetic_Family(),
                             &original.Phonetic_Given(), &original.Phonetic_Middle()};
    for (unsigned int i = 0; i < CName::kNamePartCount; ++i) name.SetName(Slashed(*parts[i]), i);
    for (int i = 0; i < contact.GetAddressCount(); ++i) {
      CPostalAddress* address = contact.GetAddress(i);
      const CPostalAddress copy = *address;
      const String* parts8[] = {&copy.POBox(),    &copy.ExtAddr(), &copy.Street(),
                                &copy.Locality(), &copy.Region(),  &copy.PostalCode(),
                                &copy.Country(),  &copy.Neighbor()};
      for (unsigned int p = 0; p < kPostalAddressMax; ++p) {
        address->SetAddress(Slashed(*parts8[p]), p);
      }
    }
    for (int i = 0; i < contact.GetOrgCount(); ++i) {
      COrganization* org = contact.GetOrg(i);
      org->SetName(Slashed(org->Name()));
      org->SetUnit(Slashed(org->Unit()));
      org->SetPosition(Slashed(org->Position()));
      for (String& line : org->Additional()) line = Slashed(line);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ScopedAssertionHandler handler(ThrowingAssertionHandler);
  // Every label read registers a new code for the life of the process.
  CCustomType::Inst().DeleteAllItem();
  vCard::NonstandardEscChar((size & 1u) != 0);
  vCard::UseReadingLastName((size & 2u) != 0);
  vCard::URLNotQPEncode((size & 4u) != 0);
  const String kind = (size & 8u) != 0 ? u"Group" : u"Contact";
  const int phoneStyle = (size & 16u) != 0 ? 1 : 0;

  std::unique_ptr<CContact> contact;
  try {
    contact = Parse(std::string(reinterpret_cast<const char*>(data), size), kind);
  } catch (const std::uint16_t&) {
    return 0;
  } catch (const AssertionFailure&) {
    return 0;
  } catch (const std::out_of_range&) {
    return 0;
  }
  // Whatever was read is written, the elements that never settle included.
  std::string text = Generate(*contact, phoneStyle);
  TakeOutWhatNeverSettles(*contact);
  text = Generate(*contact, phoneStyle);

  const std::size_t firstSize = text.size();
  const std::size_t maxPasses = 3 * firstSize + 3;
  for (std::size_t pass = 0; pass < maxPasses; ++pass) {
    std::unique_ptr<CContact> again;
    try {
      again = Parse(text, kind);
    } catch (const AssertionFailure& failure) {
      if (failure.text() == "len < 256") return 0;
      Fail(failure.what(), text);
    } catch (...) {
      Fail("the reader rejects what the writer wrote", text);
    }
    std::string next = Generate(*again, phoneStyle);
    if (next == text) return 0;
    // A '_' read as a space comes back as "=20": some growth is expected,
    // not this much.
    if (next.size() > 4 * firstSize + 4096) Fail("the text keeps growing", next);
    text = std::move(next);
  }
  Fail("no fixed point", text);
}
