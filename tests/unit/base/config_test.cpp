#include "base/config.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

// Settings that may run: the mandatory ones and N = 2.
class Config : public ::testing::Test {
 protected:
  Config() {
    settings::input_file = "list";
    settings::n = 2;
    settings::output_file = "out";
  }

 private:
  const test::SettingsGuard _guard;
};

TEST(ConfigStart, LeavesEverythingUnsetButPrecisionAndTuning) {
  EXPECT_EQ(settings::input_file, nullptr);
  EXPECT_EQ(settings::n, 0);
  EXPECT_EQ(settings::output_file, nullptr);
  EXPECT_EQ(settings::context_output_file, nullptr);
  EXPECT_EQ(settings::context_filter_file, nullptr);
  EXPECT_EQ(settings::context_window.mode, ContextWindow::sentences);
  EXPECT_EQ(settings::context_window.size, 0U);
  EXPECT_EQ(settings::dir, nullptr);
  EXPECT_EQ(settings::morphologic_filter_file, nullptr);
  EXPECT_EQ(settings::morphologic_filter_stats_file, nullptr);
  EXPECT_EQ(settings::morphologic_tag_mask, nullptr);
  EXPECT_EQ(settings::precision, 10U);
  EXPECT_EQ(settings::stats_file, nullptr);
  EXPECT_FALSE(settings::all_thresholds_together);
  EXPECT_EQ(settings::thresholds.chi_square, 0.0);
  EXPECT_EQ(settings::thresholds.log_likelihood, 0.0);
  EXPECT_EQ(settings::thresholds.mutual_information, 0.0);
  EXPECT_EQ(settings::thresholds.pearson, 0.0);
  EXPECT_EQ(settings::thresholds.t_test, 0.0);
  EXPECT_EQ(settings::thresholds.z_score, 0.0);
  EXPECT_EQ(settings::sieves.estimated_frequency, 0.0);
  EXPECT_EQ(settings::sieves.frequency, 0U);
  EXPECT_FALSE(settings::sort);
  EXPECT_FALSE(settings::verbose);
  EXPECT_EQ(settings::bucket_size, 4U);
  EXPECT_EQ(settings::crop_ratio, 2U);
}

TEST(ConfigStart, HasTheFixedLimits) {
  EXPECT_EQ(constants::max_grammity, 7U);
  EXPECT_EQ(constants::bits_per_char, 8U);
  EXPECT_EQ(constants::ngram_within_block, 16384U);
  EXPECT_EQ(constants::default_precision, 10U);
  EXPECT_EQ(constants::max_collocation_window_size, 32U);
  EXPECT_EQ(constants::significant_position_mark, '*');
  EXPECT_EQ(constants::insignificant_position_mark, '-');
  EXPECT_EQ(constants::sentences_radius_max_size, 2U);
  EXPECT_EQ(constants::words_radius_max_size, 50U);
  EXPECT_EQ(constants::max_sentence_length, 65535U);
}

TEST_F(Config, IsReadyWithListSizeAndOutput) {
  EXPECT_TRUE(settings::ready());
}

TEST_F(Config, IsNotReadyWithoutAnyOneOfTheMandatorySettings) {
  settings::input_file = nullptr;
  EXPECT_FALSE(settings::ready());
  settings::input_file = "list";
  settings::n = 0;
  EXPECT_FALSE(settings::ready());
  settings::n = 2;
  settings::output_file = nullptr;
  EXPECT_FALSE(settings::ready());
}

TEST_F(Config, IsReadyForSizesThatAreNotCorrect) {
  for (const std::uint8_t n : {std::uint8_t{1}, std::uint8_t{8}, std::uint8_t{255}}) {
    settings::n = n;
    EXPECT_TRUE(settings::ready()) << unsigned{n};
    EXPECT_FALSE(settings::correct()) << unsigned{n};
  }
}

TEST_F(Config, TakesSizesFromTwoToSeven) {
  for (unsigned n = 0; n < 256; ++n) {
    settings::n = static_cast<std::uint8_t>(n);
    EXPECT_EQ(settings::correct(), n >= 2 && n <= 7) << n;
  }
}

TEST_F(Config, IsNotCorrectWithoutListOrOutput) {
  settings::input_file = nullptr;
  EXPECT_FALSE(settings::correct());
  settings::input_file = "list";
  settings::output_file = nullptr;
  EXPECT_FALSE(settings::correct());
}

