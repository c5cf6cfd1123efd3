#include "scale/counting/reduce_task.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>

#include "corpus/datafile_format.h"
#include "corpus/string_store.h"
#include "extraction/tag_filters.h"
#include "scale/counting/map_task.h"
#include "scale/counting/records.h"
#include "scale/counting/records_writer.h"
#include "scale/counting/run_table.h"
#include "scale/counting/sum_table.h"
#include "scale/engine/filters.h"
#include "scale/engine/progress.h"
#include "scale/shards/number_task.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// A file of runs, and the shard it belongs to.
struct Source {
  SegmentReader file;
  std::uint64_t occurrences_before;
};

template <unsigned N>
class Reducer {
 public:
  Reducer(const WorkFolder& folder, const Plan& plan, const std::vector<bool>& used, std::size_t task)
      : _plan(plan),
        _occurrences(Occurrences::from(folder, used)),
        _shift(piece_shift(_occurrences.all)),
        _pieces(most_pieces + 1, 0),
        _tags(longest_text),
        _listed(folder.file(reduce_name(task), "listed"), listed_kind),
        _refused(folder.file(reduce_name(task), "refused"), refused_kind),
        _pieces_file(folder.file(reduce_name(task), "pieces"), pieces_kind) {
    load_tags(folder, _tags);
    add_morphologic_rules(plan, _rules);
    _filter = std::make_unique<MorphologicFilter>(_rules, _tags);
    std::size_t runs = 0;
    for (const std::size_t count : _occurrences.runs)
      runs += count;
    const std::size_t buffer = std::clamp<std::size_t>(plan.memory / 4 / std::max<std::size_t>(runs, 1), 4096, 1 << 20);
    for (std::size_t k = 0; k < used.size(); ++k) {
      for (std::size_t run = 0; run < _occurrences.runs[k]; ++run)
        _sources.push_back({SegmentReader(run_file(folder, k, run), run_kind, buffer, SegmentReader::hold_for(runs)),
                            _occurrences.before[k]});
    }
  }

  void run(std::size_t begin, std::size_t end, TaskResult& done) {
    for (Source& source : _sources)
      source.file.stop_ahead_of(end);
    for (std::size_t bucket = begin; bucket < end; ++bucket) {
      const unsigned part_bits = _part_bits(bucket);
      for (std::size_t part = 0; part < std::size_t{1} << part_bits; ++part) {
        _add_up(bucket, part_bits, part);
        _write_out();
      }
      Progress::set(bucket - begin, end - begin);
    }
    done.add_file("listed", _listed.finish());
    done.add_file("refused", _refused.finish());
    std::string pieces;
    for (const std::uint32_t count : _pieces)
      append_fixed(pieces, count);
    _pieces_file.add(pieces);
    done.add_file("pieces", _pieces_file.finish());
    done.manifest().add("listed", _listed_count);
    done.manifest().add("refused", _refused_count);
    done.manifest().add("piece_shift", _shift);
  }

 private:
  static constexpr std::size_t members_size = N * NGram::Member::size;
  static constexpr std::uint64_t least_records_at_a_time = 8192;
  static constexpr std::size_t longest = members_size + 2 * longest_short_number;

  // About how many there are in the runs.
  std::uint64_t _records(std::size_t bucket) const {
    std::uint64_t bytes = 0;
    for (const Source& source : _sources)
      bytes += source.file.size(bucket);
    return bytes / (members_size + 4);
  }

  // A bucket is made for records that the table can hold. Where a corpus has many more than its size lets expect, it is
  // read once for each part of it.
  unsigned _part_bits(std::size_t bucket) const {
    constexpr std::uint64_t bytes_of_record = 2 * sizeof(Sum<N>) + 32;
    const std::uint64_t most = std::max<std::uint64_t>(_plan.memory / 2 / bytes_of_record, least_records_at_a_time);
    const std::uint64_t records = _records(bucket);
    unsigned bits = 0;
    while ((records >> bits) > most)
      ++bits;
    return bits;
  }

