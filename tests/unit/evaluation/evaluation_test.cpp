// Contingency tables from frequencies: by hand and against counting by brute force.

#include "evaluation/evaluation.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include "tests/reference/plain_tables.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::SettingsGuard;
using Cells = std::vector<std::uint32_t>;

// What an N-gram's frequencies are when exactly `cells[i]` N-grams share exactly the members of i with it.
Cells frequencies_of(const Cells& cells) {
  Cells frequencies(cells.size(), 0);
  for (std::size_t t = 0; t < cells.size(); ++t) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if ((i & t) == t) frequencies[t] += cells[i];
    }
  }
  return frequencies;
}

// The expected cell straight from its formula: N times, for each member, its share of present or absent N-grams.
long double expected_cell(std::size_t cell, unsigned n, const Cells& frequencies, const Cells& observed) {
  const long double total = frequencies[0];
  long double expected = total;
  for (unsigned k = 0; k < n; ++k) {
    const std::size_t bit = std::size_t{1} << k;
    const std::uint32_t absent = frequencies[0] - frequencies[bit] - observed[0];
    expected *= ((cell & bit) != 0 ? frequencies[bit] : absent) / total;
  }
  return expected;
}

TEST(EvaluationTablesTest, TablesOfAPair) {
  const SettingsGuard guard(2);
  const EvaluationTables tables(Cells{1000, 30, 50, 10});
  EXPECT_EQ(tables.frequencies(), (Cells{1000, 30, 50, 10}));
  // Both 10; the first alone 50 - 10, the second alone 30 - 10, neither 1000 - 40 - 20 - 10.
  EXPECT_EQ(tables.contingency_table(), (Cells{930, 20, 40, 10}));
  EXPECT_EQ(tables.inverse_marginals()[1], 40U);  // without the second member but not cell 0: 40
  EXPECT_EQ(tables.inverse_marginals()[2], 20U);
  EXPECT_DOUBLE_EQ(tables.expected_table()[3], 1.5);  // 50 x 30 / 1000
  EXPECT_DOUBLE_EQ(tables.expected_table()[2], 2.0);  // 50 x 40 / 1000
  EXPECT_DOUBLE_EQ(tables.expected_table()[1], 0.6);  // 20 x 30 / 1000
  EXPECT_DOUBLE_EQ(tables.expected_table()[0], 0.8);  // 20 x 40 / 1000
}

TEST(EvaluationTablesTest, CellsThatShareNoBitFeedTheInverseMarginals) {
  const SettingsGuard guard(2);
  const EvaluationTables tables(Cells{1000, 30, 50, 10});
  // Cell 0 is fed by 1, 2 and 3: 20 + 40 + 10; cell 3 by none.
  EXPECT_EQ(tables.inverse_marginals(), (Cells{70, 40, 20, 0}));
}

TEST(EvaluationTablesTest, TablesOfATriple) {
  const SettingsGuard guard(3);
  // Cells 000 to 111: 1, 2, 4, 8, 16, 32, 64, 128. F[1] = 2 + 8 + 32 + 128 = 170, F[2] = 4 + 8 + 64 + 128 = 204,
  // F[3] = 8 + 128, F[4] = 16 + 32 + 64 + 128, F[5] = 32 + 128, F[6] = 64 + 128.
  const EvaluationTables tables(Cells{255, 170, 204, 136, 240, 160, 192, 128});
  EXPECT_EQ(tables.contingency_table(), (Cells{1, 2, 4, 8, 16, 32, 64, 128}));
  EXPECT_EQ(tables.inverse_marginals()[1], 84U);  // cells 2, 4 and 6: 4 + 16 + 64
  EXPECT_EQ(tables.inverse_marginals()[2], 50U);  // cells 1, 4 and 5: 2 + 16 + 32
  EXPECT_EQ(tables.inverse_marginals()[4], 14U);  // cells 1, 2 and 3: 2 + 4 + 8
  EXPECT_NEAR(tables.expected_table()[7], 240.0 * 204 * 170 / 255 / 255, 1e-9);
  EXPECT_NEAR(tables.expected_table()[5], 240.0 * 50 * 170 / 255 / 255, 1e-9);
  EXPECT_NEAR(tables.expected_table()[0], 14.0 * 50 * 84 / 255 / 255, 1e-9);
}

