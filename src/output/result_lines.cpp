#include "output/result_lines.h"

#include <algorithm>
#include <array>

#include "model/ngram.h"
#include "output/number_format.h"
#include "run/config.h"
#include "util/hashing.h"

namespace colx {

ResultLines::ResultLines()
    : _measures(measures()),
      _remembered_frequencies(std::size_t{NGram::_types_count} << place_bits, 0),
      _remembered(std::size_t{1} << place_bits) {}

std::string_view ResultLines::get(std::span<const std::uint32_t> frequencies) {
  std::uint64_t hash = 0;
  for (const std::uint32_t frequency : frequencies)
    hash = mix(hash ^ frequency, hash_keys[1]);
  const std::size_t place = hash >> (64 - place_bits);
  std::uint32_t* const remembered = _remembered_frequencies.data() + place * frequencies.size();
  if (!std::equal(frequencies.begin(), frequencies.end(), remembered)) {
    _make(frequencies, _remembered[place]);
    std::copy(frequencies.begin(), frequencies.end(), remembered);
  }
  return _remembered[place];
}

void ResultLines::_make(std::span<const std::uint32_t> frequencies, std::string& text) {
  text.clear();
  _tables.assign(frequencies);
  if (!evaluate(_tables, _measures, _values)) return;
  _print_tables(text, _tables);
  _print_stats(text, _values, settings::precision, _number);
  text += '\n';
}

void _print_tables(std::string& text, const EvaluationTables& t) {
  std::array<char, 16> number;
  for (const std::uint32_t cell : t.contingency_table()) {
    text.append(number.data(), format_unsigned(number.data(), cell));
    text += '\t';
  }
  text.back() = '\n';
}

void _print_stats(std::string& text, std::span<const double> values, std::uint32_t precision,
                  std::vector<char>& number) {
  number.resize(longest_general(precision));
  for (const double value : values) {
    text.append(number.data(), format_general(number.data(), value, precision));
    text += '\t';
  }
  text.back() = '\n';
}

}  // namespace colx
