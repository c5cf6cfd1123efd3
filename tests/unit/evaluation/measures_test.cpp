// The association measures: the values of worked tables, degenerate tables, and random ones against the formulas in
// extended precision.

#include "evaluation/measures.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::SettingsGuard;
using Cells = std::vector<std::uint32_t>;

constexpr double infinity = std::numeric_limits<double>::infinity();

class MeasuresOfPairsTest : public ::testing::Test {
 private:
  SettingsGuard _guard{2};
};

// O = {930, 20, 40, 10}, E = {0.8, 0.6, 2.0, 1.5}.
EvaluationTables worked_example() {
  return EvaluationTables(Cells{1000, 30, 50, 10});
}

TEST_F(MeasuresOfPairsTest, ChiSquare) {
  // 929.2^2 / 0.8 + 19.4^2 / 0.6 + 38^2 / 2 + 8.5^2 / 1.5 = 1079265.8 + 627.2666... + 722 + 48.1666...
  EXPECT_NEAR(eval::chi_square_test(worked_example()), 1080663.2333333333, 1e-6);
}

TEST_F(MeasuresOfPairsTest, LogLikelihoodRatioIsToBase10) {
  const double by_hand =
      2 * (930 * std::log10(1162.5) + 20 * std::log10(100.0 / 3) + 40 * std::log10(20.0) + 10 * std::log10(20.0 / 3));
  EXPECT_NEAR(eval::log_likelihood_ratio(worked_example()), by_hand, 1e-9);
  EXPECT_NEAR(eval::log_likelihood_ratio(worked_example()), 5883.107, 5e-4);
}

TEST_F(MeasuresOfPairsTest, MutualInformationIsToBase2) {
  // (10 / 1000) / ((50 / 1000) (30 / 1000)) = 20 / 3
  EXPECT_NEAR(eval::mutual_information(worked_example()), std::log2(20.0 / 3), 1e-12);
  EXPECT_NEAR(eval::mutual_information(worked_example()), 2.737, 5e-4);
}

TEST_F(MeasuresOfPairsTest, PearsonsCoefficient) {
  // 10 x 930 - 40 x 20 = 8500; 50 x 30 x (970 x 950) = 1382250000, which fits 32 bits.
  EXPECT_NEAR(eval::pearsons_coefficient(worked_example()), 8500 / std::sqrt(1382250000.0), 1e-14);
  EXPECT_NEAR(eval::pearsons_coefficient(worked_example()), 0.2286, 5e-5);
}

TEST_F(MeasuresOfPairsTest, PearsonsNumeratorWrapsForANegativeAssociation) {
  // O = {10, 40, 30, 20}: 20 x 10 - 30 x 40 = -1000, that is 4294966296; 50 x 60 x (40 x 50) = 6000000.
  const EvaluationTables tables(Cells{100, 60, 50, 20});
  EXPECT_NEAR(eval::pearsons_coefficient(tables), 4294966296.0 / std::sqrt(6000000.0), 1e-6);
  EXPECT_GT(eval::pearsons_coefficient(tables), 1e6);
}

TEST_F(MeasuresOfPairsTest, PearsonsDenominatorWraps) {
  // O = {881240, 312, 1540, 96}. 96 x 881240 - 1540 x 312 = 84118560. (96 + 1540)(96 + 312) = 667488 times
  // (882780 x 881552), every product modulo 2^32.
  const std::uint64_t modulus = 4294967296;
  const std::uint64_t right = 882780ULL * 881552ULL % modulus;
  const std::uint64_t denominator = 667488ULL * right % modulus;
  const EvaluationTables tables(Cells{883188, 408, 1636, 96});
  EXPECT_NEAR(eval::pearsons_coefficient(tables), 84118560 / std::sqrt(static_cast<double>(denominator)), 1e-9);
  EXPECT_NEAR(eval::pearsons_coefficient(tables), 1564.507478, 5e-7);
}

