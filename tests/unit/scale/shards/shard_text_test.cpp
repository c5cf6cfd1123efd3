// Where shards begin, and what they read.

#include "scale/shards/shard_text.h"

#include <gtest/gtest.h>

#include <istream>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

class ShardTextTest : public ::testing::Test {
 protected:
  // The place behind the first empty line from `from` on.
  std::uint64_t cut(const std::string& text, std::uint64_t from) const {
    return find_cut(open_for_reading(folder.write("text", text)), "text", from, text.size());
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

TEST_F(ShardTextTest, WithoutAnEmptyLineTheCutIsAtTheEnd) {
  EXPECT_EQ(cut("abc\nabc\n", 2), 8U);
  EXPECT_EQ(cut("abc\r\n\r\nabc", 2), 10U);
  EXPECT_EQ(cut(std::string(100000, 'x') + "\n\nabc", 7), 100002U);
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
