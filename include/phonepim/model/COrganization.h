// COrganization: an organization of a contact (the vCard ORG property).
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "phonepim/model/TypeMasks.h"
#include "phonepim/platform/String.h"

namespace phonepim {

/// An organization type mask (kOrganizationType... bits, or a custom-label
/// code), the name, unit and position, and any further organization lines.
class COrganization {
 public:
  /// Everything empty, type 0, no further lines.
  COrganization();
  /// Name, unit and position from UTF-8 C strings (null gives empty); type
  /// 0, no further lines.
  COrganization(const char* name, const char* unit, const char* position);
  /// As above with the type; a non-null, non-empty `additional` becomes the
  /// first further line.
  COrganization(const char* name, const char* unit, const char* position,
                const char* additional, std::uint32_t orgType);

  std::uint32_t Type() const { return Type_; }
  void SetType(std::uint32_t orgType) { Type_ = orgType; }

  const String& Name() const { return Name_; }
  const String& Unit() const { return Unit_; }
  const String& Position() const { return Position_; }
  void SetName(String name) { Name_ = std::move(name); }
  void SetUnit(String unit) { Unit_ = std::move(unit); }
  void SetPosition(String position) { Position_ = std::move(position); }

  /// The further organization lines, in order. The reader appends to them.
  const std::vector<String>& Additional() const { return Additional_; }
  std::vector<String>& Additional() { return Additional_; }

  /// Same number of further lines, each equal in order; then equal name,
  /// unit and position; then exactly equal types. Null is unequal.
  bool IsEqual(const COrganization* other) const;

  /// True when name, unit and position are empty and there are no further
  /// lines (the type does not count).
  bool IsEmpty() const;

 private:
  std::uint32_t Type_ = 0;
  String Name_;
  String Unit_;
  String Position_;
  std::vector<String> Additional_;
};

}  // namespace phonepim
