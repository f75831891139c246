// Files the tool writes: output written whole, or straight where a rename
// would replace a FIFO or a device by a plain file; photos; the round-trip
// comparison of `contacts check`; the status of a command that fails
// unexpectedly.
#include <sys/stat.h>

#include <phonepim/platform/Assert.h>
#include <phonepim/vcard/vCard.h>
#include <phonepim/versit/vObject.h>

#include <sstream>

#include "AtomicFile.h"
#include "ContactsCheck.h"
#include "ContactsConvert.h"
#include "ExitStatus.h"
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

mode_t FileType(const fs::path& path) {
  struct stat st {};
  return lstat(path.c_str(), &st) == 0 ? (st.st_mode & S_IFMT) : 0;
}

// Straight through the function convert writes with: run as root, a
// regression would replace the machine's /dev/null.
TEST(output_file, dev_null_stays_a_device) {
  ASSERT_EQ(FileType("/dev/null"), S_IFCHR) << "/dev/null was replaced before this test";
  std::string error;
  EXPECT_TRUE(WriteOutputFile("/dev/null", "x", &error)) << error;
  EXPECT_EQ(FileType("/dev/null"), S_IFCHR);
}

// Through a link the file is replaced and the link stays; an output not
// committed, or whose rename fails (a folder in the way) or cannot start (no
// folder), leaves it as it was; pieces larger than the buffer keep order.
TEST(output_file, only_a_commit_replaces_the_file) {
  const TempFolder folder;
  const fs::path book = folder.path() / "book.vcf";
  std::string error;
  ASSERT_TRUE(WriteFileAtomically(book, "first", &error)) << error;
  ASSERT_TRUE(WriteFileAtomically(book, "old", &error)) << error;  // over a plain file
  fs::create_symlink("book.vcf", folder.path() / "link.vcf");
  const std::string large(100000, 'L');
  {
    OutputFile abandoned;
    ASSERT_TRUE(abandoned.Open(folder.path() / "link.vcf", &error)) << error;
    abandoned.Write(large);
  }
  fs::create_directory(folder.path() / "taken");
  EXPECT_FALSE(WriteFileAtomically(folder.path() / "taken", "text", &error));
  EXPECT_EQ(error.rfind((folder.path() / "taken").string() + ": cannot write: ", 0), 0u) << error;
  EXPECT_FALSE(WriteFileAtomically(folder.path() / "missing" / "out.vcf", "text", &error));
  EXPECT_EQ(FilesIn(folder.path()).size(), 3u);
  EXPECT_EQ(ReadFile(book), "old");
  OutputFile file;
  ASSERT_TRUE(file.Open(folder.path() / "link.vcf", &error)) << error;
  file.Write("a");
  file.Write(large);
  file.Write("z");
  ASSERT_TRUE(file.Commit(&error)) << error;
  EXPECT_EQ(ReadFile(book), "a" + large + "z");
  EXPECT_EQ(FileType(folder.path() / "link.vcf"), S_IFLNK);
}

TEST(exit_status, an_exception_out_of_a_command_is_an_internal_error) {
  std::ostringstream err;
  const auto fails = [](const std::string&, const std::string&) -> int {
    throw std::runtime_error("boom");
  };
  EXPECT_EQ(RunOnFile(PHONEPIM_TOOL_DATA "/empty.vcf", fails, err), kExitInternalError);
  EXPECT_EQ(err.str(), "phonepim: " PHONEPIM_TOOL_DATA "/empty.vcf: internal error: boom\n");
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
