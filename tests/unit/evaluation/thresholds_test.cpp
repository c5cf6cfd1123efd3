// Sieves and thresholds: which N-grams reach the output datafile, and with which values.

#include "evaluation/thresholds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "evaluation/measures.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::SettingsGuard;

// The values of these measures, or nothing when the N-gram is rejected. What the vector held before does not matter.
std::optional<std::vector<double>> values_of(const std::vector<std::uint32_t>& frequencies,
                                             const std::vector<Measure>& list) {
  std::vector<double> values = {1e300, -1.0, 7.0};
  if (!evaluate(EvaluationTables(frequencies), list, values)) return std::nullopt;
  return values;
}

// What is written for an N-gram with these frequencies, or nothing when it is rejected.
std::optional<std::vector<double>> written_values(const std::vector<std::uint32_t>& frequencies) {
  return values_of(frequencies, measures());
}

// O = {930, 20, 40, 10}, E = {0.8, 0.6, 2, 1.5}: chi-square 1080663.23, log-likelihood 5883.107, mutual information
// 2.737, Pearson 0.2286, t test 2.701, z score 6.945.
const std::vector<std::uint32_t> example = {1000, 30, 50, 10};

// One measure that gives a fixed value and has a threshold.
template <int numerator, int denominator>
double fixed(const EvaluationTables&) {
  return numerator / static_cast<double>(denominator);
}
double not_a_number(const EvaluationTables&) {
  return std::numeric_limits<double>::quiet_NaN();
}

class ThresholdsTest : public ::testing::Test {
 protected:
  static bool passes() { return written_values(example).has_value(); }
  static std::optional<std::vector<double>> evaluate_with(const std::vector<Measure>& list) {
    return values_of(example, list);
  }

 private:
  SettingsGuard _guard{2};
};

TEST_F(ThresholdsTest, WithoutAnyEverythingPassesWithAllValues) {
  const std::optional<std::vector<double>> values = written_values(example);
  ASSERT_TRUE(values);
  const EvaluationTables tables(example);
  EXPECT_EQ(*values, (std::vector<double>{eval::chi_square_test(tables), eval::log_likelihood_ratio(tables),
                                          eval::mutual_information(tables), eval::pearsons_coefficient(tables),
                                          eval::t_test(tables), eval::z_score(tables)}));
}

TEST_F(ThresholdsTest, TheSieveOfExpectedFrequenciesLetsItsOwnFrequencyPass) {
  settings::sieves.estimated_frequency = EvaluationTables(example).expected_table()[3];  // 1.5
  EXPECT_TRUE(passes());
  settings::sieves.estimated_frequency = std::nextafter(settings::sieves.estimated_frequency, 2.0);
  EXPECT_FALSE(passes());
}

TEST_F(ThresholdsTest, AnExpectedFrequencyThatIsNotANumberPassesTheSieve) {
  settings::sieves.estimated_frequency = 1e9;
  EXPECT_TRUE(written_values({0, 0, 0, 0}));
}

TEST_F(ThresholdsTest, EachMeasureHasItsOwn) {
  double Thresholds::*const members[] = {
      &Thresholds::chi_square, &Thresholds::log_likelihood, &Thresholds::mutual_information,
      &Thresholds::pearson,    &Thresholds::t_test,         &Thresholds::z_score};
  const std::vector<double> values = *written_values(example);
  for (unsigned i = 0; i < 6; ++i) {
    settings::thresholds = {};
    settings::thresholds.*members[i] = values[i];
    EXPECT_TRUE(passes()) << "measure " << i << " at its threshold";
    settings::thresholds.*members[i] = std::nextafter(values[i], 1e10);
    EXPECT_FALSE(passes()) << "measure " << i << " below its threshold";
  }
}

