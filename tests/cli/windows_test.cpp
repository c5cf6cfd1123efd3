// Context windows from outside: the contexts file byte for byte on tiny corpora, and how reading ahead ends the
// extraction early. Blocks of one type come in the order of the buckets, that is of the hash modulo 193; each test says
// the buckets.
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

// Two pairs, both sentences ended by an empty line. Lemmas x 0, y 1, p 2, q 3.
const std::string two_pairs =
    "1 x x T 2 Sb\n"
    "2 y y T 0 Pred\n"
    "\n"
    "1 p p T 0 Pred\n"
    "2 q q T 1 Obj\n"
    "\n";

// `count` sentences of 14 + 15 + 1 bytes: the pairs (a, b), (c, d), (e, f) and so on.
std::string pairs(unsigned int count) {
  std::string corpus;
  for (unsigned int i = 0; i < count; ++i) {
    const std::string first(1, static_cast<char>('a' + 2 * i));
    const std::string second(1, static_cast<char>('b' + 2 * i));
    corpus += "1 w " + first + " T 2 Atr\n2 w " + second + " T 0 Pred\n\n";
  }
  return corpus;
}

class WindowsTest : public CliTest {
 protected:
  std::string contexts_of(const std::string& corpus, const Arguments& window, const std::string& n = "2") const {
    write_corpus(corpus);
    Arguments arguments{"-c", "contexts"};
    arguments.insert(arguments.end(), window.begin(), window.end());
    run_clean(n, arguments);
    return read("contexts");
  }

  // The part of the contexts file that belongs to the pair of these lemmas.
  static std::string wide_of_pair(const std::string& contexts, const std::string& first, const std::string& second) {
    const std::string block = "1\t" + first + "\t\t2\tAtr\n2\t" + second + "\t\t0\tHead\n\n\n";
    const std::size_t begin = contexts.find(block);
    if (begin == std::string::npos) return "none";
    const std::size_t list = begin + block.size();
    return contexts.substr(list, contexts.find("\n\n", list - 1) + 1 - list);
  }

  void expect_extracted(const Arguments& window, unsigned int words, unsigned int sentences, unsigned int extracted,
                        const std::string& bar, std::size_t bytes) const {
    Arguments arguments{"-s", "statistics"};
    arguments.insert(arguments.end(), window.begin(), window.end());
    const RunResult result = run_clean("2", arguments);
    const std::string counts = "# of words: " + std::to_string(words) +
                               "\n# of sentences: " + std::to_string(sentences) +
                               "\n# of 2-grams extracted: " + std::to_string(extracted) + "\n\n";
    EXPECT_EQ(read("statistics").find("Statistics for datafile corpus.dat:\n" + counts), 0u) << read("statistics");
    EXPECT_NE(result.out.find(datafile_screen("corpus.dat", bytes, bar)), std::string::npos) << result.out;
  }
};

TEST_F(WindowsTest, WindowOfTheSentenceAlone) {
  // Lemmas a 0, b 1, c 2. Codes Sb 113, Head 96, Obj 97. Pairs (a, b) and (b, c).
  // Full type, member field (((code & 12) | (parent & 3)) << 12) | lemma:
  //   (a, b): 0xDEADBEEF ^ 0x2000 ^ 0x10000 = 0xDEAC9EEF, bucket 151
  //   (b, c): 0xDEADBEEF ^ 0x0001 ^ (0x1002 << 16) = 0xCEAFBEEE, bucket 122
  // One member, field (((code & 124) | (parent & 3)) << 24) | lemma:
  //   a: 0xDEADBEEF ^ 0x72000000 = 0xACADBEEF, bucket 150    b: ^ 0x60000001 = 0xBEADBEEE, bucket 42
  //   c: ^ 0x61000002 = 0xBFADBEED, bucket 153
  const std::string contexts = contexts_of(
      "1 a a T 2 Sb\n"
      "2 b b T 0 Pred\n"
      "3 c c T 2 Obj\n"
      "\n",
      {});
  EXPECT_EQ(contexts,
            "1\tb\t\t0\tHead\n2\tc\t\t1\tObj\n\n"  // a is left of the pair; nothing is right of it
            "a\t\t1\n\n"
            "a\t\t1\n\n\n"
            "1\ta\t\t2\tSb\n2\tb\t\t0\tHead\n\n"
            "c\t\t1\n\n"
            "c\t\t1\n\n\n"
            "1\tb\t\t0\tHead\n2\t*\n\n"  // the first word alone: the other word of the pair is context
            "a\t\t1\nc\t\t1\n\n\n"
            "1\ta\t\t2\tSb\n2\t*\n\n"
            "b\t\t1\nc\t\t1\n\n\n"
            "1\t*\n2\tb\t\t0\tHead\n\n"
            "a\t\t1\nc\t\t1\n\n\n"
            "1\t*\n2\tc\t\t1\tObj\n\n"
            "a\t\t1\nb\t\t1\n\n\n"
            "\n");
}