TEST_F(MeasuresOfPairsTest, TTest) {
  EXPECT_NEAR(eval::t_test(worked_example()), 8.5 / std::sqrt(9.9), 1e-12);  // 10 (1 - 10 / 1000)
  EXPECT_NEAR(eval::t_test(worked_example()), 2.701, 5e-4);
}

TEST_F(MeasuresOfPairsTest, ZScore) {
  EXPECT_NEAR(eval::z_score(worked_example()), 8.5 / std::sqrt(1.5 * 0.9985), 1e-12);
  EXPECT_NEAR(eval::z_score(worked_example()), 6.945, 5e-4);
}

TEST_F(MeasuresOfPairsTest, APairThatOccursOnceOfWordsThatOccurOnce) {
  // O = {999, 0, 0, 1}; nobody has one member alone, so E = {0, 0, 0, 0.001}.
  const EvaluationTables tables(Cells{1000, 1, 1, 1});
  EXPECT_EQ(tables.expected_table()[0], 0.0);
  EXPECT_EQ(tables.expected_table()[1], 0.0);
  // 999^2 / 0 is infinite, 0 / 0 not a number; but an observed cell of 0 adds nothing to the ratio.
  EXPECT_TRUE(std::isnan(eval::chi_square_test(tables)));
  EXPECT_EQ(eval::log_likelihood_ratio(tables), infinity);
}

TEST_F(MeasuresOfPairsTest, AnEmptyCellAddsNothingToTheRatioEvenWhenNothingIsExpected) {
  // A single pair: O = {0, 0, 0, 1}, E = {0, 0, 0, 1}: 1 log 1 and nothing else.
  const EvaluationTables tables(Cells{1, 1, 1, 1});
  EXPECT_EQ(eval::log_likelihood_ratio(tables), 0.0);
  EXPECT_TRUE(std::isnan(eval::chi_square_test(tables)));
}

TEST_F(MeasuresOfPairsTest, WithoutAnyNGramTheMeasuresAreNotNumbers) {
  const EvaluationTables tables(Cells{0, 0, 0, 0});
  EXPECT_TRUE(std::isnan(eval::chi_square_test(tables)));
  EXPECT_EQ(eval::log_likelihood_ratio(tables), 0.0);  // all observed cells are 0
  EXPECT_TRUE(std::isnan(eval::mutual_information(tables)));
  EXPECT_TRUE(std::isnan(eval::pearsons_coefficient(tables)));
  EXPECT_TRUE(std::isnan(eval::t_test(tables)));
  EXPECT_TRUE(std::isnan(eval::z_score(tables)));
}

TEST_F(MeasuresOfPairsTest, AZeroDenominatorOfPearsonGivesAnInfiniteValue) {
  // O = {2^16 - 1, 0, 0, 1}: the numerator is 65535; the denominator 1 x 1 x 65535^2 fits. With O[0] = 2^16 it is
  // 2^32, which is 0.
  EXPECT_NEAR(eval::pearsons_coefficient(EvaluationTables(Cells{65536, 1, 1, 1})), 1.0, 1e-12);
  EXPECT_EQ(eval::pearsons_coefficient(EvaluationTables(Cells{65537, 1, 1, 1})), infinity);
}

TEST_F(MeasuresOfPairsTest, AnNGramMoreFrequentThanAllNGramsHasNoScores) {
  // F[3] = 5 above N = 4: 1 - 5 / 4 is negative. E[3] = 5 x 5 / 4 as well.
  const EvaluationTables tables(Cells{4, 5, 5, 5});
  EXPECT_TRUE(std::isnan(eval::t_test(tables)));
  EXPECT_TRUE(std::isnan(eval::z_score(tables)));
}

