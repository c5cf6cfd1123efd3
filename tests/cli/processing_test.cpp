// The road from the first datafile to the last, from outside: progress messages and bars, percentages, datafiles
// without sentences, pipes, datafiles that vanish, stores that overflow and memory that runs out.
#include <cstddef>
#include <filesystem>
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

// One sentence of one word in exactly `bytes` bytes: "1 ", the word form, " a T 0 Pred" and two line ends.
std::string sentence_of(std::size_t bytes) {
  return "1 " + std::string(bytes - 15, 'w') + " a T 0 Pred\n\n";
}

// A sentence of one word for each number from `first` up to `last`; tags are those numbers in three digits.
std::string tags_sentence(int first, int last) {
  std::string text;
  for (int number = first; number <= last; ++number) {
    const std::string digits = std::to_string(1000 + number).substr(1);
    text += std::to_string(number - first + 1) + " w w " + digits + " 0 ExD\n";
  }
  return text + "\n";
}

const std::string bar_failed = warning("Progress bar initialization failed! Going on without progress bar display...");

class ProcessingTest : public CliTest {};

TEST_F(ProcessingTest, PercentagesFollowTheBytesRead) {
  write("small", sentence_of(100));
  write("large", sentence_of(300));
  write("list", "small\nlarge\n");
  ASSERT_EQ(read("small").size(), 100u);
  // 100 / 400 and 400 / 400. No pair is found, so the last bar has no mark.
  EXPECT_EQ(run_clean("2").out, startup_screen() +
                                    processing_screen(datafile_screen("small", 100) + percentage_screen("25") +
                                                      datafile_screen("large", 300) + percentage_screen("100")) +
                                    output_phase(bar_scale()) + farewell_screen());
}

TEST_F(ProcessingTest, PercentagesHaveFourSignificantDigits) {
  write("small", sentence_of(100));
  write("large", sentence_of(200));
  write("tiny", sentence_of(20));
  write("list", "small\nlarge\n");
  EXPECT_NE(run_clean("2").out.find(percentage_screen("33.33")), std::string::npos);
  write("list", "tiny\nlarge\n");
  // 20 / 220 = 9.0909...
  EXPECT_NE(run_clean("2").out.find(percentage_screen("9.091")), std::string::npos);
}

TEST_F(ProcessingTest, EmptyDatafilesShowNoPercentage) {
  write("one", "");
  write("two", "");
  write("list", "one\ntwo\n");
  EXPECT_EQ(run_clean("2").out,
            startup_screen() +
                processing_screen(datafile_screen("one", 0, bar_scale()) + datafile_screen("two", 0, bar_scale())) +
                output_phase(bar_scale()) + farewell_screen());
}

TEST_F(ProcessingTest, DatafileWithoutSentencesCountsNoBytes) {
  write("full", sentence_of(100));
  write("blank", std::string(300, '\n'));
  write("list", "full\nblank\n");
  // The lengths of both make the whole, 400, but only the first one is ever counted as read.
  EXPECT_EQ(run_clean("2").out,
            startup_screen() +
                processing_screen(datafile_screen("full", 100) + percentage_screen("25") +
                                  datafile_screen("blank", 0, bar_scale()) + percentage_screen("25")) +
                output_phase(bar_scale()) + farewell_screen());
}

TEST_F(ProcessingTest, BarOfSeveralSentencesEndsAtItsFiftyFirstMark) {
  write_corpus(sentence_of(50) + sentence_of(25) + sentence_of(25));
  EXPECT_NE(run_clean("2").out.find(datafile_screen("corpus.dat", 100)), std::string::npos);
}

TEST_F(ProcessingTest, BarThatDoesNotReachTheEndStaysUnfinished) {
  write_corpus(sentence_of(60) + std::string(40, '\n'));
  // The only sentence ends at byte 60: 30 marks. The empty lines behind it belong to no sentence, and so the message
  // stands in the same line.
  EXPECT_NE(run_clean("2").out.find(datafile_screen("corpus.dat", 100, bar_scale() + stars(30))), std::string::npos);
}

TEST_F(ProcessingTest, BarIsCompleteWhenTheEndOfTheDatafileEndsTheSentence) {
  std::string sentence = sentence_of(100);
  sentence.pop_back();
  write_corpus(sentence);
  EXPECT_NE(run_clean("2").out.find(datafile_screen("corpus.dat", 99)), std::string::npos);
  sentence.pop_back();
  write_corpus(sentence);
  EXPECT_NE(run_clean("2").out.find(datafile_screen("corpus.dat", 98)), std::string::npos);
}

