#include "scale/counting/patterns.h"

#include <cstring>

#include "scale/counting/sum_table.h"

namespace colx::scale {

namespace {

// Puts equal patterns of a partition together, which stand there record by record, each with its count.
template <unsigned K>
class Merger {
 public:
  Merger(const Positions& positions, RecordsWanted wanted) : _positions(positions), _wanted(wanted) {}

  // The segment, valid until the next call.
  std::string_view merged(std::string_view patterns) {
    constexpr std::size_t size = K * NGram::Member::size;
    _segment.clear();
    _records.clear();
    if (patterns.empty()) return _segment;
    _table.clear(patterns.size() / (size + 1) / 4);
    const char* const end = patterns.data() + patterns.size();
    for (const char* from = patterns.data(); from != end;) {
      const std::size_t known = _table.size();
      const std::uint32_t number = _table.find_or_add(pattern_hash<K>(from, _positions), from);
      from += size;
      _table[number].count += get_short(from);
      if (_wanted == RecordsWanted::yes) append_short(_records, number == known ? 0 : number + std::uint64_t{1});
    }
    append_short(_segment, _table.size());
    for (const Sum<K>& sum : _table.sums()) {
      _segment.append(reinterpret_cast<const char*>(sum.members), size);
      append_short(_segment, sum.count);
    }
    return _segment.append(_records);
  }

 private:
  const Positions& _positions;
  RecordsWanted _wanted;
  SumTable<K> _table;
  std::string _segment;
  std::string _records;
};

// Writes the patterns of one type, K members each, partition by partition.
template <unsigned K>
void _write_type(SegmentWriter& file, std::uint8_t type, const std::vector<CountedRecord>& records,
                 unsigned partition_bits, RecordsWanted wanted) {
  constexpr std::size_t size = K * NGram::Member::size;
  const Positions positions(type);
  std::vector<std::uint16_t> partitions(records.size());
  std::vector<std::size_t> begins((std::size_t{1} << partition_bits) + 1, 0);
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::uint64_t hash = 0;
    for (unsigned k = 0; k < K; ++k)
      hash += member_hash(member_at(records[i].members, positions.at[k]), positions.at[k]);
    partitions[i] = static_cast<std::uint16_t>(bucket_of(hash, partition_bits));
    begins[partitions[i] + 1U] += size + short_size(records[i].count);
  }
  for (std::size_t p = 1; p < begins.size(); ++p)
    begins[p] += begins[p - 1];
  std::string bytes(begins.back() + longest_short_number, '\0');
  std::vector<std::size_t> next(begins.begin(), begins.end() - 1);
  for (std::size_t i = 0; i < records.size(); ++i) {
    char* to = bytes.data() + next[partitions[i]];
    for (unsigned k = 0; k < K; ++k, to += NGram::Member::size)
      std::memcpy(to, records[i].members + positions.at[k] * NGram::Member::size, NGram::Member::size);
    to = put_short(to, records[i].count);
    next[partitions[i]] = static_cast<std::size_t>(to - bytes.data());
  }
  Merger<K> merger(positions, wanted);
  for (std::size_t p = 0; p + 1 < begins.size(); ++p)
    file.add(merger.merged({bytes.data() + begins[p], begins[p + 1] - begins[p]}));
}

}  // namespace

FileMark write_patterns(const std::string& path, const std::vector<CountedRecord>& records, unsigned partition_bits,
                        RecordsWanted wanted) {
  SegmentWriter file(path, patterns_kind);
  for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type)
    with_members_of(type, [&]<unsigned K>() { _write_type<K>(file, type, records, partition_bits, wanted); });
  return file.finish();
}

}  // namespace colx::scale
