#include "scale/patterns.h"

#include <cstring>

#include "spill/encoding.h"

namespace colx::scale {

namespace {

// Writes the patterns of one type, K members each, partition by partition.
template <unsigned K>
void _write_type(SegmentWriter& file, std::uint8_t type, const std::vector<CountedRecord>& records,
                 unsigned partition_bits) {
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
  for (std::size_t p = 0; p + 1 < begins.size(); ++p)
    file.add({bytes.data() + begins[p], begins[p + 1] - begins[p]});
}

}  // namespace

FileMark write_patterns(const std::string& path, const std::vector<CountedRecord>& records, unsigned partition_bits) {
  SegmentWriter file(path, patterns_kind);
  for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type)
    with_members_of(type, [&]<unsigned K>() { _write_type<K>(file, type, records, partition_bits); });
  return file.finish();
}

}  // namespace colx::scale
