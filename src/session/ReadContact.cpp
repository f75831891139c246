#include "phonepim/session/ReadContact.h"

#include <stdexcept>

#include "phonepim/platform/Assert.h"
#include "phonepim/platform/Errors.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/ReadAccount.h"
#include "phonepim/versit/vObject.h"

namespace phonepim {
namespace {

std::unique_ptr<CContact> ParseAs(const vObject& object, std::uint32_t vCardID, const String& imei,
                                  const String& kind,
                                  const std::shared_ptr<ContactIDMappingTable>& table,
                                  ReadAccount* account) {
  auto contact = std::make_unique<CContact>(vCardID, imei, std::nullopt, kind, table);
  if (account != nullptr) *account = ReadAccount();
  vCard::Parse(contact.get(), &object, account);
  return contact;
}

bool NamesAGroup(const CContact& contact) {
  return contact.GroupName() || contact.GroupDisplayName() || contact.GroupType() != 0;
}

// The assertions bad phone data can trip, in words a person can act on.
std::string RefusalReason(const std::string& assertion) {
  if (assertion.find("\"2.1\"") != std::string::npos) return "its VERSION is not 2.1";
  if (assertion == "len < 256") return "its X-SPEEDDIAL value is 256 bytes or longer";
  return "a value it cannot take";
}

bool HasText(const std::optional<String>& text) { return text && !text->empty(); }

}  // namespace

bool IsVersitObject(std::string_view object, std::string_view name) {
  static constexpr std::string_view kBegin = "BEGIN:";
  if (object.size() < kBegin.size() + name.size()) return false;
  for (std::size_t i = 0; i < kBegin.size() + name.size(); ++i) {
    const char c = object[i];
    const char expected = i < kBegin.size() ? kBegin[i] : name[i - kBegin.size()];
    if ((c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) != expected) return false;
  }
  const std::string_view rest = object.substr(kBegin.size() + name.size());
  return rest.empty() || rest[0] == '\r' || rest[0] == '\n';
}

std::unique_ptr<CContact> ReadContact(std::string_view card, std::uint32_t vCardID,
                                      const String& imei,
                                      const std::shared_ptr<ContactIDMappingTable>& table,
                                      ReadAccount* account) {
  vObject object;
  object.object()->SetData(reinterpret_cast<const unsigned char*>(card.data()), card.size());
  std::unique_ptr<CContact> contact = ParseAs(object, vCardID, imei, u"Contact", table, account);
  if (NamesAGroup(*contact)) contact = ParseAs(object, vCardID, imei, u"Group", table, account);
  return contact;
}

std::unique_ptr<CContact> TryReadContact(std::string_view card, std::uint32_t vCardID,
                                         const String& imei,
                                         const std::shared_ptr<ContactIDMappingTable>& table,
                                         std::string* error, ReadAccount* account) {
  try {
    return ReadContact(card, vCardID, imei, table, account);
  } catch (std::uint16_t code) {
    if (code == kVersitParseError && account != nullptr && account->truncated) {
      *error = "cut short: its END line never came, so what was read of it is not shown";
    } else {
      *error = code == kVersitParseError ? "the tokenizer rejected it"
                                         : "the reader failed with code " + std::to_string(code);
    }
  } catch (const AssertionFailure& failure) {
    *error = "the reader refused it: " + RefusalReason(failure.text()) + " (assertion \"" +
             failure.text() + "\")";
  } catch (const std::out_of_range& e) {
    *error = std::string("a custom label the label table cannot register (") + e.what() + ")";
  }
  return nullptr;
}

String DisplayName(const CContact& contact) {
  if (HasText(contact.FName())) return *contact.FName();
  String name = contact.Name().Given();
  if (!name.empty() && !contact.Name().Family().empty()) name += u' ';
  name += contact.Name().Family();
  if (!name.empty()) return name;
  if (HasText(contact.GroupDisplayName())) return *contact.GroupDisplayName();
  if (HasText(contact.GroupName())) return *contact.GroupName();
  return String();
}

}  // namespace phonepim
