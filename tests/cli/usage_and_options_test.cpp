// The command line from outside: usage text, how words are scanned, which values are accepted, and what each refusal
// shows.
#include <filesystem>
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

const std::string missing_parameters = fatal("Some of the mandatory program parameters are missing!");
const std::string wrong_format = fatal("Some of the program parameters are in incorrect format!");

class OptionsTest : public CliTest {
 protected:
  OptionsTest() { write_corpus(pair_corpus); }

  void expect_missing(const Arguments& arguments) const { _expect_refused(arguments, missing_parameters); }
  void expect_wrong_format(const Arguments& arguments) const { _expect_refused(arguments, wrong_format); }

  void expect_accepted(const Arguments& arguments) const {
    const RunResult result = run(arguments);
    EXPECT_EQ(result.status, 0) << ::testing::PrintToString(arguments);
    EXPECT_EQ(result.err, "") << ::testing::PrintToString(arguments);
    EXPECT_TRUE(result.out.ends_with(farewell_screen())) << ::testing::PrintToString(arguments);
  }

  // The number N of a run is seen in its statistics.
  std::string first_count_of(const std::string& statistics) const {
    const std::string text = read(statistics);
    const std::size_t begin = text.find("-grams extracted");
    return begin == std::string::npos ? "" : text.substr(begin - 1, 1);
  }

 private:
  void _expect_refused(const Arguments& arguments, const std::string& message) const {
    std::filesystem::remove(path("output"));
    const RunResult result = run(arguments);
    const std::string shown = ::testing::PrintToString(arguments);
    EXPECT_EQ(result.status, 1) << shown;
    EXPECT_EQ(result.err, message) << shown;
    EXPECT_EQ(result.out, usage_screen() + termination_screen()) << shown;
    EXPECT_FALSE(exists("output")) << shown;
  }
};

TEST_F(OptionsTest, WithoutArgumentsShowsTheUsageAndEndsWell) {
  const RunResult result = run({});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, usage_screen() + timer_screen());
}

