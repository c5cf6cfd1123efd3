// Which connected pieces of a sentence are counted, seen from outside in the statistics and the blocks.
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

class SubtreesTest : public CliTest {
 protected:
  // "extracted/distinct": occurrences of whole pieces, and different ones among them.
  std::string counts(const std::string& corpus, const std::string& n) const {
    write_corpus(corpus);
    run_clean(n, {"-s", "statistics"});
    const unsigned int full_type = (1u << static_cast<unsigned int>(n.front() - '0')) - 1;
    return _number_behind("# of " + n + "-grams extracted: ") + "/" +
           _number_behind("# of unique " + n + "-grams of type " + std::to_string(full_type) + ": ");
  }

 private:
  std::string _number_behind(const std::string& label) const {
    const std::string text = read("statistics");
    const std::size_t begin = text.find(label);
    if (begin == std::string::npos) return "none";
    return text.substr(begin + label.size(), text.find('\n', begin) - begin - label.size());
  }
};

const std::string chain =
    "1 w a T 0 Pred\n"
    "2 w b T 1 Obj\n"
    "3 w c T 2 Obj\n"
    "\n";
const std::string fork_corpus =
    "1 w a T 0 Pred\n"
    "2 w b T 1 Obj\n"
    "3 w c T 1 Obj\n"
    "\n";

TEST_F(SubtreesTest, ChainHasItsLinks) {
  EXPECT_EQ(counts(chain, "2"), "2/2");
  EXPECT_EQ(counts(chain, "3"), "1/1");
  EXPECT_EQ(counts(chain, "4"), "0/0");
}

TEST_F(SubtreesTest, ForkHasItsTwoPairsAndOneTriple) {
  EXPECT_EQ(counts(fork_corpus, "2"), "2/2");
  EXPECT_EQ(counts(fork_corpus, "3"), "1/1");
  EXPECT_EQ(read("output").find("1\ta\t\t0\tHead\n2\tb\t\t1\tObj\n3\tc\t\t1\tObj\n"), 0u);
}

TEST_F(SubtreesTest, SentenceOfExactlyNWordsIsOnePiece) {
  std::string corpus = "1 w r T 0 Pred\n";
  for (int order = 2; order <= 7; ++order)
    corpus += std::to_string(order) + " w c T 1 Obj\n";
  EXPECT_EQ(counts(corpus, "7"), "1/1");
  // Six leaves of the same lemma: pairs differ in nothing.
  EXPECT_EQ(counts(corpus, "2"), "6/1");
  // 6 choose 2, all alike.
  EXPECT_EQ(counts(corpus, "3"), "15/1");
}

TEST_F(SubtreesTest, JoiningTwoChildrenRepeatsSomeCombinations) {
  // r has the children c and d, c has the leaves e and f, d has g and h. Pieces of five words are r with four words
  // split 3 + 1: {c, e, f, d}; 2 + 2: c offers {e, c}, {f, c}, d offers {g, d}, {h, d}, joined to e+g, e+g, f+h, f+h;
  // and 1 + 3: {c, d, g, h}. Six occurrences, four different ones.
  const std::string corpus =
      "1 w r T 0 Pred\n"
      "2 w c T 1 Obj\n"
      "3 w d T 1 Obj\n"
      "4 w e T 2 Atr\n"
      "5 w f T 2 Atr\n"
      "6 w g T 3 Atr\n"
      "7 w h T 3 Atr\n"
      "\n";
  EXPECT_EQ(counts(corpus, "5"), "6/4");
  const std::string head = "1\tr\t\t0\tHead\n2\tc\t\t1\tObj\n3\td\t\t1\tObj\n";
  // The pair of e and g was seen twice: the last of the 32 cells is 2.
  const std::string output = read("output");
  const std::size_t twice = output.find(head + "4\te\t\t2\tAtr\n5\tg\t\t3\tAtr\n");
  ASSERT_NE(twice, std::string::npos);
  const std::size_t cells = output.find("\n0", twice) + 1;
  EXPECT_EQ(output.substr(output.find('\n', cells) - 2, 3), "\t2\n");
  EXPECT_NE(output.find(head + "4\tf\t\t2\tAtr\n5\th\t\t3\tAtr\n"), std::string::npos);
  EXPECT_EQ(output.find(head + "4\te\t\t2\tAtr\n5\th\t\t3\tAtr\n"), std::string::npos);
  EXPECT_EQ(output.find(head + "4\tf\t\t2\tAtr\n5\tg\t\t3\tAtr\n"), std::string::npos);
  // Two words: six links. Three words: r c d, r c e, r c f, r d g, r d h, c e f, d g h.
  EXPECT_EQ(counts(corpus, "2"), "6/6");
  EXPECT_EQ(counts(corpus, "3"), "7/7");
  EXPECT_EQ(counts(corpus, "7"), "1/1");
}

TEST_F(SubtreesTest, WordsOfOneParentOutsideTheSentenceAreNotJoined) {
  EXPECT_EQ(counts("1 w a T 0 Pred\n2 w b T 0 Pred\n\n", "2"), "0/0");
  EXPECT_EQ(counts("1 w a T 9 Obj\n2 w b T 9 Obj\n\n", "2"), "0/0");
}

TEST_F(SubtreesTest, ParentBeyondTheSentenceCountsAsNone) {
  EXPECT_EQ(counts("1 w a T 65535 Obj\n2 w b T 1 Obj\n\n", "2"), "1/1");
  EXPECT_EQ(read("output").find("1\ta\t\t0\tHead\n2\tb\t\t1\tObj\n"), 0u);
}

TEST_F(SubtreesTest, CyclesYieldNothingButPiecesBelowThemAreFound) {
  // a and b are each other's parent.
  EXPECT_EQ(counts("1 w a T 2 Obj\n2 w b T 1 Obj\n\n", "2"), "0/0");
  // d hangs on c, c on the cycle: only (c, d) is found.
  EXPECT_EQ(counts("1 w a T 2 Obj\n2 w b T 1 Obj\n3 w c T 1 Obj\n4 w d T 3 Obj\n\n", "2"), "1/1");
  EXPECT_EQ(read("output").find("1\tc\t\t0\tHead\n2\td\t\t1\tObj\n"), 0u);
}

TEST_F(SubtreesTest, WordThatIsItsOwnParentYieldsNothing) {
  EXPECT_EQ(counts("1 w a T 1 Obj\n2 w b T 1 Obj\n\n", "2"), "0/0");
  EXPECT_EQ(counts("1 w a T 1 Obj\n2 w b T 1 Obj\n3 w c T 2 Obj\n\n", "2"), "1/1");
}

TEST_F(SubtreesTest, WideFanOutIsEnumerated) {
  std::string corpus = "1 w r T 0 Pred\n";
  for (int order = 2; order <= 1101; ++order)
    corpus += std::to_string(order) + " w c T 1 Obj\n";
  EXPECT_EQ(counts(corpus, "2"), "1100/1");
  // 1100 * 1099 / 2
  EXPECT_EQ(counts(corpus, "3"), "604450/1");
}

}  // namespace
}  // namespace colx::cli