  void _add_up(std::size_t bucket, unsigned part_bits, std::size_t part) {
    _table.clear(static_cast<std::size_t>(_records(bucket) >> part_bits));
    for (Source& source : _sources) {
      const std::string_view segment = source.file.read(bucket);
      const char* const end = segment.data() + segment.size();
      for (const char* from = segment.data(); from != end;) {
        std::uint64_t hash = 0;
        for (unsigned m = 0; m < N; ++m)
          hash += member_hash(_member(from, m), m);
        if (bucket_of(hash << _plan.bucket_bits, part_bits) != part) {
          from += members_size;
          get_short(from);
          get_short(from);
          continue;
        }
        Sum<N>& sum = _table[_table.find_or_add(hash, from)];
        from += members_size;
        sum.count += get_short(from);
        sum.first = std::min(sum.first, source.occurrences_before + get_short(from));
      }
      source.file.shrink();
    }
  }

  void _write_out() {
    for (const Sum<N>& sum : _table.sums()) {
      const bool listed = _admits(sum);
      RecordsWriter& writer = listed ? _listed : _refused;
      char* to = writer.room(longest);
      std::memcpy(to, sum.members, members_size);
      to = put_short(to + members_size, sum.count);
      if (listed) {
        to = put_short(to, sum.first);
        ++_pieces[sum.first >> _shift];
      }
      writer.wrote_to(to);
      ++(listed ? _listed_count : _refused_count);
    }
  }

  bool _admits(const Sum<N>& sum) {
    if (!_filter->is_on()) return true;
    _batch.clear();
    _batch.add();
    for (unsigned m = 0; m < N; ++m)
      _batch.set_last(m, _member(reinterpret_cast<const char*>(sum.members), m));
    return _filter->admits(_batch, 0, NGram::_full_ngram_type);
  }

  static NGram::Member _member(const char* members, unsigned m) {
    return NGram::Member::load(reinterpret_cast<const unsigned char*>(members) + m * NGram::Member::size);
  }

  const Plan& _plan;
  Occurrences _occurrences;
  unsigned _shift;
  std::vector<std::uint32_t> _pieces;
  StringStore<std::uint8_t> _tags;
  MultiRulesFilter _rules;
  std::unique_ptr<MorphologicFilter> _filter;
  OccurrenceBatch _batch;
  std::vector<Source> _sources;
  SumTable<N> _table;
  RecordsWriter _listed;
  RecordsWriter _refused;
  SegmentWriter _pieces_file;
  std::uint64_t _listed_count = 0;
  std::uint64_t _refused_count = 0;
};

}  // namespace

Occurrences Occurrences::from(const WorkFolder& folder, const std::vector<bool>& used) {
  Occurrences occurrences;
  for (std::size_t k = 0; k < used.size(); ++k) {
    occurrences.before.push_back(occurrences.all);
    occurrences.runs.push_back(0);
    if (!used[k]) continue;
    const MapResult result = MapResult::from(folder.result(map_name(k)));
    occurrences.all += result.occurrences;
    occurrences.runs.back() = result.runs;
  }
  return occurrences;
}

unsigned piece_shift(std::uint64_t occurrences) {
  unsigned shift = 0;
  while ((occurrences >> shift) > most_pieces)
    ++shift;
  return shift;
}

ReduceResult ReduceResult::from(const Manifest& manifest) {
  return {manifest.number("listed"), manifest.number("refused"), static_cast<unsigned>(manifest.number("piece_shift"))};
}

std::string reduce_name(std::size_t task) {
  return fmt::format("reduce-{}", task);
}

std::uint64_t reduce_key(const WorkFolder& folder, const Plan& plan, const std::vector<bool>& used, std::size_t task) {
  std::string key;
  append_fixed(key, plan.reduces);
  append_fixed(key, task);
  for (std::size_t k = 0; k < used.size(); ++k)
    if (used[k]) append_fixed(key, folder.mark(map_name(k)));
  return checksum(key);
}

void reduce(const WorkFolder& folder, const Plan& plan, const std::vector<bool>& used, std::size_t task) {
  TaskResult done(folder, reduce_name(task), reduce_key(folder, plan, used, task));
  const std::size_t buckets = std::size_t{1} << plan.bucket_bits;
  const std::size_t begin = buckets * task / plan.reduces;
  const std::size_t end = buckets * (task + 1) / plan.reduces;
  with_n([&]<unsigned N>() { Reducer<N>(folder, plan, used, task).run(begin, end, done); });
  done.save();
}

}  // namespace colx::scale
