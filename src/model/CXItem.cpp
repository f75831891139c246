#include "phonepim/model/CXItem.h"

namespace phonepim {

CXItem::CXItem() = default;

CXItem::CXItem(const String& name, const char* data, std::uint32_t parameter,
               std::int32_t theID)
    : CItem(data, parameter, theID), Name_(name) {}

}  // namespace phonepim
