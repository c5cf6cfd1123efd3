#pragma once

// The built-in tables from relations to analytical functions.

#include <string_view>

#include "import/relation_map.h"

namespace colx {

// A table that needs no file. Texts live as long as the process.
struct RelationTable {
  std::string_view name;    // for options and reports
  std::string_view scheme;  // the annotation that it is for
  std::string_view text;    // of RelationMap
};

// A built-in table taken apart, once for the process.
const RelationMap& map_of(const RelationTable& table);

// Universal Dependencies, with the relations of their first version, and Surface-Syntactic Universal Dependencies, in
// which function words are heads. A name that both list becomes the same.
const RelationTable& universal_relations();
const RelationTable& surface_relations();

// The table of that name; null when there is none.
const RelationTable* relation_table(std::string_view name);

// The table for a treebank in CoNLL-U, by the text at its beginning: the one for surface-syntactic relations where more
// words have a relation that only that one knows than one that only the other knows.
const RelationTable& recognise_relations(std::string_view beginning);

}  // namespace colx
