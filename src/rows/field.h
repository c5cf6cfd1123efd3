#pragma once

// What a table is made of, whatever its rows are: headings and values.

#include <string>
#include <string_view>

namespace colx::table {

// What the values of a column are: texts, whole numbers from 0, or any numbers.
enum class ValueType { text, count, real };

// A column as a writer sees it.
struct Heading {
  std::string name;
  ValueType type = ValueType::text;
};

enum class FieldKind { text, number, not_a_number, infinity, minus_infinity };

// One value of a row as it is to be written. Only texts and numbers have a content.
struct Field {
  FieldKind kind = FieldKind::text;
  std::string_view content;
};

// The value of a field that is no text, as it is written.
double value_of(const Field& field);

// The text that stands for a field where there are no special values: Inf, -Inf, and for not-a-number `na`.
std::string_view text_of(const Field& field, std::string_view na = "NA");

}  // namespace colx::table