TEST_F(ProcessingTest, PipeIsReadWithoutABar) {
  write("list", "/dev/stdin\n");
  RunOptions options;
  options.input = sentence_of(100) + sentence_of(50);
  const RunResult result = run_job("2", {"-s", "statistics"}, options);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, bar_failed);
  EXPECT_EQ(result.out, startup_screen() + processing_screen(datafile_screen("/dev/stdin", 0, bar_scale())) +
                            statistics_phase() + output_phase(bar_scale()) + farewell_screen());
  EXPECT_NE(read("statistics").find("Statistics for datafile /dev/stdin:\n# of words: 2\n# of sentences: 2\n"),
            std::string::npos);
}

TEST_F(ProcessingTest, EmptyPipeIsWarnedOfToo) {
  write("list", "/dev/stdin\n");
  RunOptions options;
  options.input = "";
  const RunResult result = run_job("2", {}, options);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, bar_failed);
}

TEST_F(ProcessingTest, DatafileThatVanishesIsSkipped) {
  write("gone", sentence_of(100));
  write("kept", sentence_of(100));
  write("list", "/dev/stdin\ngone\nkept\n");
  write("rules", "T T\n");
  // The first datafile is a pipe that stays silent until the second one is removed.
  RunOptions options;
  options.input = sentence_of(50);
  options.input_waits_for = "Processing datafile: /dev/stdin\n";
  options.before_input = [this] { std::filesystem::remove(path("gone")); };
  const RunResult result = run_job("2", {"-s", "statistics", "-m", "*", "-f", "rules", "-fs", "filter"}, options);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, bar_failed + warning("Input datafile: gone cannot be opened for reading! Skipping..."));
  // The pipe has no length: 0 of 200 bytes; the skipped datafile has no line; the last one makes 100 of 200.
  EXPECT_EQ(result.out, startup_screen() +
                            processing_screen(datafile_screen("/dev/stdin", 0, bar_scale()) + percentage_screen("0") +
                                              datafile_screen("kept", 100) + percentage_screen("50")) +
                            statistics_phase() + filter_statistics_phase() + output_phase(bar_scale()) +
                            farewell_screen());
  EXPECT_EQ(read("statistics").find("gone"), std::string::npos);
  EXPECT_EQ(read("filter"),
            "Passed 2-grams statistics for datafile /dev/stdin:\n T T\t0\n\n"
            "Passed 2-grams statistics for datafile kept:\n T T\t0\n\n"
            "Overall passed 2-grams statistics:\n T T\t0\n\n");
}

TEST_F(ProcessingTest, TwoHundredFiftyFourTagsFit) {
  write_corpus(tags_sentence(1, 254));
  run_clean("2", {"-m", "***", "-s", "statistics"});
  EXPECT_NE(read("statistics").find("# of unique tags: 254\n"), std::string::npos);
}

TEST_F(ProcessingTest, TagsThatWereSeenAreFoundWhenTheStoreIsFull) {
  write_corpus(tags_sentence(1, 254) + tags_sentence(1, 254));
  run_clean("2", {"-m", "***", "-s", "statistics"});
  EXPECT_NE(read("statistics").find("# of words: 508\n"), std::string::npos);
}

