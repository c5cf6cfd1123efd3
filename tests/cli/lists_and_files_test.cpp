// Lists, datafiles, rule files and output files from outside: what is opened, in which order, and what is said when it
// cannot be opened or written.
#include <filesystem>
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

const std::string checks = "Performing start-up checks.\n";

class FilesTest : public CliTest {
 protected:
  FilesTest() { write_corpus(pair_corpus); }

  // The run must end during the start-up checks with exactly these messages.
  void expect_refused(const Arguments& arguments, const std::string& messages) const {
    const RunResult result = run(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, messages);
    EXPECT_EQ(result.out, checks + termination_screen());
  }
};

TEST_F(FilesTest, MissingListIsFatal) {
  expect_refused({"-i", "nowhere", "-n", "2", "-o", "output"}, fatal("Cannot open the file: nowhere!"));
  EXPECT_FALSE(exists("output"));
}

TEST_F(FilesTest, DirectoryAsListCannotBeOpened) {
  std::filesystem::create_directory(path("folder"));
  expect_refused({"-i", "folder", "-n", "2", "-o", "output"}, fatal("Cannot open the file: folder!"));
}

TEST_F(FilesTest, EveryBadEntryIsReportedBeforeAnyOutputIsMade) {
  write("list", "one.dat\ncorpus.dat\ntwo.dat\n");
  expect_refused({"-i", "list", "-n", "2", "-o", "output", "-s", "statistics"},
                 fatal("Input datafile : one.dat cannot be opened for reading!") +
                     fatal("Input datafile : two.dat cannot be opened for reading!"));
  EXPECT_FALSE(exists("output"));
  EXPECT_FALSE(exists("statistics"));
}

TEST_F(FilesTest, ListOfOnlyBadEntriesIsAlsoEmpty) {
  write("list", "one.dat\n\ntwo.dat");
  expect_refused({"-i", "list", "-n", "2", "-o", "output"},
                 fatal("Input datafile : one.dat cannot be opened for reading!") +
                     fatal("Input datafile : two.dat cannot be opened for reading!") +
                     fatal("Input data files list is empty!"));
}

TEST_F(FilesTest, DirectoryAsDatafileCannotBeOpened) {
  std::filesystem::create_directory(path("folder"));
  write("list", "folder\ncorpus.dat\n");
  expect_refused({"-i", "list", "-n", "2", "-o", "output"},
                 fatal("Input datafile : folder cannot be opened for reading!"));
}

TEST_F(FilesTest, EmptyListIsFatal) {
  for (const char* list : {"", "\n", "\n\n\n"}) {
    write("list", list);
    expect_refused({"-i", "list", "-n", "2", "-o", "output"}, fatal("Input data files list is empty!"));
  }
}

TEST_F(FilesTest, CarriageReturnBelongsToThePath) {
  write("list", "corpus.dat\r\n");
  expect_refused(
      {"-i", "list", "-n", "2", "-o", "output"},
      fatal("Input datafile : corpus.dat\r cannot be opened for reading!") + fatal("Input data files list is empty!"));
}

TEST_F(FilesTest, BlanksBelongToThePath) {
  write("list", " corpus.dat\n");
  write(" corpus.dat", pair_corpus);
  EXPECT_EQ(run_clean("2").out, plain_run_screen(" corpus.dat", 31));
}

TEST_F(FilesTest, LastListLineNeedsNoLineEnd) {
  write("list", "corpus.dat");
  EXPECT_EQ(run_clean("2").out, plain_run_screen("corpus.dat", 31));
}

TEST_F(FilesTest, ListMayComeThroughAPipe) {
  RunOptions options;
  options.input = "corpus.dat\n";
  const RunResult result = run({"-i", "/dev/stdin", "-n", "2", "-o", "output"}, options);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, plain_run_screen("corpus.dat", 31));
}

TEST_F(FilesTest, PrefixStandsBeforeEveryPathAsItIs) {
  std::filesystem::create_directory(path("data"));
  write("data/a.txt", pair_corpus);
  write("dataa.txt", pair_corpus);
  write("list", "a.txt\n");
  EXPECT_EQ(run_clean("2", {"-d", "data/"}).out, plain_run_screen("data/a.txt", 31));
  EXPECT_EQ(run_clean("2", {"-d", "data"}).out, plain_run_screen("dataa.txt", 31));
  expect_refused(
      {"-i", "list", "-n", "2", "-o", "output", "-d", "other/"},
      fatal("Input datafile : other/a.txt cannot be opened for reading!") + fatal("Input data files list is empty!"));
}

TEST_F(FilesTest, PathThatStandsTwiceIsProcessedTwice) {
  write("list", "corpus.dat\ncorpus.dat\n");
  const RunResult result = run_clean("2");
  EXPECT_EQ(result.out, startup_screen() +
                            processing_screen(datafile_screen("corpus.dat", 31) + percentage_screen("50") +
                                              datafile_screen("corpus.dat", 31) + percentage_screen("100")) +
                            output_phase() + farewell_screen());
}

