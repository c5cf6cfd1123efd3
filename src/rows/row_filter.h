#pragma once

// Conditions that a row must meet to be in the table.

#include <memory>
#include <string>
#include <string_view>

#include "rows/columns.h"

namespace colx::table {

// How a column is compared with a value.
enum class Comparison { equal, unequal, matches, matches_not, less, at_most, at_least, greater };

// One condition: a column, one of = != ~ !~ < <= >= >, and a value.
//
// Equality compares texts byte by byte. Numbers are compared with all their digits, whatever the style of the row; NA,
// Inf and -Inf may be given. Order is for numbers alone, and NA is in none. An expression, behind ~, is a POSIX
// extended regular expression, sought anywhere in the text as it is written in a tsv table, computed numbers with the
// usual ten digits; characters are those of the locale.
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

  bool _compares(double value) const;

  Column _column;
  Comparison _comparison = Comparison::equal;
  std::string _text;
  double _number = 0;
  std::shared_ptr<const Expression> _expression;  // for the two that match
};

}  // namespace colx::table
