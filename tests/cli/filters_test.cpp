// Morphological filters from outside: which rule lines count, what a pattern admits, and what the filter statistics
// say.
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

// An adjective before its noun. The filter sees the tags from the last word to the first: N, A.
const std::string adjective_corpus =
    "1 w heavy A 2 Atr\n"
    "2 w rain N 0 Sb\n"
    "\n";

class FiltersTest : public CliTest {
 protected:
  // The filter statistics of a run with these rules, without the block of the datafile.
  std::string overall_matches(const std::string& corpus, const std::string& rules, const std::string& mask = "*",
                              const std::string& n = "2") const {
    write_corpus(corpus);
    write("rules", rules);
    run_clean(n, {"-m", mask, "-f", "rules", "-fs", "filter", "-s", "statistics"});
    const std::string text = read("filter");
    const std::string title = "Overall passed " + n + "-grams statistics:\n";
    const std::size_t begin = text.find(title);
    return begin == std::string::npos ? "none" : text.substr(begin + title.size());
  }
};

TEST_F(FiltersTest, FirstPatternConstrainsTheLastWord) {
  EXPECT_EQ(overall_matches(adjective_corpus, "N A\n"), " N A\t1\n\n");
  EXPECT_EQ(overall_matches(adjective_corpus, "A N\n"), " A N\t0\n\n");
  EXPECT_EQ(overall_matches("1 w a A 2 Atr\n2 w b B 3 Atr\n3 w c C 0 Sb\n\n", "A B C\nC B A\n", "*", "3"),
            " A B C\t0\n C B A\t1\n\n");
}

TEST_F(FiltersTest, FilteredPairsAreStillCountedByTheirAdmittedParts) {
  // The rain is admitted where the rule asks for N; neither the pair nor heavy alone pass the X.
  EXPECT_EQ(overall_matches(adjective_corpus, "N X\n"), " N X\t0\n\n");
  const std::string counts =
      "# of words: 2\n"
      "# of sentences: 1\n"
      "# of 2-grams extracted: 1\n"
      "# of 2-grams passed: 0\n"
      "# of 2-grams filtered: 1\n"
      "\n";
  EXPECT_EQ(read("statistics"), "Statistics for datafile corpus.dat:\n" + counts + "Overall datafiles statistics:\n" +
                                    counts +
                                    "Strings storage statistics:\n"
                                    "# of unique lemmas: 2\n"
                                    "# of unique tags: 2\n"
                                    "\n"
                                    "2-grams storage statistics:\n"
                                    "# of unique 2-grams of type 0: 1\n"
                                    "# of unique 2-grams of type 1: 1\n"
                                    "# of unique 2-grams of type 2: 0\n"
                                    "# of unique 2-grams of type 3: 0\n"
                                    "\n");
  EXPECT_EQ(read("output"), "\n");
}

TEST_F(FiltersTest, FilteredPairsCountInTheWholeNumber) {
  // Two pairs, one admitted: F = {2, 1, 1, 1}; cells 2 - 0 - 0 - 1 = 1, 1 - 1 = 0, 1 - 1 = 0, 1.
  overall_matches(adjective_corpus + "1 w old X 2 Atr\n2 w man Y 0 Sb\n\n", "N A\n");
  EXPECT_EQ(read("output").find("1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n1\t0\t0\t1\n"), 0u);
  EXPECT_NE(read("statistics").find("# of 2-grams extracted: 2\n# of 2-grams passed: 1\n# of 2-grams filtered: 1\n"),
            std::string::npos);
}

TEST_F(FiltersTest, FirstRuleThatAdmitsIsCounted) {
  EXPECT_EQ(overall_matches(adjective_corpus, "N -\n- A\nN -\n"), " N -\t1\n - A\t0\n N -\t0\n\n");
  EXPECT_EQ(overall_matches(adjective_corpus, "X -\n- A\n- -\n"), " X -\t0\n - A\t1\n - -\t0\n\n");
}

TEST_F(FiltersTest, LinesOfAnotherMemberCountAreDropped) {
  // One pattern, three, two spaces between, a leading space too many, a tab instead of a space.
  EXPECT_EQ(overall_matches(adjective_corpus, "N\nN A X\nN  A\n N A\nN\tA\n\nN A\n"), " N A\t1\n\n");
}

