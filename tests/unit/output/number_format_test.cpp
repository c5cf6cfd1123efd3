// Numbers as text, against what the C library and the streams write.

#include "output/number_format.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ios>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/support/random.h"

namespace colx {
namespace {

std::string general(double x, std::uint32_t precision) {
  std::string text(longest_general(precision), ' ');
  text.resize(static_cast<std::size_t>(format_general(text.data(), x, precision) - text.data()));
  return text;
}

// Compares without making strings, so that millions of numbers can be tried.
void expect_general(double x, std::uint32_t precision) {
  std::array<char, 1200> expected, actual;
  const int length = std::snprintf(expected.data(), expected.size(), "%.*g", static_cast<int>(precision), x);
  const auto actual_length = format_general(actual.data(), x, precision) - actual.data();
  ASSERT_EQ(std::string_view(actual.data(), static_cast<std::size_t>(actual_length)),
            std::string_view(expected.data(), static_cast<std::size_t>(length)))
      << std::hexfloat << x << " with precision " << precision;
}

void expect_general_with_all_precisions(double x) {
  for (std::uint32_t precision = 0; precision <= 20; ++precision)
    expect_general(x, precision);
  expect_general(x, 1000);
  expect_general(-x, 10);
}

std::uint64_t random_bits(test::Random& random) {
  return std::uint64_t{random.engine()()} << 32 | random.engine()();
}

TEST(FormatGeneral, WritesSpecialNumbers) {
  using Limits = std::numeric_limits<double>;
  for (const double x : {0.0, -0.0, Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), -Limits::quiet_NaN(),
                         Limits::max(), Limits::min(), Limits::denorm_min(), Limits::lowest(), Limits::epsilon(), 1.0,
                         0x1p63, 0x1p64, 0x1p62, 0x1.fffffffffffffp62, 0x1.fffffffffffffp-1}) {
    expect_general_with_all_precisions(x);
  }
  EXPECT_EQ(general(-Limits::quiet_NaN(), 10), "-nan");
}

TEST(FormatGeneral, WritesRandomDoublesOfAllMagnitudes) {
  test::Random random;
  for (int i = 0; i < 400000 && !::testing::Test::HasFatalFailure(); ++i)
    expect_general(std::bit_cast<double>(random_bits(random)), random.below(21));
}

TEST(FormatGeneral, WritesRandomDoublesOfTheMagnitudesOfMeasures) {
  test::Random random;
  for (int i = 0; i < 1500000 && !::testing::Test::HasFatalFailure(); ++i) {
    const double mantissa = 1.0 + std::ldexp(static_cast<double>(random_bits(random) >> 12), -52);
    expect_general(std::ldexp(mantissa, static_cast<int>(random.below(140)) - 74), 1 + random.below(20));
  }
}

TEST(FormatGeneral, WritesQuotientsOfSmallIntegers) {
  test::Random random;
  for (int i = 0; i < 500000 && !::testing::Test::HasFatalFailure(); ++i) {
    const double numerator = random.below(random.once_in(2) ? 100 : 1000000);
    expect_general(numerator / (1 + random.below(random.once_in(2) ? 100 : 1000000)), 1 + random.below(20));
  }
}

TEST(FormatGeneral, WritesSmallIntegersAndTheirHalves) {
  for (std::uint32_t i = 0; i < 4000 && !::testing::Test::HasFatalFailure(); ++i)
    expect_general_with_all_precisions(i / 2.0);
}

// A number with few bits lies halfway between two decimals whenever its last bit is one digit too far to the right.
TEST(FormatGeneral, RoundsTiesToEven) {
  test::Random random;
  EXPECT_EQ(general(0.5, 1), "0.5");
  EXPECT_EQ(general(2.5, 1), "2");
  EXPECT_EQ(general(3.5, 1), "4");
  EXPECT_EQ(general(9.5, 1), "1e+01");
  EXPECT_EQ(general(8.5, 1), "8");
  EXPECT_EQ(general(0.125, 2), "0.12");
  EXPECT_EQ(general(0.375, 2), "0.38");
  EXPECT_EQ(general(1000.5, 4), "1000");
  EXPECT_EQ(general(9999.5, 4), "1e+04");
  for (int i = 0; i < 500000 && !::testing::Test::HasFatalFailure(); ++i) {
    const std::uint32_t bits = 1 + random.below(53);
    const double odd = static_cast<double>((random_bits(random) >> (64 - bits)) | 1U);
    expect_general(std::ldexp(odd, -static_cast<int>(random.below(25))), 1 + random.below(20));
  }
  // Integers that end in 5 and are too long for the precision.
  for (int i = 0; i < 200000 && !::testing::Test::HasFatalFailure(); ++i) {
    double x = static_cast<double>(random.below(100000)) * 10 + 5;
    for (std::uint32_t zeros = random.below(11); zeros > 0; --zeros)
      x *= 10;
    expect_general(x, 1 + random.below(8));
  }
}

TEST(FormatGeneral, WritesPowersOfTenAndTheirNeighbours) {
  for (int exponent = -320; exponent <= 308; ++exponent) {
    const double power = std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr);
    double below = power, above = power;
    for (int steps = 0; steps < 3 && !::testing::Test::HasFatalFailure(); ++steps) {
      expect_general_with_all_precisions(below);
      expect_general_with_all_precisions(above);
      below = std::nextafter(below, 0.0);
      above = std::nextafter(above, std::numeric_limits<double>::infinity());
    }
    // What rounds up to a power of ten.
    for (int nines = 1; nines <= 17 && exponent > -300 && exponent < 300; ++nines) {
      const std::string text = std::string(static_cast<std::size_t>(nines), '9') + "5e" + std::to_string(exponent);
      expect_general(std::strtod(text.c_str(), nullptr), static_cast<std::uint32_t>(nines));
    }
  }
}

TEST(FormatGeneral, WritesPowersOfTwo) {
  for (int exponent = -1074; exponent <= 1023 && !::testing::Test::HasFatalFailure(); ++exponent)
    expect_general_with_all_precisions(std::ldexp(1.0, exponent));
}

TEST(FormatGeneral, AgreesWithStreamsAtExtremePrecisions) {
  for (const std::uint32_t precision : {0U, 17U, 18U, 1099U, 1100U, 1101U, 100000U, 2147483648U, 4294967295U}) {
    for (const double x : {1.0 / 3, 5e-324, 1e300, 123456.0, 0.0001234567}) {
      std::ostringstream os;
      os.precision(static_cast<std::streamsize>(precision));
      os << x;
      EXPECT_EQ(general(x, precision), os.str()) << precision;
    }
  }
}

TEST(FormatUnsigned, WritesPlainDecimal) {
  test::Random random;
  const auto decimal = [](std::uint32_t number) {
    std::array<char, 16> text;
    return std::string(text.data(), format_unsigned(text.data(), number));
  };
  EXPECT_EQ(decimal(0), "0");
  EXPECT_EQ(decimal(4294967295U), "4294967295");
  for (int i = 0; i < 20000; ++i) {
    const auto number = static_cast<std::uint32_t>(random.engine()() >> random.below(32));
    ASSERT_EQ(decimal(number), std::to_string(number));
  }
}

TEST(FormatUnsigned, WritesNumbersOf64Bits) {
  std::array<char, 20> text;
  for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{4294967296}, ~std::uint64_t{0}})
    EXPECT_EQ(std::string(text.data(), format_unsigned(text.data(), number)), std::to_string(number));
}

}  // namespace
}  // namespace colx
