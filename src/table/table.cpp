#include "table/table.h"

#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"
#include "rows/block_reader.h"
#include "table/formats.h"
#include "table/table_run.h"

namespace colx::table {

namespace {

bool _is_set(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

}  // namespace

void write_table(const Options& options, Output& output, bool on_terminal, bool bold) {
  const Format format = options.format.value_or(on_terminal ? Format::aligned : Format::tsv);
  BlockReader reader(options.input);
  TableRun table(options, format, output, bold);
  Block block;
  bool begun = false;
  try {
    while (reader.next(block)) {
      if (!begun) table.begin(block.n);
      begun = true;
      if (!table.add(block)) break;
    }
  } catch (const input_error& error) {
    table.end();
    output.flush();
    throw input_error(fmt::format("{}; {}", error.what(), begun ? "the table ends here" : "there is no table"));
  }
  if (!begun && (format == Format::ucs || names_every_column(options))) table.begin(format == Format::ucs ? 2 : 0);
  table.end();
  output.flush();
}

int run(const std::vector<std::string>& arguments) {
  // Characters of regular expressions are those of UTF-8 wherever the program runs.
  errno = 0;
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
    if (errno == ENOMEM) throw std::bad_alloc();
    std::fputs("ngrex-table: the system has no locale C.UTF-8; regular expressions see bytes\n", stderr);
  }
  const Options options = parse_options(arguments);
  if (!options.information.empty()) {
    write_to_standard_output(options.information);
    return 0;
  }
  const bool on_terminal = ::isatty(STDOUT_FILENO) == 1;
  StandardOutput output;
  try {
    write_table(options, output, on_terminal, on_terminal && !_is_set("NO_COLOR"));
  } catch (const std::bad_alloc&) {
    if (!options.sort.has_value()) throw;
    throw std::runtime_error(
        "not enough memory to sort this table; --top K needs less, and without --sort none is needed");
  }
  return 0;
}

}  // namespace colx::table
