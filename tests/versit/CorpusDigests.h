// What the codecs make of each real phone object, pinned without copying the
// corpus (whose licences keep it out of this repository): one line per
// object in tests/data/<folder>/corpus-<set>.txt, "id digest", the digest
// being FNV-1a of the object's description. A failure names each object
// whose description changed and prints the new one. After a deliberate
// change, PHONEPIM_UPDATE_DIGESTS=1 rewrites the file; review the objects
// the failure named before committing it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

namespace phonepim::testing_support {

class CorpusDigests {
 public:
  CorpusDigests(const std::string& folder, const std::string& set)
      : path_(std::string(PHONEPIM_SOURCE_DIR) + "/tests/data/" + folder + "/corpus-" + set + ".txt") {}

  void Add(const std::string& id, const std::string& description) {
    std::uint64_t hash = 0xcbf29ce484222325ull;
    for (const char c : description) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3ull;
    char hex[20];
    std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(hash));
    digests_[id] = hex;
    descriptions_[id] = description;
  }

  void Verify() const {
    if (std::getenv("PHONEPIM_UPDATE_DIGESTS") != nullptr) {
      std::ofstream out(path_, std::ios::binary);
      for (const auto& [id, digest] : digests_) out << id << ' ' << digest << '\n';
      return;
    }
    std::map<std::string, std::string> expected;
    std::ifstream in(path_, std::ios::binary);
    for (std::string id, digest; in >> id >> digest;) expected[id] = digest;
    ASSERT_FALSE(expected.empty()) << "no digests in " << path_;
    for (const auto& [id, digest] : digests_) {
      EXPECT_EQ(digest, expected[id]) << id << " now reads as:\n" << descriptions_.at(id);
      expected.erase(id);
    }
    for (const auto& [id, digest] : expected) ADD_FAILURE() << id << " is no longer read";
  }

 private:
  std::string path_;
  std::map<std::string, std::string> digests_;
  std::map<std::string, std::string> descriptions_;
};

}  // namespace phonepim::testing_support
