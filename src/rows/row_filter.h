#pragma once

// Which rows are in the table.

#include <string>
#include <string_view>
#include <vector>

#include "rows/columns.h"
#include "rows/condition.h"

namespace colx::table {

// Conditions joined by `and` and `or`, of which `and` binds closer:
//
//   filter    = joined { " or " joined }
//   joined    = condition { " and " condition }
//   condition = column operator value | column " in " file | column " not in " file
//
// An operator is one of = != ~ !~ < <= >= >. A value goes on to the end, or to an " or " or " and " behind which
// another condition begins, that is, a name and an operator. In quotes of the kind \' it goes on to the closing one,
// and two of them stand for one; a quote that is not closed there is an ordinary character.
class RowFilter {
 public:
  // Throws usage_error when a condition has no column, no operator or a value that will not do, and input_error when
  // the file of a set cannot be read.
  explicit RowFilter(std::string_view text, CaseOf letters = CaseOf::matters);

  // The columns of all conditions.
  std::vector<Column> columns() const;

  // What the user should know of how conditions were taken, one sentence each.
  std::vector<std::string> notes() const;

  // The files of the sets that conditions look into.
  std::vector<std::string> set_files() const;

  // Requires that the columns exist for the N of the row.
  bool admits(const Row& row) const;

 private:
  std::vector<std::vector<Condition>> _alternatives;  // one of which must be met, with all its conditions
};

}  // namespace colx::table
