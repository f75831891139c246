// Files the contacts commands write (photos, output written whole), and the
// round-trip comparison of `contacts check`.
#include <phonepim/platform/Assert.h>
#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/ObjectSplitter.h>
#include <phonepim/versit/vObject.h>

#include <sstream>

#include "AtomicFile.h"
#include "ContactsCheck.h"
#include "ContactsConvert.h"
#include "ToolTestSupport.h"

namespace phonepim::tool {
namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> FilesIn(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    files[entry.path().filename().string()] =
        entry.is_directory() ? "<folder>" : ReadFile(entry.path());
  }
  return files;
}

TEST(contacts_convert, photos_are_the_decoded_bytes_named_after_the_record_id) {
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  const std::string text = ReadFile(PHONEPIM_TOOL_DATA "/contacts.vcf");
  TempFolder folder;
  ConvertOptions options;
  options.output = (folder.path() / "book.vcf").string();
  options.photoFolder = (folder.path() / "photos").string();
  std::ostringstream out, err;
  ASSERT_EQ(ConvertContacts(text, "contacts.vcf", {}, options, out, err), 0) << err.str();
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(ReadFile(options.output), ReadFile(PHONEPIM_TOOL_DATA "/contacts.out.vcf"));

  // The photos of cards 4 (PNG) and 5 (JPEG), as vCard::Parse decodes them.
  std::map<std::string, std::string> expected;
  const std::vector<VersitObjectSpan> spans = FindVersitObjects(text);
  for (std::size_t card : {3u, 4u}) {
    vObject object;
    object.object()->SetData(
        reinterpret_cast<const unsigned char*>(text.data() + spans[card].offset),
        spans[card].length);
    CContact contact(u"Contact");
    vCard::Parse(&contact, &object);
    ASSERT_NE(contact.GetPhotoRef(), nullptr);
    const Bytes& photo = *contact.GetPhotoRef();
    expected[card == 3 ? "0000000000000004-Contact-.png" : "0000000000000005-Contact-.jpg"] =
        std::string(photo.begin(), photo.end());
  }
  EXPECT_EQ(FilesIn(options.photoFolder), expected);
  EXPECT_EQ(FilesIn(folder.path()).size(), 2u) << "a temporary file was left behind";
}

TEST(contacts_convert, photo_file_names_follow_the_magic_bytes) {
  const struct {
    Bytes bytes;
    const char* name;
  } rows[] = {
      {{0xFF, 0xD8, 0xFF, 0xE0}, "ID.jpg"},
      {{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}, "ID.png"},
      {{'G', 'I', 'F', '8', '9', 'a'}, "ID.gif"},
      {{'B', 'M', 0, 0}, "ID.bmp"},
      {{'G', 'I', 'F', '8'}, "ID.bin"},
      {{0xFF, 0xD8}, "ID.bin"},
  };
  for (const auto& row : rows) EXPECT_EQ(PhotoFileName("ID", 7, row.bytes), row.name);
  EXPECT_EQ(PhotoFileName("", 7, {0xFF, 0xD8, 0xFF}), "object-7.jpg");
}

TEST(atomic_file, a_failed_write_leaves_the_target_as_it_was_and_no_temporary_file) {
  TempFolder folder;
  const fs::path target = folder.path() / "out.vcf";
  std::string error;
  ASSERT_TRUE(WriteFileAtomically(target, "old", &error)) << error;
  ASSERT_TRUE(WriteFileAtomically(target, "new text", &error)) << error;
  EXPECT_EQ(ReadFile(target), "new text");

  // A folder in the way: the rename fails after the data was written.
  fs::create_directory(folder.path() / "taken");
  EXPECT_FALSE(WriteFileAtomically(folder.path() / "taken", "text", &error));
  EXPECT_EQ(error.rfind((folder.path() / "taken").string() + ": cannot write: ", 0), 0u) << error;
  EXPECT_FALSE(WriteFileAtomically(folder.path() / "missing" / "out.vcf", "text", &error));
  EXPECT_EQ(FilesIn(folder.path()).size(), 2u);
  EXPECT_EQ(ReadFile(target), "new text");
}

// Nested members, arrays and keys on one side only are in the goldens; a key
// that only the card read back has is not.
TEST(contacts_check, a_key_only_after_is_a_difference_from_null) {
  using Json = nlohmann::ordered_json;
  EXPECT_EQ(JsonDifferences(Json{{"note", nullptr}}, Json{{"note", "x"}, {"extra", 2}}),
            (std::vector<std::string>{"note: null -> \"x\"", "extra: null -> 2"}));
}

TEST(contacts_check, a_card_the_writer_cannot_give_back_is_a_loss) {
  ScopedAssertionHandler throwing(&ThrowingAssertionHandler);
  // Over 127 numbers with speed dials: the written X-SPEEDDIAL is too long
  // for the reader, which refuses the card it was given.
  std::string card = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Many;Numbers;;;\r\n";
  for (int i = 0; i < 130; ++i) card += "TEL;CELL:" + std::to_string(1000 + i) + "\r\n";
  card += "X-SPEEDDIAL:1,2\r\nEND:VCARD\r\n";
  std::ostringstream out, err;
  EXPECT_EQ(CheckContacts(card, "many.vcf", {}, {}, out, err), 4);
  EXPECT_EQ(out.str(),
            "many.vcf: object 1 (line 1, \"BEGIN:VCARD\"): 135 properties: 132 read, 3 dropped "
            "by design, 0 extension, 0 empty, 0 lost, 1 lost on writing\n"
            "  lost on writing: the written card cannot be read back: the reader refused it: its "
            "X-SPEEDDIAL value is 256 bytes or longer (assertion \"len < 256\")\n"
            "1 object, 135 properties: 132 read, 3 dropped by design, 0 extension, 0 empty, 0 lost; "
            "1 with losses, 0 failed\n");
  EXPECT_EQ(err.str(), "");
}

}  // namespace
}  // namespace phonepim::tool
