// The output datafile from outside: blocks byte for byte with their arithmetic, their order, and what sieves,
// thresholds and precision do to them.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "harness.h"

namespace colx::cli {
namespace {

std::string pair_of(const std::string& first, const std::string& second) {
  return "1 w " + first + " T 2 Atr\n2 w " + second + " T 0 Sb\n\n";
}

// Lemmas heavy 0, rain 1, snow 2, light 3.
const std::string weather =
    pair_of("heavy", "rain") + pair_of("heavy", "rain") + pair_of("heavy", "snow") + pair_of("light", "rain");

std::string members(const std::string& first, const std::string& second) {
  return "1\t" + first + "\t\t2\tAtr\n2\t" + second + "\t\t0\tHead\n";
}

// (heavy, rain): F = {4, 3, 3, 2}; O[3] = 2, O[2] = 3 - 2 = 1, O[1] = 3 - 2 = 1, O[0] = 4 - 4 = 0. Each word is absent,
// cell 0 left out, once: V = 1, 1. E[3] = 3 * 3 / 4 = 2.25, E[2] = E[1] = 3 * 1 / 4 = 0.75, E[0] = 1 * 1 / 4 = 0.25.
//   chi-square   0.25^2/0.25 + 2 * 0.25^2/0.75 + 0.25^2/2.25 = 0.25 + 0.16667 + 0.02778 = 0.44444
//   likelihood   2 * (0 + 2 * log10(1 / 0.75) + 2 * log10(2 / 2.25)) = 2 * (0.249877 - 0.102305) = 0.295145
//   information  log2((2/4) / (3/4 * 3/4)) = log2(0.88889) = -0.169925
//   Pearson      2 * 0 - 1 * 1 = -1, that is 4294967295, over sqrt(3 * 3 * (1 * 1)) = 3
//   t test       (2 - 2.25) / sqrt(2 * (1 - 2/4)) = -0.25      z score  -0.25 / sqrt(2.25 * (1 - 2.25/4)) = -0.251976
const std::string heavy_rain = members("heavy", "rain") +
                               "0\t1\t1\t2\n"
                               "0.4444444444\t0.2951448566\t-0.1699250014\t1431655765\t-0.25\t-0.2519763153\n\n";

// (heavy, snow): F = {4, 1, 3, 1}; O = {1, 0, 2, 1}. Snow without heavy never comes, so E[1] = E[0] = 0; E[3] = 0.75,
// E[2] = 3 * 2 / 4 = 1.5. Cell 0 gives 1 / 0 to chi-square and to the likelihood, cell 1 gives 0 / 0 to chi-square
// only.
//   information  log2((1/4) / (3/4 * 1/4)) = log2(1.33333) = 0.415037     Pearson  (1 * 1 - 2 * 0) / sqrt(3 * 1 * 3 *
//   1) t test       (1 - 0.75) / sqrt(1 * (1 - 1/4)) = 0.288675 z score      (1 - 0.75) / sqrt(0.75 * (1 - 0.75/4)) =
//   0.320256
const std::string rare_measures = not_a_number() + "\tinf\t0.4150374993\t0.3333333333\t0.2886751346\t0.3202563076\n\n";
const std::string heavy_snow = members("heavy", "snow") + "1\t0\t2\t1\n" + rare_measures;
const std::string light_rain = members("light", "rain") + "1\t2\t0\t1\n" + rare_measures;  // the same, words exchanged

class OutputTest : public CliTest {
 protected:
  OutputTest() { write_corpus(weather); }

