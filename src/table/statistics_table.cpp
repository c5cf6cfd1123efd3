#include "table/statistics_table.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "rows/statistics_reader.h"

namespace colx::table {

namespace {

constexpr std::size_t column_count = 8;

const std::array<Heading, column_count> _statistics_headings = {{{"scope", ValueType::text},
                                                                 {"datafile", ValueType::text},
                                                                 {"n", ValueType::count},
                                                                 {"words", ValueType::count},
                                                                 {"sentences", ValueType::count},
                                                                 {"extracted", ValueType::count},
                                                                 {"passed", ValueType::count},
                                                                 {"filtered", ValueType::count}}};

}  // namespace

void write_statistics(const Options& options, FlatTable& table, bool holds_tabs) {
  constexpr std::string_view what = "a statistics file";
  chosen_columns(options.columns, _statistics_headings, what);
  StatisticsReader reader(options.input);
  DatafileCounters counters;
  while (reader.next(counters)) {
    if (!table.has_begun()) table.begin(_statistics_headings, what);
    if (table.is_full()) return;
    if (!holds_tabs && counters.name.find_first_of("\t\r") != std::string::npos)
      throw input_error(
          fmt::format("{}: the name of a datafile has a TAB or a carriage return, for which tsv has no place: {}; csv "
                      "and jsonl have",
                      input_name(options.input), counters.name));
    const std::array<std::optional<std::uint64_t>, 6> counts = {reader.n(),         counters.words,  counters.sentences,
                                                                counters.extracted, counters.passed, counters.filtered};
    std::array<std::string, counts.size()> texts;
    std::array<Field, column_count> fields;
    fields[0] = {FieldKind::text, counters.is_overall ? "overall" : "datafile"};
    fields[1] = {FieldKind::text, counters.name};
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i].has_value()) texts[i] = std::to_string(*counts[i]);
      fields[2 + i] = {counts[i].has_value() ? FieldKind::number : FieldKind::not_a_number, texts[i]};
    }
    table.row(fields);
    if (table.is_full()) return;
  }
}

}  // namespace colx::table