TEST_F(ProcessingTest, OverflowOfTheTagStoreEndsTheRun) {
  const std::string first = tags_sentence(1, 200);
  write("first", first);
  write("second", tags_sentence(201, 255));
  write("list", "first\nsecond\n");
  const RunResult result = run_job("2", {"-m", "***", "-s", "statistics", "-c", "contexts", "-fs", "filter"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(
      result.err,
      warning("Morphologic filter is not turn on (parameter -f not specified). Morphologic filter stats cannot be "
              "retrieved...") +
          fatal("Number of unique strings in morphologic tags store has overflowen numeric index type range!"));
  // Word numbers of 1, 2 and 3 digits: 9 + 90 + 101 of them; the rest of a line has 15 bytes.
  ASSERT_EQ(first.size(), 9u * 16 + 90u * 17 + 101u * 18 + 1);
  // The second one has 9 * 16 + 46 * 17 + 1 = 927 bytes; 3493 / 4420 = 0.79027...
  EXPECT_EQ(result.out, startup_screen() + "Processing input datafiles.\n" + datafile_screen("first", 3493) +
                            percentage_screen("79.03") + "Processing datafile: second\n" + bar_scale() +
                            termination_screen());
  for (const char* output : {"output", "statistics", "contexts", "filter"}) {
    ASSERT_TRUE(exists(output));
    EXPECT_EQ(read(output), "") << output;
  }
}

TEST_F(ProcessingTest, TextTooLongForTheStoreEndsTheRunAndSaysWhy) {
  const std::string long_text(70000, 'x');
  struct Case {
    std::string line;
    std::string mask;
  };
  for (const Case& each : {Case{"1 w " + long_text + " T 0 Pred\n", "*"},
                           Case{"1 w a " + long_text + " 0 Pred\n", std::string(70000, '*')}}) {
    write_corpus(each.line);
    const RunResult result = run_job("2", {"-m", each.mask});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.signal, 0);
    EXPECT_EQ(result.err.find("FATAL ERROR: "), 0u);
    EXPECT_NE(result.err.find("70000"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("65535"), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find('\n'), result.err.size() - 1);
    EXPECT_EQ(result.out, startup_screen() + "Processing input datafiles.\nProcessing datafile: corpus.dat\n" +
                              bar_scale() + termination_screen());
    EXPECT_EQ(read("output"), "");
  }
}

TEST_F(ProcessingTest, LongestTextThatFitsIsKept) {
  write_corpus("1 w " + std::string(65535, 'x') + " T 2 Sb\n2 w b T 0 Pred\n\n");
  run_clean("2");
  EXPECT_EQ(read("output").find("1\t" + std::string(65535, 'x') + "\t\t2\tSb\n"), 0u);
}

TEST_F(ProcessingTest, OnlyTheKeptPartOfALemmaHasToFit) {
  write_corpus("1 w a_" + std::string(70000, 'x') + " T 0 Pred\n\n");
  run_clean("2", {"-s", "statistics"});
  EXPECT_NE(read("statistics").find("# of unique lemmas: 1\n"), std::string::npos);
}

// A file of the system that can be opened, but whose first byte cannot be read.
const std::string unreadable = "/proc/self/mem";

TEST_F(ProcessingTest, ADatafileThatCannotBeReadToItsEndIsFatal) {
  write_corpus("1 w a T 2 Sb\n2 w b T 0 Pred\n\n");
  write("list", "corpus.dat\n" + unreadable + "\n");
  const RunResult result = run_job("2", {"-s", "statistics"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, bar_failed + fatal("Cannot read from file: " + unreadable + "!"));
  EXPECT_TRUE(result.out.ends_with("Processing datafile: " + unreadable + "\n" + bar_scale() + termination_screen()))
      << result.out;
  EXPECT_EQ(read("output"), "");
  EXPECT_EQ(read("statistics"), "");
}

TEST_F(ProcessingTest, AListOrARuleFileThatCannotBeReadToItsEndIsFatal) {
  write_corpus("1 w a T 2 Sb\n2 w b T 0 Pred\n\n");
  for (const Arguments& arguments :
       {Arguments{"-i", unreadable}, {"-m", "*", "-f", unreadable}, {"-m", "*", "-c", "contexts", "-cf", unreadable}}) {
    const RunResult result = run_job("2", arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, fatal("Cannot read from file: " + unreadable + "!"));
    EXPECT_EQ(result.out, "Performing start-up checks.\n" + termination_screen());
    EXPECT_FALSE(exists("output"));
  }
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool address_sanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool address_sanitizer = true;
#else
constexpr bool address_sanitizer = false;
#endif
#else
constexpr bool address_sanitizer = false;
#endif

TEST_F(ProcessingTest, LackOfMemoryNamesTheDatafile) {
  if (address_sanitizer) GTEST_SKIP() << "AddressSanitizer itself needs more address space than the limit leaves";
  // A word with 30 children: more than half a million pieces of 7 words, and far more patterns than fit.
  std::string corpus = "1 w w1 T 0 Pred\n";
  for (int order = 2; order <= 31; ++order) {
    corpus += std::to_string(order) + " w w" + std::to_string(order) + " T 1 Obj\n";
  }
  write_corpus(corpus + "\n");
  RunOptions options;
  options.address_space = 96ull << 20;
  const RunResult result = run_job("7", {"-s", "statistics"}, options);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.signal, 0);
  EXPECT_EQ(result.err, fatal("Program has met with out-of-memory condition while processing datafile: corpus.dat!"));
  EXPECT_EQ(result.out, startup_screen() + "Processing input datafiles.\nProcessing datafile: corpus.dat\n" +
                            bar_scale() + termination_screen());
  EXPECT_EQ(read("output"), "");
  EXPECT_EQ(read("statistics"), "");
}

}  // namespace
}  // namespace colx::cli
