#include "output/number_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace colx {

namespace {

__extension__ using wide = unsigned __int128;

constexpr std::uint32_t most_exact_digits = 17;
constexpr std::uint32_t default_precision = 6;

constexpr auto powers_of_ten = [] {
  std::array<std::uint64_t, 20> powers{};
  powers[0] = 1;
  for (std::size_t i = 1; i < powers.size(); ++i)
    powers[i] = powers[i - 1] * 10;
  return powers;
}();

// The first `digits` significant decimal digits of a number as an integer, and the decimal exponent of the first of
// them.
struct Decimal {
  std::uint64_t digits;
  int exponent;
};

template <typename Number>
int _compare(Number a, Number b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

// Rounds a number to the nearest integer, halves to even, given its floor and how what is left of it compares with a
// half.
std::uint64_t _round(std::uint64_t floor, int rest_to_half) {
  const bool up = rest_to_half > 0 || (rest_to_half == 0 && floor % 2 != 0);
  return up ? floor + 1 : floor;
}

// The largest power of ten by which a mantissa of 53 bits may be multiplied in 128 bits.
constexpr int largest_scale = 22;

// Rounds x, finite and greater than 0, exactly to `digits` significant digits, 1 to 17. Returns false, having done
// nothing, when that takes more than 128 bits.
bool _to_decimal(double x, int digits, Decimal& decimal) {
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const int binary_exponent = static_cast<int>(bits >> 52) - 1023;
  // log10(2) as a fraction: the decimal exponent, or one less than it.
  int exponent = (binary_exponent * 78913) >> 18;
  if (binary_exponent >= 63 || digits - 1 - exponent > largest_scale) return false;

  // x = mantissa / 2^shift
  std::uint64_t mantissa = (bits & ((std::uint64_t{1} << 52) - 1)) | std::uint64_t{1} << 52;
  int shift = 52 - binary_exponent;
  if (shift < 0) {
    mantissa <<= -shift;
    shift = 0;
  }

  const std::uint64_t limit = powers_of_ten[static_cast<std::size_t>(digits)];
  std::uint64_t rounded = limit + 1;
  for (--exponent; rounded > limit;) {
    ++exponent;
    const int scale = digits - 1 - exponent;  // the power of ten that brings the digits before the point
    if (scale >= 0) {
      const wide product = static_cast<wide>(mantissa) * powers_of_ten[static_cast<std::size_t>(std::min(scale, 19))] *
                           powers_of_ten[static_cast<std::size_t>(std::max(scale - 19, 0))];
      const wide floor = product >> shift;
      const wide rest = product - (floor << shift);
      const int rest_to_half = shift == 0 ? -1 : _compare(rest, wide{1} << (shift - 1));
      rounded = _round(static_cast<std::uint64_t>(floor), rest_to_half);
    } else {
      const std::uint64_t power = powers_of_ten[static_cast<std::size_t>(-scale)];
      const std::uint64_t whole = mantissa >> shift;
      const bool fraction = (whole << shift) != mantissa;
      int rest_to_half = _compare(whole % power, power / 2);
      if (rest_to_half == 0 && fraction) rest_to_half = 1;
      rounded = _round(whole / power, rest_to_half);
    }
  }
  // A rounded number of one digit more is a power of ten, whether it was rounded up to that or the estimate was too
  // small.
  decimal = rounded == limit ? Decimal{limit / 10, exponent + 1} : Decimal{rounded, exponent};
  return true;
}

char* _write_decimal(char* out, Decimal decimal, int digits) {
  // Trailing zeros go; at least one digit stays.
  std::array<char, most_exact_digits + 1> text;
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), decimal.digits).ptr;
  const char* last = end;
  while (last - text.data() > 1 && last[-1] == '0')
    --last;
  const auto count = static_cast<int>(last - text.data());

  const auto copy = [&](int from, int to) {
    std::memcpy(out, text.data() + from, static_cast<std::size_t>(to - from));
    out += to - from;
  };
  const auto zeros = [&](int number) {
    std::memset(out, '0', static_cast<std::size_t>(number));
    out += number;
  };
  const int exponent = decimal.exponent;
  if (exponent < -4 || exponent >= digits) {
    copy(0, 1);
    if (count > 1) {
      *out++ = '.';
      copy(1, count);
    }
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const int magnitude = std::abs(exponent);  // less than 100 in this range
    *out++ = static_cast<char>('0' + magnitude / 10);
    *out++ = static_cast<char>('0' + magnitude % 10);
  } else if (exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    zeros(-exponent - 1);
    copy(0, count);
  } else if (count <= exponent + 1) {
    copy(0, count);
    zeros(exponent + 1 - count);
  } else {
    copy(0, exponent + 1);
    *out++ = '.';
    copy(exponent + 1, count);
  }
  return out;
}

}  // namespace

char* format_general(char* out, double x, std::uint32_t precision) {
  if (precision <= most_exact_digits && std::isfinite(x) && x != 0.0) {
    const auto digits = static_cast<int>(std::max(precision, std::uint32_t{1}));
    Decimal decimal;
    if (_to_decimal(std::fabs(x), digits, decimal)) {
      if (x < 0.0) *out++ = '-';
      return _write_decimal(out, decimal, digits);
    }
  }
  // The standard library hands a stream's precision on as an int, so that from 2^31 on it counts as none given.
  const bool given = precision <= static_cast<std::uint32_t>(std::numeric_limits<int>::max());
  const auto digits = static_cast<int>(given ? std::min(precision, most_significant_digits) : default_precision);
  return std::to_chars(out, out + longest_general(precision), x, std::chars_format::general, digits).ptr;
}

char* format_unsigned(char* out, std::uint32_t number) {
  return std::to_chars(out, out + std::numeric_limits<std::uint32_t>::digits10 + 1, number).ptr;
}

char* format_unsigned(char* out, std::uint64_t number) {
  return std::to_chars(out, out + std::numeric_limits<std::uint64_t>::digits10 + 1, number).ptr;
}

}  // namespace colx
