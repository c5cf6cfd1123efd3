#include "rows/chosen_rows.h"

#include <stdexcept>

#include "rows/block_reader.h"

namespace colx::table {

bool ChosenRows::next(Block& block) {
  if (_choice.sort.has_value() && _sorted == nullptr) _sort();
  if (_choice.top.has_value() && _given >= *_choice.top) return false;
  if (_sorted == nullptr) {
    if (!_next_admitted(block)) return false;
  } else {
    KeyedRow row;
    Fault fault;
    if (!_sorted->next(row)) return false;
    // What was kept had been a block before.
    if (parse_block(row.text, block, fault) != ParseStatus::complete) throw std::logic_error(fault.message);
  }
  ++_given;
  return true;
}

void ChosenRows::read_on() {
  Block block;
  while (_next_admitted(block)) {
  }
}

bool ChosenRows::_next_admitted(Block& block) {
  while (_source.next(block)) {
    if (_n == 0) check_choice(_choice, block.n);
    _n = block.n;
    ++_found;
    if (!is_chosen(_choice, Row(block, _found, Style()))) continue;
    ++_admitted;
    return true;
  }
  return false;
}

void ChosenRows::_sort() {
  _sorted = rows_to_sort(_choice);
  Block block;
  while (_next_admitted(block)) {
    _key.clear();
    append_key(*_choice.sort, Row(block, _found, Style()), _key);
    _sorted->add({_key, block.text, block.members_size});
  }
  _sorted->sort();
}

}  // namespace colx::table
