// Where the parser stops: at the limits of a call, of a sentence and of the string stores.

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "base/errors.h"
#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "tests/support/parsing.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using Lengths = std::vector<std::uint32_t>;

// Sentences of these many words, the lemma and the tag of each word being its number in the text, from 0.
std::string _corpus(const std::vector<std::uint32_t>& lengths) {
  std::string text;
  unsigned number = 0;
  for (const std::uint32_t length : lengths) {
    for (std::uint32_t order = 1; order <= length; ++order, ++number) {
      const std::string name = std::to_string(number);
      text += std::to_string(order) + " w " + name + ' ' + name + " 0 Pred\n";
    }
    text += '\n';
  }
  return text;
}

class ParserLimits : public ::testing::Test {
 protected:
  void input(const std::string& text) { _stream.str(text); }

  // The lengths of the sentences that one call reads.
  Lengths next(std::uint32_t limit, ContextWindow::Mode mode) {
    const std::size_t before = words.size();
    const bool any = parser.next(limit, mode, words);
    const Lengths lengths = test::lengths_of(parser);
    EXPECT_EQ(any, !lengths.empty());
    std::size_t sum = 0;
    for (const std::uint32_t length : lengths)
      sum += length;
    EXPECT_EQ(words.size() - before, sum);
    return lengths;
  }

 private:
  const test::SettingsGuard _guard;
  std::istringstream _stream;

 protected:
  StringStore<std::uint32_t> lemmas{65535};
  StringStore<std::uint8_t> tags{65535};
  test::Warnings warnings;
  Parser parser{_stream, lemmas, tags, warnings.sink()};
  WordQueue words;
};

TEST_F(ParserLimits, ReadsAsManySentencesAsAskedFor) {
  input(_corpus({1, 2, 3, 4, 5}));
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{1}));
  EXPECT_EQ(next(3, ContextWindow::sentences), (Lengths{2, 3, 4}));
  EXPECT_EQ(next(3, ContextWindow::sentences), (Lengths{5}));
  EXPECT_EQ(next(3, ContextWindow::sentences), (Lengths{}));
}

TEST_F(ParserLimits, TestsTheLimitOfWordsAtSentenceEndsOnly) {
  input(_corpus({4, 4, 4}));
  EXPECT_EQ(next(5, ContextWindow::words), (Lengths{4, 4}));
  EXPECT_EQ(next(4, ContextWindow::words), (Lengths{4}));
}

TEST_F(ParserLimits, KeepsTheWordsThatWereThereBefore) {
  input("1 a a T 0 Pred\n\n1 b b T 0 Pred\n2 c c T 1 Sb\n7 d d T 1 Sb\n\n1 e e T 0 Pred\n\n");
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{1}));
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{1}));
  ASSERT_EQ(words.size(), 2U);
  EXPECT_EQ(lemmas[words[0].lemma], "a");
  EXPECT_EQ(lemmas[words[1].lemma], "e");
}

TEST_F(ParserLimits, CountsABadSentenceTowardsNoLimit) {
  input("1 a a T 0 Pred\n3 b b T 1 Sb\n\n" + _corpus({2, 2}));
  EXPECT_EQ(next(3, ContextWindow::words), (Lengths{2, 2}));
}

// An empty line is a sentence end for the limit, also when no sentence ends there.
TEST_F(ParserLimits, StopsAtAnEmptyLineOnceTheLimitIsReached) {
  input("\n\n" + _corpus({1, 1}));
  EXPECT_EQ(next(0, ContextWindow::sentences), (Lengths{}));
  EXPECT_EQ(next(0, ContextWindow::words), (Lengths{}));
  EXPECT_EQ(next(0, ContextWindow::words), (Lengths{1}));
}

TEST_F(ParserLimits, TakesASentenceOf65535Words) {
  input(_corpus({65535, 1}));
  EXPECT_EQ(next(2, ContextWindow::sentences), (Lengths{65535, 1}));
  EXPECT_EQ(words[65534].order, 65535);
  EXPECT_EQ(warnings.text(), "");
}

TEST_F(ParserLimits, DropsASentenceOf65536Words) {
  input(_corpus({65536, 1}));
  EXPECT_EQ(next(2, ContextWindow::sentences), (Lengths{1}));
  EXPECT_EQ(words.size(), 1U);
  EXPECT_EQ(
      warnings.text(),
      "WARNING: Word order overflow detected at line 65536. Got word ordered as 65536, while maximum allowed value "
      "for word order is 65535. Skipping current sentence...\n");
}

TEST_F(ParserLimits, ShowsTheExpectedOrderInTheWarningOfAnOverflow) {
  std::string text = _corpus({65535});
  text.back() = '3';  // in place of the empty line: the next word claims to be the third
  input(text + " w w T 0 Sb\n\n");
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{}));
  EXPECT_EQ(
      warnings.text(),
      "WARNING: Word order overflow detected at line 65536. Got word ordered as 65536, while maximum allowed value "
      "for word order is 65535. Skipping current sentence...\n");
}

TEST_F(ParserLimits, PassesOnTheOverflowOfTheTagStore) {
  settings::morphologic_tag_mask = "***";
  input(_corpus({254}));
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{254}));
  std::istringstream stream("1 w w new 0 Pred\n\n");
  Parser second(stream, lemmas, tags, warnings.sink());
  EXPECT_THROW(second.next(1, ContextWindow::sentences, words), index_overflow);
  EXPECT_EQ(tags.size(), 255U);
}

TEST_F(ParserLimits, InternsTheTagBeforeTheLemma) {
  settings::morphologic_tag_mask = "***";
  input(_corpus({254}));
  next(1, ContextWindow::sentences);
  std::istringstream stream("1 w unseen new 0 Pred\n\n");
  Parser second(stream, lemmas, tags, warnings.sink());
  EXPECT_THROW(second.next(1, ContextWindow::sentences, words), index_overflow);
  EXPECT_EQ(lemmas.size(), 254U);
}

TEST_F(ParserLimits, GivesAllWordsTheOneEmptyTagWithoutAMask) {
  input(_corpus({300}));
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{300}));
  EXPECT_EQ(tags.size(), 1U);
  EXPECT_EQ(tags[0], "");
}

TEST_F(ParserLimits, TakesALemmaOf65535BytesAndPassesOnThatALongerOneDoesNotFit) {
  const std::string longest(65535, 'x');
  input("1 w " + longest + " T 0 Pred\n\n1 w " + longest + "_cut T 0 Pred\n\n1 w " + longest + "x T 0 Pred\n\n");
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{1}));
  EXPECT_EQ(next(1, ContextWindow::sentences), (Lengths{1}));
  EXPECT_EQ(lemmas.size(), 1U);
  EXPECT_THROW(next(1, ContextWindow::sentences), string_too_long);
}

}  // namespace
}  // namespace colx
