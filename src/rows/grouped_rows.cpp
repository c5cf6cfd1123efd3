#include "rows/grouped_rows.h"

#include <algorithm>

namespace colx::table {

namespace {

// A number as the eight bytes with which a key begins.
void _append(std::uint64_t number, std::string& key) {
  for (int shift = 56; shift >= 0; shift -= 8)
    key += static_cast<char>(number >> shift);
}

std::uint64_t _number_of(std::string_view key) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i)
    number = number << 8 | static_cast<unsigned char>(key[i]);
  return number;
}

}  // namespace

GroupedRows::GroupedRows(GroupOrder order, std::size_t memory, std::uint64_t most)
    : _order(order), _numbered(std::make_unique<SortedRows>(memory / 2, most)), _ordered(memory / 2) {}

void GroupedRows::add(std::string_view group, std::uint64_t frequency, const KeyedRow& row) {
  auto known = _numbers.find(group);
  if (known == _numbers.end()) {
    known = _numbers.emplace(group, _sizes.size()).first;
    _sizes.push_back(0);
  }
  _sizes[known->second] += frequency;
  _key.clear();
  _append(known->second, _key);
  _key += row.key;
  _numbered->add({_key, row.text, row.members_size});
}

std::vector<std::uint64_t> GroupedRows::_places() const {
  std::vector<const decltype(_numbers)::value_type*> groups;
  groups.reserve(_numbers.size());
  for (const auto& group : _numbers)
    groups.push_back(&group);
  std::sort(groups.begin(), groups.end(), [this](const auto* a, const auto* b) {
    const std::uint64_t size_of_a = _sizes[a->second];
    const std::uint64_t size_of_b = _sizes[b->second];
    if (_order == GroupOrder::size && size_of_a != size_of_b) return size_of_a > size_of_b;
    return a->first < b->first;
  });
  std::vector<std::uint64_t> places(groups.size());
  for (std::size_t i = 0; i < groups.size(); ++i)
    places[groups[i]->second] = i;
  return places;
}

void GroupedRows::sort() {
  const std::vector<std::uint64_t> places = _places();
  _numbered->sort();
  KeyedRow row;
  while (_numbered->next(row)) {
    _key.clear();
    _append(places[_number_of(row.key)], _key);
    _key += row.key.substr(sizeof(std::uint64_t));
    _ordered.add({_key, row.text, row.members_size});
  }
  _numbered.reset();
  _ordered.sort();
}

}  // namespace colx::table
