#include "concordance/wanted_trees.h"

#include <algorithm>
#include <array>
#include <bit>

#include <fmt/format.h>

#include "base/errors.h"
#include "companion/errors.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"
#include "extraction/occurrence_members.h"
#include "model/occurrence_batch.h"
#include "util/hashing.h"

namespace colx::concordance {

namespace {

// The code of a relation that ngrex knows by that name.
std::optional<std::uint8_t> _dependency(std::string_view name) {
  const std::uint8_t code = string2dependency(std::string(name));
  if (dependency2cstring(code) != name) return std::nullopt;
  return code;
}

std::uint64_t _hash(std::span<const NGram::Member> members) {
  std::uint64_t hash = 0;
  for (unsigned i = 0; i < members.size(); ++i)
    hash += member_hash(members[i], i);
  return hash;
}

std::uint64_t _edge_hash(std::uint32_t lemma, std::uint8_t dependency, std::uint32_t parent_lemma, bool from_right) {
  return mix((std::uint64_t{lemma} << 32 | parent_lemma) ^ hash_keys[0],
             hash_keys[1] ^ (unsigned{dependency} << 1 | unsigned{from_right}));
}

}  // namespace

WantedTrees::WantedTrees(unsigned n, const MultiRulesFilter& rules)
    : _n(n), _rules(rules), _lemmas(longest_text), _tags(longest_text), _texts(n) {
  string2dependency("Head");  // makes the codes of "Head" and "Undef" known
}

void WantedTrees::add(const table::Block& block) {
  std::array<NGram::Member, constants::max_grammity> members;
  const std::span<NGram::Member> used(members.data(), _n);
  _next.push_back(CompactIndex::none);
  _possible.push_back(_intern(block, used));
  if (_possible.back()) _index_members(static_cast<std::uint32_t>(_size), used);
  ++_size;
}

// Returns whether the N-gram is possible.
bool WantedTrees::_intern(const table::Block& block, std::span<NGram::Member> members) {
  for (std::size_t i = 0; i < _n; ++i) {
    const table::Member& member = block.members[i];
    const auto dependency = _dependency(member.relation);
    if (!dependency.has_value() || member.lemma.size() > longest_text || member.tag.size() > longest_text) return false;
    try {
      members[i] = NGram::Member(_lemmas.store(member.lemma), _tags.store(member.tag),
                                 static_cast<std::uint8_t>(member.parent), *dependency);
    } catch (const index_overflow&) {
      throw input_error(fmt::format("the N-grams have more than {} different tags, which no run of ngrex tells apart",
                                    most_distinct_tags));
    }
    _texts[_n - 1 - i] = member.tag;
  }
  // In a packed member the highest number is that of all lemmas that are not wanted.
  if (_lemmas.size() >= most_distinct_lemmas)
    throw input_error(fmt::format("the N-grams have {} different lemmas, more than can be told apart", _lemmas.size()));
  return !_rules.is_on() || _rules.first_match(_texts) < _rules.rules().size();
}

void WantedTrees::_index_members(std::uint32_t ngram, std::span<const NGram::Member> members) {
  const std::uint64_t hash = _hash(members);
  std::uint32_t found = _index.find(hash, [&](std::uint32_t distinct) {
    return std::equal(members.begin(), members.end(), _members_of(distinct).begin());
  });
  if (found == CompactIndex::none) {
    found = _index.size();
    _index.insert(hash, [&](std::uint32_t distinct) { return _hash(_members_of(distinct)); });
    _members.insert(_members.end(), members.begin(), members.end());
    _first.push_back(CompactIndex::none);
    for (std::size_t i = 0; i < _n; ++i) {
      const std::size_t parent = members[i].parent();
      if (parent != 0)
        _edge_hashes.push_back(
            _edge_hash(members[i].lemma(), members[i].dependency(), members[parent - 1].lemma(), parent > i + 1));
    }
  }
  _next[ngram] = _first[found];
  _first[found] = ngram;
}

void WantedTrees::add(const Query& query) {
  WantedQuery wanted{_size++, {}};
  for (const QueryTree& tree : query.readings) {
    const auto cannot_occur = [](const QueryMember& member) {
      return member.lemma.has_value() && member.lemma->size() > longest_text;
    };
    if (std::any_of(tree.begin(), tree.end(), cannot_occur)) continue;
    Reading reading;
    for (const QueryMember& member : tree) {
      Member number;
      if (member.lemma.has_value()) number.lemma = _lemmas.store(*member.lemma);
      if (member.relation.has_value()) number.dependency = _dependency(*member.relation);
      number.parent = member.parent;
      reading.push_back(number);
    }
    wanted.readings.push_back(std::move(reading));
  }
  _queries.push_back(std::move(wanted));
  _next.push_back(CompactIndex::none);
  _possible.push_back(true);
}

void WantedTrees::close() {
  // Few places are taken, so that few edges are taken for another one.
  constexpr std::size_t places_of_an_edge = 32;
  const std::size_t places = std::bit_ceil(std::max<std::size_t>(1, _edge_hashes.size()) * places_of_an_edge);
  _edges.assign(places, false);
  _edge_mask = places - 1;
  for (const std::uint64_t hash : _edge_hashes)
    _edges[hash & _edge_mask] = true;
  _edge_hashes = {};
  _lemmas.close();
  if (_queries.empty() || !_rules.is_on()) _tags.close();
}

bool WantedTrees::has_edge(const Word& word, const Word& parent) const {
  constexpr std::uint32_t others = StringStore<std::uint32_t>::others;
  const bool from_right = parent.order > word.order;
  if (word.lemma != others && parent.lemma != others &&
      _edges[_edge_hash(word.lemma, word.dependency, parent.lemma, from_right) & _edge_mask])
    return true;
  for (const WantedQuery& query : _queries)
    for (const Reading& reading : query.readings)
      for (std::size_t i = 0; i < reading.size(); ++i) {
        const std::size_t of_parent = reading[i].parent;
        if (of_parent == 0 || (of_parent > i + 1) != from_right) continue;
        if (reading[i].admits(word) && reading[of_parent - 1].admits(parent)) return true;
      }
  return false;
}

std::uint32_t WantedTrees::_find(WordRange sentence, std::span<const Position> positions) const {
  std::array<NGram::Member, constants::max_grammity> members;
  const std::span<NGram::Member> used(members.data(), _n);
  occurrence_members(sentence, positions, used);
  return _index.find(_hash(used), [&](std::uint32_t distinct) {
    return std::equal(used.begin(), used.end(), _members_of(distinct).begin());
  });
}

bool WantedTrees::_meets(const WantedQuery& query, WordRange sentence, std::span<const Position> positions) {
  return std::any_of(query.readings.begin(), query.readings.end(),
                     [&](const Reading& reading) { return _meets(reading, sentence, positions); }) &&
         (!_rules.is_on() || _admits(sentence, positions));
}

bool WantedTrees::_meets(const Reading& reading, WordRange sentence, std::span<const Position> positions) {
  for (std::size_t i = 0; i < reading.size(); ++i) {
    const Word& word = sentence.first[positions[i] - 1];
    if (!reading[i].admits(word)) return false;
    const std::size_t parent = reading[i].parent;
    if (parent != 0 && positions[parent - 1] != word.parent) return false;
  }
  return true;
}

// Rules see the positions from the last to the first.
bool WantedTrees::_admits(WordRange sentence, std::span<const Position> positions) {
  for (std::size_t i = 0; i < _n; ++i)
    _texts[_n - 1 - i] = _tags[sentence.first[positions[i] - 1].tag];
  return _rules.first_match(_texts) < _rules.rules().size();
}

}  // namespace colx::concordance
