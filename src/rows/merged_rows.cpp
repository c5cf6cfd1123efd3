#include "rows/merged_rows.h"

#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/contingency.h"
#include "util/hashing.h"

namespace colx::table {

namespace {

// The number of a thing among those of an index; `is_new` says whether it was taken in just now.
template <typename Equal, typename HashOf>
std::pair<std::uint32_t, bool> _number(CompactIndex& index, std::uint64_t hash, const Equal& equal,
                                       const HashOf& hash_of) {
  if (const std::uint32_t known = index.find(hash, equal); known != CompactIndex::none) return {known, false};
  if (index.size() == CompactIndex::largest_size) throw std::length_error("more than four thousand million pairs");
  index.insert(hash, hash_of);
  return {index.size() - 1, true};
}

}  // namespace

std::uint64_t MergedRows::_hash(const Side& side) {
  const std::uint64_t word = std::uint64_t{side.lemma} << 32 | side.tag;
  const std::uint64_t rest = std::uint64_t{side.relation} << 2 | (side.is_head ? 2U : 0U) | (side.is_first ? 1U : 0U);
  return mix(mix(word ^ hash_keys[0], hash_keys[1]) ^ rest, hash_keys[2]);
}

std::uint64_t MergedRows::_hash(const Pair& pair) {
  return mix((std::uint64_t{pair.dependent} << 32 | pair.head) ^ hash_keys[3], hash_keys[4]);
}

bool MergedRows::next(Block& block) {
  if (!_is_read) _read();
  if (_next == _pairs.size()) return false;
  const Pair& pair = _pairs[_next++];
  const CountedSide& dependent = _sides[pair.dependent];
  const CountedSide& head = _sides[pair.head];
  const std::uint32_t relation = dependent.side.relation == no_relation ? head.side.relation : dependent.side.relation;

  const std::size_t place = dependent.side.is_first ? 0 : 1;  // of the dependent
  const auto place_of_head = 1 - place;
  block.n = 2;
  block.members[place] = {_words[dependent.side.lemma], _words[dependent.side.tag], _relations[relation],
                          static_cast<std::uint32_t>(place_of_head + 1)};
  block.members[place_of_head] = {_words[head.side.lemma], _words[head.side.tag], "Head", 0};

  const std::uint64_t total = _merging.within == Within::relation ? _totals[relation] : _total;
  const std::uint64_t f = pair.frequency;
  block.cells[3] = f;
  block.cells[std::size_t{2} >> place] = dependent.frequency - f;
  block.cells[std::size_t{2} >> place_of_head] = head.frequency - f;
  block.cells[0] = total - dependent.frequency - head.frequency + f;
  block.measures.fill("nan");

  _text.clear();
  for (std::size_t k = 0; k < 2; ++k) {
    const Member& member = block.members[k];
    _text += k == 0 ? "1\t" : "2\t";
    _text.append(member.lemma) += '\t';
    _text.append(member.tag) += '\t';
    _text += static_cast<char>('0' + member.parent);
    _text += '\t';
    _text.append(member.relation) += '\n';
  }
  block.members_size = _text.size();
  for (std::size_t i = 0; i < 4; ++i) {
    const fmt::format_int digits(block.cells[i]);
    _text.append(digits.data(), digits.size()) += i == 3 ? '\n' : '\t';
  }
  _text += "nan\tnan\tnan\tnan\tnan\tnan\n\n";
  block.text = _text;
  return true;
}

void MergedRows::_read() {
  _is_read = true;
  Block block;
  while (_source.next(block)) {
    if (block.n != 2)
      throw usage_error(fmt::format(
          "merging is for pairs (--merge, --within, the format ucs); this file has N-grams of {} words", block.n));
    _count(block);
  }
  _check_total();
  _side_index.clear();
  _pair_index.clear();
}

void MergedRows::_count(const Block& block) {
  const Contingency table(block.n, block.cells);
  if (!std::exchange(_has_pairs, true)) _total = table.total;
  if (table.total != _total)
    _fail(fmt::format("the tables of its pairs have different totals, {} and {}, as if several files had been joined",
                      _total, table.total));
  const std::uint64_t f = table.frequency;
  _counted += f;

  const std::size_t place = block.members[0].parent == 0 ? 1 : 0;  // of the dependent
  const Member& dependent = block.members[place];
  const Member& head = block.members[1 - place];
  const auto tag_of = [this](const Member& member) { return _merging.tag ? merged_text : member.tag; };
  const std::uint32_t relation = _relations.number(_merging.relation ? merged_text : dependent.relation);
  const bool dependent_is_first = _merging.order || place == 0;
  if (relation == _totals.size()) _totals.push_back(0);
  _totals[relation] += f;

  const Pair pair{
      _count_side({_words.number(dependent.lemma), _words.number(tag_of(dependent)),
                   _merging.within == Within::head_relation ? no_relation : relation, false, dependent_is_first},
                  f),
      _count_side({_words.number(head.lemma), _words.number(tag_of(head)),
                   _merging.within == Within::everything ? no_relation : relation, true, !dependent_is_first},
                  f),
      f};
  const auto [number, is_new] = _number(
      _pair_index, _hash(pair),
      [&](std::uint32_t i) { return _pairs[i].dependent == pair.dependent && _pairs[i].head == pair.head; },
      [&](std::uint32_t i) { return _hash(_pairs[i]); });
  if (is_new)
    _pairs.push_back(pair);
  else
    _pairs[number].frequency += f;
}

std::uint32_t MergedRows::_count_side(const Side& side, std::uint64_t frequency) {
  const auto [number, is_new] = _number(
      _side_index, _hash(side), [&](std::uint32_t i) { return _sides[i].side == side; },
      [&](std::uint32_t i) { return _hash(_sides[i].side); });
  if (is_new)
    _sides.push_back({side, frequency});
  else
    _sides[number].frequency += frequency;
  return number;
}

void MergedRows::_check_total() const {
  if (_counted < _total)
    _fail(fmt::format(
        "the frequencies of its pairs add up to {} of {}, so pairs are missing, and margins cannot be counted "
        "anew; run ngrex without a filter, sieve or threshold (-f, -tf, -te, -tc, -tl, -tm, -tp, -tt, -tz), "
        "and choose rows here with --where and --min-frequency",
        _counted, _total));
  if (_counted > _total)
    _fail(fmt::format(
        "the frequencies of its pairs add up to {}, more than the total of {} in their tables, as if several "
        "files had been joined",
        _counted, _total));
}

void MergedRows::_fail(const std::string& message) const {
  throw input_error(fmt::format("{}: {}", _name, message));
}

}  // namespace colx::table