TEST_F(FilesTest, EachOutputThatCannotBeCreatedHasItsOwnMessage) {
  expect_refused({"-i", "list", "-n", "2", "-o", "no/output"}, fatal("Cannot open output file: no/output!"));
  expect_refused({"-i", "list", "-n", "2", "-o", "output", "-c", "no/contexts"},
                 fatal("Cannot open context output file: no/contexts!"));
  expect_refused({"-i", "list", "-n", "2", "-o", "output", "-s", "no/statistics"},
                 fatal("Cannot open file to save statistics: no/statistics!"));
  write("rules", "A A\n");
  expect_refused({"-i", "list", "-n", "2", "-o", "output", "-m", "*", "-f", "rules", "-fs", "no/filter"},
                 fatal("Cannot open file to save morphologic filter statistics: no/filter!"));
}

TEST_F(FilesTest, DirectoryAsOutputCannotBeOpened) {
  std::filesystem::create_directory(path("folder"));
  expect_refused({"-i", "list", "-n", "2", "-o", "folder"}, fatal("Cannot open output file: folder!"));
}

TEST_F(FilesTest, OutputsAreOpenedInAFixedOrderAndStayEmptyAfterAFailure) {
  write("output", "old");
  expect_refused({"-i", "list", "-n", "2", "-fs", "no/filter", "-s", "no/statistics", "-c", "contexts", "-o", "output",
                  "-m", "*", "-f", "rules"},
                 fatal("Cannot read rules from file: rules!"));
  EXPECT_EQ(read("output"), "old");
  write("rules", "A A\n");
  expect_refused({"-i", "list", "-n", "2", "-fs", "no/filter", "-s", "no/statistics", "-c", "contexts", "-o", "output",
                  "-m", "*", "-f", "rules"},
                 fatal("Cannot open file to save statistics: no/statistics!"));
  EXPECT_EQ(read("output"), "");
  EXPECT_EQ(read("contexts"), "");
}

TEST_F(FilesTest, FailuresAreReportedInTheOrderOfTheChecks) {
  // Rule files come before the list, the list before the outputs.
  expect_refused({"-i", "nowhere", "-n", "2", "-o", "no/output", "-m", "*", "-f", "no/rules"},
                 fatal("Cannot read rules from file: no/rules!"));
  expect_refused({"-i", "nowhere", "-n", "2", "-o", "no/output"}, fatal("Cannot open the file: nowhere!"));
  expect_refused({"-i", "list", "-n", "2", "-o", "no/output", "-c", "no/contexts"},
                 fatal("Cannot open output file: no/output!"));
}

TEST_F(FilesTest, RuleFilesThatCannotBeReadAreFatal) {
  std::filesystem::create_directory(path("folder"));
  for (const std::string rules : {"no/rules", "folder"}) {
    expect_refused({"-i", "list", "-n", "2", "-o", "output", "-m", "*", "-f", rules},
                   fatal("Cannot read rules from file: " + rules + "!"));
    expect_refused({"-i", "list", "-n", "2", "-o", "output", "-m", "*", "-c", "contexts", "-cf", rules},
                   fatal("Cannot read rules from file: " + rules + "!"));
  }
  EXPECT_FALSE(exists("output"));
}

const std::string no_mask_no_filter = warning(
    "Extraction of morphologic information is not set on (parameter -m not specified). Morphologic filter will not be "
    "applied...");
const std::string no_filter_no_statistics = warning(
    "Morphologic filter is not turn on (parameter -f not specified). Morphologic filter stats cannot be retrieved...");
const std::string no_contexts_no_context_filter = warning(
    "Context output file is not specified (parameter -c). Morphologic filter for N-gram context will not be "
    "applied...");
const std::string no_mask_no_context_filter = warning(
    "Extraction of morphologic information is not set on (parameter -m is not specified). Morphologic filter for "
    "N-gram "
    "context will not be applied...");

TEST_F(FilesTest, FiltersThatCannotBeAppliedAreWarnedOfAndNotRead) {
  const auto warnings_of = [this](const Arguments& arguments) {
    const RunResult result = run_job("2", arguments);
    EXPECT_EQ(result.status, 0);
    return result.err;
  };
  EXPECT_EQ(warnings_of({"-f", "no/rules"}), no_mask_no_filter);
  EXPECT_EQ(warnings_of({"-fs", "filter"}), no_filter_no_statistics);
  EXPECT_EQ(warnings_of({"-cf", "no/rules"}), no_contexts_no_context_filter);
  EXPECT_EQ(warnings_of({"-cf", "no/rules", "-m", "*"}), no_contexts_no_context_filter);
  EXPECT_EQ(warnings_of({"-cf", "no/rules", "-c", "contexts"}), no_mask_no_context_filter);
  // With -f given, whatever became of it, its statistics are not warned of.
  EXPECT_EQ(warnings_of({"-fs", "filter", "-cf", "no/rules", "-f", "no/rules"}),
            no_mask_no_filter + no_contexts_no_context_filter);
  EXPECT_EQ(warnings_of({"-fs", "filter", "-cf", "no/rules"}), no_filter_no_statistics + no_contexts_no_context_filter);
}

