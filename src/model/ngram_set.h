#pragma once

// A hash set of records by chaining, whose order of iteration is part of what the program promises: the output files
// list records in it. Buckets are visited in index order and each chain from its head. A new record goes to the head of
// its chain. When the records outnumber the buckets, the number of buckets becomes the next listed prime; the old
// buckets are then emptied in index order, each from its head, and every record goes to the head of its new chain.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <vector>

#include "model/ngram.h"

namespace colx {

// Holds addresses of records of one type, which it does not own, hashed by NGramHashCounter and compared by their
// members. Finding and inserting cost the length of a chain.
class NGramSet {
  struct Node {
    NGram* record;
    Node* next;
  };

 public:
  // Visits the records in the order described above; invalidated by insert.
  class const_iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = NGram*;
    using reference = NGram*;
    using pointer = NGram* const*;
    using iterator_category = std::forward_iterator_tag;

    const_iterator() = default;
    NGram* operator*() const { return _node->record; }
    const_iterator& operator++();
    const_iterator operator++(int);
    friend bool operator==(const const_iterator&, const const_iterator&) = default;

   private:
    friend class NGramSet;
    const_iterator(const NGramSet* set, std::size_t bucket) : _set(set), _bucket(bucket) { _settle(); }
    void _settle();

    const NGramSet* _set = nullptr;
    std::size_t _bucket = 0;
    const Node* _node = nullptr;
  };

  NGramSet();

  // Returns the stored record that equals the given one, or null.
  NGram* find(const NGram& record) const;

  // Adds a record that is not there yet.
  void insert(NGram* record);

  std::size_t size() const { return _nodes.size(); }
  const_iterator begin() const { return {this, 0}; }
  const_iterator end() const { return {this, _buckets.size()}; }

 private:
  Node*& _bucket_of(const NGram& record);
  void _grow(std::size_t least_buckets);

  std::vector<Node*> _buckets;
  std::deque<Node> _nodes;
};

}  // namespace colx
