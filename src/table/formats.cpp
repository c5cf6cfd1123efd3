#include "table/formats.h"

#include <algorithm>
#include <array>

#include "table/database_writer.h"
#include "table/text_writers.h"
#include "table/workbook_writer.h"

namespace colx::table {

namespace {

struct FormatName {
  std::string_view name;
  Format format;
};

constexpr std::array<FormatName, 8> _formats = {{{"tsv", Format::tsv},
                                                 {"csv", Format::csv},
                                                 {"jsonl", Format::jsonl},
                                                 {"markdown", Format::markdown},
                                                 {"ucs", Format::ucs},
                                                 {"table", Format::aligned},
                                                 {"sqlite", Format::sqlite},
                                                 {"xlsx", Format::xlsx}}};

}  // namespace

std::optional<Format> find_format(std::string_view name) {
  for (const FormatName& format : _formats)
    if (format.name == name) return format.format;
  return std::nullopt;
}

std::unique_ptr<Writer> make_writer(Format format, Output& output, const Look& look) {
  switch (format) {
    case Format::csv:
      return make_csv_writer(output, look);
    case Format::jsonl:
      return make_json_lines_writer(output, look);
    case Format::markdown:
      return make_markdown_writer(output, look);
    case Format::aligned:
      return make_aligned_writer(output, look);
    case Format::sqlite:
      return make_database_writer(output, look);
    case Format::xlsx:
      return make_workbook_writer(output, look);
    case Format::tsv:
    case Format::ucs:
      break;
  }
  return make_tsv_writer(output, look);
}

std::vector<Column> ucs_columns(std::span<const Column> columns) {
  std::vector<Column> result = {{Quantity::rank, 0, "id"},     {Quantity::lemma, 0, "l1"},
                                {Quantity::lemma, 1, "l2"},    {Quantity::frequency, 0, "f"},
                                {Quantity::marginal, 0, "f1"}, {Quantity::marginal, 1, "f2"},
                                {Quantity::total, 0, "N"}};
  for (const Column& column : columns) {
    if (std::find(result.begin(), result.end(), column) != result.end()) continue;
    result.push_back(column);
    std::string& name = result.back().name;
    std::replace(name.begin(), name.end(), '_', '.');
    if (column.quantity == Quantity::association) name.insert(0, "am.");
  }
  return result;
}

Merging merging_of_ucs(Merging merging) {
  merging.order = true;
  merging.tag = true;
  if (merging.within == Within::everything) merging.relation = true;
  return merging;
}

}  // namespace colx::table
