// The statistics file from outside, byte for byte.
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

// Five words, four of them children of the first: four pairs.
const std::string star =
    "1 w a T 0 Pred\n"
    "2 w b T 1 Obj\n"
    "3 w c T 1 Obj\n"
    "4 w d T 1 Obj\n"
    "5 w e T 1 Obj\n"
    "\n";

class StatisticsTest : public CliTest {};

TEST_F(StatisticsTest, OneDatafileWithoutAFilter) {
  write("a", star + star);
  write("list", "a\n");
  run_clean("2", {"-s", "statistics"});
  // The first word of every pair is a, the second one of the four others.
  EXPECT_EQ(read("statistics"),
            "Statistics for datafile a:\n"
            "# of words: 10\n"
            "# of sentences: 2\n"
            "# of 2-grams extracted: 8\n"
            "\n"
            "Overall datafiles statistics:\n"
            "# of words: 10\n"
            "# of sentences: 2\n"
            "# of 2-grams extracted: 8\n"
            "\n"
            "Strings storage statistics:\n"
            "# of unique lemmas: 5\n"
            "# of unique tags: 1\n"
            "\n"
            "2-grams storage statistics:\n"
            "# of unique 2-grams of type 0: 1\n"
            "# of unique 2-grams of type 1: 4\n"
            "# of unique 2-grams of type 2: 1\n"
            "# of unique 2-grams of type 3: 4\n"
            "\n");
}

TEST_F(StatisticsTest, DatafilesStandInTheirOrderAndAreSummedUp) {
  write("z", star);
  write("empty", "");
  write("a", star + "1 w only U 0 Pred\n\n");
  write("list", "z\nempty\na\n");
  write("rules", "- - V\n");  // the first word must be V, and none is
  run_clean("3", {"-s", "statistics", "-m", "*", "-f", "rules"});
  // Three words of a star: two of four children, 6 ways; a is first in each, then (b, c, d) and (c, d, e).
  EXPECT_EQ(read("statistics"),
            "Statistics for datafile z:\n"
            "# of words: 5\n"
            "# of sentences: 1\n"
            "# of 3-grams extracted: 6\n"
            "# of 3-grams passed: 0\n"
            "# of 3-grams filtered: 6\n"
            "\n"
            "Statistics for datafile empty:\n"
            "# of words: 0\n"
            "# of sentences: 0\n"
            "# of 3-grams extracted: 0\n"
            "# of 3-grams passed: 0\n"
            "# of 3-grams filtered: 0\n"
            "\n"
            "Statistics for datafile a:\n"
            "# of words: 6\n"
            "# of sentences: 2\n"
            "# of 3-grams extracted: 6\n"
            "# of 3-grams passed: 0\n"
            "# of 3-grams filtered: 6\n"
            "\n"
            "Overall datafiles statistics:\n"
            "# of words: 11\n"
            "# of sentences: 3\n"
            "# of 3-grams extracted: 12\n"
            "# of 3-grams passed: 0\n"
            "# of 3-grams filtered: 12\n"
            "\n"
            "Strings storage statistics:\n"
            "# of unique lemmas: 6\n"
            "# of unique tags: 2\n"
            "\n"
            "3-grams storage statistics:\n"
            "# of unique 3-grams of type 0: 1\n"
            "# of unique 3-grams of type 1: 3\n"
            "# of unique 3-grams of type 2: 3\n"
            "# of unique 3-grams of type 3: 6\n"
            "# of unique 3-grams of type 4: 0\n"
            "# of unique 3-grams of type 5: 0\n"
            "# of unique 3-grams of type 6: 0\n"
            "# of unique 3-grams of type 7: 0\n"
            "\n");
}

TEST_F(StatisticsTest, NothingReadIsAllZeroButTheEmptyPattern) {
  write_corpus("");
  run_clean("2", {"-s", "statistics"});
  const std::string counts = "# of words: 0\n# of sentences: 0\n# of 2-grams extracted: 0\n\n";
  EXPECT_EQ(read("statistics"), "Statistics for datafile corpus.dat:\n" + counts + "Overall datafiles statistics:\n" +
                                    counts +
                                    "Strings storage statistics:\n# of unique lemmas: 0\n# of unique tags: 0\n\n"
                                    "2-grams storage statistics:\n"
                                    "# of unique 2-grams of type 0: 1\n"
                                    "# of unique 2-grams of type 1: 0\n"
                                    "# of unique 2-grams of type 2: 0\n"
                                    "# of unique 2-grams of type 3: 0\n"
                                    "\n");
}

TEST_F(StatisticsTest, WordsOfDroppedSentencesCountOnlyInTheStores) {
  // The first line of the bad sentence was stored before the second turned out bad.
  write_corpus("1 w good T 0 Pred\n\n1 w bad U 0 Pred\n3 w worse V 0 Pred\n\n");
  EXPECT_EQ(run_job("2", {"-s", "statistics", "-m", "*"}).status, 0);
  EXPECT_EQ(read("statistics").find("Statistics for datafile corpus.dat:\n# of words: 1\n# of sentences: 1\n"), 0u);
  EXPECT_NE(read("statistics").find("# of unique lemmas: 2\n# of unique tags: 2\n"), std::string::npos);
}

TEST_F(StatisticsTest, LargestSizeListsAllPatterns) {
  write_corpus(star);
  run_clean("7", {"-s", "statistics"});
  const std::string text = read("statistics");
  EXPECT_NE(text.find("7-grams storage statistics:\n# of unique 7-grams of type 0: 1\n"), std::string::npos);
  const std::string last = "# of unique 7-grams of type 127: 0\n\n";
  EXPECT_EQ(text.substr(text.size() - last.size()), last);
}

}  // namespace
}  // namespace colx::cli