TEST_F(FiltersTest, TrailingSpaceAddsNoMember) {
  EXPECT_EQ(overall_matches(adjective_corpus, "N A \n"), " N A\t1\n\n");
  // Two of them add an empty one.
  EXPECT_EQ(overall_matches(adjective_corpus, "N A  \nN -\n"), " N -\t1\n\n");
}

TEST_F(FiltersTest, LeadingSpaceMakesAnEmptyMemberThatConstrainsNothing) {
  EXPECT_EQ(overall_matches(adjective_corpus, " A\n"), "  A\t1\n\n");
  EXPECT_EQ(overall_matches(adjective_corpus, " X\n"), "  X\t0\n\n");
}

TEST_F(FiltersTest, LastRuleNeedsNoLineEnd) {
  EXPECT_EQ(overall_matches(adjective_corpus, "X X\nN A"), " X X\t0\n N A\t1\n\n");
}

TEST_F(FiltersTest, CarriageReturnBelongsToThePattern) {
  // The tag is shorter, and only the common length is compared.
  EXPECT_EQ(overall_matches(adjective_corpus, "N A\r\n"), " N A\r\t1\n\n");
  EXPECT_EQ(overall_matches(adjective_corpus, "N A\r\n", "**"), " N A\r\t0\n\n");  // the tag is "A-" here
}

TEST_F(FiltersTest, OnlyTheCommonLengthIsCompared) {
  const std::string corpus = "1 w a NNS 2 Atr\n2 w b NNS 0 Sb\n\n";
  EXPECT_EQ(overall_matches(corpus, "NN NNS\n", "***"), " NN NNS\t1\n\n");
  EXPECT_EQ(overall_matches(corpus, "NN-P NNX\n", "**"), " NN-P NNX\t1\n\n");
  EXPECT_EQ(overall_matches(corpus, "NNX NN\n", "***"), " NNX NN\t0\n\n");
}

TEST_F(FiltersTest, PatternsAreComparedWithMaskedTags) {
  const std::string corpus = "1 w a XA 2 Atr\n2 w b XN 0 Sb\n\n";
  // Under the mask the tags are -A and -N: the mark in a tag is an ordinary character.
  EXPECT_EQ(overall_matches(corpus, "XN XA\n-N -A\n", "-*"), " XN XA\t0\n -N -A\t1\n\n");
}

TEST_F(FiltersTest, EmptyTagsAreAdmittedByTheFirstRule) {
  EXPECT_EQ(overall_matches(adjective_corpus, "X X\nN A\n", ""), " X X\t1\n N A\t0\n\n");
}

TEST_F(FiltersTest, FilterWithoutRulesIsOff) {
  for (const char* rules : {"", "\n\n", "N\nN A X\n"}) {
    EXPECT_EQ(overall_matches(adjective_corpus, rules), "\n");
    EXPECT_EQ(read("filter"), "Overall passed 2-grams statistics:\n\n");
    EXPECT_EQ(read("statistics").find("passed"), std::string::npos);
    EXPECT_NE(read("output"), "\n");
  }
}

TEST_F(FiltersTest, GapOfAPatternConstrainsNothing) {
  // A, B, C from first to last: types are 7 ABC, 6 AB_, 5 A_C, 4 A__, 3 _BC, 2 _B_, 1 __C. The rule wants C last and A
  // first but something else between them: 1, 4 and 5 are admitted.
  overall_matches("1 w a A 2 Atr\n2 w b B 3 Atr\n3 w c C 0 Sb\n\n", "C X A\n", "*", "3");
  EXPECT_NE(read("statistics")
                .find("# of unique 3-grams of type 1: 1\n"
                      "# of unique 3-grams of type 2: 0\n"
                      "# of unique 3-grams of type 3: 0\n"
                      "# of unique 3-grams of type 4: 1\n"
                      "# of unique 3-grams of type 5: 1\n"
                      "# of unique 3-grams of type 6: 0\n"
                      "# of unique 3-grams of type 7: 0\n"),
            std::string::npos);
}

