#pragma once

// Writing one table, in whatever format.

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/output.h"
#include "rows/field.h"

namespace colx::table {

// What the user decides about the look of a table. Every writer takes what its format has a use for.
struct Look {
  std::string na = "NA";                                    // stands for not-a-number, but in jsonl
  bool byte_order_mark = false;                             // csv: at its beginning
  bool special_as_text = false;                             // jsonl: "NA", "Inf" and "-Inf" in place of null
  bool bold_header = false;                                 // table: for a terminal
  std::vector<std::pair<std::string, std::string>> origin;  // sqlite: what its table `about` says, by keys
  std::string flat_name;  // sqlite and xlsx: the name of the table, where rows are no N-grams
};

// Takes one table: begin, its rows, end.
class Writer {
 public:
  Writer(Output& output, Look look) : _output(output), _look(std::move(look)) {}
  virtual ~Writer() = default;

  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  // Writes the header, if the format has one.
  virtual void begin(std::span<const Heading> columns) = 0;
  // Writes one row; the fields are those of the columns and need not outlive the call.
  virtual void row(std::span<const Field> fields) = 0;
  // Writes what is still held back.
  virtual void end() {}

 protected:
  Output& out() { return _output; }
  const Look& look() const { return _look; }
  std::string_view shown(const Field& field) const { return text_of(field, _look.na); }

 private:
  Output& _output;  // not owned
  Look _look;
};

}  // namespace colx::table
