#include "phonepim/model/CName.h"

#include <utility>

#include "model/CStringText.h"
#include "phonepim/platform/Assert.h"

namespace phonepim {

using model_detail::TextFromUTF8;

CName::CName() = default;

CName::CName(const char* family) { parts_[0] = TextFromUTF8(family); }

CName::CName(const char* family, const char* givenName, const char* middleName,
             const char* prefix, const char* suffix, const char* phoneticFamily,
             const char* phoneticGiven, const char* phoneticMiddle)
    : parts_{TextFromUTF8(family),         TextFromUTF8(givenName),
             TextFromUTF8(middleName),     TextFromUTF8(prefix),
             TextFromUTF8(suffix),         TextFromUTF8(phoneticFamily),
             TextFromUTF8(phoneticGiven),  TextFromUTF8(phoneticMiddle)} {}

void CName::SetName(String name, unsigned int nIndex) {
  PHONEPIM_ASSERT(nIndex < 8, "nIndex < 8");
  parts_[nIndex] = std::move(name);
}

bool CName::IsEqual(const CName* other) const {
  return other != nullptr && parts_ == other->parts_;
}

bool CName::IsEmpty() const {
  for (const String& part : parts_) {
    if (!part.empty()) {
      return false;
    }
  }
  return true;
}

}  // namespace phonepim
