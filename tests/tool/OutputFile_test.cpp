// Where `convert -o` may rename and where it must write straight, and the
// status of a command that fails unexpectedly.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
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

TEST(output_file, a_fifo_is_written_straight_and_stays_a_fifo) {
  const TempFolder folder;
  const fs::path fifo = folder.path() / "out";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // The reader is there first, so that the write neither waits nor, if it
  // went wrong, leaves this test waiting.
  const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  std::string error;
  EXPECT_TRUE(WriteOutputFile(fifo, "BEGIN:VCARD\r\nEND:VCARD\r\n", &error)) << error;
  char received[64] = {};
  EXPECT_EQ(read(reader, received, sizeof received), 24);
  close(reader);
  EXPECT_STREQ(received, "BEGIN:VCARD\r\nEND:VCARD\r\n");
  EXPECT_EQ(FileType(fifo), S_IFIFO);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(output_file, dev_null_stays_a_device) {
  ASSERT_EQ(FileType("/dev/null"), S_IFCHR) << "/dev/null was replaced before this test";
  std::string error;
  ASSERT_TRUE(WriteOutputFile("/dev/null", "x", &error)) << error;
  EXPECT_EQ(FileType("/dev/null"), S_IFCHR);
}

TEST(output_file, a_link_to_a_file_stays_a_link_and_its_file_is_replaced) {
  const TempFolder folder;
  { std::ofstream(folder.path() / "book.vcf") << "old"; }
  fs::create_symlink("book.vcf", folder.path() / "link.vcf");
  std::string error;
  ASSERT_TRUE(WriteOutputFile(folder.path() / "link.vcf", "new", &error)) << error;
  EXPECT_EQ(FileType(folder.path() / "link.vcf"), S_IFLNK);
  EXPECT_EQ(ReadFile(folder.path() / "book.vcf"), "new");
}

TEST(output_file, pieces_arrive_in_order_and_only_a_commit_replaces_the_file) {
  const TempFolder folder;
  const fs::path book = folder.path() / "book.vcf";
  { std::ofstream(book) << "old"; }
  const std::string large(100000, 'L');  // more than one buffer
  std::string error;
  {
    OutputFile abandoned;
    ASSERT_TRUE(abandoned.Open(book, &error)) << error;
    abandoned.Write(large);
  }
  EXPECT_EQ(ReadFile(book), "old");
  OutputFile file;
  ASSERT_TRUE(file.Open(book, &error)) << error;
  file.Write("a");
  file.Write(large);
  file.Write("z");
  ASSERT_TRUE(file.Commit(&error)) << error;
  EXPECT_EQ(ReadFile(book), "a" + large + "z");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(output_file, a_folder_is_refused) {
  const TempFolder folder;
  std::string error;
  EXPECT_FALSE(WriteOutputFile(folder.path(), "x", &error));
  EXPECT_EQ(error, folder.path().string() + ": cannot write: Is a directory");
  EXPECT_EQ(FileType(folder.path()), S_IFDIR);
}

TEST(exit_status, an_exception_out_of_a_command_is_an_internal_error) {
  std::ostringstream err;
  const int status = RunOnFile(
      std::string(PHONEPIM_TOOL_DATA) + "/empty.vcf",
      [](const std::string&, const std::string&) -> int { throw std::runtime_error("boom"); },
      err);
  EXPECT_EQ(status, kExitInternalError);
  EXPECT_EQ(err.str(), "phonepim: " PHONEPIM_TOOL_DATA "/empty.vcf: internal error: boom\n");
}

}  // namespace
}  // namespace phonepim::tool
