#include "rows/block_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "companion/errors.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

const std::string pair = "1\theavy\t\t2\tAtr\n2\t\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t1e-07\t1.5e+11\t0\n\n";

std::string _error(const std::string& content, std::size_t buffer = 1) {
  const test::TemporaryFolder folder;
  BlockReader reader(folder.write("out", content), buffer);
  Block block;
  try {
    while (reader.next(block)) {
    }
  } catch (const input_error& error) {
    const std::string message = error.what();
    return message.substr(message.find("line "));
  }
  return "";
}

TEST(BlockReader, TakesBlocksApartWhateverTheBuffer) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("out", pair + pair + "\n");
  for (const std::size_t buffer : {1U, 7U, 64U, 100000U}) {
    BlockReader reader(path, buffer);
    Block block;
    for (int i = 0; i < 2; ++i) {
      ASSERT_TRUE(reader.next(block));
      EXPECT_EQ(block.n, 2U);
      EXPECT_EQ(block.members[0].lemma, "heavy");
      EXPECT_EQ(block.members[0].tag, "");
      EXPECT_EQ(block.members[0].parent, 2U);
      EXPECT_EQ(block.members[1].lemma, "");
      EXPECT_EQ(block.members[1].relation, "Head");
      EXPECT_EQ(block.cells[0], 4U);
      EXPECT_EQ(block.measures[3], "1e-07");
      EXPECT_EQ(block.text, pair);
    }
    EXPECT_FALSE(reader.next(block));
  }
}

TEST(BlockReader, AcceptsAFileWithoutNGrams) {
  EXPECT_EQ(_error("\n"), "");
}

TEST(BlockReader, RefusesEveryTruncation) {
  const std::string whole = pair + pair + "\n";
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_NE(_error(whole.substr(0, size)), "") << size;
  EXPECT_EQ(_error(whole), "");
}

TEST(BlockReader, NamesTheLineOfAFault) {
  const auto starts = [](const std::string& text, const std::string& beginning) { return text.starts_with(beginning); };
  EXPECT_PRED2(starts, _error("hello\n"), "line 1: expected word 1");
  EXPECT_PRED2(starts, _error(pair + "1\ta\t\t0\tHead\n3\tb\t\t1\tSb\n"), "line 7: expected the position 2");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t1\tSb\n1\t1\t1\t1\n"), "line 2: the parents");
  EXPECT_PRED2(starts, _error("1\ta\t\t5\tSb\n2\tb\t\t0\tSb\n1\t1\t1\t1\n"), "line 1: the parent 5");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\t1\n"), "line 3: expected 4 cells");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\tx\t1\n"), "line 3: expected a whole number");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\t1\t1\n1\t2\n"), "line 4: expected 6 measures");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\t1\t1\n1\t2\t3\t4\t5\tsix\n"),
               "line 4: expected a n");
  EXPECT_PRED2(starts, _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\t1\t1\t\n"), "line 3: expected 4 cells");
  EXPECT_PRED2(starts,
               _error("1\ta\t\t2\tSb\n2\tb\t\t0\tSb\n1\t1\t1\t1\n" + std::string(400, '9') + "\t1\t1\t1\t1\t1\n"),
               "line 4: expected a number");
  EXPECT_PRED2(starts, _error("\x1e\x8b\xc2\x9b\xc3\xa9\n"),
               "line 1: expected word 1 of an N-gram (position, lemma, tag, "
               "parent, relation, separated by TABs), found \"\\x1e\\x8b?\xc3\xa9\"");
  EXPECT_PRED2(starts, _error(pair + "\n" + pair + "\n"), "line 7: expected the end");
  EXPECT_PRED2(starts,
               _error(pair + "1\ta\t\t0\tHead\n2\tb\t\t1\tSb\n3\tc\t\t2\tObj\n1\t0\t0\t0\t0\t0\t0\t1\n1\t2\n\n\n"),
               "line 6: an N-gram of 3 words");
}

}  // namespace
}  // namespace colx::table
