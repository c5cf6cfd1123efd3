#include "model/ngram_set.h"

#include <algorithm>
#include <array>
#include <utility>

#include "model/ngram_hash.h"

namespace colx {

namespace {

constexpr std::array<std::size_t, 28> primes = {
    53,       97,        193,       389,       769,       1543,       3079,       6151,      12289,    24593,
    49157,    98317,     196613,    393241,    786433,    1572869,    3145739,    6291469,   12582917, 25165843,
    50331653, 100663319, 201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};

constexpr std::size_t initial_buckets = 193;

}  // namespace

NGramSet::const_iterator& NGramSet::const_iterator::operator++() {
  _node = _node->next;
  if (_node == nullptr) {
    ++_bucket;
    _settle();
  }
  return *this;
}

NGramSet::const_iterator NGramSet::const_iterator::operator++(int) {
  const const_iterator before = *this;
  ++*this;
  return before;
}

// Moves to the head of the first chain from this bucket on that is not empty.
void NGramSet::const_iterator::_settle() {
  const std::vector<Node*>& buckets = _set->_buckets;
  while (_bucket < buckets.size() && buckets[_bucket] == nullptr)
    ++_bucket;
  _node = _bucket < buckets.size() ? buckets[_bucket] : nullptr;
}

NGramSet::NGramSet() : _buckets(initial_buckets, nullptr) {}

NGramSet::Node*& NGramSet::_bucket_of(const NGram& record) {
  return _buckets[NGramHashCounter::count_hash(record) % _buckets.size()];
}

NGram* NGramSet::find(const NGram& record) const {
  const Node* node = _buckets[NGramHashCounter::count_hash(record) % _buckets.size()];
  while (node != nullptr && !(*node->record == record))
    node = node->next;
  return node == nullptr ? nullptr : node->record;
}

void NGramSet::insert(NGram* record) {
  if (_nodes.size() + 1 > _buckets.size()) _grow(_nodes.size() + 1);
  Node*& head = _bucket_of(*record);
  _nodes.push_back({record, head});
  head = &_nodes.back();
}

void NGramSet::_grow(std::size_t least_buckets) {
  const std::vector<Node*> old = std::exchange(
      _buckets, std::vector<Node*>(*std::lower_bound(primes.begin(), primes.end(), least_buckets), nullptr));
  for (Node* node : old) {
    while (node != nullptr) {
      Node* const next = node->next;
      Node*& head = _bucket_of(*node->record);
      node->next = head;
      head = node;
      node = next;
    }
  }
}

}  // namespace colx
