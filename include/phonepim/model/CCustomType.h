// The process-wide table of custom type labels.
//
// A phone may give a telephone number, e-mail address, postal address or
// organization a free-text label, sent as the type parameter
// "X-CUSTOM(label)", or "X-CUSTOM(CHARSET=UTF-8,ENCODING=QUOTED-PRINTABLE,
// =41=42)" when the label is quoted-printable. Elements keep a numeric code
// in their type field instead; this table hands the codes out and turns
// them back into label texts.
//
// Threads: the table and its creation are unguarded. The host calls the
// library (and so the codecs that register labels) from one thread at a
// time.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "phonepim/platform/String.h"

namespace phonepim {

/// The value the code counter starts from and returns to. It is the PREF
/// bit, so every code handed out has the PREF bit set too.
inline constexpr std::uint32_t kCustomTypeBase = 0x10000000;
/// The first code handed out (after start-up or DeleteAllItem).
inline constexpr std::uint32_t kFirstCustomType = kCustomTypeBase + 1;

/// One table entry: a code and its label text.
class CCcustomTypeT {
 public:
  /// Code kCustomTypeBase, empty name.
  CCcustomTypeT();

  std::uint32_t CustomType_T() const { return m_CustomType_T; }
  void SetCustomType_T(std::uint32_t code) { m_CustomType_T = code; }

  /// The label text; nothing when the label could not be decoded.
  const std::optional<String>& CustomType_Name() const { return m_CustomType_Name; }
  void SetCustomType_Name(std::optional<String> name) { m_CustomType_Name = std::move(name); }

 private:
  std::uint32_t m_CustomType_T;
  std::optional<String> m_CustomType_Name;
};

/// The table: entries in registration order and the last code handed out.
///
/// Registration. The argument is the type-parameter text as the reader has
/// it: "X-CUSTOM(label)", or "X-CUSTOM(CHARSET=UTF-8,ENCODING=
/// QUOTED-PRINTABLE,label)", possibly behind other parameters
/// ("PREF=X-CUSTOM(Main)").
///
/// Every registration takes the next code and appends a new entry, even for
/// a label that is already in the table. When the argument begins with the
/// quoted-printable prefix (exact case), the label is the argument with
/// every prefix (any case), every "==" and every "custom(" (any case)
/// removed, in that order and one pass each, and its last character (the
/// closing parenthesis) dropped, then quoted-printable decoded as UTF-8
/// (`_` reads as a space; nothing when decoding fails). Any other argument
/// is kept whole as the label, parentheses and all: the callers strip what
/// they need when they print it.
///
/// An empty argument, or one made only of the removed pieces, has no last
/// character to drop: the registration throws std::out_of_range after the
/// counter has moved on, and the spent code has no label. The reader never
/// passes such a text.
class CCustomType {
 public:
  /// The single shared table, made on first use and kept for the life of
  /// the process.
  static CCustomType& Inst();
  CCustomType(const CCustomType&) = delete;
  CCustomType& operator=(const CCustomType&) = delete;

  /// Registers the label carried by `str` (see the class comment) and
  /// returns its new code.
  std::uint32_t ConvertCustomTypeFromString(const String& str);

  /// Registers the label carried by `str` like ConvertCustomTypeFromString
  /// and returns the decoded label for a quoted-printable label; nothing
  /// for a plain one, although that is registered too.
  std::optional<String> ConvertCustomStrFromString(const String& str);

  /// The label of the first entry, in registration order, whose code is
  /// `type`; nothing when no entry has it (or the entry's label could not
  /// be decoded). Constant time, however many labels have been registered.
  std::optional<String> ConvertStringValFromCustomType(std::uint32_t type) const;

  /// Removes every entry and sets the counter back, so the next code is
  /// kFirstCustomType again; returns true. Elements that kept an old code
  /// then find another label or none. Nothing in the library calls it:
  /// codes keep growing for the life of the process.
  bool DeleteAllItem();

 private:
  CCustomType();
  std::uint32_t Register(const String& str, std::optional<String>* decodedName);

  // In registration order, which is code order: the entry of code c is at
  // position c - kFirstCustomType (a registration that threw leaves a
  // nameless entry).
  std::vector<CCcustomTypeT> m_arrCustomType;
  std::uint32_t m_CustomType_T;
};

}  // namespace phonepim
