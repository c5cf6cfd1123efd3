#include "rows/best_rows.h"

#include <algorithm>
#include <utility>

namespace colx::table {

// As no key is the beginning of another, what follows a key counts among equal keys only.
bool BestRows::_comes_before(const Entry& a, const Entry& b) {
  const int difference = a.sorted_by().compare(b.sorted_by());
  return difference != 0 ? difference < 0 : a.added < b.added;
}

void BestRows::add(const KeyedRow& row) {
  if (_limit == 0) return;
  Entry entry;
  if (_entries.size() >= _limit) {
    // Most rows end here. One that was added later comes behind its equals.
    const Entry& last = _entries.front();
    const int difference = row.key.compare(last.sorted_by().substr(0, last.key_size));
    if (difference > 0) return;
    if (difference == 0 && row.text.substr(0, row.members_size) >= last.sorted_by().substr(last.key_size)) return;
    std::pop_heap(_entries.begin(), _entries.end(), _comes_before);
    entry = std::move(_entries.back());
    _entries.pop_back();
  }
  entry.bytes.assign(row.key).append(row.text);
  entry.key_size = row.key.size();
  entry.members_size = row.members_size;
  entry.added = _added++;
  _entries.push_back(std::move(entry));
  std::push_heap(_entries.begin(), _entries.end(), _comes_before);
}

void BestRows::sort() {
  std::sort_heap(_entries.begin(), _entries.end(), _comes_before);
}

bool BestRows::next(KeyedRow& row) {
  if (_taken == _entries.size()) return false;
  const Entry& entry = _entries[_taken++];
  const std::string_view bytes = entry.bytes;
  row = {bytes.substr(0, entry.key_size), bytes.substr(entry.key_size), entry.members_size};
  return true;
}

}  // namespace colx::table
