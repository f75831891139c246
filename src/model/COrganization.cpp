#include "phonepim/model/COrganization.h"

#include <utility>

#include "model/CStringText.h"

namespace phonepim {

using model_detail::TextFromUTF8;

COrganization::COrganization() = default;

COrganization::COrganization(const char* name, const char* unit, const char* position)
    : Name_(TextFromUTF8(name)), Unit_(TextFromUTF8(unit)), Position_(TextFromUTF8(position)) {}

COrganization::COrganization(const char* name, const char* unit, const char* position,
                             const char* additional, std::uint32_t orgType)
    : COrganization(name, unit, position) {
  Type_ = orgType;
  // Bytes that are not UTF-8 read as empty, and an empty line is no line.
  String line = TextFromUTF8(additional);
  if (!line.empty()) {
    Additional_.push_back(std::move(line));
  }
}

bool COrganization::IsEqual(const COrganization* other) const {
  return other != nullptr && Additional_ == other->Additional_ && Name_ == other->Name_ &&
         Unit_ == other->Unit_ && Position_ == other->Position_ && Type_ == other->Type_;
}

bool COrganization::IsEmpty() const {
  return Name_.empty() && Unit_.empty() && Position_.empty() && Additional_.empty();
}

}  // namespace phonepim
