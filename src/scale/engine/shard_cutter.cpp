#include "scale/engine/shard_cutter.h"

#include <algorithm>
#include <utility>

namespace colx::scale {

namespace {

constexpr std::size_t most_datafiles_of_a_shard = 1024;

// Goes through the datafiles once.
class Cutter {
 public:
  Cutter(const std::vector<Datafile>& datafiles, std::uint64_t shard_size, bool inside, std::set<std::size_t> starts)
      : _datafiles(datafiles), _shard_size(shard_size), _inside(inside), _starts(std::move(starts)) {}

  std::vector<Shard> cut() {
    for (std::size_t d = 0; d < _datafiles.size(); ++d) {
      const std::uint64_t size = _datafiles[d].size;
      if (_fits(d)) {
        ++_shards.back().datafiles;
        _held += size;
      } else if (_inside && size > _shard_size) {
        _cut_inside(d);
        _held = 2 * _shard_size;
      } else {
        _shards.push_back({d, 1, 0, size, true});
        _held = size;
      }
      if (_shards.back().datafiles > 1) _shards.back().end = 0;
    }
    return std::move(_shards);
  }

 private:
  // Whether the last shard can take a datafile as well.
  bool _fits(std::size_t d) const {
    if (_shards.empty() || _starts.contains(d) || _shards.back().datafiles >= most_datafiles_of_a_shard) return false;
    const std::uint64_t most = !_starts.empty() && d < *_starts.rbegin() ? 2 * _shard_size : _shard_size;
    return _held < most && _held + _datafiles[d].size <= most;
  }

  void _cut_inside(std::size_t d) {
    const std::uint64_t size = _datafiles[d].size;
    for (std::uint64_t begin = 0; begin < size; begin += _shard_size) {
      const std::uint64_t end = std::min(begin + _shard_size, size);
      _shards.push_back({d, 1, begin, end, end == size});
    }
  }

  const std::vector<Datafile>& _datafiles;
  std::uint64_t _shard_size;
  bool _inside;
  std::set<std::size_t> _starts;
  std::vector<Shard> _shards;
  std::uint64_t _held = 0;  // bytes of the last shard
};

}  // namespace

std::vector<Shard> cut_into_shards(const std::vector<Datafile>& datafiles, std::uint64_t shard_size, bool inside,
                                   std::set<std::size_t> starts) {
  return Cutter(datafiles, shard_size, inside, std::move(starts)).cut();
}

}  // namespace colx::scale
