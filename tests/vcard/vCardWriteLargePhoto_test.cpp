#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "phonepim/model/CContact.h"
#include "phonepim/vcard/vCard.h"
#include "phonepim/versit/vObject.h"

namespace phonepim {
namespace {

// Generate encodes a photo in pieces of 3 MiB straight into the card; the
// pieces must join into the one text AddPhoto writes, padding included.
TEST(vcard_write_large_photo, pieces_join_into_the_text_add_photo_writes) {
  for (const std::size_t size : {std::size_t{4}, (std::size_t{3} << 20) + 1}) {
    CContact contact(u"Contact");
    Bytes photo(size);
    for (std::size_t i = 0; i < size; ++i) photo[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    contact.SetPhotoData(photo);
    vObject object;
    vCard::Generate(&contact, &object);
    String line;
    vCard::AddPhoto(line, &photo);
    const std::string expected =
        "BEGIN:VCARD\r\nVERSION:2.1\r\n" + std::string(line.begin(), line.end()) + "END:VCARD\r\n";
    const auto* bytes = reinterpret_cast<const char*>(object.object()->GetData());
    EXPECT_TRUE(std::string(bytes, object.object()->GetSize()) == expected) << size;
  }
}

}  // namespace
}  // namespace phonepim
