#pragma once

// The N-grams that a search looks for, as it compares them with occurrences.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "concordance/query.h"
#include "corpus/string_store.h"
#include "corpus/word.h"
#include "extraction/ntree.h"
#include "filter/filter.h"
#include "model/ngram.h"
#include "rows/block.h"
#include "util/compact_index.h"

namespace colx::concordance {

// N-grams of blocks, which are looked up, and readings of queries, which are compared one by one. Both are numbered
// together, from 0, in the order in which they were added.
//
// An edge is a word with its parent. As every edge of an occurrence is an edge of what is wanted, sentences with too
// few of them need no closer look.
class WantedTrees {
 public:
  // The rules must outlive this object.
  WantedTrees(unsigned n, const MultiRulesFilter& rules);

  // Throws input_error when there are more lemmas or tags than a run of ngrex tells apart.
  void add(const table::Block& block);
  void add(const Query& query);

  // To be called when all have been added, and before the rest is used. From then on the stores take no further text,
  // but for tags when rules have to be asked about occurrences of queries.
  void close();

  // Where the words of a corpus are to be interned.
  StringStore<std::uint32_t>& lemmas() { return _lemmas; }
  StringStore<std::uint8_t>& tags() { return _tags; }

  // How many have been added.
  std::size_t size() const { return _size; }

  // Whether occurrences of an N-gram of a block can be counted at all: ngrex knows its relations and the rules admit
  // its tags.
  bool is_possible(std::size_t ngram) const { return _possible[ngram]; }

  // Whether the edge of a word to its parent may be one of what is wanted.
  bool has_edge(const Word& word, const Word& parent) const;

  // Calls `visit(ngram)` for everything wanted that occurs at these positions of a sentence.
  template <typename Visit>
  void for_each_match(WordRange sentence, std::span<const Position> positions, const Visit& visit) {
    if (_index.size() > 0) {
      const std::uint32_t found = _find(sentence, positions);
      if (found != CompactIndex::none)
        for (std::uint32_t ngram = _first[found]; ngram != CompactIndex::none; ngram = _next[ngram])
          visit(std::size_t{ngram});
    }
    for (const WantedQuery& query : _queries)
      if (_meets(query, sentence, positions)) visit(query.ngram);
  }

 private:
  // Numbers in the place of texts; nothing stands for any.
  struct Member {
    std::optional<std::uint32_t> lemma;
    std::optional<std::uint8_t> dependency;
    std::uint32_t parent = 0;

    bool admits(const Word& word) const {
      return (!lemma.has_value() || *lemma == word.lemma) &&
             (!dependency.has_value() || *dependency == word.dependency);
    }
  };
  using Reading = std::vector<Member>;
  struct WantedQuery {
    std::size_t ngram;
    std::vector<Reading> readings;
  };

  std::span<const NGram::Member> _members_of(std::uint32_t distinct) const {
    return {&_members[std::size_t{distinct} * _n], _n};
  }
  bool _intern(const table::Block& block, std::span<NGram::Member> members);
  void _index_members(std::uint32_t ngram, std::span<const NGram::Member> members);
  std::uint32_t _find(WordRange sentence, std::span<const Position> positions) const;
  bool _meets(const WantedQuery& query, WordRange sentence, std::span<const Position> positions);
  static bool _meets(const Reading& reading, WordRange sentence, std::span<const Position> positions);
  bool _admits(WordRange sentence, std::span<const Position> positions);

  unsigned _n;
  const MultiRulesFilter& _rules;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  std::size_t _size = 0;
  std::vector<bool> _possible;

  std::vector<NGram::Member> _members;  // of the distinct N-grams of blocks, n each
  CompactIndex _index;                  // of these
  std::vector<std::uint32_t> _first;    // of each: the N-gram that was added last
  std::vector<std::uint32_t> _next;     // of all N-grams: the one before it with the same members

  std::vector<std::uint64_t> _edge_hashes;  // of the edges of blocks, until they are all known
  std::vector<bool> _edges;                 // by the lower bits of a hash: whether there may be such an edge
  std::uint64_t _edge_mask = 0;

  std::vector<WantedQuery> _queries;
  std::vector<std::string> _texts;  // of tags, as rules are asked
};

}  // namespace colx::concordance
