#include "options/params.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <vector>

#include "base/config.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

class Params : public ::testing::Test {
 protected:
  // Reads a command line of these words after the program's own.
  static void _parse(std::initializer_list<const char*> words) {
    std::vector<const char*> argv{"ngrex"};
    argv.insert(argv.end(), words);
    parse_params(static_cast<int>(argv.size()), argv.data());
  }

 private:
  const test::SettingsGuard _guard;
};

TEST_F(Params, StoresEveryText) {
  _parse({"-i", "list", "-o", "out", "-c", "contexts", "-cf", "context.rules", "-d", "data/", "-f", "ngram.rules",
          "-fs", "filter.stats", "-m", "**-*", "-s", "stats"});
  EXPECT_STREQ(settings::input_file, "list");
  EXPECT_STREQ(settings::output_file, "out");
  EXPECT_STREQ(settings::context_output_file, "contexts");
  EXPECT_STREQ(settings::context_filter_file, "context.rules");
  EXPECT_STREQ(settings::dir, "data/");
  EXPECT_STREQ(settings::morphologic_filter_file, "ngram.rules");
  EXPECT_STREQ(settings::morphologic_filter_stats_file, "filter.stats");
  EXPECT_STREQ(settings::morphologic_tag_mask, "**-*");
  EXPECT_STREQ(settings::stats_file, "stats");
}

TEST_F(Params, StoresEveryNumber) {
  _parse({"-n",  "5", "-p",  "17",  "-tc", "1.5",  "-te", "0.25", "-tf", "12",
          "-tl", "2", "-tm", "3e2", "-tp", "-0.5", "-tt", ".125", "-tz", "7"});
  EXPECT_EQ(settings::n, 5);
  EXPECT_EQ(settings::precision, 17U);
  EXPECT_EQ(settings::thresholds.chi_square, 1.5);
  EXPECT_EQ(settings::sieves.estimated_frequency, 0.25);
  EXPECT_EQ(settings::sieves.frequency, 12U);
  EXPECT_EQ(settings::thresholds.log_likelihood, 2.0);
  EXPECT_EQ(settings::thresholds.mutual_information, 300.0);
  EXPECT_EQ(settings::thresholds.pearson, -0.5);
  EXPECT_EQ(settings::thresholds.t_test, 0.125);
  EXPECT_EQ(settings::thresholds.z_score, 7.0);
}

TEST_F(Params, KeepsTheVeryTextOfTheWord) {
  const char word[] = "list";
  _parse({"-i", word});
  EXPECT_EQ(settings::input_file, word);
}

TEST_F(Params, ChangesNothingWithoutWords) {
  parse_params(0, nullptr);
  _parse({});
  EXPECT_FALSE(settings::ready());
  EXPECT_EQ(settings::precision, 10U);
}

TEST_F(Params, ReadsTheFirstWordOfTheLineLikeAnyOther) {
  const char* const argv[] = {"-n", "3"};
  parse_params(2, argv);
  EXPECT_EQ(settings::n, 3);
}

TEST_F(Params, IgnoresTheRestOfAnOptionWord) {
  _parse({"-ixyz", "list", "-ngram", "4", "-tabc", "-output", "out", "-cfile", "a", "-fsx", "b", "-cwords", "9"});
  EXPECT_STREQ(settings::input_file, "list");
  EXPECT_EQ(settings::n, 4);
  EXPECT_TRUE(settings::all_thresholds_together);
  EXPECT_STREQ(settings::output_file, "out");
  EXPECT_STREQ(settings::context_filter_file, "a");
  EXPECT_STREQ(settings::morphologic_filter_stats_file, "b");
  EXPECT_EQ(settings::context_window.size, 9U);
}

TEST_F(Params, PassesOverWordsThatAreNoOptionWithoutTakingAValue) {
  for (const char* const word : {"-", "--", "", "list", "-x", "-t", "-tq", "-cx", "-fx", "-I", "-ct", "i"}) {
    _parse({word, "-n", "6"});
    EXPECT_EQ(settings::n, 6) << word;
    settings::n = 0;
  }
  EXPECT_EQ(settings::context_output_file, nullptr);
  EXPECT_EQ(settings::morphologic_filter_file, nullptr);
  EXPECT_EQ(settings::input_file, nullptr);
}

