#include "import/xpos_lengths.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace colx {
namespace {

// A word on each line of a file.
class Treebank {
 public:
  Treebank& words(int count, const std::string& xpos) {
    for (int i = 0; i < count; ++i)
      lengths.add(xpos, "bank", ++_line);
    return *this;
  }
  XposLengths lengths;

 private:
  std::uint64_t _line = 0;
};

TEST(XposLengths, ArePositionalWhenAllAreSpecifiedAndEquallyLong) {
  EXPECT_EQ(Treebank().words(1, "NN").words(2, "VB").lengths.positional_length(), 2U);
  EXPECT_EQ(Treebank().lengths.positional_length(), 0U);
  EXPECT_EQ(Treebank().words(3, "_").lengths.positional_length(), 0U);
  EXPECT_EQ(Treebank().words(3, "").lengths.positional_length(), 0U);
  EXPECT_EQ(Treebank().words(3, "NN").words(1, "VBD").lengths.positional_length(), 0U);
  EXPECT_EQ(Treebank().words(3, "NN").words(1, "_").lengths.positional_length(), 0U);
}

TEST(XposLengths, AllowOneOddTagInAThousandWords) {
  EXPECT_EQ(Treebank().words(1, "X@").words(999, "NNFS1").lengths.positional_length(), 5U);
  EXPECT_EQ(Treebank().words(1, "X@").words(998, "NNFS1").lengths.positional_length(), 0U);
  EXPECT_EQ(Treebank().words(1, "X@").words(1998, "NNFS1").words(1, "_").lengths.positional_length(), 5U);
  EXPECT_EQ(Treebank().words(1, "X@").words(1997, "NNFS1").words(1, "_").lengths.positional_length(), 0U);
}

TEST(XposLengths, SayWhichTagWasRefusedAndWhere) {
  EXPECT_EQ(Treebank().words(2, "NN").words(1, "VBD").words(1, "_").lengths.refusal(),
            "XPOS is not taken: expected tags of length 2, found \"VBD\" at bank:3; of the first 4 words 2 have no tag "
            "of that length");
  EXPECT_EQ(Treebank().words(1, "_").words(2, "NN").lengths.refusal(),
            "XPOS is not taken: expected tags of length 2, found \"_\" at bank:1; of the first 3 words 1 have no tag "
            "of that length");
  EXPECT_EQ(Treebank().words(2, "_").lengths.refusal(), "XPOS is not taken: no word has one");
}

TEST(XposLengths, AreLookedAtToTheEndUnlessManyAreOdd) {
  EXPECT_FALSE(Treebank().words(100, "A").words(100, "BB").lengths.decided());
  EXPECT_TRUE(Treebank().words(101, "A").words(101, "BB").lengths.decided());
  EXPECT_FALSE(Treebank().words(10100, "A").words(101, "BB").lengths.decided());
  EXPECT_TRUE(Treebank().words(9998, "A").words(101, "BB").lengths.decided());
  EXPECT_TRUE(Treebank().words(101, "_").lengths.decided());
}

TEST(XposLengths, BringATagToTheCommonLength) {
  EXPECT_EQ(brought_to_length("NN", 4), "NN--");
  EXPECT_EQ(brought_to_length("NNFS1", 4), "NNFS");
  EXPECT_EQ(brought_to_length("NNFS", 4), "NNFS");
  EXPECT_EQ(brought_to_length("_", 3), "---");
  EXPECT_EQ(brought_to_length("", 3), "---");
  EXPECT_EQ(brought_to_length("a\xC3\xA9x", 2), "a-") << "no character is cut in two";
  EXPECT_EQ(brought_to_length("a\xC3\xA9x", 3), "a\xC3\xA9");
}

}  // namespace
}  // namespace colx
