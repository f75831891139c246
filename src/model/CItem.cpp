#include "phonepim/model/CItem.h"

#include <utility>

#include "model/CStringText.h"

namespace phonepim {

CItem::CItem() : Data_(std::make_shared<const String>()) {}

CItem::CItem(const char* data, std::uint32_t param, std::int32_t theID)
    : thisID_(theID), Param_(param), Data_(model_detail::TextObjectFromUTF8(data)) {}

CItem::CItem(String data, std::uint32_t param, std::int32_t theID)
    : thisID_(theID), Param_(param), Data_(std::make_shared<const String>(std::move(data))) {}

CItem::~CItem() = default;

void CItem::SetValue(const char* data) { Data_ = model_detail::TextObjectFromUTF8(data); }

void CItem::setData(const char* data) { Data_ = model_detail::TextObjectFromUTF8(data); }

void CItem::setDataWithString(String data) {
  Data_ = std::make_shared<const String>(std::move(data));
}

bool CItem::isEqual(const CItem* other) const {
  return other != nullptr && Data() == other->Data() && thisID_ == other->thisID_ &&
         Param_ == other->Param_;
}

bool CItem::IsEmpty() const { return Data_->empty(); }

}  // namespace phonepim