TEST_F(WindowsTest, PairThatFillsItsSentenceHasEmptyLists) {
  // Buckets do not matter: one record of each type.
  EXPECT_EQ(contexts_of("1 a a T 2 Sb\n2 b b T 0 Pred\n\n", {"-cs", "0"}),
            "1\ta\t\t2\tSb\n2\tb\t\t0\tHead\n\n\n\n\n"
            "1\ta\t\t2\tSb\n2\t*\n\nb\t\t1\n\n\n"
            "1\t*\n2\tb\t\t0\tHead\n\na\t\t1\n\n\n"
            "\n");
}

TEST_F(WindowsTest, StoreWithoutRecordsGivesOneLineEnd) {
  write_corpus("1 a a T 0 Pred\n\n");  // 15 + 1 bytes
  const RunResult result = run_clean("2", {"-c", "contexts"});
  EXPECT_EQ(read("contexts"), "\n");
  EXPECT_EQ(result.out, startup_screen() +
                            processing_screen(datafile_screen("corpus.dat", 16) + percentage_screen("100")) +
                            output_phase(bar_scale()) + contexts_phase(bar_scale()) + farewell_screen());
}

TEST_F(WindowsTest, WindowOfWordsCrossesSentences) {
  // Full type: (p, q): 0xDEADBEEF ^ 0x0002 ^ (0x1003 << 16) = 0xCEAEBEED, bucket 12; (x, y): 0xDEAC9EEF, bucket 151.
  // One member: p 0xBEADBEED, bucket 41; y 0xBEADBEEE, 42; x 0xACADBEEF, 150; q 0xBFADBEEC, 152.
  // The roots are y (second word held) and p (third): x y p and y p q are seen.
  EXPECT_EQ(contexts_of(two_pairs, {"-cw", "1"}),
            "1\tp\t\t0\tHead\n2\tq\t\t1\tObj\n\n\ny\t\t1\n\n\n"
            "1\tx\t\t2\tSb\n2\ty\t\t0\tHead\n\n\np\t\t1\n\n\n"
            "1\tp\t\t0\tHead\n2\t*\n\ny\t\t1\nq\t\t1\n\n\n"
            "1\tx\t\t2\tSb\n2\t*\n\ny\t\t1\np\t\t1\n\n\n"
            "1\t*\n2\ty\t\t0\tHead\n\nx\t\t1\np\t\t1\n\n\n"
            "1\t*\n2\tq\t\t1\tObj\n\ny\t\t1\np\t\t1\n\n\n"
            "\n");
}

TEST_F(WindowsTest, WindowOfSentencesLooksForwardOnly) {
  // The same buckets. With (x, y) two sentences are held, with (p, q) only its own.
  EXPECT_EQ(contexts_of(two_pairs, {"-cs", "1"}),
            "1\tp\t\t0\tHead\n2\tq\t\t1\tObj\n\n\n\n\n"
            "1\tx\t\t2\tSb\n2\ty\t\t0\tHead\n\n\np\t\t1\nq\t\t1\n\n\n"
            "1\tp\t\t0\tHead\n2\t*\n\nq\t\t1\n\n\n"
            "1\tx\t\t2\tSb\n2\t*\n\ny\t\t1\np\t\t1\nq\t\t1\n\n\n"
            "1\t*\n2\ty\t\t0\tHead\n\nx\t\t1\np\t\t1\nq\t\t1\n\n\n"
            "1\t*\n2\tq\t\t1\tObj\n\np\t\t1\n\n\n"
            "\n");
}

