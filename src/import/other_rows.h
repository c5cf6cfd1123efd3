#pragma once

// The rows of a sentence in CoNLL-U that are no words: multiword ranges and empty nodes.

#include <cstdint>
#include <string>
#include <string_view>

namespace colx {

// Follows the numbers of ranges and empty nodes through one sentence. A range a-b stands before word a, a is less than
// b, and no other range covers any of its words; the empty nodes behind word n, or before the first word for n = 0, are
// n.1, n.2 and so on. Numbers have no leading zeros.
class OtherRows {
 public:
  // Takes the next row, which `words` rows of words come before. Returns what was expected and what was found, or
  // nothing for a number that is well-formed.
  std::string add_range(std::string_view id, std::uint64_t words);
  std::string add_empty_node(std::string_view id, std::uint64_t words);

  // The last word that a range covers so far; 0: none.
  std::uint64_t covered() const { return _covered; }

 private:
  std::uint64_t _covered = 0;
  std::uint64_t _word = 0;   // that empty nodes were last seen behind
  std::uint64_t _nodes = 0;  // how many behind it
};

// What is wrong with the columns of such a row of ten columns: ranges have nothing but ID, FORM and MISC (and Typo=Yes
// in FEATS), empty nodes no HEAD and no DEPREL. Empty when all is well.
std::string misused_column_of_range(const std::string_view (&columns)[10]);
std::string misused_column_of_empty_node(const std::string_view (&columns)[10]);

}  // namespace colx
