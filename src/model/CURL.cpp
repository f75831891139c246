#include "phonepim/model/CURL.h"

#include <utility>

namespace phonepim {

CURL::CURL() = default;

CURL::CURL(const char* url) : CItem(url, 0, -1) {}

CURL::CURL(const char* url, std::uint32_t urlType, std::int32_t theID)
    : CItem(url, urlType, theID) {}

CURL::CURL(String url, std::uint32_t urlType, std::int32_t theID)
    : CItem(std::move(url), urlType, theID) {}

bool CURL::isEqual(const CItem* other) const {
  return other != nullptr && GetURL() == other->Data() &&
         (GetType() & ~kTypePref) == (other->Param() & ~kTypePref);
}

}  // namespace phonepim
