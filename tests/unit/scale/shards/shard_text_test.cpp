// Where shards begin, and what they read.

#include "scale/shards/shard_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <istream>
#include <iterator>
#include <optional>
#include <string>

#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

class ShardTextTest : public ::testing::Test {
 protected:
  // The place behind the first empty line from `from` on.
  std::optional<std::uint64_t> cut(const std::string& text, std::uint64_t from, std::uint64_t limit = 1000000) const {
    return find_cut(open_for_reading(folder.write("text", text)), "text", from, limit);
  }

  const test::TemporaryFolder folder;
};

TEST_F(ShardTextTest, ACutIsBehindAnEmptyLine) {
  //                        0123 4 5678 9
  const std::string text = "abc\n\nxyz\n\n";
  EXPECT_EQ(cut(text, 0), 0U);
  EXPECT_EQ(cut(text, 1), 5U);
  EXPECT_EQ(cut(text, 4), 5U);
  EXPECT_EQ(cut(text, 5), 10U);
  EXPECT_EQ(cut(text, 9), 10U);
}

TEST_F(ShardTextTest, WithoutAnEmptyLineThereIsNoCut) {
  EXPECT_EQ(cut("abc\nabc\n", 2), std::nullopt);
  EXPECT_EQ(cut("abc\r\n\r\nabc", 2), std::nullopt);
  EXPECT_EQ(cut(std::string(100000, 'x') + "\n\nabc", 7), 100002U);
}

TEST_F(ShardTextTest, LooksForACutOnlySoFarAndMissesNoneBetweenTwoLooks) {
  //                        0123 4 5678 9
  const std::string text = "abc\n\nxyz\n\n";
  EXPECT_EQ(cut(text, 1, 4), std::nullopt);
  EXPECT_EQ(cut(text, 4, 10), 5U);
  EXPECT_EQ(cut(text, 1, 5), 5U);
  EXPECT_EQ(cut(text, 5, 9), std::nullopt);
  // In a file without an end, to speak of.
  const std::string endless = folder.write("endless", "abc");
  std::filesystem::resize_file(endless, std::uintmax_t{1} << 42);
  EXPECT_EQ(find_cut(open_for_reading(endless), "endless", 7, 1000000), std::nullopt);
}

TEST_F(ShardTextTest, ReadsFromItsPlaceToTheEndOfTheFile) {
  const std::string text = std::string(50000, 'a') + std::string(50000, 'b');
  const Descriptor file = open_for_reading(folder.write("text", text));
  for (const std::uint64_t soft_end : {0U, 100U, 60000U, 200000U}) {
    ShardText shard(file, 30000, soft_end);
    std::string read;
    char piece[20000];
    for (std::streamsize count; (count = shard.sgetn(piece, sizeof piece)) > 0;)
      read.append(piece, static_cast<std::size_t>(count));
    EXPECT_EQ(read, text.substr(30000)) << soft_end;
  }
}

}  // namespace
}  // namespace colx::scale
