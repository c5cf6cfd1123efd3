#include "rows/compared_rows.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "rows/columns.h"
#include "util/hashing.h"

namespace colx::table {

namespace {

// The words of an N-gram as its member lines have them, one after another.
class WordsOf {
 public:
  explicit WordsOf(const Block& block) : _lines(block.text.substr(0, block.members_size)) {}

  struct Word {
    std::string_view lemma;
    std::string_view rest;  // TAB, tag, TAB, parent, TAB, relation
  };

  Word next() {
    constexpr std::size_t begin = 2;  // behind the position, which is one digit, and a TAB
    const std::size_t middle = _lines.find('\t', begin);
    const std::size_t end = _lines.find('\n', middle);
    const Word word{_lines.substr(begin, middle - begin), _lines.substr(middle, end - middle)};
    _lines.remove_prefix(end + 1);
    return word;
  }

 private:
  std::string_view _lines;
};

// Takes the total of an N-gram of the input that is called `name`, the same as those before it.
void _take_total(const Block& block, bool is_first, std::uint64_t& total, const std::string& name) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < block.cell_count(); ++i)
    sum += block.cells[i];
  if (is_first) total = sum;
  if (sum != total)
    throw input_error(
        fmt::format("{}: the tables of its N-grams have different totals, {} and {}, as if several files had been "
                    "joined",
                    name, total, sum));
}

}  // namespace

ComparedRows::ComparedRows(BlockSource& source, std::string name, BlockSource& other, std::string other_name)
    : _source(source), _name(std::move(name)), _other_name(std::move(other_name)) {
  _read(other);
}

void ComparedRows::_read(BlockSource& other) {
  Block block;
  while (other.next(block)) {
    _take_total(block, _n == 0, _other_total, _other_name);
    _n = block.n;
    Key key{};
    WordsOf words(block);
    for (std::size_t k = 0; k < _n; ++k) {
      const auto [lemma, rest] = words.next();
      key[k] = std::uint64_t{_lemmas.number(lemma)} << 32 | _rests.number(rest);
    }
    if (_find(key) != CompactIndex::none) {
      std::string shown;
      write_tree_text(block, shown);
      throw input_error(fmt::format("{}: the N-gram \"{}\" stands there twice", _other_name, shown));
    }
    if (_index.size() == CompactIndex::largest_size)
      throw input_error(fmt::format("{}: more than four thousand million N-grams", _other_name));
    _index.insert(_hash(key), [this](std::uint32_t number) { return _hash(_key_of(number)); });
    _words.insert(_words.end(), key.begin(), key.begin() + static_cast<std::ptrdiff_t>(_n));
    _frequencies.push_back(block.cells[block.cell_count() - 1]);
  }
  _found.resize(_frequencies.size());
}

std::uint64_t ComparedRows::_hash(const Key& key) const {
  std::uint64_t hash = hash_keys[0];
  for (std::size_t k = 0; k < _n; ++k)
    hash = mix(hash ^ key[k], hash_keys[1]);
  return mix(hash, hash_keys[2]);
}

ComparedRows::Key ComparedRows::_key_of(std::uint32_t number) const {
  Key key{};
  std::copy_n(_words.begin() + static_cast<std::ptrdiff_t>(number * _n), _n, key.begin());
  return key;
}

std::uint32_t ComparedRows::_find(const Key& key) const {
  return _index.find(_hash(key), [&](std::uint32_t number) { return _key_of(number) == key; });
}

std::uint32_t ComparedRows::_find(const Block& block) const {
  if (block.n != _n) return CompactIndex::none;
  Key key{};
  WordsOf words(block);
  for (std::size_t k = 0; k < _n; ++k) {
    const auto [lemma_text, rest_text] = words.next();
    const auto lemma = _lemmas.find(lemma_text);
    const auto rest = lemma.has_value() ? _rests.find(rest_text) : std::nullopt;
    if (!rest.has_value()) return CompactIndex::none;
    key[k] = std::uint64_t{*lemma} << 32 | *rest;
  }
  return _find(key);
}

bool ComparedRows::next(Block& block) {
  if (_source_ended) return _give_other(block);
  if (!_source.next(block)) {
    _source_ended = true;
    return _give_other(block);
  }
  if (_n != 0 && block.n != _n)
    throw usage_error(fmt::format("{} has N-grams of {} words and {} of {}: only those of one size can be compared",
                                  _name, block.n, _other_name, _n));
  _take_total(block, !std::exchange(_has_rows, true), _total, _name);
  _last = _find(block);
  if (_last != CompactIndex::none) _found[_last] = true;
  return true;
}

// Gives the next N-gram that the file does not have, as far as the other one knows it.
bool ComparedRows::_give_other(Block& block) {
  while (_next < _found.size() && _found[_next])
    ++_next;
  if (_next == _found.size()) return false;
  _last = _next++;
  const Key key = _key_of(_last);
  _text.clear();
  for (std::size_t k = 0; k < _n; ++k)
    fmt::format_to(std::back_inserter(_text), "{}\t{}{}\n", k + 1, _lemmas[static_cast<std::uint32_t>(key[k] >> 32)],
                   _rests[static_cast<std::uint32_t>(key[k])]);
  _text += std::to_string(_total);
  for (std::size_t i = 1; i < std::size_t{1} << _n; ++i)
    _text += "\t0";
  for (std::size_t i = 0; i < measures_of(_n); ++i)
    _text += i == 0 ? "\nnan" : "\tnan";
  _text += "\n\n";
  Fault fault;
  // What was kept had been a block before.
  if (parse_block(_text, block, fault) != ParseStatus::complete) throw std::logic_error(fault.message);
  return true;
}

Counterpart ComparedRows::_counterpart(std::uint32_t number) const {
  if (number == CompactIndex::none) return {true, 0, _other_total};
  return {_found[number], _frequencies[number], _other_total};
}

}  // namespace colx::table
