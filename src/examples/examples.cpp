#include "examples/examples.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "companion/new_file.h"
#include "companion/output.h"
#include "companion/utf8.h"
#include "concordance/told_warnings.h"
#include "examples/options.h"
#include "examples/wanted_rows.h"

namespace colx::examples {

namespace {

void _tell(std::string_view sentence) {
  std::fputs(fmt::format("{}: {}\n", program.name, printable(sentence)).c_str(), stderr);
}

void _tell_notes(const Options& options) {
  for (const std::string& note : notes_of(options))
    _tell(note);
  for (const concordance::Query& query : options.queries)
    for (const std::string& note : query.notes)
      _tell(note);
  if (const std::string note = note_on(options); !note.empty()) _tell(note);
}

// Tells when the corpus does not seem to be the one that was counted.
void _tell_differences(const Options& options, WantedRows& rows) {
  std::uint64_t found_any = 0;
  std::size_t differ = 0;
  std::size_t first = 0;  // that differs
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::uint64_t found = rows.search()->found(i);
    found_any += found;
    if (found != rows.frequency(i).value_or(found) && differ++ == 0) first = i;
  }
  if (!options.queries.empty()) {
    if (found_any == 0) _tell("nothing was found in the corpus");
  } else if (found_any == 0) {
    _tell(fmt::format("none of the N-grams was found in the corpus; {}", concordance::were_they_given));
  } else if (differ > 0) {
    const Heading heading = rows.heading(first);
    _tell(
        fmt::format("{} of {} N-grams were not found as often as their frequency says, the first {} times in place of "
                    "{}: {}; {}",
                    differ, rows.size(), rows.search()->found(first), *heading.frequency, heading.pattern,
                    concordance::were_they_given));
  }
}

void _write_examples(const Options& options, WantedRows& rows, ExampleWriter& writer) {
  writer.begin(rows.n());
  concordance::Search* const search = rows.search();
  const std::uint64_t most = options.examples.value_or(std::numeric_limits<std::uint64_t>::max());
  concordance::Hit hit;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Heading heading = rows.heading(i);
    heading.found = search->found(i);
    heading.is_complete = search->is_complete();
    heading.shown = std::min(most, heading.found);
    writer.ngram(heading);
    for (std::uint64_t k = 0; k < heading.shown && search->next(hit); ++k)
      writer.example(search->sentence(hit.place), hit);
  }
  writer.end();
}

void _run(const Options& options, const std::vector<ListedDatafile>& datafiles, Output& output, const Look& look) {
  WantedRows rows(options, datafiles);
  const auto writer = make_example_writer(options.format, output, look,
                                          [&](const concordance::Place& place) -> const concordance::ExampleSentence& {
                                            return rows.search()->sentence(place);
                                          });
  if (rows.search() == nullptr) {
    _tell(fmt::format("{}: no N-gram is asked for", input_name(options.input)));
  } else {
    concordance::ToldWarnings warnings(_tell);
    rows.search()->run(options, options.memory, [&](std::string_view warning) { warnings.take(warning); });
    warnings.tell_rest();
    if (rows.search()->is_complete()) _tell_differences(options, rows);
  }
  _write_examples(options, rows, *writer);
  output.flush();
}

// How examples look on standard output.
Look _look_there(const Options& options) {
  Look look;
  look.tree = options.tree;
  if (::isatty(STDOUT_FILENO) != 1) return look;
  const char* const refused = std::getenv("NO_COLOR");
  look.colour = refused == nullptr || *refused == '\0';
  struct winsize size {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) look.width = size.ws_col;
  return look;
}

}  // namespace

int run(const std::vector<std::string>& arguments) {
  if (!use_utf8_characters()) _tell("the system has no locale C.UTF-8; regular expressions see bytes");
  const Options options = parse_options(arguments);
  if (!options.information.empty()) {
    write_to_standard_output(options.information);
    return 0;
  }
  _tell_notes(options);
  const std::vector<ListedDatafile> datafiles = concordance::datafiles_of(options);
  if (options.output.empty()) {
    StandardOutput output;
    _run(options, datafiles, output, _look_there(options));
    return 0;
  }
  std::vector<std::string> inputs = inputs_of(options, datafiles);
  inputs.push_back(options.queries.empty() ? options.input : "");
  inputs.push_back(options.sentences);
  for (std::string& file : set_files_of(options))
    inputs.push_back(std::move(file));
  check_output_path(options.output, inputs);
  NewFile file(options.output);
  FileOutput output(file);
  Look look;
  look.tree = options.tree;
  _run(options, datafiles, output, look);
  file.commit();
  return 0;
}

}  // namespace colx::examples
