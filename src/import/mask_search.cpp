#include "import/mask_search.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>

namespace colx {

namespace {

constexpr std::size_t most_positions = 64;
constexpr std::uint64_t most_work = 300'000'000;  // visits of a tag

// Tags as a table of bytes, and the search in it. A partition numbers the tags so that those have the same number that
// are the same at the positions kept.
class MaskSearch {
 public:
  MaskSearch(const std::vector<std::string>& tags, std::size_t limit) : _tags(tags), _limit(limit) {
    std::size_t longest = 0;
    for (const std::string& tag : tags)
      longest = std::max(longest, tag.size());
    _width = std::min(longest, most_positions);
  }

  std::string run(bool keep_first) {
    const Partition whole{std::vector<std::uint32_t>(_tags.size()), 1};
    std::string mask(_width, '-');
    Partition partition = whole;
    if (keep_first && _width > 0) {
      mask[0] = '*';
      partition = _refine(whole, 0);
      if (partition.count > _limit) return "";
    }
    const std::size_t kept = mask.starts_with('*') ? 1 : 0;
    _greedy(mask, kept, partition);
    // Positions that split most come first: sets that cannot be kept are left early.
    _order.resize(_width - kept);
    std::iota(_order.begin(), _order.end(), kept);
    std::vector<std::size_t> alone(_width);
    for (std::size_t p = 0; p < _width; ++p)
      alone[p] = _refine(whole, p).count;
    std::stable_sort(_order.begin(), _order.end(), [&](std::size_t a, std::size_t b) { return alone[a] > alone[b]; });
    _search(0, kept, mask, partition);
    return _best;
  }

 private:
  struct Partition {
    std::vector<std::uint32_t> numbers;
    std::size_t count;
  };

  char _at(std::size_t tag, std::size_t position) const {
    return position < _tags[tag].size() ? _tags[tag][position] : '-';
  }

  // Splits by one position more. The count stops at the limit and 1, where the numbers are of no use any more.
  Partition _refine(const Partition& partition, std::size_t position) {
    std::vector<std::uint32_t> numbers(_tags.size());
    std::vector<std::uint32_t> known(partition.count * 256, 0);
    std::uint32_t count = 0;
    for (std::size_t t = 0; t < _tags.size(); ++t) {
      std::uint32_t& number =
          known[partition.numbers[t] * std::size_t{256} + static_cast<unsigned char>(_at(t, position))];
      if (number == 0) number = ++count;
      numbers[t] = number - 1;
      if (count > _limit) {
        _work += t + known.size() / 16;
        return {{}, count};
      }
    }
    _work += _tags.size() + known.size() / 16;
    return {std::move(numbers), count};
  }

  void _greedy(std::string mask, std::size_t kept, Partition partition) {
    for (;;) {
      std::size_t chosen = _width;
      Partition smallest{{}, _limit + 1};
      for (std::size_t p = 0; p < _width; ++p) {
        if (mask[p] == '*') continue;
        Partition refined = _refine(partition, p);
        if (refined.count >= smallest.count) continue;
        smallest = std::move(refined);
        chosen = p;
      }
      if (chosen == _width) break;
      mask[chosen] = '*';
      ++kept;
      partition = std::move(smallest);
    }
    _best = mask;
    _best_kept = kept;
    _best_count = partition.count;
  }

  void _search(std::size_t depth, std::size_t kept, const std::string& mask, const Partition& partition) {
    if (kept > _best_kept || (kept == _best_kept && partition.count > _best_count)) {
      _best = mask;
      _best_kept = kept;
      _best_count = partition.count;
    }
    if (depth == _order.size() || kept + _order.size() - depth < _best_kept || _work > most_work) return;
    const std::size_t position = _order[depth];
    Partition refined = _refine(partition, position);
    if (refined.count <= _limit) {
      std::string with = mask;
      with[position] = '*';
      _search(depth + 1, kept + 1, with, refined);
    }
    _search(depth + 1, kept, mask, partition);
  }

  const std::vector<std::string>& _tags;
  std::size_t _limit;
  std::size_t _width = 0;
  std::vector<std::size_t> _order;
  std::uint64_t _work = 0;
  std::string _best;
  std::size_t _best_kept = 0;
  std::size_t _best_count = 1;
};

}  // namespace

std::string best_mask(const std::vector<std::string>& tags, std::size_t limit, bool keep_first) {
  return MaskSearch(tags, limit).run(keep_first);
}

}  // namespace colx
