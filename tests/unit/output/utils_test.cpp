#include "output/utils.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(Double2str, WritesWholeNumbersWithoutAPoint) {
  EXPECT_EQ(double2str(100.0, 4), "100");
  EXPECT_EQ(double2str(25.0, 4), "25");
  EXPECT_EQ(double2str(0.0, 4), "0");
}

TEST(Double2str, RoundsToTheGivenNumberOfSignificantDigits) {
  EXPECT_EQ(double2str(33.33333, 4), "33.33");
  EXPECT_EQ(double2str(1.0 / 3.0, 4), "0.3333");
  EXPECT_EQ(double2str(66.66666, 4), "66.67");
  EXPECT_EQ(double2str(1.0 / 3.0, 10), "0.3333333333");
}

TEST(Double2str, DropsTrailingZeros) {
  EXPECT_EQ(double2str(12.5, 4), "12.5");
  EXPECT_EQ(double2str(12.50001, 4), "12.5");
}

TEST(Double2str, WritesVerySmallAndVeryLargeNumbersWithAnExponent) {
  EXPECT_EQ(double2str(1e-7, 4), "1e-07");
  EXPECT_EQ(double2str(0.0001, 4), "0.0001");
  EXPECT_EQ(double2str(0.00001, 4), "1e-05");
  EXPECT_EQ(double2str(9999.0, 4), "9999");
  EXPECT_EQ(double2str(10000.0, 4), "1e+04");
}

TEST(Double2str, AgreesWithTheGeneralNotationOfTheCLibrary) {
  test::Random random;
  std::array<char, 64> expected{};
  for (int round = 0; round < 20000; ++round) {
    const auto bits = (std::uint64_t{random.engine()()} << 32) | random.engine()();
    const double drawn = std::bit_cast<double>(bits);
    const double x = std::isnan(drawn) ? 0.0 : drawn;
    const std::uint32_t precision = 1 + random.below(17);
    std::snprintf(expected.data(), expected.size(), "%.*g", static_cast<int>(precision), x);
    ASSERT_EQ(double2str(x, precision), expected.data()) << "precision " << precision;
  }
}

TEST(Unsigned2str, WritesPlainDecimal) {
  EXPECT_EQ(unsigned2str(0), "0");
  EXPECT_EQ(unsigned2str(65536), "65536");
  EXPECT_EQ(unsigned2str(4294967295), "4294967295");
}

}  // namespace
}  // namespace colx
