// The lines of cells and measures, and that remembering them changes nothing.

#include "output/result_lines.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"
#include "evaluation/thresholds.h"
#include "model/ngram.h"
#include "output/number_format.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using Frequencies = std::vector<std::uint32_t>;

// The lines as streams write them; nothing for an N-gram that is rejected.
std::string plain_lines(const Frequencies& frequencies) {
  const EvaluationTables tables(frequencies);
  std::vector<double> values;
  if (!evaluate(tables, measures(), values)) return "";
  std::ostringstream os;
  os.precision(settings::precision);
  const char* separator = "";
  for (const std::uint32_t cell : tables.contingency_table()) {
    os << separator << cell;
    separator = "\t";
  }
  separator = "\n";
  for (const double value : values) {
    os << separator << value;
    separator = "\t";
  }
  os << "\n\n";
  return os.str();
}

std::string stats_line(const std::vector<double>& values, std::uint32_t precision) {
  std::vector<char> line(values.size() * (longest_general(precision) + 1));
  return {line.data(), _print_stats(line.data(), values, precision)};
}

TEST(ResultLinesTest, ValuesOfAFrequentPair) {
  const test::SettingsGuard guard(2);
  ResultLines lines;
  EXPECT_EQ(lines.get(Frequencies{883188, 408, 1636, 96}),
            "881240\t312\t1540\t96\n"
            "1.427467316e+12\t10954970.91\t6.98894117\t1564.507478\t9.721351758\t109.5579013\n\n");
}

TEST(ResultLinesTest, DoublesAreInGeneralNotation) {
  EXPECT_EQ(stats_line({0.5, 1e-7}, 10) + stats_line({123456789012.0, -0.25, 1.0 / 3, 100, 0, 1e15}, 10),
            "0.5\t1e-07\n"
            "1.23456789e+11\t-0.25\t0.3333333333\t100\t0\t1e+15\n");
}

TEST(ResultLinesTest, CellsAreUnsigned) {
  char line[64];
  char* const end = _print_tables(line, EvaluationTables(Frequencies{10, 3, 6, 5}));  // cell 1 is 3 - 5
  EXPECT_EQ(std::string_view(line, static_cast<std::size_t>(end - line)), "6\t4294967294\t1\t5\n");
}

TEST(ResultLinesTest, ARejectedNGramHasNone) {
  const test::SettingsGuard guard(2);
  settings::thresholds.z_score = 7.0;
  ResultLines lines;
  EXPECT_EQ(lines.get(Frequencies{1000, 30, 50, 10}), "");  // 6.945
  EXPECT_EQ(lines.get(Frequencies{1000, 30, 50, 10}), "");
  EXPECT_NE(lines.get(Frequencies{883188, 408, 1636, 96}), "");
}

// Frequency vectors come again, after as many others that places are taken over.
TEST(ResultLinesTest, WritesWhatStreamsWriteWhateverWasAskedBefore) {
  test::Random random;
  for (std::uint8_t n = 2; n <= 7; ++n) {
    const test::SettingsGuard guard(n);
    settings::precision = 1 + random.below(20);
    if (random.once_in(2)) settings::thresholds.log_likelihood = 50;
    ResultLines lines;
    std::vector<Frequencies> vectors;
    for (int i = 0; i < (n < 5 ? 12000 : 1000); ++i) {
      if (vectors.empty() || !random.once_in(3)) {
        Frequencies frequencies(NGram::_types_count);
        for (std::uint32_t& frequency : frequencies)
          frequency = 1 + random.below(random.once_in(20) ? 100000 : 4);
        frequencies[0] = 100000;
        vectors.push_back(frequencies);
      }
      const Frequencies& frequencies = vectors[random.below(static_cast<std::uint32_t>(vectors.size()))];
      ASSERT_EQ(lines.get(frequencies), plain_lines(frequencies)) << ::testing::PrintToString(frequencies);
    }
  }
}

TEST(ResultLinesTest, CellsOf64BitsAreWrittenAsTheyAre) {
  const test::SettingsGuard guard(2);
  ResultLinesOf<std::uint64_t> lines;
  // The pair of the first test, 2^40 times as frequent.
  std::vector<std::uint64_t> frequencies = {883188, 408, 1636, 96};
  for (std::uint64_t& frequency : frequencies)
    frequency <<= 40;
  const std::string_view text = lines.get(frequencies);
  EXPECT_EQ(text.substr(0, text.find('\n')), "968933626861322240\t343047627866112\t1693247906775040\t105553116266496");
  EXPECT_NE(text.find("\t6.98894117\t"), std::string_view::npos) << text;
  EXPECT_EQ(lines.get(frequencies), text);
}

TEST(ResultLinesTest, TheLargestCellsHaveRoom) {
  const test::SettingsGuard guard(7);
  settings::precision = 3;
  ResultLinesOf<std::uint64_t> lines;
  // Cells that wrap are as long as a number can be.
  const std::vector<std::uint64_t> frequencies(NGram::_types_count, ~std::uint64_t{0} - 1);
  const std::string_view text = lines.get(frequencies);
  EXPECT_TRUE(text.ends_with("\n\n")) << text;
}

}  // namespace
}  // namespace colx
