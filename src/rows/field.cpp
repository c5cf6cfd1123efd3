#include "rows/field.h"

#include <limits>

#include "rows/block_reader.h"

namespace colx::table {

double value_of(const Field& field) {
  switch (field.kind) {
    case FieldKind::not_a_number:
      return std::numeric_limits<double>::quiet_NaN();
    case FieldKind::infinity:
      return std::numeric_limits<double>::infinity();
    case FieldKind::minus_infinity:
      return -std::numeric_limits<double>::infinity();
    case FieldKind::text:
    case FieldKind::number:
      break;
  }
  return measure_value(field.content);
}

std::string_view text_of(const Field& field, std::string_view na) {
  switch (field.kind) {
    case FieldKind::not_a_number:
      return na;
    case FieldKind::infinity:
      return "Inf";
    case FieldKind::minus_infinity:
      return "-Inf";
    case FieldKind::text:
    case FieldKind::number:
      break;
  }
  return field.content;
}

}  // namespace colx::table
