#include "corpus/parser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "corpus/word_queue.h"
#include "tests/support/parsing.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using Lengths = std::vector<std::uint32_t>;

constexpr std::uint32_t everything = 4294967295;

std::string _mismatch(unsigned line, unsigned order, unsigned expected) {
  return "WARNING: Word order mismatch detected at line " + std::to_string(line) + ". Got word ordered as " +
         std::to_string(order) + ", while expecting " + std::to_string(expected) + ". Skipping current sentence...\n";
}

std::string _incorrect(unsigned line) {
  return "WARNING: Incorrect input format detected at line " + std::to_string(line) +
         ". Skipping current sentence...\n";
}

// Reads one text with stores of its own and keeps what is warned of.
class ParserTest : public ::testing::Test {
 protected:
  void input(const std::string& text) { _stream.str(text); }

  bool next(std::uint32_t limit = everything, ContextWindow::Mode mode = ContextWindow::sentences) {
    return parser.next(limit, mode, words);
  }

  // The lemmas read so far, a blank after each.
  std::string lemmas_read() const {
    std::string texts;
    for (const Word& word : words)
      texts += std::string(lemmas[word.lemma]) + ' ';
    return texts;
  }

  // Reads the whole text and expects these lemmas and warnings.
  void expect(const std::string& text, const std::string& expected_lemmas, const std::string& expected_warnings) {
    input(text);
    EXPECT_EQ(next(), !expected_lemmas.empty());
    EXPECT_EQ(lemmas_read(), expected_lemmas);
    EXPECT_EQ(warnings.text(), expected_warnings);
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

TEST_F(ParserTest, MakesWordsOfTheSixFields) {
  settings::morphologic_tag_mask = "**-*";
  input("1 Cats cat_:N NNFP1 2 Sb\n2 sleep sleep-1 VB-P- 0 Pred\n\n");
  ASSERT_TRUE(next());
  EXPECT_EQ(lemmas_read(), "cat sleep-1 ");
  ASSERT_EQ(words.size(), 2U);
  EXPECT_EQ(tags[words[0].tag], "NN-P");
  EXPECT_EQ(tags[words[1].tag], "VB-P");
  EXPECT_EQ(words[0].order, 1);
  EXPECT_EQ(words[1].order, 2);
  EXPECT_EQ(words[0].parent, 2);
  EXPECT_EQ(words[1].parent, 0);
  EXPECT_EQ(words[0].dependency, 113);
  EXPECT_EQ(words[1].dependency, 109);
  EXPECT_EQ(warnings.text(), "");
}

TEST_F(ParserTest, EndsTheLastSentenceAtTheEndOfTheInput) {
  for (const char* const end : {"", "\n", "\n\n"}) {
    std::istringstream stream(std::string("1 a a T 0 Pred\n2 b b T 1 Sb") + end);
    Parser fresh(stream, lemmas, tags, warnings.sink());
    words = WordQueue();
    EXPECT_TRUE(fresh.next(1, ContextWindow::sentences, words));
    EXPECT_EQ(test::lengths_of(fresh), Lengths{2});
    EXPECT_EQ(lemmas_read(), "a b ");
    EXPECT_FALSE(fresh.next(1, ContextWindow::sentences, words));
    EXPECT_TRUE(test::lengths_of(fresh).empty());
    EXPECT_TRUE(fresh.at_end());
  }
}

TEST_F(ParserTest, FindsNoSentenceInEmptyInput) {
  for (const char* const text : {"", "\n", "\n\n\n"}) {
    std::istringstream stream(text);
    Parser fresh(stream, lemmas, tags, warnings.sink());
    EXPECT_FALSE(fresh.next(1, ContextWindow::sentences, words));
    EXPECT_TRUE(words.empty());
    EXPECT_TRUE(fresh.at_end());
  }
}

TEST_F(ParserTest, CountsEmptyLinesBeforeTheFirstWordButMakesNoSentenceOfThem) {
  expect("\n\n\n1 a a T 0 Pred\n\n1 b b T 0 Pred\n3 c c T 0 Sb\n\n", "a ", _mismatch(7, 3, 2));
  EXPECT_EQ(test::lengths_of(parser), Lengths{1});
}

TEST_F(ParserTest, DropsTheWholeSentenceWhenOrdersDoNotRun) {
  expect("1 a a T 0 Pred\n2 b b T 1 Sb\n4 c c T 1 Sb\n5 d d T 1 Sb\n\n1 e e T 0 Pred\n\n", "e ", _mismatch(3, 4, 3));
  EXPECT_EQ(test::lengths_of(parser), Lengths{1});
}

TEST_F(ParserTest, ExpectsTheFirstWordToBeOrderedOne) {
  expect("0 a a T 0 Pred\n\n2 b b T 0 Pred\n\n1 c c T 0 Pred\n\n", "c ", _mismatch(1, 0, 1) + _mismatch(3, 2, 1));
}

TEST_F(ParserTest, DropsTheSentenceOfAParentThatIsNoNumber) {
  expect("1 a a T 0 Pred\n2 b b T x1 Sb\n3 c c T 1 Sb\n\n1 d d T 0 Pred\n\n", "d ", _incorrect(2));
}

TEST_F(ParserTest, DropsTheSentenceOfAnOrderThatIsNoNumber) {
  expect("1 a a T 0 Pred\nzwei b b T 1 Sb\n\n1 d d T 0 Pred\n\n", "d ", _incorrect(2));
}

TEST_F(ParserTest, DropsTheSentenceOfANumberBeyondThirtyTwoBits) {
  expect("1 a a T 4294967296 Pred\n\n1 b b T 4294967295 Pred\n\n", "b ", _incorrect(1));
  EXPECT_EQ(words[0].parent, 65535) << "the low 16 bits are kept";
}

TEST_F(ParserTest, DoesNotCheckParents) {
  expect("1 a a T 1 Pred\n2 b b T 77 Sb\n3 c c T 65537 Sb\n\n", "a b c ", "");
  EXPECT_EQ(words[0].parent, 1);
  EXPECT_EQ(words[1].parent, 77);
  EXPECT_EQ(words[2].parent, 1);
}

TEST_F(ParserTest, CodesAnUnknownRelationAsUndef) {
  expect("1 a a T 0 pred\n\n", "a ", "");
  EXPECT_EQ(words[0].dependency, 117);
}

TEST_F(ParserTest, EndsTheSentenceAtABlankAfterTheRelation) {
  expect("1 a a T 0 Pred \n2 b b T 1 Sb\n\n1 c c T 0 Pred\n\n", "a c ", _mismatch(3, 2, 1));
  EXPECT_EQ(test::lengths_of(parser), (Lengths{1, 1}));
}

// The return is the one character after the relation, so that each newline ends a sentence of one word; on the line of
// its own it is white space before the next order number.
TEST_F(ParserTest, EndsTheSentenceAfterEachWordWhenLinesEndInReturns) {
  expect("1 a a T 0 Pred\r\n\r\n1 b b T 0 Pred\r\n", "a b ", "");
  EXPECT_EQ(test::lengths_of(parser), (Lengths{1, 1}));
}

TEST_F(ParserTest, DoesNotEndSkippingAtALineOfAReturn) {
  expect("3 a a T 0 Pred\n\r\n1 b b T 0 Pred\n\r\n\n1 c c T 0 Pred\n", "c ", _mismatch(1, 3, 1));
}

TEST_F(ParserTest, TakesMissingFieldsFromTheLinesBelow) {
  expect("1 a a\nT 0\nPred\n2 b b T 1 Sb\n\n", "a b ", "");
  EXPECT_EQ(test::lengths_of(parser), Lengths{2});
}

TEST_F(ParserTest, CountsAWordOnSeveralLinesAsOneLine) {
  expect("1 a a\nT 0\nPred\n3 b b T 1 Sb\n\n", "", _mismatch(2, 3, 2));
}

TEST_F(ParserTest, CountsTheLinesItSkips) {
  expect("2 a a T 0 Sb\nskipped\nskipped\n\n2 a a T 0 Sb\n\n", "", _mismatch(1, 2, 1) + _mismatch(5, 2, 1));
}

// After a field that is no number the rest of its line is skipped like a line of its own.
TEST_F(ParserTest, CountsTheRestOfAMalformedLineOnceMore) {
  expect("x 1 2\nskipped\nskipped\n\n2 a a T 0 Sb\n\n", "", _incorrect(1) + _mismatch(6, 2, 1));
}

// What is not a number is taken off the line before the rest is skipped; nothing is left then but the newline.
TEST_F(ParserTest, TakesALineOfOneWrongCharacterForTheEndOfItsSentence) {
  expect("x\n1 a a T 0 Pred\n\n", "a ", _incorrect(1));
}

TEST_F(ParserTest, SkipsALineOf100000CharactersAsOne) {
  expect("2 a a T 0 Sb\n" + std::string(100000, 'x') + "\n\n5 b b T 0 Sb\n\n", "",
         _mismatch(1, 2, 1) + _mismatch(4, 5, 1));
}

// One character is taken and 100,000 are discarded, so that the newline after them looks like an empty line.
TEST_F(ParserTest, EndsSkippingAfterALineOf100001Characters) {
  expect("2 a a T 0 Sb\n" + std::string(100001, 'x') + "\n1 b b T 0 Pred\n\n", "b ", _mismatch(1, 2, 1));
}

TEST_F(ParserTest, CountsALongerLineAsSeveral) {
  expect("2 a a T 0 Sb\n" + std::string(100003, 'x') + "\n\n5 b b T 0 Sb\n\n", "",
         _mismatch(1, 2, 1) + _mismatch(5, 5, 1));
}

TEST_F(ParserTest, DropsAnIncompleteLastLineSilently) {
  for (const char* const tail :
       {"2", "2 b", "2 b b", "2 b b T", "2 b b T 1", "2 b b T 1 ", "2 b b T 1\n", " ", "\t \n"}) {
    std::istringstream stream(std::string("1 a a T 0 Pred\n") + tail);
    Parser fresh(stream, lemmas, tags, warnings.sink());
    words = WordQueue();
    EXPECT_TRUE(fresh.next(everything, ContextWindow::sentences, words)) << tail;
    EXPECT_EQ(test::lengths_of(fresh), Lengths{1}) << tail;
    EXPECT_EQ(lemmas_read(), "a ") << tail;
    EXPECT_FALSE(fresh.next(everything, ContextWindow::sentences, words)) << tail;
  }
  EXPECT_EQ(warnings.text(), "");
}

using Extents = std::vector<SentenceExtent>;

TEST_F(ParserTest, SaysWhereEachSentenceStood) {
  input("\n1 a a T 0 Pred\n2 b b T 1 Sb\n\n\n1 c c T 0 Pred\n\n1 d d T 0 Pred\n2 e");
  ASSERT_TRUE(next(2));
  // Two lines of 15 and 13 bytes after an empty one, then two empty ones.
  EXPECT_EQ(parser.sentences(), (Extents{{2, 2, 1, 29}, {1, 6, 31, 46}}));
  ASSERT_TRUE(next());
  EXPECT_EQ(parser.sentences(), (Extents{{1, 8, 47, 62}}));
  EXPECT_FALSE(next());
  EXPECT_EQ(parser.sentences(), Extents{});
}

TEST_F(ParserTest, SaysWhereASentenceStoodThatFollowsASkippedOne) {
  input("2 a a T 0 Pred\nskipped\n\n1 b b T 0 Pred\n");
  ASSERT_TRUE(next());
  EXPECT_EQ(parser.sentences(), (Extents{{1, 4, 24, 39}}));
}

TEST_F(ParserTest, AWordOnSeveralLinesIsOneLineOfItsSentence) {
  input("1 a a\nT 0\nPred\n2 b b T 1 Sb\n\n1 c c T 0 Pred");
  ASSERT_TRUE(next());
  EXPECT_EQ(parser.sentences(), (Extents{{2, 1, 0, 28}, {1, 4, 29, 43}}));
}

TEST_F(ParserTest, KeepsTheFormsOfTheWordsThatItReturnsWhenAskedTo) {
  std::istringstream stream(
      "1 Cats cat T 2 Sb\n2 sleep sleep T 0 Pred\n\n1 No no T 0 Sb\n3 x x T 0 Sb\n\n1  It\xC3\xA9'_ it T 0 Pred\n");
  WordForms forms;
  Parser keeping(stream, lemmas, tags, warnings.sink(), &forms);
  forms.push_back("before");
  ASSERT_TRUE(keeping.next(everything, ContextWindow::sentences, words));
  ASSERT_EQ(forms.size(), 4U);
  EXPECT_EQ(forms[0], "before");
  EXPECT_EQ(forms[1], "Cats");
  EXPECT_EQ(forms[2], "sleep");
  EXPECT_EQ(forms[3], "It\xC3\xA9'_");
  EXPECT_EQ(words.size(), 3U);
}

TEST_F(ParserTest, AWordHasNoPlaceForAForm) {
  EXPECT_EQ(sizeof(Word), 12U);
}

TEST_F(ParserTest, NeverTakesFieldsFromTheLineBefore) {
  expect("1 a a T 0 Pred\n2 b", "a ", "");
}

}  // namespace
}  // namespace colx
