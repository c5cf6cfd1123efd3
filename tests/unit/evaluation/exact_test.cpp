// Tables and measures with counts of 64 bits: those of 32 bits where nothing wraps, and right beyond.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/config.h"
#include "evaluation/evaluation.h"
#include "evaluation/measures.h"
#include "evaluation/thresholds.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::SettingsGuard;
using ExactCells = std::vector<std::uint64_t>;
using ExactTables = EvaluationTablesOf<std::uint64_t>;

// Frequencies of all patterns, from cells at random.
ExactCells random_exact_frequencies(test::Random& random, unsigned n, std::uint32_t largest) {
  ExactCells frequencies(std::size_t{1} << n);
  for (std::uint64_t& cell : frequencies)
    cell = 1 + random.below(largest);
  for (std::size_t bit = 1; bit < frequencies.size(); bit *= 2) {
    for (std::size_t i = 0; i < frequencies.size(); ++i)
      if ((i & bit) == 0) frequencies[i] += frequencies[i | bit];
  }
  return frequencies;
}

ExactCells times(const ExactCells& cells, unsigned shift) {
  ExactCells result = cells;
  for (std::uint64_t& cell : result)
    cell <<= shift;
  return result;
}

TEST(ExactTest, WhatFitsIn32BitsIsTheSameToTheLastBit) {
  test::Random random;
  for (int round = 0; round < 200; ++round) {
    const unsigned n = 2 + random.below(6);
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    const ExactCells frequencies = random_exact_frequencies(random, n, 1U << random.below(20));
    const EvaluationTables tables(std::vector<std::uint32_t>(frequencies.begin(), frequencies.end()));
    const ExactTables exact(frequencies);
    ASSERT_TRUE(std::equal(exact.contingency_table().begin(), exact.contingency_table().end(),
                           tables.contingency_table().begin()));
    ASSERT_EQ(exact.expected_table(), tables.expected_table());
    ASSERT_EQ(eval::chi_square_test(exact), eval::chi_square_test(tables));
    ASSERT_EQ(eval::log_likelihood_ratio(exact), eval::log_likelihood_ratio(tables));
    if (n > 2) continue;
    ASSERT_EQ(eval::mutual_information(exact), eval::mutual_information(tables));
    ASSERT_EQ(eval::t_test(exact), eval::t_test(tables));
    ASSERT_EQ(eval::z_score(exact), eval::z_score(tables));
  }
}

// A power of two takes no part in any rounding.
TEST(ExactTest, CountsBeyond32BitsGiveWhatSmallOnesGiveInProportion) {
  test::Random random;
  constexpr unsigned shift = 40;
  const double factor = std::ldexp(1.0, shift);
  for (int round = 0; round < 200; ++round) {
    const unsigned n = 2 + random.below(6);
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    const ExactCells frequencies = random_exact_frequencies(random, n, 1U << random.below(10));
    const ExactTables small(frequencies);
    const ExactTables large(times(frequencies, shift));
    ASSERT_EQ(large.contingency_table(), times(small.contingency_table(), shift));
    ASSERT_EQ(eval::chi_square_test(large), eval::chi_square_test(small) * factor);
    ASSERT_EQ(eval::log_likelihood_ratio(large), eval::log_likelihood_ratio(small) * factor);
    if (n > 2) continue;
    ASSERT_EQ(eval::mutual_information(large), eval::mutual_information(small));
    ASSERT_EQ(eval::pearsons_coefficient(large), eval::pearsons_coefficient(small));
    ASSERT_EQ(eval::t_test(large), eval::t_test(small) * std::sqrt(factor));
    ASSERT_EQ(eval::z_score(large), eval::z_score(small) * std::sqrt(factor));
  }
}

TEST(ExactTest, PearsonsCoefficientIsACorrelation) {
  const SettingsGuard guard(2);
  test::Random random;
  // O = {930, 20, 40, 10}: 32 bits hold the numerator and the denominator.
  EXPECT_EQ(eval::pearsons_coefficient(ExactTables(ExactCells{1000, 30, 50, 10})),
            eval::pearsons_coefficient(EvaluationTables(std::vector<std::uint32_t>{1000, 30, 50, 10})));
  // O = {10, 40, 30, 20}: negative, (20 x 10 - 30 x 40) / sqrt(50 x 60 x (40 x 50)).
  EXPECT_NEAR(eval::pearsons_coefficient(ExactTables(ExactCells{100, 60, 50, 20})), -1000 / std::sqrt(6000000.0),
              1e-15);
  for (int round = 0; round < 500; ++round) {
    const ExactCells f = times(random_exact_frequencies(random, 2, 1U << random.below(31)), random.below(29));
    const long double o3 = f[3], o2 = f[2] - f[3], o1 = f[1] - f[3], o0 = f[0] - f[1] - f[2] + f[3];
    const long double value = (o3 * o0 - o2 * o1) / std::sqrt((o3 + o2) * (o3 + o1) * (o0 + o2) * (o0 + o1));
    const double pearson = eval::pearsons_coefficient(ExactTables(f));
    EXPECT_NEAR(pearson, static_cast<double>(value), 1e-9);
    EXPECT_LE(std::fabs(pearson), 1.0 + 1e-15);
  }
}

TEST(ExactTest, SievesAndThresholdsCompareTrueValues) {
  const SettingsGuard guard(2);
  const ExactCells negative = {100, 60, 50, 20};
  const auto passes = [&] {
    std::vector<double> values;
    return evaluate(ExactTables(negative), measures<std::uint64_t>(), values);
  };
  EXPECT_TRUE(passes());
  settings::thresholds.pearson = 0.01;  // the coefficient of 32 bits would be far beyond
  EXPECT_FALSE(passes());
  settings::thresholds.pearson = 0.0;
  settings::sieves.estimated_frequency = 30.5;  // 60 x 50 / 100 are expected
  EXPECT_FALSE(passes());
}

}  // namespace
}  // namespace colx
