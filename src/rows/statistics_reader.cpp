#include "rows/statistics_reader.h"

#include <fmt/format.h>

#include "rows/block.h"
#include "rows/line_fields.h"

namespace colx::table {

namespace {

constexpr std::string_view datafile_heading = "Statistics for datafile ";
constexpr std::string_view overall_heading = "Overall datafiles statistics:";
constexpr std::string_view headings = "\"Statistics for datafile NAME:\" or \"Overall datafiles statistics:\"";

}  // namespace

bool StatisticsReader::next(DatafileCounters& counters) {
  if (_at_end) return false;
  const std::string_view line = _lines.need(headings);
  counters = {};
  counters.is_overall = line == overall_heading;
  if (!counters.is_overall) {
    if (!line.starts_with(datafile_heading) || !line.ends_with(':') || line.size() <= datafile_heading.size())
      _lines.fail(fmt::format("expected {}, found {}", headings, shown_text(line)));
    counters.name = line.substr(datafile_heading.size(), line.size() - datafile_heading.size() - 1);
  }
  _read_counters(counters);
  return true;
}

// Reads what stands below the heading, and below the sums the rest of the file, which must be there.
void StatisticsReader::_read_counters(DatafileCounters& counters) {
  counters.words = _read_count("# of words: ");
  counters.sentences = _read_count("# of sentences: ");
  std::string_view line = _lines.need("\"# of N-grams extracted: \"");
  if (_n == 0) _read_n(line);
  counters.extracted = _count_of(line, fmt::format("# of {}-grams extracted: ", _n));
  line = _lines.need("an empty line");
  if (!_knows_filter) _has_filter = !line.empty();
  _knows_filter = true;
  if (_has_filter) {
    counters.passed = _count_of(line, fmt::format("# of {}-grams passed: ", _n));
    counters.filtered = _read_count(fmt::format("# of {}-grams filtered: ", _n));
    line = _lines.need("an empty line");
  }
  if (!line.empty()) _lines.fail("expected an empty line, found " + shown_text(line));
  if (!counters.is_overall) return;
  _read_stores();
  _at_end = true;
}

void StatisticsReader::_read_n(std::string_view line) {
  for (std::size_t n = smallest_n; n <= largest_n; ++n)
    if (line.starts_with(fmt::format("# of {}-grams extracted: ", n))) _n = n;
  if (_n == 0)
    _lines.fail(fmt::format("expected \"# of N-grams extracted: \" with an N from {} to {} and a number, found {}",
                            smallest_n, largest_n, shown_text(line)));
}

void StatisticsReader::_read_stores() {
  _read_exactly("Strings storage statistics:");
  _read_count("# of unique lemmas: ");
  _read_count("# of unique tags: ");
  _read_exactly("");
  _read_exactly(fmt::format("{}-grams storage statistics:", _n));
  for (std::size_t type = 0; type < std::size_t{1} << _n; ++type)
    _read_count(fmt::format("# of unique {}-grams of type {}: ", _n, type));
  _read_exactly("");
  std::string_view more;
  if (_lines.next(more)) _lines.fail("expected the end of the file, found " + shown_text(more));
}

std::uint64_t StatisticsReader::_read_count(std::string_view label) {
  return _count_of(_lines.need(fmt::format("\"{}\"", label)), label);
}

std::uint64_t StatisticsReader::_count_of(std::string_view line, std::string_view label) const {
  std::uint64_t count = 0;
  if (!line.starts_with(label) || !parse_count(line.substr(label.size()), count))
    _lines.fail(fmt::format("expected \"{}\" and a number, found {}", label, shown_text(line)));
  return count;
}

void StatisticsReader::_read_exactly(std::string_view expected) {
  const std::string named = expected.empty() ? "an empty line" : fmt::format("\"{}\"", expected);
  const std::string_view line = _lines.need(named);
  if (line != expected) _lines.fail(fmt::format("expected {}, found {}", named, shown_text(line)));
}

}  // namespace colx::table