TEST_F(WindowsTest, WordsOnBothSidesOfTheRootAreSeen) {
  // Roots are b, d, f at the places 1, 3, 5 of a b c d e f g h. The last pair is lost to the early end.
  const std::string contexts = contexts_of(pairs(4), {"-cw", "3"});
  EXPECT_EQ(wide_of_pair(contexts, "a", "b"), "c\t\t1\nd\t\t1\ne\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "c", "d"), "a\t\t1\nb\t\t1\ne\t\t1\nf\t\t1\ng\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "e", "f"), "c\t\t1\nd\t\t1\ng\t\t1\nh\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "g", "h"), "none");
}

TEST_F(WindowsTest, TwoFollowingSentencesAreSeen) {
  const std::string contexts = contexts_of(pairs(5), {"-cs", "2"});
  EXPECT_EQ(wide_of_pair(contexts, "a", "b"), "c\t\t1\nd\t\t1\ne\t\t1\nf\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "c", "d"), "e\t\t1\nf\t\t1\ng\t\t1\nh\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "g", "h"), "i\t\t1\nj\t\t1\n");
  EXPECT_EQ(wide_of_pair(contexts, "i", "j"), "none");
}

TEST_F(WindowsTest, SameWordElsewhereInTheWindowIsContext) {
  EXPECT_EQ(contexts_of("1 a a T 2 Sb\n2 b b T 0 Pred\n3 a a T 0 ExD\n\n", {})
                .find("1\ta\t\t2\tSb\n2\tb\t\t0\tHead\n\na\t\t1\n\na\t\t1\n\n\n"),
            0u);
}

// Sentences in which the pair (x, y) is followed by each of the given words in turn.
std::string followed_by(const std::string& followers) {
  std::string corpus;
  for (const char follower : followers) {
    corpus += std::string("1 x x T 2 Sb\n2 y y T 0 Pred\n3 w ") + follower + " T 0 ExD\n\n";
  }
  return corpus;
}

TEST_F(WindowsTest, ContextsStandInTheOrderOfTheirFrequency) {
  const std::string pair = "1\tx\t\t2\tSb\n2\ty\t\t0\tHead\n\n";
  const auto lists = [](const std::string& list) { return list + "\n" + list + "\n\n"; };
  // c catches up with a and b but does not pass them; one more sighting takes it to the front.
  EXPECT_EQ(contexts_of(followed_by("ababcc"), {}).find(pair + lists("a\t\t2\nb\t\t2\nc\t\t2\n")), 0u);
  EXPECT_EQ(contexts_of(followed_by("ababccc"), {}).find(pair + lists("c\t\t3\na\t\t2\nb\t\t2\n")), 0u);
}

TEST_F(WindowsTest, GapOfAPatternIsMarkedAndItsWordIsContext) {
  const std::string contexts = contexts_of("1 a a T 2 Atr\n2 b b T 3 Obj\n3 c c T 0 Pred\n\n", {}, "3");
  // Seven records, one of each type from 7 down to 1; parents count positions of the whole piece.
  EXPECT_EQ(contexts,
            "1\ta\t\t2\tAtr\n2\tb\t\t3\tObj\n3\tc\t\t0\tHead\n\n\n\n\n"
            "1\ta\t\t2\tAtr\n2\tb\t\t3\tObj\n3\t*\n\nc\t\t1\n\n\n"
            "1\ta\t\t2\tAtr\n2\t*\n3\tc\t\t0\tHead\n\nb\t\t1\n\n\n"
            "1\ta\t\t2\tAtr\n2\t*\n3\t*\n\nb\t\t1\nc\t\t1\n\n\n"
            "1\t*\n2\tb\t\t3\tObj\n3\tc\t\t0\tHead\n\na\t\t1\n\n\n"
            "1\t*\n2\tb\t\t3\tObj\n3\t*\n\na\t\t1\nc\t\t1\n\n\n"
            "1\t*\n2\t*\n3\tc\t\t0\tHead\n\na\t\t1\nb\t\t1\n\n\n"
            "\n");
}

TEST_F(WindowsTest, WithoutAWindowEverySentenceIsExtracted) {
  write_corpus(pairs(2));
  expect_extracted({}, 4, 2, 2, complete_bar(), 60);
  std::string corpus = pairs(2);
  corpus.pop_back();
  write_corpus(corpus);
  expect_extracted({}, 4, 2, 2, complete_bar(), 59);
}

