#include "rows/sorted_rows.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

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

// Eight bytes of a text, ordered as the text is; a shorter one is filled up with zeros.
std::uint64_t _prefix(std::string_view text) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < sizeof prefix; ++i)
    prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  return prefix;
}

double _sort_value(const Column& column, const Row& row) {
  const double value = number_of(column, row);
  return column.quantity == Quantity::association ? _significant(value) : value;
}

}  // namespace

SortOrder parse_sort_order(std::string_view name) {
  SortOrder order;
  order.ascending = name.starts_with('+');
  if (order.ascending) name.remove_prefix(1);
  const auto column = find_column(name);
  if (!column.has_value()) throw usage_error(fmt::format("cannot sort: there is no column \"{}\"", name));
  if (!column->is_of_block()) throw usage_error("cannot sort by the rank, which is the place in the sorted table");
  order.column = *column;
  return order;
}

bool SortedRows::_comes_before(const Candidate& a, const Candidate& b) const {
  if (_order.column.is_text()) {
    if (a.prefix != b.prefix) return (a.prefix < b.prefix) == _order.ascending;
    const int difference = a.key.compare(b.key);
    if (difference != 0) return (difference < 0) == _order.ascending;
  } else if (std::isnan(a.number) != std::isnan(b.number)) {
    return std::isnan(b.number);
  } else if (a.number < b.number || a.number > b.number) {
    return (a.number < b.number) == _order.ascending;
  }
  if (a.prefix != b.prefix && !_order.column.is_text()) return a.prefix < b.prefix;
  const int difference = a.members.compare(b.members);
  return difference != 0 ? difference < 0 : a.added < b.added;
}

void SortedRows::add(const Row& row) {
  if (_limit == 0U) return;
  const auto before = [this](const Entry& a, const Entry& b) { return _comes_before(_candidate(a), _candidate(b)); };
  std::string scratch;
  Candidate candidate{0, 0, {}, row.block.text.substr(0, row.block.members_size), _added++};
  if (_order.column.is_text()) {
    candidate.key = field_of(_order.column, row, scratch).content;
    candidate.prefix = _prefix(candidate.key);
  } else {
    candidate.number = _sort_value(_order.column, row);
    // All member lines begin alike, with the position and a TAB.
    candidate.prefix = _prefix(candidate.members.substr(2));
  }

  const bool is_full = _limit.has_value() && _entries.size() >= *_limit;
  if (is_full) {
    if (!_comes_before(candidate, _candidate(_entries.front()))) return;
    std::pop_heap(_entries.begin(), _entries.end(), before);
    _entries.pop_back();
  }
  const std::string_view text = row.block.text;
  Entry entry;
  entry.number = candidate.number;
  entry.prefix = candidate.prefix;
  entry.added = candidate.added;
  entry.bytes = std::make_unique_for_overwrite<char[]>(text.size() + candidate.key.size());
  std::memcpy(entry.bytes.get(), text.data(), text.size());
  if (!candidate.key.empty()) std::memcpy(entry.bytes.get() + text.size(), candidate.key.data(), candidate.key.size());
  entry.members_size = static_cast<std::uint32_t>(row.block.members_size);
  entry.text_size = static_cast<std::uint32_t>(text.size());
  entry.key_size = static_cast<std::uint32_t>(candidate.key.size());
  _entries.push_back(std::move(entry));
  if (_limit.has_value()) std::push_heap(_entries.begin(), _entries.end(), before);
}

void SortedRows::sort() {
  std::sort(_entries.begin(), _entries.end(),
            [this](const Entry& a, const Entry& b) { return _comes_before(_candidate(a), _candidate(b)); });
}

}  // namespace colx::table
