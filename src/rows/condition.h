#pragma once

// One condition that a row must meet: a column, an operator and a value.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rows/columns.h"
#include "rows/text_set.h"

namespace colx::table {

// How a column is compared with a value.
enum class Comparison { equal, unequal, matches, matches_not, less, at_most, at_least, greater, in, not_in };

// Whether texts that differ in the case of letters only are the same.
enum class CaseOf { matters, is_ignored };

// A condition as it was written, taken apart.
struct WrittenCondition {
  std::string_view whole;  // for messages
  Column column;
  Comparison comparison = Comparison::equal;
  std::string value;  // the name of a file for the two that look into a set
};

// Equality compares texts byte by byte. Numbers are compared with all their digits, whatever the style of the row; NA,
// Inf and -Inf may be given. Order is for numbers alone, and NA is in none. An expression is a POSIX extended regular
// expression, sought anywhere in the text as it is written in a tsv table, computed numbers with the usual ten digits;
// characters are those of the locale. A set is a file with one text a line.
//
// As no lemma has one of the characters at which ngrex cuts, a lemma that is asked for with one of them is taken for
// the protected lemma that ngrex-import makes of it.
class Condition {
 public:
  // Throws usage_error for a value that is no number for a numeric column, an operator that the column does not have,
  // or a broken expression; input_error when a set cannot be read.
  Condition(const WrittenCondition& written, CaseOf letters);

  const Column& column() const { return _column; }

  // What the user should know of how the condition was taken: one sentence, or nothing.
  const std::string& note() const { return _note; }

  // The file of the set that the condition looks into; empty when there is none.
  const std::string& set_file() const { return _set_file; }

  // Requires that the column exists for the N of the row.
  bool admits(const Row& row) const;

 private:
  struct Expression;

  void _take_text(const WrittenCondition& written);
  void _take_set(const WrittenCondition& written);
  bool _compares(double value) const;

  Column _column;
  Comparison _comparison;
  CaseOf _letters;
  std::string _text;
  double _number = 0;
  std::shared_ptr<const Expression> _expression;  // for the two that match
  std::shared_ptr<const TextSet> _set;            // for the two that look into a set
  std::string _set_file;
  std::string _note;
};

// The text with the case of letters taken away when it is ignored.
std::string as_compared(std::string_view text, CaseOf letters);

// The lemma as it can stand in a file, see Condition, and a sentence about it when that is another; otherwise `note`
// stays as it is.
std::string as_lemma(const std::string& text, std::string& note);

}  // namespace colx::table
