#include "table/table.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "companion/command_line.h"
#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/utf8.h"
#include "rows/block_reader.h"
#include "rows/compared_rows.h"
#include "rows/merged_rows.h"
#include "table/contexts_table.h"
#include "table/flat_table.h"
#include "table/formats.h"
#include "table/profile.h"
#include "table/statistics_table.h"
#include "table/table_run.h"

namespace colx::table {

namespace {

bool _is_set(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

// The look of a table, once its format is known. Throws usage_error for what the format has no use for.
Look _look(const Options& options, Format format, bool bold) {
  if (options.na.has_value() && format == Format::jsonl)
    throw usage_error("--na is not for jsonl, which has null; --json-numbers strings tells NA from infinities");
  if (options.na.has_value() && format == Format::sqlite) throw usage_error("--na is not for sqlite, which has NULL");
  if (options.byte_order_mark && format != Format::csv) throw usage_error("--bom is for --format csv");
  if (options.special_as_text.has_value() && format != Format::jsonl)
    throw usage_error("--json-numbers is for --format jsonl");
  return {options.na.value_or("NA"),
          options.byte_order_mark,
          options.special_as_text.value_or(false),
          bold,
          {{"program", "ngrex-table"},
           {"version", std::string(version_number())},
           {"command_line", options.command_line},
           {"input", input_name(options.input)}},
          options.kind == Input::ngrams     ? ""
          : options.kind == Input::contexts ? "contexts"
                                            : "statistics"};
}

// What is said of a fault in the input, which costs a file all rows, and standard output those behind the fault.
input_error _with_consequence(const Options& options, const input_error& error, bool begun) {
  if (!options.output.empty()) return input_error(fmt::format("{}; {} is not written", error.what(), options.output));
  return input_error(fmt::format("{}; {}", error.what(), begun ? "the table ends here" : "there is no table"));
}

// An output datafile, with its pairs merged where that is wanted.
class Rows {
 public:
  Rows(const std::string& path, const Merging& merging) : _reader(path) {
    if (merging.is_wanted()) _merged.emplace(_reader, input_name(path), merging);
  }

  BlockSource& source() { return _merged.has_value() ? static_cast<BlockSource&>(*_merged) : _reader; }

 private:
  BlockReader _reader;
  std::optional<MergedRows> _merged;
};

void _write_ngrams(const Options& options, Format format, Output& output, const Look& look) {
  Rows rows(options.input, options.merging);
  std::optional<Rows> other;
  std::optional<ComparedRows> compared;
  if (options.profile.has_value()) {
    write_profile(options, rows.source(), output, look.bold_header);
    return;
  }
  TableRun table(options, format, output, look);
  Block block;
  bool begun = false;
  try {
    if (!options.other.empty()) {
      other.emplace(options.other, options.merging);
      compared.emplace(rows.source(), input_name(options.input), other->source(), input_name(options.other));
      table.compare(*compared);
    }
    BlockSource& source = compared.has_value() ? *compared : rows.source();
    while (source.next(block)) {
      if (!begun) table.begin(block.n);
      begun = true;
      if (!table.add(block)) break;
    }
  } catch (const input_error& error) {
    if (options.output.empty()) {
      table.end();
      output.flush();
    }
    throw _with_consequence(options, error, begun);
  }
  if (!begun && (format == Format::ucs || format == Format::sqlite || names_every_column(options)))
    table.begin(format == Format::ucs ? 2 : 0);
  table.end();
}

void _write_flat_table(const Options& options, Format format, Output& output, const Look& look) {
  if (format == Format::ucs) throw usage_error("--format ucs is for pairs, not for contexts or statistics");
  const std::unique_ptr<Writer> writer = make_writer(format, output, look);
  FlatTable table(options, *writer);
  try {
    if (options.kind == Input::contexts)
      write_contexts(options, table);
    else
      write_statistics(options, table, format != Format::tsv);
  } catch (const input_error& error) {
    if (options.output.empty()) {
      writer->end();
      output.flush();
    }
    throw _with_consequence(options, error, table.has_begun());
  }
  writer->end();
}

// Tells what the user should know of how conditions were taken.
void _tell_notes(const Options& options) {
  std::vector<std::string> notes = notes_of(options);
  std::string note;
  if (options.profile.has_value()) as_lemma(*options.profile, note);
  if (!note.empty()) notes.push_back(note);
  for (const std::string& one : notes)
    std::fputs(fmt::format("{}: {}\n", program.name, one).c_str(), stderr);
}

// Writes the table to where it is wanted.
void _deliver(const Options& options) {
  if (options.output.empty()) {
    const bool on_terminal = ::isatty(STDOUT_FILENO) == 1;
    StandardOutput output;
    write_table(options, output, on_terminal, on_terminal && !_is_set("NO_COLOR"));
    return;
  }
  std::vector<std::string> inputs = {options.input, options.other};
  for (std::string& file : set_files_of(options))
    inputs.push_back(std::move(file));
  check_output_path(options.output, inputs);
  NewFile file(options.output);
  FileOutput output(file);
  write_table(options, output, false, false);
  file.commit();
}

}  // namespace

void write_table(const Options& options, Output& output, bool on_terminal, bool bold) {
  const Format format = options.format.value_or(on_terminal ? Format::aligned : Format::tsv);
  const Look look = _look(options, format, bold);
  if (options.kind == Input::ngrams)
    _write_ngrams(options, format, output, look);
  else
    _write_flat_table(options, format, output, look);
  output.flush();
}

int run(const std::vector<std::string>& arguments) {
  // Characters of regular expressions are those of UTF-8 wherever the program runs.
  if (!use_utf8_characters())
    std::fputs("ngrex-table: the system has no locale C.UTF-8; regular expressions see bytes\n", stderr);
  const Options options = parse_options(arguments);
  if (!options.information.empty()) {
    write_to_standard_output(options.information);
    return 0;
  }
  _tell_notes(options);
  try {
    _deliver(options);
  } catch (const std::bad_alloc&) {
    if (!options.other.empty())
      throw std::runtime_error(
          "not enough memory to hold the N-grams of the file behind --compare; exchange the files if it is the larger");
    if (options.merging.is_wanted()) throw std::runtime_error("not enough memory to hold all merged rows");
    if (!options.sort.has_value()) throw;
    throw std::runtime_error(
        "not enough memory to sort this table; --memory SIZE lets the sort take less, and without --sort none is "
        "needed");
  }
  return 0;
}

}  // namespace colx::table
