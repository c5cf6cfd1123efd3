#include "scale/counting/pattern_columns.h"

#include <bit>
#include <utility>

#include "base/config.h"
#include "model/ngram.h"

namespace colx::scale {

std::uint64_t PatternColumns::bytes_of_record(unsigned n) {
  // Members and count; what KeySums takes; the sums; numbers of the patterns that others go on from, and of one more.
  return 4ULL * n + 4 + 12 + 4 + 4ULL * (n - 1);
}

PatternColumns::PatternColumns(std::vector<Column> members, Column counts, unsigned end)
    : _members(std::move(members)),
      _counts(std::move(counts)),
      _end(end),
      _sums(_counts.size()),
      _numbers(NGram::_types_count),
      _type_sums(_counts.size()) {}

// What tells the patterns of a type apart: their members, or numbers, which are worked out if they are not known.
const PatternColumns::Column& PatternColumns::_identified(std::uint8_t type) {
  if (std::has_single_bit(type)) return _members[settings::n - 1U - static_cast<unsigned>(std::countr_zero(type))];
  if (_numbers[type].empty()) _number(type);
  return _numbers[type];
}

// Calls `use` with a function that gives the key of each record's pattern.
template <typename Use>
void PatternColumns::_with_keys(std::uint8_t type, const Use& use) {
  const auto last = static_cast<std::uint8_t>(type & -type);
  const Column& behind = _identified(last);
  if (type == last) {
    use([&](std::uint32_t record) { return std::uint64_t{behind[record]}; });
  } else {
    const Column& before = _identified(static_cast<std::uint8_t>(type - last));
    use([&](std::uint32_t record) { return std::uint64_t{before[record]} << 32 | behind[record]; });
  }
}

// Has every record know the number of its pattern; the sums of these are then those of _sums.
void PatternColumns::_number(std::uint8_t type) {
  Column column;
  if (!_unused.empty()) {
    column.swap(_unused.back());
    _unused.pop_back();
  }
  column.resize(_counts.size());
  _with_keys(type, [&](const auto& key_of) {
    _sums.number(
        _size(), key_of, [&](std::uint32_t record) { return _counts[record]; },
        [&](std::uint32_t record, std::uint32_t number) { column[record] = number; });
  });
  _numbers[type] = std::move(column);
}

// Types that follow go on from a pattern of several members if they begin as it does, and none behind these.
void PatternColumns::_free_columns_before(std::uint8_t type) {
  for (unsigned known = 1; known < type; ++known) {
    const unsigned behind = (known & -known) - 1;
    if (!_numbers[known].empty() && (type & ~behind) != known) _free(known);
  }
}

void PatternColumns::_free(unsigned type) {
  _unused.push_back(std::move(_numbers[type]));
  _numbers[type].clear();
}

void PatternColumns::work_out(std::uint8_t type, bool records_wanted) {
  _free_columns_before(type);
  const bool goes_on = !std::has_single_bit(type) && (type & 1U) == 0 && type + 1U < _end;
  if (!goes_on && !records_wanted) {
    _with_keys(type, [&](const auto& key_of) {
      _sums.add_up(
          _size(), key_of, [&](std::uint32_t record) { return _counts[record]; },
          [&](std::uint32_t record, std::uint32_t sum) { _type_sums[record] = sum; });
    });
    return;
  }
  _number(type);
  const Column& numbers = _numbers[type];
  for (std::uint32_t record = 0; record < _size(); ++record)
    _type_sums[record] = _sums.sum(numbers[record]);
  if (records_wanted) {
    _records.resize(_sums.different());
    for (std::uint32_t record = _size(); record-- > 0;)
      _records[numbers[record]] = record;
  }
  if (!goes_on) _free(type);
}

}  // namespace colx::scale
