#include "model/pattern_frequencies.h"

#include <algorithm>
#include <bit>

#include "base/config.h"

namespace colx {

namespace {

// The cells while they are worked out: type by type, but in blocks of N-grams, so that in the end each block can be
// turned where it stands into one N-gram after another.
class Columns {
 public:
  static constexpr std::size_t block_size = 256;

  // There must be cells for whole blocks.
  Columns(ZeroedArray<std::uint32_t>& cells, std::size_t size, std::size_t types)
      : _cells(cells), _size(size), _types(types), _sums(types + 1) {}

  std::uint32_t& at(std::size_t type, std::uint32_t number) {
    return _cells[(number / block_size * _types + type - 1) * block_size + number % block_size];
  }

  // Says that for now the column of a type holds the numbers of patterns, whose sums these are.
  void set_sums(std::size_t type, const KeySums& sums) {
    _sums[type].resize(sums.different());
    for (std::uint32_t i = 0; i < sums.different(); ++i)
      _sums[type][i] = sums.sum(i);
  }

  // Puts sums in the place of numbers, and the cells of every N-gram side by side.
  void turn() {
    std::vector<std::uint32_t> rows(block_size * _types);
    for (std::size_t begin = 0; begin < _size; begin += block_size) {
      std::uint32_t* const cells = &_cells[begin * _types];
      for (std::size_t type = 1; type <= _types; ++type) {
        const std::uint32_t* const column = cells + (type - 1) * block_size;
        std::uint32_t* const row = &rows[type - 1];
        const std::vector<std::uint32_t>& sums = _sums[type];
        for (std::size_t i = 0; i < block_size; ++i)
          row[i * _types] = sums.empty() ? column[i] : sums[column[i]];
      }
      std::copy(rows.begin(), rows.end(), cells);
    }
  }

 private:
  ZeroedArray<std::uint32_t>& _cells;
  std::size_t _size;
  std::size_t _types;
  std::vector<std::vector<std::uint32_t>> _sums;  // by type; empty: the column holds sums already
};

}  // namespace

void PatternFrequencies::make_room(std::uint32_t ngrams) {
  if (ngrams <= _room) return;
  constexpr std::size_t least = 16 * Columns::block_size;
  const std::size_t wanted = std::max(least, ngrams + std::size_t{ngrams} / 8);
  const std::size_t room = (wanted + Columns::block_size - 1) / Columns::block_size * Columns::block_size;
  _cells = {};
  _sums = {};
  _cells = ZeroedArray<std::uint32_t>(room * NGram::_full_ngram_type);
  _sums = KeySums(room);
  _room = room;
}

void PatternFrequencies::work_out(const RecordTable& ngrams) {
  const unsigned full = NGram::_full_ngram_type;
  const std::uint32_t size = ngrams.size();
  make_room(size);
  _types = full;
  _different.assign(full + 1, 0);
  Columns columns(_cells, size, _types);
  for (std::uint32_t i = 0; i < size; ++i)
    columns.at(full, i) = ngrams.frequency(*ngrams.record(i));
  _different[full] = size;

  const auto frequency = [&](std::uint32_t i) { return columns.at(full, i); };
  const auto work_out = [&](unsigned type, bool numbers_wanted, const auto& key_of) {
    const auto take = [&](std::uint32_t i, std::uint32_t cell) { columns.at(type, i) = cell; };
    if (numbers_wanted) {
      _sums.number(size, key_of, frequency, take);
      columns.set_sums(type, _sums);
    } else {
      _sums.add_up(size, key_of, frequency, take);
    }
    _different[type] = _sums.different();
  };
  for (unsigned i = 0; i < settings::n; ++i) {
    const unsigned type = 1U << (settings::n - 1U - i);
    work_out(type, true, [&](std::uint32_t number) { return ngrams.record(number)->member(i).bits(); });
  }
  for (unsigned type = 1; type < full; ++type) {
    if (std::has_single_bit(type)) continue;
    const unsigned last = type & -type;
    // A pattern of another type goes on where this one ends, unless it has the last position or would be the full one.
    const bool goes_on = last != 1 && type + 1 != full;
    work_out(type, goes_on, [&](std::uint32_t number) {
      return std::uint64_t{columns.at(type - last, number)} << 32 | columns.at(last, number);
    });
  }
  _sums = {};
  columns.turn();
}

}  // namespace colx
