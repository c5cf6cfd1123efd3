#pragma once

// Writing one table, in whatever format.

#include <span>

#include "rows/field.h"
#include "table/output.h"

namespace colx::table {

// Takes one table: begin, its rows, end.
class Writer {
 public:
  explicit Writer(Output& output) : _output(output) {}
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

 private:
  Output& _output;  // not owned
};

}  // namespace colx::table
