#include "rows/merging.h"

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx::table {

void merge(Merging& merging, std::string_view list) {
  for (;;) {
    const std::size_t comma = list.find(',');
    const std::string_view name = list.substr(0, comma);
    if (name == "order")
      merging.order = true;
    else if (name == "tag")
      merging.tag = true;
    else if (name == "relation")
      merging.relation = true;
    else
      throw usage_error(fmt::format("--merge takes order, tag and relation, separated by commas, not \"{}\"", name));
    if (comma == std::string_view::npos) return;
    list.remove_prefix(comma + 1);
  }
}

Within parse_within(std::string_view name) {
  if (name == "relation") return Within::relation;
  if (name == "head-relation") return Within::head_relation;
  throw usage_error(fmt::format("--within takes relation or head-relation, not \"{}\"", name));
}

}  // namespace colx::table