TEST(EvaluationTablesTest, RecoversTheCellsFromWhichFrequenciesWereCounted) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const unsigned n = 2 + seed % 6;
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    Cells cells(std::size_t{1} << n);
    for (std::uint32_t& cell : cells)
      cell = static_cast<std::uint32_t>(random() % 3 == 0 ? 0 : random() % 100000);
    ++cells.back();
    const Cells frequencies = frequencies_of(cells);
    const EvaluationTables tables(frequencies);
    ASSERT_EQ(tables.contingency_table(), cells);
    for (std::size_t i = 0; i < cells.size(); ++i) {
      std::uint32_t disjoint = 0;
      for (std::size_t j = 1; j < cells.size(); ++j) {
        if ((i & j) == 0) disjoint += cells[j];
      }
      ASSERT_EQ(tables.inverse_marginals()[i], disjoint) << "cell " << i;
      const long double expected = expected_cell(i, n, frequencies, cells);
      ASSERT_NEAR(tables.expected_table()[i], static_cast<double>(expected), static_cast<double>(expected) * 1e-12)
          << "cell " << i;
    }
    for (unsigned k = 0; k < n; ++k) {
      const std::size_t bit = std::size_t{1} << k;
      ASSERT_EQ(tables.inverse_marginals()[bit], frequencies[0] - frequencies[bit] - cells[0]);
    }
  }
}

TEST(EvaluationTablesTest, CellsCountHowAPopulationAgreesWithOneOfItsNGrams) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const unsigned n = 2 + seed % 6;
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    std::vector<std::vector<unsigned>> population(400, std::vector<unsigned>(n));
    for (auto& ngram : population) {
      for (unsigned& member : ngram)
        member = static_cast<unsigned>(random() % 3);
    }
    const std::vector<unsigned>& target = population.front();
    Cells frequencies(std::size_t{1} << n, 0), exact(std::size_t{1} << n, 0);
    for (const auto& ngram : population) {
      std::size_t shared = 0;
      for (unsigned k = 0; k < n; ++k) {
        if (ngram[k] == target[k]) shared |= std::size_t{1} << (n - 1 - k);
      }
      ++exact[shared];
      for (std::size_t t = 0; t < frequencies.size(); ++t) {
        if ((shared & t) == t) ++frequencies[t];
      }
    }
    ASSERT_EQ(EvaluationTables(frequencies).contingency_table(), exact);
  }
}

TEST(EvaluationTablesTest, CellsSumToTheTotalEvenWhenTheyWrap) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const unsigned n = 2 + seed % 6;
    const SettingsGuard guard(static_cast<std::uint8_t>(n));
    Cells frequencies(std::size_t{1} << n);
    for (std::uint32_t& frequency : frequencies)
      frequency = static_cast<std::uint32_t>(random());
    const EvaluationTables tables(frequencies);
    const Cells& cells = tables.contingency_table();
    ASSERT_EQ(std::accumulate(cells.begin(), cells.end(), std::uint32_t{0}), frequencies[0]);
    ASSERT_EQ(frequencies_of(cells), frequencies);
  }
}

// One object for all tables, as in the program; also frequencies that no corpus gives.
TEST(EvaluationTablesTest, AgreesToTheLastBitWithTablesThatListTheirCells) {
  test::Random random;
  EvaluationTables tables;
  for (int round = 0; round < 3000; ++round) {
    const unsigned n = 2 + random.below(6);
    const std::uint32_t kind = random.below(4);
    Cells frequencies(std::size_t{1} << n);
    for (std::uint32_t& frequency : frequencies) {
      frequency = kind == 0   ? static_cast<std::uint32_t>(random.engine()())
                  : kind == 1 ? random.below(3)
                              : random.below(1 + random.below(1000000));
    }
    if (kind == 3) {
      frequencies = frequencies_of(frequencies);
    } else if (random.once_in(10)) {
      frequencies[0] = 0;
    }
    tables.assign(frequencies);
    const reference::PlainTables plain(frequencies);
    ASSERT_EQ(tables.frequencies(), frequencies);
    ASSERT_EQ(tables.contingency_table(), plain.contingency_table);
    ASSERT_EQ(tables.inverse_marginals(), plain.inverse_marginals);
    for (std::size_t i = 0; i < frequencies.size(); ++i) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(tables.expected_table()[i]),
                std::bit_cast<std::uint64_t>(plain.expected_table[i]))
          << "cell " << i << " of " << ::testing::PrintToString(frequencies);
    }
  }
}

TEST(EvaluationTablesTest, APatternRarerThanItsNGramWraps) {
  const SettingsGuard guard(2);
  // F[1] = 3 below F[3] = 5: cell 1 is -2.
  EXPECT_EQ(EvaluationTables(Cells{10, 3, 6, 5}).contingency_table(), (Cells{6, 4294967294U, 1, 5}));
}

TEST(EvaluationTablesTest, WithoutAnyNGramNothingIsExpected) {
  const SettingsGuard guard(2);
  const EvaluationTables tables(Cells{0, 0, 0, 0});
  for (const double expected : tables.expected_table())
    EXPECT_TRUE(std::isnan(expected));
}

}  // namespace
}  // namespace colx
