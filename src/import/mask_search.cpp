#include "import/mask_search.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

#include "base/config.h"
#include "corpus/datafile_format.h"

namespace colx {

namespace {

constexpr char kept_mark = constants::significant_position_mark;
constexpr char dropped_mark = constants::insignificant_position_mark;
constexpr std::size_t most_positions = 64;
constexpr std::uint64_t most_work = 25'000'000;  // rows that are gone through
constexpr double tolerance = 1e-9;               // bits; smaller differences are those of rounding

double _entropy_term(std::uint64_t count) {
  const auto c = static_cast<double>(count);
  return c * std::log2(c);
}

// The entropy of counts with that total, given the sum of their terms.
double _entropy(double terms, double total) {
  return std::max(0.0, std::log2(total) - terms / total);
}

// Numbers pairs of numbers from 0 in order of first sight.
class PairNumbers {
 public:
  // Forgets all pairs; up to `size` are to come.
  void reset(std::size_t size) {
    std::size_t places = 16;
    while (places < 2 * size)
      places *= 2;
    _places.assign(places, Place{});
    _count = 0;
  }

  std::uint32_t number(std::uint32_t a, std::uint32_t b) {
    const std::uint64_t pair = std::uint64_t{a} << 32 | b;
    const std::size_t mask = _places.size() - 1;
    std::size_t at = (pair * 0x9E3779B97F4A7C15U) >> 40 & mask;
    while (_places[at].number != unused && _places[at].pair != pair)
      at = (at + 1) & mask;
    if (_places[at].number == unused) _places[at] = {pair, _count++};
    return _places[at].number;
  }

  std::uint32_t count() const { return _count; }

 private:
  static constexpr std::uint32_t unused = ~std::uint32_t{0};

  struct Place {
    std::uint64_t pair = 0;
    std::uint32_t number = unused;
  };

  std::vector<Place> _places;
  std::uint32_t _count = 0;
};

// Branch and bound over the positions, which are kept or dropped one after another. A state of the search has kept some
// positions, dropped some, and others are open. Its rows are the tags as far as the kept and the open positions tell
// them apart: their entropy is the most that can be reached from there, and when they are few enough, that is the best
// that can be reached.
class MaskSearch {
 public:
  MaskSearch(const TagCounts& tags, std::size_t limit) : _limit(limit) {
    for (const auto& [tag, count] : tags) {
      _tags.push_back(tag);
      _counts.push_back(count);
      _width = std::max(_width, std::min(tag.size(), most_positions));
    }
    _total = static_cast<double>(std::accumulate(_counts.begin(), _counts.end(), std::uint64_t{0}));
    for (const std::uint64_t count : _counts)
      _terms.push_back(_entropy_term(count));
  }

  std::string run() {
    _best = std::string(_width, kept_mark);
    std::vector<Row> rows = _all_rows();
    for (std::size_t p = 0; p < _width; ++p)
      _refine(rows, p);
    if (_merged(rows, Numbers(_tags.size(), 0)).rows.size() <= _limit) return _best;
    rows = _all_rows();
    const bool keep_first = _refine(rows, 0) <= _limit;
    if (!keep_first) rows = _all_rows();
    _drop_one_by_one(keep_first);
    _order(keep_first);
    std::string mask(_width, dropped_mark);
    if (keep_first) mask[0] = kept_mark;
    _search(0, mask, _merged(rows, _open_numbers[0]));
    return _best;
  }

 private:
  using Numbers = std::vector<std::uint32_t>;  // by tag

  // Tags that the kept and the open positions do not tell apart.
  struct Row {
    std::uint32_t tag;   // one of them
    std::uint32_t kept;  // number of what the kept positions tell
    std::uint64_t count;
    double term;
  };

  struct State {
    std::vector<Row> rows;
    double bits = 0;
  };

  std::uint32_t _at(std::size_t tag, std::size_t position) const {
    return static_cast<unsigned char>(position < _tags[tag].size() ? _tags[tag][position] : dropped_mark);
  }

  std::vector<Row> _all_rows() const {
    std::vector<Row> rows;
    for (std::uint32_t t = 0; t < _tags.size(); ++t)
      rows.push_back({t, 0, _counts[t], _terms[t]});
    return rows;
  }

  // Numbers by what a position tells besides.
  Numbers _refined(const Numbers& numbers, std::size_t position) {
    Numbers refined(_tags.size());
    _pairs.reset(_tags.size());
    for (std::size_t t = 0; t < _tags.size(); ++t)
      refined[t] = _pairs.number(numbers[t], _at(t, position));
    _work += _tags.size();
    return refined;
  }

  // Takes rows together that agree in what is kept and in what `open` says of their tags.
  State _merged(const std::vector<Row>& rows, const Numbers& open) {
    State state;
    state.rows.reserve(rows.size());
    _pairs.reset(rows.size());
    for (const Row& row : rows) {
      const std::uint32_t number = _pairs.number(row.kept, open[row.tag]);
      if (number == state.rows.size()) {
        state.rows.push_back(row);
        continue;
      }
      Row& into = state.rows[number];
      into.count += row.count;
      into.term = -1;
    }
    double terms = 0;
    for (Row& row : state.rows) {
      if (row.term < 0) row.term = _entropy_term(row.count);
      terms += row.term;
    }
    state.bits = _entropy(terms, _total);
    _work += rows.size();
    return state;
  }