TEST_F(Params, PassesOverTheNumberOfAnUnknownOptionToo) {
  _parse({"-tq", "5", "-ct", "7"});
  EXPECT_EQ(settings::thresholds.chi_square, 0.0);
  EXPECT_EQ(settings::sieves.frequency, 0U);
  EXPECT_EQ(settings::n, 0);
}

TEST_F(Params, TakesTheNextWordAsValueWhateverItLooksLike) {
  _parse({"-i", "-n", "3", "-m", "", "-o", "-ta"});
  EXPECT_STREQ(settings::input_file, "-n");
  EXPECT_EQ(settings::n, 0);
  EXPECT_STREQ(settings::morphologic_tag_mask, "");
  EXPECT_STREQ(settings::output_file, "-ta");
  EXPECT_FALSE(settings::all_thresholds_together);
}

TEST_F(Params, LetsTheLaterOptionWin) {
  _parse({"-i", "first", "-i", "second", "-n", "2", "-n", "3", "-tz", "1", "-tz", "2"});
  EXPECT_STREQ(settings::input_file, "second");
  EXPECT_EQ(settings::n, 3);
  EXPECT_EQ(settings::thresholds.z_score, 2.0);
}

TEST_F(Params, LetsTheLaterOfTheTwoWindowOptionsDecideModeAndSize) {
  _parse({"-cs", "2", "-cw", "10"});
  EXPECT_EQ(settings::context_window.mode, ContextWindow::words);
  EXPECT_EQ(settings::context_window.size, 10U);
  _parse({"-cw", "10", "-cs", "2"});
  EXPECT_EQ(settings::context_window.mode, ContextWindow::sentences);
  EXPECT_EQ(settings::context_window.size, 2U);
}

TEST_F(Params, LetsTheLaterOfTheTwoThresholdFlagsWin) {
  _parse({"-ta", "-to"});
  EXPECT_FALSE(settings::all_thresholds_together);
  _parse({"-to", "-ta"});
  EXPECT_TRUE(settings::all_thresholds_together);
}

TEST_F(Params, UnsetsATextWhoseValueIsMissing) {
  for (const char* const option : {"-i", "-o", "-c", "-cf", "-d", "-f", "-fs", "-m", "-s"}) {
    _parse({"-i", "list", "-o", "out", "-c", "a", "-cf", "b", "-d", "c", "-f", "d", "-fs", "e", "-m", "*", "-s", "f"});
    _parse({option});
    const char* const texts[] = {settings::input_file,
                                 settings::output_file,
                                 settings::context_output_file,
                                 settings::context_filter_file,
                                 settings::dir,
                                 settings::morphologic_filter_file,
                                 settings::morphologic_filter_stats_file,
                                 settings::morphologic_tag_mask,
                                 settings::stats_file};
    EXPECT_EQ(std::count(std::begin(texts), std::end(texts), nullptr), 1) << option;
  }
}

TEST_F(Params, IsNotReadyWhenTheListIsTheLastWord) {
  _parse({"-n", "2", "-o", "out", "-i"});
  EXPECT_EQ(settings::input_file, nullptr);
  EXPECT_FALSE(settings::ready());
}

TEST_F(Params, LeavesANumberWhoseValueIsMissing) {
  _parse({"-n", "3", "-n"});
  EXPECT_EQ(settings::n, 3);
  _parse({"-p"});
  EXPECT_EQ(settings::precision, 10U);
  _parse({"-tf", "4", "-tf"});
  EXPECT_EQ(settings::sieves.frequency, 4U);
  _parse({"-te", "4.5", "-te"});
  EXPECT_EQ(settings::sieves.estimated_frequency, 4.5);
  for (const char* const option : {"-tc", "-tl", "-tm", "-tp", "-tt", "-tz"})
    _parse({option, "1.5", option});
  const Thresholds& thresholds = settings::thresholds;
  for (const double value : {thresholds.chi_square, thresholds.log_likelihood, thresholds.mutual_information,
                             thresholds.pearson, thresholds.t_test, thresholds.z_score})
    EXPECT_EQ(value, 1.5);
}