TEST_F(FiltersTest, StatisticsOfDatafilesStandInTheByteOrderOfTheirPaths) {
  write("b", adjective_corpus + adjective_corpus);
  write("a", adjective_corpus);
  write("Z", "1 w x X 0 Sb\n\n");
  write("list", "b\na\nZ\n");
  write("rules", "N A\nX X\n");
  run_clean("2", {"-m", "*", "-f", "rules", "-fs", "filter"});
  EXPECT_EQ(read("filter"),
            "Passed 2-grams statistics for datafile Z:\n N A\t0\n X X\t0\n\n"
            "Passed 2-grams statistics for datafile a:\n N A\t1\n X X\t0\n\n"
            "Passed 2-grams statistics for datafile b:\n N A\t2\n X X\t0\n\n"
            "Overall passed 2-grams statistics:\n N A\t3\n X X\t0\n\n");
}

TEST_F(FiltersTest, DatafileThatStandsTwiceHasOneBlock) {
  write_corpus(adjective_corpus);
  write("list", "corpus.dat\ncorpus.dat\n");
  write("rules", "N A\n");
  run_clean("2", {"-m", "*", "-f", "rules", "-fs", "filter"});
  EXPECT_EQ(read("filter"),
            "Passed 2-grams statistics for datafile corpus.dat:\n N A\t1\n\n"
            "Overall passed 2-grams statistics:\n N A\t2\n\n");
}

TEST_F(FiltersTest, BlockOfADatafileIsThatOfItsFirstReading) {
  // The second time the pipe is empty.
  write("list", "/dev/stdin\n/dev/stdin\n");
  write("rules", "N A\n");
  RunOptions options;
  options.input = adjective_corpus;
  EXPECT_EQ(run_job("2", {"-m", "*", "-f", "rules", "-fs", "filter"}, options).status, 0);
  EXPECT_EQ(read("filter"),
            "Passed 2-grams statistics for datafile /dev/stdin:\n N A\t1\n\n"
            "Overall passed 2-grams statistics:\n N A\t1\n\n");
}

class ContextFilterTest : public CliTest {
 protected:
  // The pair (x, y) with the words k (tag A) and l (tag B) behind it; l is its right neighbour.
  std::string pair_contexts(const std::string& rules, const std::string& mask = "*") const {
    write_corpus("1 w x T 2 Sb\n2 w y T 0 Pred\n3 w l B 0 ExD\n4 w k AC 0 ExD\n\n");
    write("rules", rules);
    run_clean("2", {"-m", mask, "-c", "contexts", "-cf", "rules"});
    return read("contexts");
  }
};

TEST_F(ContextFilterTest, OnlyAdmittedWordsAreWideContextsAndNarrowOnesAreNotFiltered) {
  EXPECT_EQ(pair_contexts("A\n"),
            "1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\nk\tA\t1\n\n\n"
            "1\tx\tT\t2\tSb\n2\t*\n\nk\tA\t1\n\n\n"
            "1\t*\n2\ty\tT\t0\tHead\n\nk\tA\t1\n\n\n"
            "\n");
}

TEST_F(ContextFilterTest, AnyRuleAdmits) {
  EXPECT_EQ(pair_contexts("X\nB\nA\n").find("1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\nl\tB\t1\nk\tA\t1\n\n\n"),
            0u);
  EXPECT_EQ(pair_contexts("-\n").find("1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\nl\tB\t1\nk\tA\t1\n\n\n"), 0u);
}

TEST_F(ContextFilterTest, WholeLineIsThePattern) {
  // A blank is a character like any other: " A" fails at its first one, "A A" is longer than the tag.
  EXPECT_EQ(pair_contexts(" A\n").find("1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\n\n\n"), 0u);
  EXPECT_EQ(pair_contexts("A A").find("1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\nk\tA\t1\n\n\n"), 0u);
  EXPECT_EQ(pair_contexts("A A", "**").find("1\tx\tT-\t2\tSb\n2\ty\tT-\t0\tHead\n\nl\tB-\t1\n\n\n\n"), 0u);
}

TEST_F(ContextFilterTest, WithoutRulesEveryWordIsContext) {
  EXPECT_EQ(pair_contexts("\n").find("1\tx\tT\t2\tSb\n2\ty\tT\t0\tHead\n\nl\tB\t1\n\nl\tB\t1\nk\tA\t1\n\n\n"), 0u);
}

}  // namespace
}  // namespace colx::cli
