#include "rows/run_merge.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace colx::table {

namespace {

constexpr std::size_t _least_buffer = std::size_t{4} << 10;
constexpr std::size_t _largest_buffer = std::size_t{4} << 20;

}  // namespace

RunReader::RunReader(const TemporaryFile& file, Run run, std::size_t buffer)
    : _file(&file), _rest(run), _buffer(buffer) {}

// Makes that many bytes from the next row on stand in the buffer.
void RunReader::_need(std::size_t size) {
  if (_end - _next >= size) return;
  std::memmove(_buffer.data(), _buffer.data() + _next, _end - _next);
  _end -= _next;
  _next = 0;
  if (_buffer.size() < size) _buffer.resize(size);
  const std::size_t more = std::min<std::uint64_t>(_buffer.size() - _end, _rest.end - _rest.begin);
  _file->read(_rest.begin, _buffer.data() + _end, more);
  _rest.begin += more;
  _end += more;
}

bool RunReader::next() {
  if (_next == _end && _rest.begin == _rest.end) return false;
  _need(sizeof(PackedSizes));
  _need(sizes_of(_buffer.data() + _next).whole());
  _row = _next;
  _next += sizes_of(packed()).whole();
  _prefix = prefix_of(unpack(packed()));
  return true;
}

RunMerge::RunMerge(const TemporaryFile& file, const std::vector<Run>& runs, std::size_t memory) {
  const std::size_t share = memory / std::max<std::size_t>(runs.size(), 1);
  _readers.reserve(runs.size());
  for (const Run& run : runs) {
    _readers.emplace_back(file, run, std::clamp(share, _least_buffer, _largest_buffer));
    if (_readers.back().next()) _heap.push_back(_readers.size() - 1);
  }
  for (std::size_t i = _heap.size() / 2; i-- > 0;)
    _settle(i);
}

bool RunMerge::_comes_before(std::size_t a, std::size_t b) const {
  const RunReader& first = _readers[a];
  const RunReader& second = _readers[b];
  if (first.prefix() != second.prefix()) return first.prefix() < second.prefix();
  const int difference = compare_packed(first.packed(), second.packed());
  return difference != 0 ? difference < 0 : a < b;
}

// Moves a reader down the heap until none of those below it comes before it.
void RunMerge::_settle(std::size_t from) {
  for (;;) {
    std::size_t first = from;
    for (const std::size_t below : {2 * from + 1, 2 * from + 2})
      if (below < _heap.size() && _comes_before(_heap[below], _heap[first])) first = below;
    if (first == from) return;
    std::swap(_heap[from], _heap[first]);
    from = first;
  }
}

bool RunMerge::next(KeyedRow& row) {
  if (std::exchange(_begun, true) && !_heap.empty()) {
    if (!_readers[_heap.front()].next()) {
      _heap.front() = _heap.back();
      _heap.pop_back();
    }
    if (!_heap.empty()) _settle(0);
  }
  if (_heap.empty()) return false;
  row = unpack(_readers[_heap.front()].packed());
  return true;
}

}  // namespace colx::table