TEST(GuardedLogarithmTest, AnArgumentCloseToZeroGivesTheSmallestNormalDouble) {
  const double smallest = 2.2250738585072014e-308;
  const double epsilon = 2.220446049250313e-16;
  EXPECT_EQ(_log10(0.0), smallest);
  EXPECT_EQ(_log10(-0.0), smallest);
  EXPECT_EQ(_log10(std::nextafter(epsilon, 0.0)), smallest);
  EXPECT_EQ(_log10(-std::nextafter(epsilon, 0.0)), smallest);
  EXPECT_EQ(_log10(epsilon), std::log10(epsilon));
  EXPECT_TRUE(std::isnan(_log10(-epsilon)));
  EXPECT_TRUE(std::isnan(_log10(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_EQ(_log10(infinity), infinity);
  EXPECT_EQ(_log10(1000.0), 3.0);
}

// Frequencies of random cells, each at least 1.
std::vector<std::uint32_t> random_frequencies(std::mt19937& random, unsigned n, std::uint32_t largest) {
  std::vector<std::uint32_t> frequencies(std::size_t{1} << n, 0);
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    const auto cell = static_cast<std::uint32_t>(1 + random() % (i == 0 ? largest * 50 : largest));
    for (std::size_t t = 0; t < frequencies.size(); ++t) {
      if ((i & t) == t) frequencies[t] += cell;
    }
  }
  return frequencies;
}

void expect_close(double value, long double formula, long double scale) {
  EXPECT_NEAR(value, static_cast<double>(formula), static_cast<double>(1e-12L * scale));
}

TEST(MeasuresTest, FollowTheirFormulasForAnyNumberOfMembers) {
  for (unsigned seed = 1; seed <= 120; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const unsigned n = 2 + seed % 6;
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    const EvaluationTables tables(random_frequencies(random, n, 2000));
    long double chi_square = 0, ratio = 0, ratio_scale = 0;
    for (std::size_t i = 0; i < tables.frequencies().size(); ++i) {
      const long double o = tables.contingency_table()[i];
      const long double e = tables.expected_table()[i];
      chi_square += (o - e) * (o - e) / e;
      ratio += 2 * o * std::log10(o / e);
      ratio_scale += std::fabs(2 * o * std::log10(o / e));
    }
    expect_close(eval::chi_square_test(tables), chi_square, chi_square);
    expect_close(eval::log_likelihood_ratio(tables), ratio, ratio_scale);
  }
}

TEST(MeasuresTest, FollowTheirFormulasForPairs) {
  const SettingsGuard guard(2);
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    // Small ones stay within 32 bits, large ones do not.
    const std::array<std::uint32_t, 3> largest = {3, 40, 100000};
    const EvaluationTables tables(random_frequencies(random, 2, largest[seed % 3]));
    const std::vector<std::uint32_t>& f = tables.frequencies();
    const long double total = f[0], first = f[2], second = f[1], both = f[3];
    const long double expected = first * second / total;
    const long double information = std::log2(both * total / (first * second));
    expect_close(eval::mutual_information(tables), information, 1 + std::fabs(information));
    const long double t_deviation = std::sqrt(both * (1 - both / total));
    expect_close(eval::t_test(tables), (both - expected) / t_deviation, (both + expected) / t_deviation);
    const long double z_deviation = std::sqrt(expected * (1 - expected / total));
    expect_close(eval::z_score(tables), (both - expected) / z_deviation, (both + expected) / z_deviation);

    // Modulo 2^32 after every step.
    const std::uint64_t modulus = 4294967296;
    const std::uint64_t o0 = f[0] + f[3] - f[1] - f[2], o1 = f[1] - f[3], o2 = f[2] - f[3], o3 = f[3];
    const std::uint64_t numerator = (o3 * o0 % modulus + modulus - o2 * o1 % modulus) % modulus;
    const std::uint64_t left = (o3 + o2) * (o3 + o1) % modulus;
    const std::uint64_t right = (o0 + o2) * (o0 + o1) % modulus;
    const long double denominator = std::sqrt(static_cast<long double>(left * right % modulus));
    const long double coefficient = static_cast<long double>(numerator) / denominator;
    if (denominator > 0) expect_close(eval::pearsons_coefficient(tables), coefficient, coefficient);
  }
}

}  // namespace
}  // namespace colx
