#include "rows/association.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
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
  EXPECT_NEAR(_of("G2", 2, {5887, 1966, 1611, 538}) / -1.262685892437988e-08, 1, 1e-13);  // f < E
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

TEST(Association, KeepsItsDigitsNearIndependenceOfTriplesOfABigCorpus) {
  // Total 10^13; expected values computed with 60 decimal digits.
  const std::uint64_t eighth = 1250000000000;
  const Cells cells = {eighth + 3, eighth, eighth, eighth, eighth, eighth, eighth, eighth + 7};
  EXPECT_NEAR(_of("G2", 3, cells) / 3.15999999999292e-11, 1, 1e-12);
  EXPECT_NEAR(_of("X2", 3, cells) / 3.15999999999492e-11, 1, 1e-12);
  EXPECT_NEAR(_of("t", 3, cells) / 3.8013155617384623e-06, 1, 1e-14);
  EXPECT_NEAR(_of("MI", 3, cells) / 4.905163139002653e-12, 1, 1e-12);
}

TEST(Association, GivesTheDirectionsOfOfCourse) {
  // Gries, 50-something years of work on collocations (2013): of course in a corpus, 5610 and 168938, 2257 and
  // 10233063; the book prints 0.032 for course after of and 0.697 for of before course.
  const Cells of_course = {10233063, 2257, 168938, 5610};
  EXPECT_NEAR(_of("delta_p12", 2, of_course), 0.032, 0.0005);
  EXPECT_NEAR(_of("delta_p21", 2, of_course), 0.697, 0.0005);
}

TEST(Association, GivesTheCriticalValuesOfChiSquare) {
  // Marginals of 20 in 40 and an excess of e in each cell make X2 = 40 (e / 10)^2; 3.6 at e = 3. The upper tail with
  // one degree of freedom is erfc(sqrt(X2 / 2)).
  const Cells cells = {13, 7, 7, 13};
  EXPECT_NEAR(_of("X2", 2, cells), 3.6, 1e-12);
  EXPECT_NEAR(_of("p_X2", 2, cells), std::erfc(std::sqrt(1.8)), 1e-14);
  EXPECT_NEAR(_of("p_G2", 2, cells), std::erfc(std::sqrt(_of("G2", 2, cells) / 2)), 1e-14);
  EXPECT_EQ(_of("p_X2", 2, {7, 13, 13, 7}), _of("p_X2", 2, cells));  // two-sided
  EXPECT_EQ(_of("p_G2", 2, {1000000, 0, 0, 1000000}), 0);
}

TEST(Association, StatisticsHaveTheSignOfTheExcess) {
  const Cells apart = {10, 20, 20, 10};
  for (const std::string_view name : {"G2", "X2", "simple_ll"}) {
    const double value = _of(name, 2, apart);
    EXPECT_LT(value, 0) << name;
    EXPECT_EQ(associate(*find_association(name), Contingency(2, apart), Sign::none), -value) << name;
    EXPECT_GT(_of(name, 2, {20, 10, 10, 20}), 0) << name;
    // For triples it is that of the whole N-gram: here 1 instead of 27 * 27 * 27 / 53^2.
    EXPECT_LT(_of(name, 3, {1, 13, 13, 0, 13, 0, 0, 1}), 0) << name;
  }
  EXPECT_LT(_of("phi", 2, apart), 0);
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
  EXPECT_NEAR(_of("expected", 2, cells), 4.0 / 7, 1e-15);
  EXPECT_NEAR(_of("simple_ll", 2, cells), 2 * (std::log(1.75) - 3.0 / 7), 1e-12);
  EXPECT_NEAR(_of("poisson", 2, cells), std::log(1.75) - 1, 1e-12);
  EXPECT_NEAR(_of("local_mi", 2, cells), std::log2(1.75), 1e-12);
  EXPECT_NEAR(_of("npmi", 2, cells), std::log2(1.75) / std::log2(7.0), 1e-12);
  EXPECT_NEAR(_of("jaccard", 2, cells), 1.0 / 3, 1e-15);
  EXPECT_DOUBLE_EQ(_of("min_sensitivity", 2, cells), 0.5);
  EXPECT_NEAR(_of("phi", 2, cells), 3 / std::sqrt(2.0 * 2 * 5 * 5), 1e-15);
  EXPECT_NEAR(_of("delta_p12", 2, cells), 1.0 / 2 - 1.0 / 5, 1e-15);
  EXPECT_NEAR(_of("log_ratio", 2, cells), std::log2((1.0 / 2) / (1.0 / 5)), 1e-12);
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

TEST(Association, HasLimitsWhereWordsNeverMeetOrNeverPart) {
  const Cells never_together = {5, 3, 2, 0};
  for (const std::string_view name : {"poisson", "local_mi", "jaccard", "min_sensitivity", "Dice"})
    EXPECT_EQ(_of(name, 2, never_together), 0) << name;
  EXPECT_EQ(_of("npmi", 2, never_together), -1);
  EXPECT_EQ(_of("log_ratio", 2, never_together), -std::numeric_limits<double>::infinity());
  const Cells always_together = {5, 0, 0, 3};
  EXPECT_NEAR(_of("phi", 2, always_together), 1, 1e-15);
  EXPECT_NEAR(_of("npmi", 2, always_together), 1, 1e-15);
  EXPECT_EQ(_of("log_ratio", 2, always_together), std::numeric_limits<double>::infinity());
  EXPECT_NEAR(_of("delta_p21", 2, always_together), 1, 1e-15);
  const Cells nothing_else = {0, 0, 0, 3};
  EXPECT_TRUE(std::isnan(_of("npmi", 2, nothing_else)));
  EXPECT_TRUE(std::isnan(_of("phi", 2, nothing_else)));
  EXPECT_TRUE(std::isnan(_of("delta_p12", 2, nothing_else)));
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
