#pragma once

// Tables as text, in several formats, which docs/ngrex-table.1 describes.

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "table/columns.h"
#include "table/output.h"

namespace colx::table {

enum class Format { tsv, csv, jsonl, markdown, ucs, aligned };

// The format of that name: tsv, csv, jsonl, markdown, ucs, table.
std::optional<Format> find_format(std::string_view name);

// Writes one table: begin, its rows, end.
class Writer {
 public:
  explicit Writer(Output& output) : _output(output) {}
  virtual ~Writer() = default;

  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  // Writes the header, if the format has one.
  virtual void begin(std::span<const Column> columns) = 0;
  // Writes one row; the fields are those of the columns and need not outlive the call.
  virtual void row(std::span<const Field> fields) = 0;
  // Writes what is still held back.
  virtual void end() {}

 protected:
  Output& out() { return _output; }

 private:
  Output& _output;  // not owned
};

// A writer for the format. `bold_header` is for the aligned table alone: it is then written for a terminal.
std::unique_ptr<Writer> make_writer(Format format, Output& output, bool bold_header);

// The columns of a ucs table: id, l1, l2, f, f1, f2, N, which are the rank, both lemmas, the frequencies and the total
// under other names, and then all given columns that are not among them, with dots for underscores, which names of that
// format do not have.
std::vector<Column> ucs_columns(std::span<const Column> columns);

}  // namespace colx::table
