#include "output/result_lines.h"

#include <algorithm>
#include <limits>

#include "base/config.h"
#include "model/ngram.h"
#include "output/number_format.h"
#include "util/hashing.h"

namespace colx {

namespace {

template <typename Count>
constexpr std::size_t longest_cell = std::numeric_limits<Count>::digits10 + 2;  // with what follows it

}  // namespace

template <typename Count>
ResultLinesOf<Count>::ResultLinesOf()
    : _measures(measures<Count>()),
      _text(NGram::_types_count * longest_cell<Count> + _measures.size() * (longest_general(settings::precision) + 1) +
            1),
      _remembered_frequencies(std::size_t{NGram::_types_count} << place_bits, 0),
      _remembered(std::size_t{1} << place_bits) {}

template <typename Count>
std::string_view ResultLinesOf<Count>::get(std::span<const Count> frequencies) {
  std::uint64_t hash = 0;
  for (const Count frequency : frequencies)
    hash = mix(hash ^ frequency, hash_keys[1]);
  const std::size_t place = hash >> (64 - place_bits);
  Count* const remembered = _remembered_frequencies.data() + place * frequencies.size();
  if (!std::equal(frequencies.begin(), frequencies.end(), remembered)) {
    _remembered[place] = _make(frequencies);
    std::copy(frequencies.begin(), frequencies.end(), remembered);
  }
  return _remembered[place];
}

template <typename Count>
std::string_view ResultLinesOf<Count>::_make(std::span<const Count> frequencies) {
  _tables.assign(frequencies);
  if (!evaluate(_tables, _measures, _values)) return {};
  char* out = _print_tables(_text.data(), _tables);
  out = _print_stats(out, _values, settings::precision);
  *out++ = '\n';
  return {_text.data(), static_cast<std::size_t>(out - _text.data())};
}

template <typename Count>
char* _print_tables(char* out, const EvaluationTablesOf<Count>& t) {
  for (const Count cell : t.contingency_table()) {
    out = format_unsigned(out, cell);
    *out++ = '\t';
  }
  out[-1] = '\n';
  return out;
}

char* _print_stats(char* out, std::span<const double> values, std::uint32_t precision) {
  for (const double value : values) {
    out = format_general(out, value, precision);
    *out++ = '\t';
  }
  out[-1] = '\n';
  return out;
}

template class ResultLinesOf<std::uint32_t>;
template class ResultLinesOf<std::uint64_t>;
template char* _print_tables(char* out, const EvaluationTablesOf<std::uint32_t>& t);
template char* _print_tables(char* out, const EvaluationTablesOf<std::uint64_t>& t);

}  // namespace colx