TEST_F(Config, RefusesAMaskWithAnyOtherCharacter) {
  for (const char* const mask : {"**-x", "x", " ", "*- ", "N"}) {
    settings::morphologic_tag_mask = mask;
    EXPECT_FALSE(settings::correct()) << mask;
    EXPECT_FALSE(settings::check_mask(mask)) << mask;
  }
}

TEST_F(Config, TakesAMaskOfMarksOnlyAlsoAnEmptyOne) {
  for (const char* const mask : {"", "*", "-", "**-*", "-----"}) {
    settings::morphologic_tag_mask = mask;
    EXPECT_TRUE(settings::correct()) << mask;
    EXPECT_TRUE(settings::check_mask(mask)) << mask;
  }
  EXPECT_TRUE(settings::check_mask(nullptr));
}

TEST_F(Config, RefusesAPrecisionOfNothingOnly) {
  settings::precision = 0;
  EXPECT_FALSE(settings::correct());
  settings::precision = 1;
  EXPECT_TRUE(settings::correct());
  settings::precision = 4294967295;
  EXPECT_TRUE(settings::correct());
}

TEST_F(Config, LimitsTheRadiusInSentencesToTwo) {
  settings::context_output_file = "contexts";
  for (const std::uint32_t size : {0U, 1U, 2U, 3U, 4294967295U}) {
    settings::context_window = {ContextWindow::sentences, size};
    EXPECT_EQ(settings::correct(), size <= 2) << size;
  }
}

TEST_F(Config, LimitsTheRadiusInWordsToOneThroughFifty) {
  settings::context_output_file = "contexts";
  for (const std::uint32_t size : {0U, 1U, 50U, 51U, 4294967295U}) {
    settings::context_window = {ContextWindow::words, size};
    EXPECT_EQ(settings::correct(), size >= 1 && size <= 50) << size;
  }
}

TEST_F(Config, DoesNotLookAtTheWindowWithoutAContextsFile) {
  for (const ContextWindow window : {ContextWindow{ContextWindow::sentences, 3}, ContextWindow{ContextWindow::words, 0},
                                     ContextWindow{ContextWindow::words, 51}}) {
    settings::context_window = window;
    EXPECT_TRUE(settings::correct()) << window.size;
  }
}

TEST_F(Config, TracesContextsExactlyWhenTheirFileIsSet) {
  EXPECT_FALSE(settings::context_tracing_on());
  settings::context_output_file = "contexts";
  EXPECT_TRUE(settings::context_tracing_on());
}

TEST(MaskLessThan, PutsTheUnsetMaskFirst) {
  EXPECT_TRUE(settings::_mask_less_than(nullptr, nullptr));
  EXPECT_TRUE(settings::_mask_less_than(nullptr, "*"));
  EXPECT_FALSE(settings::_mask_less_than("*", nullptr));
  EXPECT_FALSE(settings::_mask_less_than("", nullptr));
}

TEST(MaskLessThan, IsFalseWhenTheFirstKeepsWhatTheSecondDrops) {
  EXPECT_FALSE(settings::_mask_less_than("*", "-"));
  EXPECT_FALSE(settings::_mask_less_than("-*", "*-"));
  EXPECT_FALSE(settings::_mask_less_than("**", "*-*"));
}

TEST(MaskLessThan, DecidesByLengthWhenNothingElseDoes) {
  EXPECT_TRUE(settings::_mask_less_than("", ""));
  EXPECT_TRUE(settings::_mask_less_than("", "*"));
  EXPECT_FALSE(settings::_mask_less_than("-", ""));
  EXPECT_TRUE(settings::_mask_less_than("*-", "*-"));
  EXPECT_TRUE(settings::_mask_less_than("-", "*"));
  EXPECT_FALSE(settings::_mask_less_than("---", "**"));
}

TEST(MaskLessThan, AgreesWithItsPlainDefinition) {
  test::Random random;
  for (int round = 0; round < 5000; ++round) {
    const std::string a = random.text(5, "*-");
    const std::string b = random.text(5, "*-");
    bool expected = a.size() <= b.size();
    for (std::size_t p = 0; p < a.size() && p < b.size(); ++p)
      expected = expected && !(a[p] == '*' && b[p] == '-');
    ASSERT_EQ(settings::_mask_less_than(a.c_str(), b.c_str()), expected) << "'" << a << "' and '" << b << "'";
  }
}

}  // namespace
}  // namespace colx
