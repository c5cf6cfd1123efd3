// How lemmas and tags are prepared before they are interned, and what a datafile may hold.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/errors.h"
#include "corpus/datafile_format.h"
#include "corpus/string_store.h"
#include "tests/support/random.h"

namespace colx {
namespace {

TEST(KeptLemma, EndsAtTheFirstTechnicalSuffix) {
  EXPECT_EQ(kept_lemma("go_(to_move)"), "go");
  EXPECT_EQ(kept_lemma("a'b"), "a");
  EXPECT_EQ(kept_lemma("a:b"), "a");
  EXPECT_EQ(kept_lemma("a;b"), "a");
  EXPECT_EQ(kept_lemma("a^b"), "a");
  EXPECT_EQ(kept_lemma("a_b"), "a");
  EXPECT_EQ(kept_lemma("a;b:c'd^e_f"), "a");
  EXPECT_EQ(kept_lemma("a_"), "a");
}

TEST(KeptLemma, LeavesNothingOfALemmaThatBeginsWithASuffix) {
  EXPECT_EQ(kept_lemma(":"), "");
  EXPECT_EQ(kept_lemma(":go"), "");
  EXPECT_EQ(kept_lemma("_"), "");
}

TEST(KeptLemma, LeavesEveryOtherLemmaAsItIs) {
  EXPECT_EQ(kept_lemma(""), "");
  EXPECT_EQ(kept_lemma("sleep-1"), "sleep-1");
  EXPECT_EQ(kept_lemma("a.b,c`d\"e"), "a.b,c`d\"e");
}

TEST(KeptLemma, EndsAtNoByteButTheFive) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string lemma = std::string("x") + static_cast<char>(byte) + "y";
    const bool is_suffix = byte == 39 || byte == 58 || byte == 59 || byte == 94 || byte == 95;
    EXPECT_EQ(kept_lemma(lemma), is_suffix ? "x" : lemma) << byte;
  }
}

TEST(KeptLemma, AgreesWithALoopOverTheCharacters) {
  test::Random random;
  for (int round = 0; round < 10000; ++round) {
    const std::string lemma = random.text(8, "abc\xC3\xA9.-':;^_");
    std::string expected;
    for (const char c : lemma) {
      if (c == '\'' || c == ':' || c == ';' || c == '^' || c == '_') break;
      expected += c;
    }
    ASSERT_EQ(kept_lemma(lemma), expected) << lemma;
  }
}

TEST(TagMask, IsMadeOfTheTwoMarks) {
  for (const char* const mask : {"*", "-", "**-*", "----"})
    EXPECT_TRUE(is_tag_mask(mask)) << mask;
  for (const char* const text : {"", "x", "*x", "* -", "**_"})
    EXPECT_FALSE(is_tag_mask(text)) << text;
}

TEST(MaskedTag, KeepsSignificantPositionsOnly) {
  EXPECT_EQ(masked_tag("NNFP1", "**-*"), "NN-P");
  EXPECT_EQ(masked_tag("VB-P-", "**-*"), "VB-P");
  EXPECT_EQ(masked_tag("NNFP1", "-----"), "-----");
  EXPECT_EQ(masked_tag("NNFP1", "*****"), "NNFP1");
}

TEST(MaskedTag, MakesTagsThatAgreeWhereItMattersTheSame) {
  for (const char* const tag : {"AB", "AC", "A", "A-", "ABC"})
    EXPECT_EQ(masked_tag(tag, "*-"), "A-") << tag;
}

TEST(MaskedTag, BringsTheTagToTheLengthOfTheMask) {
  EXPECT_EQ(masked_tag("N", "****"), "N---");
  EXPECT_EQ(masked_tag("NNFP1", "**"), "NN");
  EXPECT_EQ(masked_tag("", "**"), "--");
}

TEST(MaskedTag, KeepsNothingUnderAnEmptyMask) {
  EXPECT_EQ(masked_tag("NNFP1", ""), "");
  EXPECT_EQ(masked_tag("", ""), "");
}

TEST(MaskedTag, AgreesWithALoopOverTheCharacters) {
  test::Random random;
  for (int round = 0; round < 10000; ++round) {
    const std::string mask = random.text(6, "*-");
    const std::string tag = random.text(8, "AB*-\xC3\xA9");
    std::string expected;
    for (std::size_t p = 0; p < mask.size(); ++p)
      expected += p < tag.size() && mask[p] == '*' ? tag[p] : '-';
    ASSERT_EQ(masked_tag(tag, mask), expected) << tag << " under " << mask;
  }
}

TEST(DatafileLimits, AreThoseOfTheStores) {
  StringStore<std::uint8_t> tags(longest_text);
  for (std::size_t i = 0; i < most_distinct_tags; ++i)
    tags.store(std::to_string(i));
  EXPECT_THROW(tags.store("one more"), index_overflow);
  StringStore<std::uint32_t> lemmas(longest_text);
  lemmas.store(std::string(longest_text, 'x'));
  EXPECT_THROW(lemmas.store(std::string(longest_text + 1, 'x')), string_too_long);
}

}  // namespace
}  // namespace colx