TEST_F(FilesTest, FilterStatisticsAreWrittenEvenWithoutAFilter) {
  const RunResult result = run_job("2", {"-fs", "filter"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, no_filter_no_statistics);
  EXPECT_EQ(result.out, startup_screen() +
                            processing_screen(datafile_screen("corpus.dat", 31) + percentage_screen("100")) +
                            filter_statistics_phase() + output_phase() + farewell_screen());
  EXPECT_EQ(read("filter"), "Overall passed 2-grams statistics:\n\n");
}

TEST_F(FilesTest, ThresholdsForTwoWordsAreWarnedOfForOtherSizes) {
  const std::string information =
      warning("Mutual information evaluation only available for N equal 2. Threshold ignored...");
  const std::string rest =
      warning("Pearson's coefficient evaluation only available for N equal 2. Threshold ignored...") +
      warning("t test evaluation only available for N equal 2. Threshold ignored...") +
      warning("z score evaluation only available for N equal 2. Threshold ignored...");
  EXPECT_EQ(run_job("3", {"-tz", "1", "-tt", "1", "-tp", "1", "-tm", "5", "-tl", "1", "-tc", "1"}).err,
            information + rest);
  EXPECT_EQ(run_job("3", {"-tm", "5"}).err, information);
  EXPECT_EQ(run_job("3", {"-tm", "-5", "-tz", "0", "-tt", "nan"}).err, "");
  EXPECT_EQ(run_job("2", {"-tz", "1", "-tt", "1", "-tp", "1", "-tm", "5"}).err, "");
}

TEST_F(FilesTest, PhasesOfAllOutputsComeInAFixedOrder) {
  write("rules", "A A\n");
  const RunResult result =
      run_clean("2", {"-c", "contexts", "-fs", "filter", "-s", "statistics", "-m", "*", "-f", "rules"});
  EXPECT_EQ(result.out,
            startup_screen() + processing_screen(datafile_screen("corpus.dat", 31) + percentage_screen("100")) +
                statistics_phase() + filter_statistics_phase() + output_phase() + contexts_phase() + farewell_screen());
}

// A full disk behind one output: the phases before it are complete, the run ends when that file is closed.
class FullDiskTest : public FilesTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
    write("rules", "A A\n");
  }

  void expect_write_error(const std::string& option, const std::string& phases) const {
    Arguments arguments{"-c", "contexts", "-fs", "filter", "-s", "statistics", "-m", "*", "-f", "rules"};
    arguments.insert(arguments.end(), {option, "/dev/full"});
    const RunResult result = run_job("2", arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, fatal("Cannot write to file: /dev/full!"));
    EXPECT_EQ(result.out, startup_screen() +
                              processing_screen(datafile_screen("corpus.dat", 31) + percentage_screen("100")) + phases +
                              termination_screen());
  }
};

TEST_F(FullDiskTest, StatisticsFileOnAFullDiskIsFatal) {
  expect_write_error("-s", "Writing statistics file.\n");
  EXPECT_EQ(read("output"), "");
}

TEST_F(FullDiskTest, FilterStatisticsFileOnAFullDiskIsFatal) {
  expect_write_error("-fs", statistics_phase() + "Writing morphologic filter statistics file.\n");
  EXPECT_EQ(read("output"), "");
}

TEST_F(FullDiskTest, OutputDatafileOnAFullDiskIsFatal) {
  expect_write_error("-o",
                     statistics_phase() + filter_statistics_phase() + "Writing output datafile.\n" + complete_bar());
  EXPECT_EQ(read("contexts"), "");
}

TEST_F(FullDiskTest, OutputLargerThanAnyBufferOnAFullDiskIsFatal) {
  std::string corpus;
  for (int i = 0; i < 20000; ++i)
    corpus += "1 a a" + std::to_string(i) + " AB 2 Sb\n2 b b AB 0 Pred\n\n";
  write_corpus(corpus);
  const RunResult result = run({"-i", "list", "-n", "2", "-o", "/dev/full"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, fatal("Cannot write to file: /dev/full!"));
  EXPECT_TRUE(result.out.ends_with("Writing output datafile.\n" + complete_bar() + termination_screen())) << result.out;
}

TEST_F(FullDiskTest, ContextsFileOnAFullDiskIsFatal) {
  expect_write_error("-c", statistics_phase() + filter_statistics_phase() + output_phase() +
                               "Writing contexts to file.\n" + complete_bar());
  EXPECT_NE(read("output"), "");
}

}  // namespace
}  // namespace colx::cli
