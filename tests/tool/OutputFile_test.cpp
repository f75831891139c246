// Where `convert -o` may rename and where it must write straight (a FIFO or
// a device, which a rename would replace by a plain file), and the status of
// a command that fails unexpectedly.
#include <sys/stat.h>

#include <sstream>

#include "AtomicFile.h"
#include "ExitStatus.h"
#include "ToolTestSupport.h"

namespace phonepim::tool {
namespace {

namespace fs = std::filesystem;

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
// committed leaves it as it was; pieces larger than the buffer keep order.
TEST(output_file, only_a_commit_replaces_the_file) {
  const TempFolder folder;
  const fs::path book = folder.path() / "book.vcf";
  { std::ofstream(book) << "old"; }
  fs::create_symlink("book.vcf", folder.path() / "link.vcf");
  const std::string large(100000, 'L');
  std::string error;
  {
    OutputFile abandoned;
    ASSERT_TRUE(abandoned.Open(folder.path() / "link.vcf", &error)) << error;
    abandoned.Write(large);
  }
  EXPECT_EQ(ReadFile(book), "old");
  OutputFile file;
  ASSERT_TRUE(file.Open(folder.path() / "link.vcf", &error)) << error;
  file.Write("a");
  file.Write(large);
  file.Write("z");
  ASSERT_TRUE(file.Commit(&error)) << error;
  EXPECT_EQ(ReadFile(book), "a" + large + "z");
  EXPECT_EQ(FileType(folder.path() / "link.vcf"), S_IFLNK);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2);
}

TEST(exit_status, an_exception_out_of_a_command_is_an_internal_error) {
  std::ostringstream err;
  const auto fails = [](const std::string&, const std::string&) -> int {
    throw std::runtime_error("boom");
  };
  EXPECT_EQ(RunOnFile(PHONEPIM_TOOL_DATA "/empty.vcf", fails, err), kExitInternalError);
  EXPECT_EQ(err.str(), "phonepim: " PHONEPIM_TOOL_DATA "/empty.vcf: internal error: boom\n");
}

}  // namespace
}  // namespace phonepim::tool
