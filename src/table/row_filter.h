#pragma once

// Conditions that a row must meet to be in the table.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "table/columns.h"

namespace colx::table {

// One condition: `column=value` or `column~expression`.
//
// Equality compares texts byte by byte, and numbers by the value that is printed; NA, Inf and -Inf may be given. An
// expression is a POSIX extended regular expression, sought anywhere in the text as it is written in a tsv table;
// characters are those of the locale.
class RowFilter {
 public:
  // Throws usage_error when the condition has no column, no operator, a value that is no number for a numeric column,
  // or a broken expression.
  explicit RowFilter(std::string_view condition);

  const Column& column() const { return _column; }

  // Requires that the column exists for the N of the row.
  bool admits(const Row& row) const;

 private:
  struct Expression;

  bool _equals(const Row& row) const;

  Column _column;
  std::string _text;
  double _number = 0;
  std::shared_ptr<const Expression> _expression;  // none: equality
};

}  // namespace colx::table
