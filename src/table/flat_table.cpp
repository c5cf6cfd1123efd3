#include "table/flat_table.h"

#include <algorithm>
#include <numeric>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

namespace {

bool _is_numbered(std::string_view heading, std::string_view name) {
  return heading.size() > name.size() && heading.starts_with(name) &&
         heading.find_first_not_of("0123456789", name.size()) == std::string_view::npos;
}

}  // namespace

std::vector<std::size_t> chosen_columns(const std::vector<std::string>& names, std::span<const Heading> headings,
                                        std::string_view what) {
  std::vector<std::size_t> chosen;
  if (names.empty()) {
    chosen.resize(headings.size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
  }
  for (const std::string& name : names) {
    bool found = false;
    for (std::size_t i = 0; i < headings.size(); ++i) {
      if (headings[i].name != name && !_is_numbered(headings[i].name, name)) continue;
      found = true;
      if (std::find(chosen.begin(), chosen.end(), i) == chosen.end()) chosen.push_back(i);
    }
    if (!found) throw usage_error(fmt::format("{} has no column \"{}\"", what, name));
  }
  return chosen;
}

void FlatTable::begin(std::span<const Heading> headings, std::string_view what) {
  _columns = chosen_columns(_options.columns, headings, what);
  _fields.resize(_columns.size());
  std::vector<Heading> header;
  for (const std::size_t column : _columns)
    header.push_back(headings[column]);
  _writer.begin(header);
  _begun = true;
}

void FlatTable::row(std::span<const Field> fields) {
  for (std::size_t i = 0; i < _columns.size(); ++i)
    _fields[i] = fields[_columns[i]];
  _writer.row(_fields);
  ++_rows;
}

}  // namespace colx::table