  std::string output_with(const Arguments& arguments, const std::string& n = "2") const {
    run_clean(n, arguments);
    return read("output");
  }
};

TEST_F(OutputTest, BlocksStandInTheOrderOfTheirBuckets) {
  // Member field (((code & 12) | (parent & 3)) << 12) | lemma; Atr is 12 with parent 2: 0xE000; Head gives 0.
  //   (heavy, rain)  0xDEADBEEF ^ 0xE000 ^ 0x10000 = 0xDEAC5EEF = 3735838447, bucket 172 of 193
  //   (heavy, snow)  0xDEADBEEF ^ 0xE000 ^ 0x20000 = 0xDEAF5EEF = 3736035055, bucket 113
  //   (light, rain)  0xDEADBEEF ^ 0xE003 ^ 0x10000 = 0xDEAC5EEC = 3735838444, bucket 169
  EXPECT_EQ(output_with({}), heavy_snow + light_rain + heavy_rain + "\n");
}

TEST_F(OutputTest, EmptyStoreWritesOneLineEndUnderABarWithoutMarks) {
  write_corpus("1 w a T 0 Pred\n\n");
  const RunResult result = run_clean("2");
  EXPECT_EQ(read("output"), "\n");
  EXPECT_NE(result.out.find("Writing output datafile.\n" + bar_scale() + "Finished writing"), std::string::npos);
}

TEST_F(OutputTest, SinglePairHasNoMeaningfulMeasures) {
  write_corpus(pair_of("a", "b"));
  // F = {1, 1, 1, 1}, O = {0, 0, 0, 1}, E = {0, 0, 0, 1}: chi-square 0/0; likelihood 1 * log10(1); information log2(1);
  // Pearson 0 / sqrt(0); t test and z score 0 / sqrt(1 * (1 - 1)).
  const std::string nan = not_a_number();
  EXPECT_EQ(output_with({}),
            members("a", "b") + "0\t0\t0\t1\n" + nan + "\t0\t0\t" + nan + "\t" + nan + "\t" + nan + "\n\n\n");
}

TEST_F(OutputTest, TriplesHaveEightCellsAndTwoMeasures) {
  const auto triple = [](const std::string& first, const std::string& second, const std::string& third) {
    return "1 w " + first + " T 2 Atr\n2 w " + second + " T 3 Obj\n3 w " + third + " T 0 Pred\n\n";
  };
  write_corpus(triple("a", "b", "c") + triple("a", "b", "c") + triple("a", "b", "d") + triple("a", "y", "c") +
               triple("x", "b", "c"));
  // (a, b, c): F[7] = 2, every two of its words 3, every word 4, in all 5. O[7] = 2, O[6] = O[5] = O[3] = 3 - 2 = 1,
  // O[4] = 4 - (1 + 1 + 2) = 0, so O[2] and O[1], O[0] = 5 - 5. Each word is absent, cell 0 left out, once. With 4/5
  // for a word that is there and 1/5 for one that is not: E[7] = 2.56, two words 0.64, one word 0.16, none 0.04.
  //   chi-square  0.04 + 3 * 0.16 + 3 * (0.36^2 / 0.64 = 0.2025) + 0.56^2 / 2.56 = 0.04 + 0.48 + 0.6075 + 0.1225 = 1.25
  //   likelihood  2 * (3 * log10(1 / 0.64) + 2 * log10(2 / 2.56)) = 2 * (0.58146 - 0.21442) = 0.734080
  // (a, b, d): F[7] = 1, F[6] = 3, F[5] = F[3] = F[1] = 1, F[4] = F[2] = 4. O[7] = 1, O[6] = 2, O[4] = 4 - 3 = 1, O[2]
  // = 1, the others 0, and O[0] = 5 - 5. d is absent 4 times, a and b once: E[7] = 5 * 4/5 * 4/5 * 1/5 = 0.64, E[6]
  // = 2.56, E[5] = E[3] = 0.16, E[4] = E[2] = 0.64, E[1] = 0.04, E[0] = 0.16: the same terms, and so the same measures.
  const std::string measures = "1.25\t0.7340802775\n\n";
  const auto block = [&measures](const std::string& first, const std::string& second, const std::string& third,
                                 const std::string& cells) {
    return "1\t" + first + "\t\t2\tAtr\n2\t" + second + "\t\t3\tObj\n3\t" + third + "\t\t0\tHead\n" + cells + measures;
  };
  // Member field ((code & 28) << 6) | lemma: Atr 12 gives 0x300, Obj 97 and Head 96 give 0. Lemmas a 0, b 1, c 2, d 3,
  // y 4, x 5 at the offsets 0, 11 and 22.
  //   (a, b, c)  0xDEADBEEF ^ 0x300 ^ 0x800 ^ 0x800000 = 0xDE2DB5EF, bucket 109
  //   (a, b, d)  ... 0xC00000 for d = 0xDE6DB5EF, bucket 137    (a, y, c)  ... 0x2000 for y = 0xDE2D9DEF, bucket 141
  //   (x, b, c)  ... 0x305 for x = 0xDE2DB5EA, bucket 104
  EXPECT_EQ(output_with({}, "3"), block("x", "b", "c", "0\t1\t1\t2\t0\t0\t0\t1\n") +
                                      block("a", "b", "c", "0\t0\t0\t1\t0\t1\t1\t2\n") +
                                      block("a", "b", "d", "0\t0\t1\t0\t1\t0\t2\t1\n") +
                                      block("a", "y", "c", "0\t1\t0\t0\t1\t2\t0\t1\n") + "\n");
}

TEST_F(OutputTest, FrequencySieveKeepsTheLimitItself) {
  EXPECT_EQ(output_with({"-tf", "1"}), heavy_snow + light_rain + heavy_rain + "\n");
  EXPECT_EQ(output_with({"-tf", "2"}), heavy_rain + "\n");
  EXPECT_EQ(output_with({"-tf", "3"}), "\n");
}

TEST_F(OutputTest, EstimatedFrequencySieveKeepsTheLimitItself) {
  EXPECT_EQ(output_with({"-te", "0.75"}), heavy_snow + light_rain + heavy_rain + "\n");
  EXPECT_EQ(output_with({"-te", "0.76"}), heavy_rain + "\n");
  EXPECT_EQ(output_with({"-te", "2.25"}), heavy_rain + "\n");
  EXPECT_EQ(output_with({"-te", "2.26"}), "\n");
  // Every pair seen counts for the bar, written or not.
  EXPECT_NE(run_clean("2", {"-te", "2.26"}).out.find(output_phase()), std::string::npos);
}

TEST_F(OutputTest, EachMeasureHasItsThreshold) {
  const std::string all = heavy_snow + light_rain + heavy_rain + "\n";
  const std::string rare = heavy_snow + light_rain + "\n";
  const std::string often = heavy_rain + "\n";
  // A value that is not a number meets every threshold.
  EXPECT_EQ(output_with({"-tc", "0.44"}), all);
  EXPECT_EQ(output_with({"-tc", "0.45"}), rare);
  EXPECT_EQ(output_with({"-tl", "0.29"}), all);
  EXPECT_EQ(output_with({"-tl", "0.3"}), rare);
  EXPECT_EQ(output_with({"-tm", "0.41"}), rare);
  EXPECT_EQ(output_with({"-tm", "0.42"}), "\n");
  EXPECT_EQ(output_with({"-tp", "0.33"}), all);
  EXPECT_EQ(output_with({"-tp", "1431655765"}), often);  // met exactly
  EXPECT_EQ(output_with({"-tp", "1431655766"}), "\n");
  EXPECT_EQ(output_with({"-tt", "0.28"}), rare);
  EXPECT_EQ(output_with({"-tt", "0.29"}), "\n");
  EXPECT_EQ(output_with({"-tz", "0.32"}), rare);
  EXPECT_EQ(output_with({"-tz", "0.33"}), "\n");
}

TEST_F(OutputTest, ThresholdThatIsNotPositiveIsNone) {
  for (const char* limit : {"0", "-1", "nan", "x"}) {
    EXPECT_EQ(output_with({"-tt", limit, "-ta"}), heavy_snow + light_rain + heavy_rain + "\n") << limit;
  }
}

TEST_F(OutputTest, OneThresholdMetSufficesUnlessAllAreAskedFor) {
  // Chi-square is met by all three, the t test by the two rare ones, Pearson's by the frequent one.
  const Arguments mixed{"-tc", "0.4", "-tt", "0.2"};
  EXPECT_EQ(output_with(mixed), heavy_snow + light_rain + heavy_rain + "\n");
  EXPECT_EQ(output_with({"-tc", "0.4", "-tt", "0.2", "-ta"}), heavy_snow + light_rain + "\n");
  EXPECT_EQ(output_with({"-tp", "2", "-tt", "0.2"}), heavy_snow + light_rain + heavy_rain + "\n");
  EXPECT_EQ(output_with({"-tp", "2", "-tt", "0.2", "-ta"}), "\n");
  EXPECT_EQ(output_with({"-tp", "2", "-tt", "0.2", "-ta", "-to"}), heavy_snow + light_rain + heavy_rain + "\n");
  // Missed at first, met at last.
  EXPECT_EQ(output_with({"-tc", "0.5", "-tz", "9", "-tp", "2"}), heavy_snow + light_rain + heavy_rain + "\n");
}

TEST_F(OutputTest, ThresholdsForTwoWordsAreIgnoredForThree) {
  write_corpus("1 w a T 2 Atr\n2 w b T 3 Obj\n3 w c T 0 Pred\n\n");
  const RunResult result = run_job("3", {"-tm", "9", "-ta"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(read("output"),
            "1\ta\t\t2\tAtr\n2\tb\t\t3\tObj\n3\tc\t\t0\tHead\n0\t0\t0\t0\t0\t0\t0\t1\n" + not_a_number() + "\t0\n\n\n");
}

// The measures of a pair by the letter of their definitions, printed by a standard stream. F is indexed by type.
std::string measures(const std::array<std::uint32_t, 4>& F, std::uint64_t precision) {
  std::array<std::uint32_t, 4> O = F;
  O[2] = F[2] - F[3];
  O[1] = F[1] - F[3];
  O[0] = F[0] - O[1] - O[2] - O[3];
  const std::array<std::uint32_t, 3> V{0, O[2], O[1]};
  const double N = F[0];
  std::array<double, 4> E{};
  double chi_square = 0.0;
  double likelihood = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    E[i] = N;
    for (const std::size_t bit : {1u, 2u})
      E[i] = ((i & bit) != 0 ? F[bit] : V[bit]) / N * E[i];
    chi_square += (O[i] - E[i]) * (O[i] - E[i]) / E[i];
    if (O[i] != 0) likelihood += O[i] * std::log10(O[i] / E[i]);
  }
  const std::uint32_t numerator = O[3] * O[0] - O[2] * O[1];
  const std::uint32_t denominator = (O[3] + O[2]) * (O[3] + O[1]) * ((O[0] + O[2]) * (O[0] + O[1]));
  std::ostringstream stream;
  stream.precision(static_cast<std::streamsize>(precision));
  stream << chi_square << '\t' << 2 * likelihood << '\t'
         << std::log10((F[3] / N) / ((F[2] / N) * (F[1] / N))) / std::log10(2.0) << '\t'
         << numerator / std::sqrt(static_cast<double>(denominator)) << '\t'
         << (F[3] - E[3]) / std::sqrt(F[3] * (1 - F[3] / N)) << '\t' << (F[3] - E[3]) / std::sqrt(E[3] * (1 - E[3] / N))
         << "\n\n";
  return stream.str();
}

TEST_F(OutputTest, PrecisionIsThatOfTheStandardStream) {
  EXPECT_EQ(members("heavy", "rain") + "0\t1\t1\t2\n" + measures({4, 3, 3, 2}, 10), heavy_rain);
  for (const std::uint64_t precision : {1ull, 3ull, 17ull, 1000ull, 2147483648ull, 4294967295ull}) {
    EXPECT_EQ(output_with({"-p", std::to_string(precision)}),
              members("heavy", "snow") + "1\t0\t2\t1\n" + measures({4, 1, 3, 1}, precision) + members("light", "rain") +
                  "1\t2\t0\t1\n" + measures({4, 3, 1, 1}, precision) + members("heavy", "rain") + "0\t1\t1\t2\n" +
                  measures({4, 3, 3, 2}, precision) + "\n")
        << precision;
  }
  // By hand: three digits, and one.
  EXPECT_NE(output_with({"-p", "3"}).find("0.444\t0.295\t-0.17\t1.43e+09\t-0.25\t-0.252\n"), std::string::npos);
  EXPECT_NE(output_with({"-p", "1"}).find("0.4\t0.3\t-0.2\t1e+09\t-0.2\t-0.3\n"), std::string::npos);
}

TEST_F(OutputTest, DatafilesAreCountedTogether) {
  write("one", pair_of("heavy", "rain") + pair_of("heavy", "rain"));
  write("two", pair_of("heavy", "snow") + pair_of("light", "rain"));
  write("list", "one\ntwo\n");
  EXPECT_EQ(output_with({}), heavy_snow + light_rain + heavy_rain + "\n");
}

TEST_F(OutputTest, PairsThatDifferInTagsShareABucketAndTheNewerOneComesFirst) {
  write_corpus("1 w a X 2 Atr\n2 w b T 0 Sb\n\n1 w a Y 2 Atr\n2 w b T 0 Sb\n\n");
  const std::string output = output_with({"-m", "*"});
  const std::size_t older = output.find("1\ta\tX\t2\tAtr\n");
  const std::size_t newer = output.find("1\ta\tY\t2\tAtr\n");
  EXPECT_EQ(newer, 0u);
  EXPECT_NE(older, std::string::npos);
}

// Chained table of hashes as the output order supposes it: head insertion, growth to the next prime, head-moving
// growth.
class ChainedTable {
 public:
  void insert(std::uint32_t hash, unsigned int item) {
    if (++_count > _buckets.size()) _grow();
    _buckets[hash % _buckets.size()].push_front({hash, item});
  }

  std::vector<unsigned int> items() const {
    std::vector<unsigned int> result;
    for (const auto& chain : _buckets) {
      for (const Entry& entry : chain)
        result.push_back(entry.item);
    }
    return result;
  }

 private:
  struct Entry {
    std::uint32_t hash;
    unsigned int item;
  };

  void _grow() {
    std::vector<std::list<Entry>> larger(_buckets.size() == 193 ? 389 : 769);
    for (const auto& chain : _buckets) {
      for (const Entry& entry : chain)
        larger[entry.hash % larger.size()].push_front(entry);
    }
    _buckets = std::move(larger);
  }

  std::vector<std::list<Entry>> _buckets = std::vector<std::list<Entry>>(193);
  std::size_t _count = 0;
};

TEST_F(OutputTest, OrderFollowsTheGrowthOfTheTable) {
  // Pair i joins the lemmas 2 i and 2 i + 1; the sizes lie on both sides of every growth, after 193 and after 389
  // pairs.
  for (const unsigned int count : {100u, 193u, 194u, 389u, 390u, 700u}) {
    std::string corpus;
    ChainedTable table;
    for (unsigned int i = 0; i < count; ++i) {
      corpus += pair_of("f" + std::to_string(i), "s" + std::to_string(i));
      // The hash keeps 12 bits of a lemma, which is more than there are lemmas here.
      table.insert(0xDEADBEEFu ^ (0xE000u | 2 * i) ^ ((2 * i + 1) << 16), i);
    }
    std::string expected;
    for (const unsigned int item : table.items()) {
      expected += "1\tf" + std::to_string(item) + "\t\t2\tAtr\n";
    }
    write_corpus(corpus);
    std::istringstream lines(output_with({}));
    std::string seen;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("1\tf")) seen += line + "\n";
    }
    EXPECT_EQ(seen, expected) << count;
  }
}

}  // namespace
}  // namespace colx::cli
