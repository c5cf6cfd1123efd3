#pragma once

// What a report says of the measures of association, beside their values.

#include <span>
#include <string_view>

namespace colx::report {

// One measure in words. Formula and source are those of docs/measures.md.
struct MeasureNote {
  std::string_view name;  // as in rows/association.h
  std::string_view title;
  std::string_view formula;
  std::string_view source;   // who published it; empty for what is no measure of somebody
  std::string_view reading;  // one sentence on how to read a value
  bool is_wide;              // spread over so many magnitudes that a logarithmic axis helps
};

// One note for each measure, in the order of rows/association.h.
std::span<const MeasureNote> measure_notes();

// The note on a measure, which must be known.
const MeasureNote& note_on(std::string_view measure);

}  // namespace colx::report