TEST_F(ThresholdsTest, OneThatIsMetSuffices) {
  settings::thresholds.chi_square = 2e6;  // missed
  settings::thresholds.z_score = 6.9;     // met
  EXPECT_TRUE(passes());
  settings::thresholds = {};
  settings::thresholds.chi_square = 1e6;  // met
  settings::thresholds.z_score = 7.0;     // missed
  EXPECT_TRUE(passes());
  settings::thresholds.chi_square = 2e6;  // both missed
  EXPECT_FALSE(passes());
}

TEST_F(ThresholdsTest, AllTogetherEachMustBeMet) {
  settings::all_thresholds_together = true;
  EXPECT_TRUE(passes());
  settings::thresholds.chi_square = 2e6;  // missed
  settings::thresholds.z_score = 6.9;     // met
  EXPECT_FALSE(passes());
  settings::thresholds.chi_square = 1e6;  // met
  EXPECT_TRUE(passes());
  settings::thresholds.z_score = 7.0;  // missed
  EXPECT_FALSE(passes());
}

TEST_F(ThresholdsTest, OneThatIsNotPositiveIsNone) {
  for (const double none : {0.0, -1e9, std::numeric_limits<double>::quiet_NaN()}) {
    for (const bool together : {false, true}) {
      settings::all_thresholds_together = together;
      settings::thresholds = {};
      settings::thresholds.pearson = none;
      EXPECT_TRUE(passes()) << none;
      settings::thresholds.z_score = 7.0;  // missed
      EXPECT_FALSE(passes()) << none;
    }
  }
}

TEST_F(ThresholdsTest, NotANumberMeetsAny) {
  for (const bool together : {false, true}) {
    settings::all_thresholds_together = together;
    const auto values = evaluate_with({{not_a_number, 1e300}});
    ASSERT_TRUE(values);
    EXPECT_TRUE(std::isnan((*values)[0]));
  }
}

TEST_F(ThresholdsTest, PairsOfHapaxesMeetAnyChiSquare) {
  settings::thresholds.chi_square = 1e300;
  EXPECT_TRUE(written_values({1000, 1, 1, 1}));
}

TEST_F(ThresholdsTest, ValuesThatWereNotNeededToDecideAreWrittenAllTheSame) {
  // The first threshold decides; what follows has not been computed by then.
  const auto values = evaluate_with({{fixed<5, 1>, 1.0}, {fixed<7, 2>, 9.0}, {fixed<9, 1>, 0.0}});
  EXPECT_EQ(values, (std::vector<double>{5.0, 3.5, 9.0}));
}

TEST_F(ThresholdsTest, ZeroNegativeAndNotANumberValuesAreWrittenAsTheyAre) {
  const auto values = evaluate_with({{fixed<0, 1>, 1.0}, {fixed<-7, 2>, 1.0}, {not_a_number, 1.0}});
  ASSERT_TRUE(values);
  EXPECT_EQ((*values)[0], 0.0);
  EXPECT_EQ((*values)[1], -3.5);
  EXPECT_TRUE(std::isnan((*values)[2]));
}

TEST_F(ThresholdsTest, PairsHaveSixMeasuresInTheirOrder) {
  settings::thresholds = {1, 2, 3, 4, 5, 6};
  const std::vector<Measure> list = measures();
  ASSERT_EQ(list.size(), 6U);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(list[i].threshold, i + 1);
}

TEST(ThresholdsOfLargerNGramsTest, OnlyTheFirstTwoMeasuresExist) {
  for (std::uint8_t n = 3; n <= 7; ++n) {
    const SettingsGuard guard(n);
    settings::thresholds.mutual_information = 1e300;
    settings::thresholds.pearson = 1e300;
    settings::thresholds.t_test = 1e300;
    settings::thresholds.z_score = 1e300;
    settings::all_thresholds_together = true;
    std::vector<std::uint32_t> frequencies(NGram::_types_count, 5);
    frequencies[0] = 100;
    const auto values = written_values(frequencies);
    ASSERT_TRUE(values) << "n " << unsigned{n};
    EXPECT_EQ(values->size(), 2U) << "n " << unsigned{n};
  }
}

}  // namespace
}  // namespace colx
