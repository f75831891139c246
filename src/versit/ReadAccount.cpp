#include "phonepim/versit/ReadAccount.h"

namespace phonepim {

const char* FateWord(PropertyFate fate) {
  switch (fate) {
    case PropertyFate::kRead: return "read";
    case PropertyFate::kByDesign: return "dropped by design";
    case PropertyFate::kExtension: return "extension";
    case PropertyFate::kEmpty: return "empty";
    case PropertyFate::kLost: return "lost";
  }
  return "lost";
}

}  // namespace phonepim
