#include "rows/association.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "rows/fisher.h"

namespace colx::table {
namespace {

using Cells = std::vector<std::uint64_t>;

double _of(std::string_view measure, std::size_t n, const Cells& cells) {
  return associate(*find_association(measure), Contingency(n, cells));
}

// Manning and Schuetze, Foundations of Statistical Natural Language Processing (1999), chapter 5: C(new) = 15828,
// C(companies) = 4675, C(new companies) = 8, N = 14307668. The cells of the book's table add up to 8 more than N; these
// add up to N.
const Cells new_companies = {14307668 - 15828 - 4675 + 8, 4675 - 8, 15828 - 8, 8};

TEST(Association, GivesTheWorkedExampleOfNewCompanies) {
  // E = 15828 * 4675 / 14307668 = 5.17176; t = (8 - E) / sqrt(8). The book prints t = 0.999932 and X2 = 1.55.
  EXPECT_NEAR(_of("t", 2, new_companies), 0.999932, 5e-7);
  EXPECT_NEAR(_of("X2", 2, new_companies), 1.55, 0.005);
  EXPECT_NEAR(_of("MI", 2, new_companies), std::log2(8 / (15828.0 * 4675 / 14307668)), 1e-12);
}

TEST(Association, GivesTheLogLikelihoodRatiosOfTheSwissAndOfCant) {
  // Dunning (1993), table of bigrams of a Swiss report in English: "the swiss" 110 2442 111 29114, 270.72; "can t"
  // 29 13 123 31612, 263.90.
  EXPECT_NEAR(_of("G2", 2, {29114, 111, 2442, 110}), 270.72, 0.005);
  EXPECT_NEAR(_of("G2", 2, {31612, 123, 13, 29}), 263.90, 0.005);
}

TEST(Association, GivesTheMutualInformationOfAyatollahRuhollah) {
  // Manning and Schuetze (1999), chapter 5: 42 and 20 occurrences, 20 together, N = 14307668; I = 18.38.
  EXPECT_NEAR(_of("MI", 2, {14307668 - 42, 0, 22, 20}), 18.38, 0.005);
}

TEST(Association, GivesTheChiSquareOfVacheAndCow) {
  // Manning and Schuetze (1999), chapter 5: aligned sentences with cow and vache 59, vache alone 6, cow alone 8,
  // neither 570934; the book prints 456400.
  EXPECT_NEAR(_of("X2", 2, {570934, 6, 8, 59}), 456400, 0.5);
}

TEST(Association, KeepsItsDigitsNearIndependence) {
  // Expected values computed with 60 decimal digits.
  EXPECT_NEAR(_of("G2", 2, {5887, 1966, 1611, 538}) / 1.262685892437988e-08, 1, 1e-13);
  EXPECT_NEAR(_of("G2", 2, {103359978, 64962143, 510700594, 320977285}) / 2.923675987137196e-10, 1, 1e-13);
}

TEST(Association, GivesTheOddsRatioOfTheAspirinStudy) {
  // Agresti, Categorical Data Analysis: 189 and 10845, 104 and 10933; odds ratio 1.832.
  EXPECT_NEAR(_of("odds_ratio", 2, {10933, 104, 10845, 189}), 1.832, 0.0005);
}

TEST(Association, GivesFishersTeaTasting) {
  // Fisher, The Design of Experiments (1935): three of four cups right, p = (16 + 1) / 70 = 0.243; all four, 1 / 70.
  EXPECT_NEAR(_of("Fisher", 2, {3, 1, 1, 3}), -std::log10(17.0 / 70), 1e-12);
  EXPECT_NEAR(_of("Fisher", 2, {4, 0, 0, 4}), std::log10(70.0), 1e-12);
}

TEST(Association, ComputesEveryMeasureOfASmallTableByHand) {
  // f = 1, marginals 2 and 2, total 7: E = 4/7, 10/7, 10/7, 25/7 for both, first only, second only, neither.
  const Cells cells = {4, 1, 1, 1};
  EXPECT_NEAR(_of("G2", 2, cells), 2 * (std::log(7.0 / 4) + 2 * std::log(7.0 / 10) + 4 * std::log(28.0 / 25)), 1e-12);
  // (3/7)^2 (7/4 + 7/10 + 7/10 + 7/25) = 9/49 * 3.43 = 0.63
  EXPECT_NEAR(_of("X2", 2, cells), 0.63, 1e-12);
  EXPECT_NEAR(_of("MI", 2, cells), std::log2(1.75), 1e-12);
  EXPECT_NEAR(_of("MI3", 2, cells), std::log2(1.75), 1e-12);
  EXPECT_DOUBLE_EQ(_of("Dice", 2, cells), 0.5);
  EXPECT_DOUBLE_EQ(_of("logDice", 2, cells), 13);
  EXPECT_NEAR(_of("t", 2, cells), 3.0 / 7, 1e-12);
  EXPECT_NEAR(_of("z", 2, cells), 3.0 / 7 / std::sqrt(4.0 / 7), 1e-12);
  EXPECT_DOUBLE_EQ(_of("odds_ratio", 2, cells), 4);
}

TEST(Association, UsesAllCellsOfTriples) {
  // Two triples, each with words of its own: marginals 1, total 2, every expected cell 2 / 8 = 1/4.
  const Cells cells = {1, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_NEAR(_of("G2", 3, cells), 4 * std::log(4.0), 1e-12);
  EXPECT_NEAR(_of("X2", 3, cells), 2 * 2.25 + 6 * 0.25, 1e-12);
  EXPECT_DOUBLE_EQ(_of("MI", 3, cells), 2);
  EXPECT_DOUBLE_EQ(_of("Dice", 3, cells), 1);
  EXPECT_FALSE(is_defined(*find_association("Fisher"), 3));
}

TEST(Association, LeavesImpossibleCellsOutOfTheSums) {
  EXPECT_DOUBLE_EQ(_of("X2", 2, {0, 0, 3, 2}), 0);
  EXPECT_DOUBLE_EQ(_of("G2", 2, {0, 0, 3, 2}), 0);
  EXPECT_TRUE(std::isinf(_of("odds_ratio", 2, {3, 0, 1, 1})));
  EXPECT_TRUE(std::isnan(_of("MI", 2, {0, 0, 0, 0})));
}

TEST(Fisher, AgreesWithItsExpansion) {
  for (const std::uint64_t total : {20U, 137U, 999U, 1000U})
    for (std::uint64_t first = 1; first < total; first += 1 + total / 9)
      for (std::uint64_t second = 1; second < total; second += 1 + total / 7)
        for (std::uint64_t both = first + second > total ? first + second - total : 0; both <= first && both <= second;
             both += 1 + total / 11) {
          const double expected = fisher_association(both, first, second, total);
          EXPECT_NEAR(fisher_by_expansion(both, first, second, total), expected, 1e-11 * expected)
              << both << ' ' << first << ' ' << second << ' ' << total;
        }
}

TEST(Fisher, KeepsItsDigitsWhenTheProbabilityIsNearOne) {
  // One or more of one with n = 500, f1 = 475, f2 = 1 or 2: 1 - P(0) with P(0) = 25/500 and 25 * 24 / (500 * 499).
  EXPECT_NEAR(fisher_association(1, 475, 1, 500), -std::log1p(-25.0 / 500) / std::log(10.0), 1e-14);
  EXPECT_NEAR(fisher_association(1, 475, 2, 500), -std::log1p(-25.0 * 24 / (500.0 * 499)) / std::log(10.0), 1e-15);
  // P(0) = 25! / (500 * 499 * ... * 476) for f2 = 25.
  long double none = 1;
  for (int i = 0; i < 25; ++i)
    none *= (25.0L - i) / (500.0L - i);
  const double expected = static_cast<double>(none / std::log(10.0L));
  EXPECT_NEAR(fisher_association(1, 475, 25, 500) / expected, 1, 1e-9);
}

TEST(Fisher, KeepsItsDigitsWhenAlmostEveryTableIsInTheTail) {
  // f1 = f = 6 and f2 = n - 1: the one word that lacks the second is not among the six, P = (n - 6) / n.
  for (const std::uint64_t total : {1000U, 1000000U, 1000000000U}) {
    const double expected = -std::log1p(-6.0 / static_cast<double>(total)) / std::log(10.0);
    EXPECT_NEAR(fisher_association(6, 6, total - 1, total) / expected, 1, 1e-12) << total;
  }
}

TEST(Association, FindsIndependenceExactly) {
  // f n = f1 f2 with numbers whose products leave 64 bits.
  const std::uint64_t k = 3000000019U;
  const Cells cells = {2 * k, k, 2 * k, k};
  for (const std::string_view measure : {"G2", "X2", "MI", "t", "z"})
    EXPECT_EQ(_of(measure, 2, cells), 0);
}

TEST(Association, GivesTheZeroPointOfLogDice) {
  // Rychly (2008): the score is 0 where less than 1 of 16,000 (2^14) occurrences of either word is a common one.
  EXPECT_NEAR(_of("logDice", 2, {1000000, 16383, 16383, 1}), 0, 1e-12);
}

TEST(Fisher, StaysFiniteBeyondTheRangeOfProbabilities) {
  // 1 / (10^10 choose 1000)
  long double expected = 0;
  for (int i = 0; i < 1000; ++i)
    expected += std::log10((1e10L - i) / (1000.0L - i));
  EXPECT_NEAR(fisher_association(1000, 1000, 1000, 10000000000U) / static_cast<double>(expected), 1, 1e-14);
}

}  // namespace
}  // namespace colx::table