  // Adds a position to those that are kept. Returns how many rows those tell apart then.
  std::size_t _refine(std::vector<Row>& rows, std::size_t position) {
    _pairs.reset(rows.size());
    _work += rows.size();
    for (Row& row : rows)
      row.kept = _pairs.number(row.kept, _at(row.tag, position));
    return _pairs.count();
  }

  // For every position that a mask keeps, what is left of the tags without it.
  std::vector<std::pair<std::size_t, State>> _without_each(const std::string& mask) {
    std::vector<std::size_t> kept;
    for (std::size_t p = 0; p < _width; ++p)
      if (mask[p] == kept_mark) kept.push_back(p);
    std::vector<Numbers> behind(kept.size() + 1, Numbers(_tags.size(), 0));  // what the positions from there on tell
    for (std::size_t k = kept.size(); k > 0; --k)
      behind[k - 1] = _refined(behind[k], kept[k - 1]);
    std::vector<std::pair<std::size_t, State>> states;
    std::vector<Row> rows = _all_rows();
    for (std::size_t k = 0; k < kept.size(); ++k) {
      State state = _merged(rows, behind[k + 1]);
      states.emplace_back(kept[k], std::move(state));
      _refine(rows, kept[k]);
    }
    return states;
  }

  // A first mask: drops the position without which most is left, again and again, but for the first if it is fixed.
  void _drop_one_by_one(bool first_is_fixed) {
    for (std::size_t rows = _limit + 1; rows > _limit;) {
      const std::pair<std::size_t, State>* chosen = nullptr;
      const auto states = _without_each(_best);
      for (const auto& choice : states) {
        if (first_is_fixed && choice.first == 0) continue;
        if (chosen == nullptr || choice.second.bits > chosen->second.bits + tolerance) chosen = &choice;
      }
      _best[chosen->first] = dropped_mark;
      _best_bits = chosen->second.bits;
      rows = chosen->second.rows.size();
    }
    _best_kept = _kept(_best);
  }

  // Puts those positions first without which least is left: dropping them is soon seen to be wrong.
  void _order(bool first_is_fixed) {
    std::vector<std::pair<long long, std::size_t>> left;  // entropies, in steps of the tolerance
    for (const auto& [position, state] : _without_each(std::string(_width, kept_mark)))
      if (position != 0 || !first_is_fixed) left.emplace_back(std::llround(state.bits / tolerance), position);
    std::sort(left.begin(), left.end());
    for (const auto& [bits, position] : left)
      _positions.push_back(position);
    _open_numbers.assign(_positions.size() + 1, Numbers(_tags.size(), 0));
    for (std::size_t depth = _positions.size(); depth > 0; --depth)
      _open_numbers[depth - 1] = _refined(_open_numbers[depth], _positions[depth - 1]);
  }

  static std::size_t _kept(const std::string& mask) {
    return static_cast<std::size_t>(std::count(mask.begin(), mask.end(), kept_mark));
  }

  // '*' comes before '-' in ASCII, so that of masks with as many the smaller one keeps earlier positions.
  bool _is_better(const std::string& mask, double bits) const {
    if (std::abs(bits - _best_bits) > tolerance) return bits > _best_bits;
    const std::size_t kept = _kept(mask);
    return kept != _best_kept ? kept > _best_kept : mask < _best;
  }

  // `mask` keeps the positions kept; those open are _positions[depth] and on.
  void _search(std::size_t depth, const std::string& mask, const State& state) {
    if (_work > most_work || state.bits < _best_bits - tolerance) return;
    if (state.bits <= _best_bits + tolerance && _kept(mask) + _positions.size() - depth < _best_kept) return;
    if (state.rows.size() <= _limit) {
      std::string whole = mask;
      for (std::size_t d = depth; d < _positions.size(); ++d)
        whole[_positions[d]] = kept_mark;
      if (!_is_better(whole, state.bits)) return;
      _best = std::move(whole);
      _best_bits = state.bits;
      _best_kept = _kept(_best);
      return;
    }
    const std::size_t position = _positions[depth];
    State with = state;
    if (_refine(with.rows, position) <= _limit) {
      std::string kept = mask;
      kept[position] = kept_mark;
      _search(depth + 1, kept, with);
    }
    _search(depth + 1, mask, _merged(state.rows, _open_numbers[depth + 1]));
  }

  std::size_t _limit;
  std::vector<std::string_view> _tags;
  std::vector<std::uint64_t> _counts;
  std::vector<double> _terms;
  double _total = 0;
  std::size_t _width = 0;
  std::vector<std::size_t> _positions;  // in the order in which they are decided
  std::vector<Numbers> _open_numbers;   // by depth: what the positions from there on tell
  PairNumbers _pairs;
  std::uint64_t _work = 0;
  std::string _best;
  double _best_bits = 0;
  std::size_t _best_kept = 0;
};

TagInformation _information(const TagCounts& tags) {
  double terms = 0;
  std::uint64_t total = 0;
  for (const auto& [tag, count] : tags) {
    terms += _entropy_term(count);
    total += count;
  }
  return {tags.size(), total == 0 ? 0 : _entropy(terms, static_cast<double>(total))};
}

}  // namespace

TagInformation tag_information(const TagCounts& tags) {
  return _information(tags);
}

TagInformation tag_information(const TagCounts& tags, std::string_view mask) {
  TagCounts masked;
  for (const auto& [tag, count] : tags)
    masked[masked_tag(tag, mask)] += count;
  return _information(masked);
}

std::string best_mask(const TagCounts& tags, std::size_t limit) {
  return MaskSearch(tags, limit).run();
}

}  // namespace colx
