#include "report/report_meta.h"

#include <filesystem>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "report/json_writer.h"
#include "report/measure_notes.h"
#include "report/packed_columns.h"

namespace colx::report {

namespace {

constexpr std::uint64_t format = 1;  // of the data, which the page checks

void _write_choice(const Options& options, const InputCounts& counts, const ReportRows& rows, JsonWriter& json) {
  std::string order;
  for (const auto& [column, ascending] : options.sort->keys)
    order += fmt::format("{}{}{}", order.empty() ? "" : ",", ascending ? '+' : '-', column.name);
  json.key("choice").begin_object();
  json.key("found").value(counts.found);
  json.key("chosen").value(counts.admitted);
  json.key("shown").value(rows.rows());
  json.key("minFrequency").value(options.min_frequency);
  json.key("conditions").begin_array();
  for (const std::string& condition : options.conditions)
    json.value(condition);
  json.end_array();
  json.key("ignoreCase").value(options.letters == table::CaseOf::is_ignored);
  json.key("sort").value(order);
  json.key("top").value(options.top);
  json.end_object();
}

void _write_measures(const Options& options, JsonWriter& json) {
  json.key("measures").begin_array();
  for (const table::Association* const measure : options.measures) {
    const MeasureNote& note = note_on(measure->name);
    json.begin_object();
    json.key("name").value(note.name);
    json.key("title").value(note.title);
    json.key("formula").value(note.formula);
    json.key("source").value(note.source);
    json.key("reading").value(note.reading);
    json.key("log").value(note.is_wide);
    json.end_object();
  }
  json.end_array();
}

void _write_corpus(const std::optional<CorpusSize>& corpus, JsonWriter& json) {
  json.key("statistics");
  if (!corpus.has_value()) {
    json.null();
    return;
  }
  json.begin_object();
  json.key("files").value(corpus->files);
  json.key("words").value(corpus->words);
  json.key("sentences").value(corpus->sentences);
  json.key("ngrams").value(corpus->ngrams);
  json.end_object();
}

void _write_examples(const std::optional<ExampleCounts>& examples, JsonWriter& json) {
  json.key("examples");
  if (!examples.has_value()) {
    json.null();
    return;
  }
  json.begin_object();
  json.key("each").value(examples->each);
  json.key("ngrams").value(examples->ngrams);
  json.key("sentences").value(examples->sentences);
  json.key("cited").value(examples->are_cited);
  json.end_object();
}

void _write_places(std::string_view key, const std::vector<Column>& columns, JsonWriter& json) {
  const std::vector<std::size_t> offsets = offsets_of(columns);
  json.key(key).begin_array();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    json.begin_object();
    json.key("name").value(columns[i].name);
    json.key("type").value(type_name(columns[i]));
    json.key("offset").value(offsets[i]);
    json.key("length").value(length_of(columns[i]));
    json.end_object();
  }
  json.end_array();
}

}  // namespace

std::string title_of(const Options& options) {
  if (!options.title.empty()) return options.title;
  if (options.input == "-") return input_name(options.input);
  return std::filesystem::path(options.input).filename().string();
}

std::string meta_of(const Options& options, const InputCounts& counts, const ReportRows& rows,
                    const std::optional<CorpusSize>& corpus, const std::optional<ExampleCounts>& examples,
                    const std::vector<Column>& columns, const std::vector<Column>& example_columns) {
  JsonWriter json;
  json.begin_object();
  json.key("format").value(format);
  json.key("program").begin_object();
  json.key("name").value(program.name);
  json.key("version").value(version_number());
  json.key("commandLine").value(options.command_line);
  json.end_object();
  json.key("title").value(title_of(options));
  json.key("input").value(input_name(options.input));
  json.key("n").value(rows.n());
  json.key("rows").value(rows.rows());
  json.key("vectors").value(rows.vectors());
  json.key("total").value(counts.total);
  _write_choice(options, counts, rows, json);
  _write_measures(options, json);
  _write_corpus(corpus, json);
  _write_examples(examples, json);
  _write_places("columns", columns, json);
  _write_places("exampleColumns", example_columns, json);
  json.end_object();
  return json.text();
}

}  // namespace colx::report