TEST_F(WindowsTest, ReadingAheadToTheEndEndsTheExtractionEarly) {
  // Without the last empty line, reading the second sentence ahead meets the end of the datafile; contexts play no
  // part.
  std::string corpus = pairs(2);
  corpus.pop_back();
  write_corpus(corpus);
  expect_extracted({"-cs", "1"}, 4, 2, 1, complete_bar(), 59);
  expect_extracted({"-cw", "1"}, 4, 2, 1, complete_bar(), 59);
  expect_extracted({"-cs", "0"}, 4, 2, 2, complete_bar(), 59);
}

TEST_F(WindowsTest, EndMetOnlyAfterTheBarIsCompleteGivesOneMoreMark) {
  // All bytes are read after the first sentence, but the end is noticed only before the second: the bar is completed
  // twice.
  write_corpus(pairs(2));
  expect_extracted({"-cs", "1"}, 4, 2, 2, complete_bar() + "*\n", 60);
  expect_extracted({"-cw", "1"}, 4, 2, 2, complete_bar() + "*\n", 60);
}

TEST_F(WindowsTest, WiderWindowLosesSentencesAtTheEnd) {
  // Two sentences ahead: the end is met on the way to the fourth of five sentences.
  write_corpus(pairs(5));
  expect_extracted({"-cs", "2"}, 10, 5, 4, complete_bar() + "*\n", 150);
  // Three words ahead: two sentences are read ahead, the end is met on the way to the third of four.
  write_corpus(pairs(4));
  expect_extracted({"-cw", "3"}, 8, 4, 3, complete_bar() + "*\n", 120);
}

TEST_F(WindowsTest, ReadingAheadStopsAtExactlyTheRadius) {
  // Two words ahead are one sentence; the end is met only on the way to the last one.
  write_corpus(pairs(4));
  expect_extracted({"-cw", "2"}, 8, 4, 4, complete_bar() + "*\n", 120);
}

TEST_F(WindowsTest, NothingIsReadWhileTheRadiusIsCovered) {
  // Sentences of 2, 1, 3 and 3 words and a radius of 3: the first two are read with the third; going to the second
  // leaves 3 words beyond it, so the fourth is read only on the way to the third, and the end is met on the way to the
  // fourth.
  const std::string one = "1 w a T 0 Pred\n";
  const std::string three = one + "2 w b T 1 Obj\n3 w c T 2 Obj\n\n";
  write_corpus(one + "2 w b T 1 Obj\n\n" + one + "\n" + three + three);
  // 15 + 14 + 1, 15 + 1 and twice 15 + 14 + 14 + 1 bytes; 1 + 0 + 2 + 2 pairs.
  expect_extracted({"-cw", "3"}, 9, 4, 5, complete_bar() + "*\n", 134);
}

TEST_F(WindowsTest, RadiusAboveItsBoundsCountsWithoutContexts) {
  // Nine sentences ahead is the whole datafile and its end.
  write_corpus(pairs(5));
  expect_extracted({"-cs", "9"}, 10, 5, 1, complete_bar(), 150);
  expect_extracted({"-cw", "51"}, 10, 5, 1, complete_bar(), 150);
}

TEST_F(WindowsTest, RadiusOfNoWordsReadsOnlyTheFirstSentence) {
  // 30 of 60 bytes: 25 marks, and nothing completes the bar.
  write_corpus(pairs(2));
  expect_extracted({"-cw", "0"}, 2, 1, 1, bar_scale() + stars(25), 60);
}

TEST_F(WindowsTest, WithoutABarReadingAheadLosesNothing) {
  write("list", "/dev/stdin\n");
  std::string corpus = pairs(3);
  corpus.pop_back();
  RunOptions options;
  options.input = corpus;
  for (const Arguments& window : {Arguments{"-cs", "2"}, Arguments{"-cw", "50"}}) {
    Arguments arguments{"-s", "statistics"};
    arguments.insert(arguments.end(), window.begin(), window.end());
    EXPECT_EQ(run_job("2", arguments, options).status, 0);
    EXPECT_EQ(read("statistics")
                  .find("Statistics for datafile /dev/stdin:\n# of words: 6\n# of sentences: 3\n"
                        "# of 2-grams extracted: 3\n"),
              0u)
        << read("statistics");
  }
}

}  // namespace
}  // namespace colx::cli
