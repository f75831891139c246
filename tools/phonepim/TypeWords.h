// The type masks of contact elements and calendar categories as the words a person knows from vCard
// text, and custom labels as their text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <phonepim/platform/String.h>

namespace phonepim::tool {

enum class ElementKind {
  kTelephone,
  kEmail,
  kAddress,
  kURL,
  kMessenger,
  kOrganization,
  kCalendarCategory,  ///< a calendar entry's CATEGORIES bits
};

/// The words of the bits set in `mask`, in the order the vCard writer puts
/// them. Bits with no vCard word of their own get the model's name ("MAIN",
/// "ASSISTANT"); bits the kind does not know, their value in hex ("0x40").
std::vector<std::string> TypeWords(ElementKind kind, std::uint32_t mask);

/// The text of the label the custom-label table holds for `type`, the way
/// the writer prints it ("X-CUSTOM(Desk)" gives "Desk"); nothing when the
/// table knows no label for it.
std::optional<std::string> TableLabelText(std::uint32_t type);

/// A label as the writer prints it: the text inside "X-CUSTOM(...)" when it
/// is wrapped so (the table keeps plain labels as they were read), else the
/// text itself.
std::string LabelText(const String& label);

}  // namespace phonepim::tool
