#pragma once

// A pattern that is looked for in place of the N-grams of an output datafile, written as ngrex-table's column `pattern`
// is: `heavy <Atr rain`, `take Obj> *`.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace colx::concordance {

// What a word of a pattern must be.
struct QueryMember {
  std::optional<std::string> lemma;     // nothing: any
  std::optional<std::string> relation;  // its own one, whatever its parent is; nothing: any
  std::uint32_t parent = 0;             // its position in the pattern, from 1; 0 for the top word

  bool operator==(const QueryMember&) const = default;
};
using QueryTree = std::vector<QueryMember>;

// A pattern taken apart. Where a lemma looks like a part of the pattern there are several readings of it, and what
// meets one of them meets the query.
struct Query {
  std::string text;                 // as it was given
  std::vector<QueryTree> readings;  // one at least, all of as many words
  std::vector<std::string> notes;   // what the user should know of how it was taken, one sentence each

  std::size_t n() const { return readings.front().size(); }
};

// Takes a pattern apart: words, separated by blanks, in their order in the sentence, each but the top word with its
// relation and an arrow from its parent. A word with its parent on the right is followed by `<relation`, one with its
// parent on the left preceded by `relation>`; behind the relation stands, after a colon, the position of a parent that
// is not the next word. A word is a lemma, `*` for any, or `lemma/relation` for one with that relation to its parent,
// also when this is outside. Throws usage_error.
Query parse_query(std::string_view text);

}  // namespace colx::concordance
