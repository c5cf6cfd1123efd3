#pragma once

// The end of an N-gram's block in the output datafile: the line of the observed cells, the line of the measures and the
// empty line.
//
// All of it, and whether the N-gram is written at all, is a function of the frequencies of its patterns. Most N-grams
// of a corpus are rare and have their frequencies in common with others, so the texts of vectors just seen are
// remembered.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "evaluation/evaluation.h"
#include "evaluation/thresholds.h"

namespace colx {

// Makes the text for one vector of frequencies after another, for the N, the precision, the sieves and the thresholds
// of the settings.
template <typename Count>
class ResultLinesOf {
 public:
  ResultLinesOf();

  // Returns the text for an N-gram with these frequencies, by type; nothing when sieves or thresholds reject it. Valid
  // until the next call.
  std::string_view get(std::span<const Count> frequencies);

 private:
  static constexpr unsigned place_bits = 10;

  std::string_view _make(std::span<const Count> frequencies);

  std::vector<MeasureOf<Count>> _measures;
  EvaluationTablesOf<Count> _tables;
  std::vector<double> _values;
  std::vector<char> _text;                     // room for one
  std::vector<Count> _remembered_frequencies;  // by place: all of a vector; no vector begins with 0
  std::vector<std::string> _remembered;        // by place: its text
};
using ResultLines = ResultLinesOf<std::uint32_t>;

extern template class ResultLinesOf<std::uint32_t>;
extern template class ResultLinesOf<std::uint64_t>;

// Writes the observed cells as one line and returns its end.
template <typename Count>
char* _print_tables(char* out, const EvaluationTablesOf<Count>& t);

// Writes the values of the measures as one line, two of them or six, with the given precision, and returns its end.
char* _print_stats(char* out, std::span<const double> values, std::uint32_t precision);

}  // namespace colx