TEST_F(Params, LeavesModeAndSizeOfTheWindowWhoseValueIsMissing) {
  _parse({"-cw", "10", "-cs"});
  EXPECT_EQ(settings::context_window.mode, ContextWindow::words);
  EXPECT_EQ(settings::context_window.size, 10U);
  _parse({"-cs", "1", "-cw"});
  EXPECT_EQ(settings::context_window.mode, ContextWindow::sentences);
  EXPECT_EQ(settings::context_window.size, 1U);
}

TEST_F(Params, KeepsTheLowEightBitsOfN) {
  _parse({"-i", "list", "-o", "out", "-n", "258"});
  EXPECT_EQ(settings::n, 2);
  EXPECT_TRUE(settings::ready());
  EXPECT_TRUE(settings::correct());
  _parse({"-n", "256"});
  EXPECT_EQ(settings::n, 0);
  _parse({"-n", "4294967298"});
  EXPECT_EQ(settings::n, 2);
  _parse({"-n", "99999999999999999999"});  // strtol stops at its largest number, whose low bits are all set
  EXPECT_EQ(settings::n, 255);
}

TEST_F(Params, TakesANegativeNAsNothing) {
  _parse({"-i", "list", "-o", "out", "-n", "-3"});
  EXPECT_EQ(settings::n, 0);
  EXPECT_FALSE(settings::ready());
}

TEST_F(Params, SaturatesNumbersAboveThirtyTwoBits) {
  _parse({"-p", "4294967296", "-tf", "99999999999999999999", "-cw", "5000000000"});
  EXPECT_EQ(settings::precision, 4294967295U);
  EXPECT_EQ(settings::sieves.frequency, 4294967295U);
  EXPECT_EQ(settings::context_window.size, 4294967295U);
  _parse({"-p", "4294967295", "-tf", "4294967294"});
  EXPECT_EQ(settings::precision, 4294967295U);
  EXPECT_EQ(settings::sieves.frequency, 4294967294U);
}

TEST_F(Params, ReadsDecimalNumbersAsStrtodDoes) {
  _parse({"-tc", "1e3x", "-tl", "none", "-tm", "  2.5", "-tp", "-5", "-tt", "0x10", "-tz", "", "-te", "+1"});
  EXPECT_EQ(settings::thresholds.chi_square, 1000.0);
  EXPECT_EQ(settings::thresholds.log_likelihood, 0.0);
  EXPECT_EQ(settings::thresholds.mutual_information, 2.5);
  EXPECT_EQ(settings::thresholds.pearson, -5.0);
  EXPECT_EQ(settings::thresholds.t_test, 16.0);
  EXPECT_EQ(settings::thresholds.z_score, 0.0);
  EXPECT_EQ(settings::sieves.estimated_frequency, 1.0);
}

TEST(Ascii2SizeT, ReadsUpToTheFirstCharacterThatIsNoDigit) {
  EXPECT_EQ(_ascii2size_t("0"), 0U);
  EXPECT_EQ(_ascii2size_t("42"), 42U);
  EXPECT_EQ(_ascii2size_t(" \t+7"), 7U);
  EXPECT_EQ(_ascii2size_t("12abc"), 12U);
  EXPECT_EQ(_ascii2size_t("3.9"), 3U);
  EXPECT_EQ(_ascii2size_t("010"), 10U);
  EXPECT_EQ(_ascii2size_t("0x10"), 0U);
}

TEST(Ascii2SizeT, TakesNegativeNumbersAndNoDigitsAsNothing) {
  EXPECT_EQ(_ascii2size_t("-1"), 0U);
  EXPECT_EQ(_ascii2size_t("-99999999999999999999"), 0U);
  EXPECT_EQ(_ascii2size_t(""), 0U);
  EXPECT_EQ(_ascii2size_t("abc"), 0U);
  EXPECT_EQ(_ascii2size_t("-"), 0U);
}

}  // namespace
}  // namespace colx
