#pragma once

// For tests only, never linked into the program: the chained hash table whose order of iteration the output files show,
// with a list for every bucket and nothing that makes it fast.

#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

namespace colx::reference {

// Keeps items, given by their hashes and any number that names them.
class ChainedTable {
 public:
  // Puts an item at the head of its chain, after making room for it.
  void insert(std::uint32_t hash, std::size_t item) {
    _reserve(_size + 1);
    _chain_of(hash).push_front({hash, item});
    ++_size;
  }

  // The items bucket by bucket, each chain from its head.
  std::vector<std::size_t> order() const {
    std::vector<std::size_t> items;
    for (const auto& chain : _buckets) {
      for (const Entry& entry : chain)
        items.push_back(entry.item);
    }
    return items;
  }

  std::size_t buckets() const { return _buckets.size(); }

 private:
  struct Entry {
    std::uint32_t hash;
    std::size_t item;
  };

  std::list<Entry>& _chain_of(std::uint32_t hash) { return _buckets[hash % _buckets.size()]; }

  // Grows to the first prime of the list that is not below `count`, emptying the old buckets in index order, each from
  // its head, and putting every item at the head of its new chain.
  void _reserve(std::size_t count) {
    if (count <= _buckets.size()) return;
    static constexpr std::size_t primes[] = {193,   389,   769,   1543,   3079,   6151,   12289,
                                             24593, 49157, 98317, 196613, 393241, 786433, 1572869};
    std::size_t buckets = 0;
    for (const std::size_t prime : primes) {
      if (prime < count) continue;
      buckets = prime;
      break;
    }
    std::vector<std::list<Entry>> old(buckets);
    old.swap(_buckets);
    for (auto& chain : old) {
      while (!chain.empty()) {
        std::list<Entry>& target = _chain_of(chain.front().hash);
        target.splice(target.begin(), chain, chain.begin());
      }
    }
  }

  std::vector<std::list<Entry>> _buckets = std::vector<std::list<Entry>>(193);
  std::size_t _size = 0;
};

}  // namespace colx::reference
