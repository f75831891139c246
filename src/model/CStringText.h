// Text from the C strings that the element initialisers and setters take.
#pragma once

#include <memory>

#include "phonepim/platform/String.h"

namespace phonepim::model_detail {

/// The text of a NUL-terminated UTF-8 C string. A null pointer and bytes
/// that are not valid UTF-8 both give the empty string: elements hold text
/// in every field, and a field that could not be read reads as empty.
String TextFromUTF8(const char* utf8);

/// A new value object holding TextFromUTF8(utf8).
std::shared_ptr<const String> TextObjectFromUTF8(const char* utf8);

}  // namespace phonepim::model_detail