TEST_F(OptionsTest, ShortestRunShowsEveryPhase) {
  const RunResult result = run({"-i", "list", "-n", "2", "-o", "output"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  // 14 + 16 + 1 bytes.
  EXPECT_EQ(result.out, plain_run_screen("corpus.dat", 31));
}

TEST_F(OptionsTest, EachMandatoryOptionIsRequired) {
  expect_missing({"-i", "list"});
  expect_missing({"-n", "2", "-o", "output"});
  expect_missing({"-i", "list", "-o", "output"});
  expect_missing({"-i", "list", "-n", "2"});
  expect_missing({"list"});
}

TEST_F(OptionsTest, SizesThatReadAsZeroCountAsMissing) {
  for (const char* n : {"0", "-3", "-254", "256", "x", "", "-", "4294967296"}) {
    expect_missing({"-i", "list", "-n", n, "-o", "output"});
  }
}

TEST_F(OptionsTest, SizesOutsideTwoToSevenAreRefused) {
  // 99999999999999999999 is read as 2^63 - 1, whose low 8 bits are 255.
  for (const char* n : {"1", "8", "255", "257", "99999999999999999999"}) {
    expect_wrong_format({"-i", "list", "-n", n, "-o", "output"});
  }
}

TEST_F(OptionsTest, OnlyTheLowEightBitsOfTheSizeCount) {
  // 258 = 256 + 2; 4294967298 = 2^32 + 2; reading stops at the first character that is no digit.
  for (const char* n : {"2", "258", "4294967298", " 2", "+2", "2x", "02", "2.9"}) {
    expect_accepted({"-i", "list", "-n", n, "-o", "output", "-s", "statistics"});
    EXPECT_EQ(first_count_of("statistics"), "2") << n;
  }
}

TEST_F(OptionsTest, EverySizeFromTwoToSevenRuns) {
  for (const char* n : {"2", "3", "4", "5", "6", "7"}) {
    expect_accepted({"-i", "list", "-n", n, "-o", "output", "-s", "statistics"});
    EXPECT_EQ(first_count_of("statistics"), n);
  }
}

TEST_F(OptionsTest, MandatoryCheckComesBeforeTheFormatCheck) {
  expect_missing({"-n", "9", "-m", "x", "-p", "0"});
}

TEST_F(OptionsTest, MaskHoldsOnlyTheTwoMarks) {
  for (const char* mask : {"**-x", "x", " ", "*?", "-*\n"}) {
    expect_wrong_format({"-i", "list", "-n", "2", "-o", "output", "-m", mask});
  }
  for (const char* mask : {"", "*", "-", "**--*"}) {
    expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-m", mask});
  }
}

TEST_F(OptionsTest, PrecisionOfZeroIsRefused) {
  for (const char* precision : {"0", "-1", "x", ""}) {
    expect_wrong_format({"-i", "list", "-n", "2", "-o", "output", "-p", precision});
  }
}

TEST_F(OptionsTest, PrecisionAboveThirtyTwoBitsSaturatesInsteadOfTurningIntoZero) {
  for (const char* precision : {"4294967296", "18446744073709551616"}) {
    expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-p", precision});
  }
}

TEST_F(OptionsTest, ContextRadiusIsCheckedWhenContextsAreWritten) {
  const Arguments job{"-i", "list", "-n", "2", "-o", "output", "-c", "contexts"};
  const auto with = [&job](const std::string& option, const std::string& value) {
    Arguments arguments = job;
    arguments.insert(arguments.end(), {option, value});
    return arguments;
  };
  for (const char* radius : {"0", "51", "-1", "4294967297"})
    expect_wrong_format(with("-cw", radius));
  for (const char* radius : {"1", "50"})
    expect_accepted(with("-cw", radius));
  // 2^32 must not be taken for 0.
  for (const char* radius : {"3", "4294967296"})
    expect_wrong_format(with("-cs", radius));
  for (const char* radius : {"0", "1", "2", "-1"})
    expect_accepted(with("-cs", radius));
}

TEST_F(OptionsTest, ContextRadiusIsNotCheckedWithoutContexts) {
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-cw", "0"});
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-cw", "51"});
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-cs", "3"});
}

TEST_F(OptionsTest, LaterContextRadiusDecidesModeAndSize) {
  // 10 is a good radius in words only, 0 in sentences only.
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-c", "contexts", "-cs", "2", "-cw", "10"});
  expect_wrong_format({"-i", "list", "-n", "2", "-o", "output2", "-c", "contexts2", "-cw", "10", "-cs", "10"});
}

TEST_F(OptionsTest, LaterOccurrenceOfAnOptionWins) {
  expect_accepted({"-i", "nowhere", "-n", "9", "-o", "first", "-i", "list", "-n", "2", "-o", "second"});
  EXPECT_FALSE(exists("first"));
  EXPECT_TRUE(exists("second"));
}

TEST_F(OptionsTest, PathOptionAsTheLastWordUnsetsThePath) {
  expect_missing({"-n", "2", "-o", "output", "-i"});
  expect_missing({"-i", "list", "-n", "2", "-o", "output", "-i"});
  expect_missing({"-n", "2", "-i", "list", "-o"});
}

TEST_F(OptionsTest, OptionalPathAsTheLastWordIsUnset) {
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-s", "statistics", "-s"});
  EXPECT_FALSE(exists("statistics"));
  // Without -c the radius is not checked.
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-c", "contexts", "-cs", "9", "-c"});
  EXPECT_FALSE(exists("contexts"));
  // A mask that is unset again is not checked either.
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-m", "x", "-m"});
}

TEST_F(OptionsTest, NumericOptionAsTheLastWordLeavesItsSetting) {
  for (const char* option : {"-n", "-p", "-tf", "-te", "-tc", "-tl", "-tm", "-tp", "-tt", "-tz"}) {
    expect_accepted({"-i", "list", "-n", "2", "-o", "output", option});
  }
  expect_missing({"-i", "list", "-o", "missing", "-n"});
}

TEST_F(OptionsTest, RadiusOptionAsTheLastWordLeavesTheMode) {
  // 50 stays a number of words, 0 a number of sentences.
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-c", "contexts", "-cw", "50", "-cs"});
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-c", "contexts", "-cs", "0", "-cw"});
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-c", "contexts", "-cw"});
}

TEST_F(OptionsTest, CharactersBehindTheOptionLetterAreIgnored) {
  write("rules", "A A\n");
  expect_accepted({"-input", "list",     "-n7",        "2",     "-output", "output",     "-data", "",
                   "-mask",  "**",       "-precision", "3",     "-stats",  "statistics", "-cfoo", "rules",
                   "-c",     "contexts", "-cwords",    "3",     "-csent",  "1",          "-tabc", "-toto",
                   "-tfx",   "1",        "-f",         "rules", "-fstat",  "filter"});
  EXPECT_TRUE(exists("statistics"));
  EXPECT_TRUE(exists("contexts"));
  EXPECT_TRUE(exists("filter"));
}

TEST_F(OptionsTest, UnknownWordsArePassedOver) {
  expect_accepted({"free", "-", "--", "-h", "-i", "list", "-tq", "5", "-ct", "5", "-t", "-cx", "-fx", "-n", "2", "-x",
                   "-o", "output", "last"});
  // The -n behind an unknown word is an option again; so is the value of a word that takes none.
  expect_wrong_format({"-i", "list", "-o", "output2", "-n", "2", "-ct", "-n", "9"});
}

TEST_F(OptionsTest, ValueIsTakenWhateverItLooksLike) {
  // "-ta" is the name of the statistics file and "-n" that of the output file.
  expect_accepted({"-i", "list", "-n", "2", "-s", "-ta", "-o", "-n"});
  EXPECT_TRUE(exists("-ta"));
  EXPECT_TRUE(exists("-n"));
  expect_missing({"-i", "-n", "2", "-o", "output"});
}

TEST_F(OptionsTest, ThresholdModeIsThatOfTheLaterFlag) {
  // One pair: its chi-square is not a number and counts as met; its mutual information, log2(1), misses 1.
  const Arguments job{"-i", "list", "-n", "2", "-o", "output", "-tc", "5", "-tm", "1"};
  const auto output_with = [this, &job](const Arguments& flags) {
    Arguments arguments = job;
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    expect_accepted(arguments);
    return read("output");
  };
  const std::string any_of_them = output_with({});
  EXPECT_NE(any_of_them, "\n");
  EXPECT_EQ(output_with({"-ta"}), "\n");
  EXPECT_EQ(output_with({"-ta", "-to"}), any_of_them);
  EXPECT_EQ(output_with({"-to", "-ta"}), "\n");
}

TEST_F(OptionsTest, DecimalNumbersFollowTheConversionOfTheStandardLibrary) {
  // The pair occurs once and is expected once. Everything that reads as at most 1 lets it pass.
  for (const char* limit : {"1", "1e0", " 1", "0x1", ".5x", "abc", "", "-inf", "nan"}) {
    expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-te", limit});
    EXPECT_NE(read("output"), "\n") << limit;
  }
  for (const char* limit : {"1.01", "2", "1e1", "inf"}) {
    expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-te", limit});
    EXPECT_EQ(read("output"), "\n") << limit;
  }
}

TEST_F(OptionsTest, FrequencyLimitAboveThirtyTwoBitsSaturates) {
  // 2^32 + 1 must not be taken for 1.
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-tf", "4294967297"});
  EXPECT_EQ(read("output"), "\n");
  expect_accepted({"-i", "list", "-n", "2", "-o", "output", "-tf", "-5"});
  EXPECT_NE(read("output"), "\n");
}

}  // namespace
}  // namespace colx::cli
