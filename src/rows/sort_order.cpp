#include "rows/sort_order.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

namespace {

// A number to some twelve digits. What is beyond them is the rounding of the computation, in which mathematically equal
// values differ, and which is not the same on every machine.
double _significant(double value) {
  constexpr int bits = 40;
  if (!std::isfinite(value)) return value;
  int exponent = 0;
  const double mantissa = std::frexp(value, &exponent);
  return std::ldexp(std::nearbyint(std::ldexp(mantissa, bits)), exponent - bits);
}

// A whole number in the order of numbers: negative numbers have the sign bit, and grow with their magnitude.
std::uint64_t _ordered_bits(double value) {
  constexpr std::uint64_t sign = std::uint64_t{1} << 63;
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);  // one zero only
  return (bits & sign) != 0 ? ~bits : bits | sign;
}

void _append_number(double value, bool ascending, std::string& key) {
  std::uint64_t bits = std::numeric_limits<std::uint64_t>::max();  // behind every number
  if (!std::isnan(value)) bits = ascending ? _ordered_bits(value) : ~_ordered_bits(value);
  for (int shift = 56; shift >= 0; shift -= 8)
    key += static_cast<char>(bits >> shift);
}

// Two zeros end a text, so that it comes before those that it begins; a zero within it is followed by a one.
void _append_ended(std::string_view text, std::string& key) {
  for (std::size_t zero = text.find('\0'); zero != std::string_view::npos; zero = text.find('\0')) {
    key.append(text.substr(0, zero + 1)) += '\1';
    text.remove_prefix(zero + 1);
  }
  key.append(text).append(2, '\0');
}

// Texts that the collation takes for equal are still kept apart.
void _append_text(const SortOrder& order, std::string_view text, bool ascending, std::string& key) {
  const std::size_t begin = key.size();
  if (order.collation.has_value()) {
    order.collation->append_key(std::string(text), key);
    key.append(2, '\0');
  }
  _append_ended(text, key);
  if (ascending) return;
  for (std::size_t i = begin; i < key.size(); ++i)
    key[i] = static_cast<char>(~key[i]);
}

SortKey _parse_key(std::string_view name) {
  const bool is_signed = name.starts_with('+') || name.starts_with('-');
  const bool ascending = name.starts_with('+');
  if (is_signed) name.remove_prefix(1);
  const auto column = find_column(name);
  if (!column.has_value()) throw usage_error(fmt::format("cannot sort: there is no column \"{}\"", name));
  if (!column->is_of_block()) throw usage_error("cannot sort by the rank, which is the place in the sorted table");
  return {*column, is_signed ? ascending : column->is_text()};
}

}  // namespace

SortOrder parse_sort_order(std::string_view list) {
  SortOrder order;
  for (;;) {
    const std::size_t comma = list.find(',');
    order.keys.push_back(_parse_key(list.substr(0, comma)));
    if (comma == std::string_view::npos) return order;
    list.remove_prefix(comma + 1);
  }
}

SortOrder parse_group_columns(std::string_view list) {
  SortOrder order;
  for (;;) {
    const std::size_t comma = list.find(',');
    const std::string_view name = list.substr(0, comma);
    const auto column = find_column(name);
    if (!column.has_value()) throw usage_error(fmt::format("cannot make groups: there is no column \"{}\"", name));
    if (!column->is_of_block()) throw usage_error("cannot make groups by the rank, which is the place in the table");
    order.keys.push_back({*column, true});
    if (comma == std::string_view::npos) return order;
    list.remove_prefix(comma + 1);
  }
}

void append_key(const SortOrder& order, const Row& row, std::string& key) {
  std::string scratch;
  for (const auto& [column, ascending] : order.keys) {
    if (column.is_text()) {
      _append_text(order, field_of(column, row, scratch).content, ascending, key);
    } else {
      const double value = number_of(column, row);
      _append_number(column.is_computed() ? _significant(value) : value, ascending, key);
    }
  }
}

}  // namespace colx::table
