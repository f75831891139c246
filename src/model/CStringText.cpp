#include "model/CStringText.h"

#include <string_view>

namespace phonepim::model_detail {

String TextFromUTF8(const char* utf8) {
  if (utf8 == nullptr) {
    return String();
  }
  return StringFromUTF8(std::string_view(utf8)).value_or(String());
}

std::shared_ptr<const String> TextObjectFromUTF8(const char* utf8) {
  return std::make_shared<const String>(TextFromUTF8(utf8));
}

}  // namespace phonepim::model_detail
