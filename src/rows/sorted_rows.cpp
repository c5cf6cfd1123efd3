#include "rows/sorted_rows.h"

#include <algorithm>
#include <string_view>

namespace colx::table {

namespace {

constexpr std::size_t _write_buffer = std::size_t{1} << 20;

// Below this the machine is asked for memory in vain.
constexpr std::size_t _least_memory = std::size_t{4} << 10;

}  // namespace

SortedRows::SortedRows(std::size_t memory, std::uint64_t most_alike) : _memory(memory), _alike(most_alike) {}

// The entries end where the region ends, with room for the alignment of the first one.
SortedRows::Entry* SortedRows::_entries() const {
  const std::size_t last = _region->size() / sizeof(Entry);
  return reinterpret_cast<Entry*>(_region->data()) + last - _count;
}

void SortedRows::add(const KeyedRow& row) {
  const std::size_t needed = packed_size(row) + 2 * sizeof(Entry);
  if (_region == nullptr) _region = std::make_unique<MemoryRegion>(_memory, std::max(needed, _least_memory));
  if (_used + _count * sizeof(Entry) + needed > _region->size()) {
    if (_count > 0) _write_run();
    if (needed > _region->size()) {
      _region.reset();
      _region = std::make_unique<MemoryRegion>(needed, needed);
    }
  }
  pack(row, _region->data() + _used);
  ++_count;
  *_entries() = {prefix_of(row), _used};
  _used += packed_size(row);
}

bool SortedRows::_comes_before(const Entry& a, const Entry& b) const {
  if (a.prefix != b.prefix) return a.prefix < b.prefix;
  const int difference = compare_packed(_region->data() + a.place, _region->data() + b.place);
  return difference != 0 ? difference < 0 : a.place < b.place;
}

void SortedRows::_sort_entries() {
  std::sort(_entries(), _entries() + _count, [this](const Entry& a, const Entry& b) { return _comes_before(a, b); });
}

void SortedRows::_write_run() {
  if (_file == nullptr) _file = std::make_unique<TemporaryFile>();
  _sort_entries();
  Run run{_file->size(), 0};
  AlikeRows alike = _alike;
  std::string pending;
  pending.reserve(_write_buffer + _write_buffer / 2);
  for (std::size_t i = 0; i < _count; ++i) {
    const Entry& entry = _entries()[i];
    if (!alike.admits(entry.prefix.high)) continue;
    const char* const packed = _region->data() + entry.place;
    pending.append(packed, sizes_of(packed).whole());
    if (pending.size() < _write_buffer) continue;
    _file->append(pending);
    pending.clear();
  }
  _file->append(pending);
  run.end = _file->size();
  _runs.push_back(run);
  _used = 0;
  _count = 0;
}

void SortedRows::sort() {
  if (_file == nullptr) {
    if (_count > 0) _sort_entries();
    return;
  }
  if (_count > 0) _write_run();
  _region.reset();
  _merge = std::make_unique<RunMerge>(*_file, _runs, _memory);
}

bool SortedRows::next(KeyedRow& row) {
  if (_merge != nullptr) {
    while (_merge->next(row))
      if (_alike.admits(_merge->beginning())) return true;
    return false;
  }
  while (_taken < _count) {
    const Entry& entry = _entries()[_taken++];
    if (!_alike.admits(entry.prefix.high)) continue;
    row = unpack(_region->data() + entry.place);
    return true;
  }
  return false;
}

}  // namespace colx::table
