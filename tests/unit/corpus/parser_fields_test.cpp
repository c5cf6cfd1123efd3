// How the parser prepares lemmas and tags before they are interned.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "corpus/parser.h"
#include "tests/support/random.h"

namespace colx {
namespace {

std::string _cut(std::string lemma) {
  cut_lemma(lemma);
  return lemma;
}

std::string _masked(std::string tag, const char* mask) {
  mask_tag(tag, mask);
  return tag;
}

TEST(CutLemma, CutsAtTheFirstTechnicalSuffix) {
  EXPECT_EQ(_cut("go_(to_move)"), "go");
  EXPECT_EQ(_cut("a'b"), "a");
  EXPECT_EQ(_cut("a:b"), "a");
  EXPECT_EQ(_cut("a;b"), "a");
  EXPECT_EQ(_cut("a^b"), "a");
  EXPECT_EQ(_cut("a_b"), "a");
  EXPECT_EQ(_cut("a;b:c'd^e_f"), "a");
  EXPECT_EQ(_cut("a_"), "a");
}

TEST(CutLemma, LeavesNothingOfALemmaThatBeginsWithASuffix) {
  EXPECT_EQ(_cut(":"), "");
  EXPECT_EQ(_cut(":go"), "");
  EXPECT_EQ(_cut("_"), "");
}

TEST(CutLemma, LeavesEveryOtherLemmaAsItIs) {
  EXPECT_EQ(_cut(""), "");
  EXPECT_EQ(_cut("sleep-1"), "sleep-1");
  EXPECT_EQ(_cut("a.b,c`d\"e"), "a.b,c`d\"e");
}

TEST(CutLemma, CutsAtNoByteButTheFive) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string lemma = std::string("x") + static_cast<char>(byte) + "y";
    const bool is_suffix = byte == 39 || byte == 58 || byte == 59 || byte == 94 || byte == 95;
    EXPECT_EQ(_cut(lemma), is_suffix ? "x" : lemma) << byte;
  }
}

TEST(CutLemma, AgreesWithALoopOverTheCharacters) {
  test::Random random;
  for (int round = 0; round < 10000; ++round) {
    const std::string lemma = random.text(8, "abc\xC3\xA9.-':;^_");
    std::string expected;
    for (const char c : lemma) {
      if (c == '\'' || c == ':' || c == ';' || c == '^' || c == '_') break;
      expected += c;
    }
    ASSERT_EQ(_cut(lemma), expected) << lemma;
  }
}

TEST(MaskTag, KeepsSignificantPositionsOnly) {
  EXPECT_EQ(_masked("NNFP1", "**-*"), "NN-P");
  EXPECT_EQ(_masked("VB-P-", "**-*"), "VB-P");
  EXPECT_EQ(_masked("NNFP1", "-----"), "-----");
  EXPECT_EQ(_masked("NNFP1", "*****"), "NNFP1");
}

TEST(MaskTag, MakesTagsThatAgreeWhereItMattersTheSame) {
  for (const char* const tag : {"AB", "AC", "A", "A-", "ABC"})
    EXPECT_EQ(_masked(tag, "*-"), "A-") << tag;
}

TEST(MaskTag, BringsTheTagToTheLengthOfTheMask) {
  EXPECT_EQ(_masked("N", "****"), "N---");
  EXPECT_EQ(_masked("NNFP1", "**"), "NN");
  EXPECT_EQ(_masked("", "**"), "--");
}

TEST(MaskTag, KeepsNothingWithoutAMask) {
  EXPECT_EQ(_masked("NNFP1", nullptr), "");
  EXPECT_EQ(_masked("NNFP1", ""), "");
  EXPECT_EQ(_masked("", nullptr), "");
}

TEST(MaskTag, AgreesWithALoopOverTheCharacters) {
  test::Random random;
  for (int round = 0; round < 10000; ++round) {
    const std::string mask = random.text(6, "*-");
    const std::string tag = random.text(8, "AB*-\xC3\xA9");
    std::string expected;
    for (std::size_t p = 0; p < mask.size(); ++p)
      expected += p < tag.size() && mask[p] == '*' ? tag[p] : '-';
    ASSERT_EQ(_masked(tag, mask.c_str()), expected) << tag << " under " << mask;
  }
}

}  // namespace
}  // namespace colx
