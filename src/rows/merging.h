#pragma once

// Which differences between pairs do not count, and inside what their margins are taken.

#include <string_view>

namespace colx::table {

// What a table of two words covers.
enum class Within {
  everything,     // all pairs; the relation belongs to the dependent, and the head's margin runs over all relations
  relation,       // the pairs of one relation: both margins and the total
  head_relation,  // all pairs, but the relation belongs to the head; the dependent's margin runs over all relations
};

// What is to be done with the pairs of an output datafile. Nothing, as it stands.
struct Merging {
  bool order = false;     // pairs that differ in word order only become one, with the dependent first
  bool tag = false;       // both tags are dropped
  bool relation = false;  // the relation is dropped
  Within within = Within::everything;

  bool is_wanted() const { return order || tag || relation || within != Within::everything; }
};

// Merges what a list separated by commas names besides: order, tag, relation. Throws usage_error for anything else.
void merge(Merging& merging, std::string_view list);

// What relation and head-relation stand for. Throws usage_error for anything else.
Within parse_within(std::string_view name);

// What stands in a row for a field that was dropped.
inline constexpr std::string_view merged_text = "*";

}  // namespace colx::table
