#include "phonepim/model/CEmail.h"

#include <utility>

#include "phonepim/platform/Assert.h"

namespace phonepim {

CEmail::CEmail() = default;

CEmail::CEmail(const char* email) : CItem(email, 0, -1) {}

CEmail::CEmail(const char* email, std::uint32_t emailType, std::int32_t theID)
    : CItem(email, emailType, theID) {}

CEmail::CEmail(const char* email, std::uint32_t emailType, std::int32_t theID,
               std::shared_ptr<const String> Label)
    : CItem(email, emailType, theID), label_(std::move(Label)) {}

CEmail::CEmail(String email, std::uint32_t emailType, std::int32_t theID,
               std::shared_ptr<const String> Label)
    : CItem(std::move(email), emailType, theID), label_(std::move(Label)) {}

bool CEmail::isEqual(const CItem* email) const {
  PHONEPIM_ASSERT(email != nullptr, "email != nil");
  return GetEmail() == email->Data() &&
         (GetType() & ~kTypePref) == (email->Param() & ~kTypePref);
}

}  // namespace phonepim
