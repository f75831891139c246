// Where `convert -o` may rename and where it must write straight, and the
// status of a command that fails unexpectedly.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

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

std::size_t FilesIn(const fs::path& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// The tool itself, so that `convert -o` is seen to take this road.
TEST(output_file, convert_writes_a_fifo_straight_and_it_stays_a_fifo) {
  const TempFolder folder;
  const fs::path fifo = folder.path() / "out";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // The reader is there first: the write does not wait, nor, if it went
  // wrong, does this test. The pipe holds the whole small book.
  const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
  const std::string command = "'" PHONEPIM_TOOL "' contacts convert --to vcf -q '"
                              PHONEPIM_TOOL_DATA "/contacts.vcf' -o '" + fifo.string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::string received(4096, '\0');
  const ssize_t n = read(reader, received.data(), received.size());
  close(reader);
  received.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
  EXPECT_EQ(received, ReadFile(PHONEPIM_TOOL_DATA "/contacts.out.vcf"));
  EXPECT_EQ(FileType(fifo), S_IFIFO);
  EXPECT_EQ(FilesIn(folder.path()), 1u);
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
  EXPECT_EQ(FilesIn(folder.path()), 2u);
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
