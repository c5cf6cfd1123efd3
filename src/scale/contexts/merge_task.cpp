#include "scale/contexts/merge_task.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>

#include "model/listing.h"
#include "model/ngram_hash.h"
#include "scale/contexts/collect_task.h"
#include "scale/contexts/seen_words_coding.h"
#include "scale/contexts/sighting_run.h"
#include "scale/counting/patterns.h"
#include "scale/counting/records.h"
#include "scale/counting/sum_table.h"
#include "scale/engine/progress.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// A run, and how many occurrences come before its shard.
struct ContextSource {
  SegmentReader file;
  std::uint64_t occurrences_before;
};

// The records of a bucket as one run has them, or as several had them whose lists have been joined.
struct Piece {
  std::string bytes;
  std::uint64_t occurrences_before;
};

// Finds the records of K members in pieces, of which every one is older than the one before, with all lists of each.
template <unsigned K>
class PieceRecords {
 public:
  static constexpr std::size_t members_size = K * NGram::Member::size;

  explicit PieceRecords(std::uint8_t type) : _positions(type), _has_narrow(type == NGram::_full_ngram_type) {}

  std::uint64_t hash(const char* members) const { return pattern_hash<K>(members, _positions); }

  // Moves `from` from behind the first occurrence of a record behind its lists.
  void skip_lists(const char*& from) const {
    if (_has_narrow) skip_seen_words(from);
    skip_seen_words(from);
  }

  void find(const std::vector<Piece>& pieces) {
    std::uint64_t bytes = 0;
    for (const Piece& piece : pieces)
      bytes += piece.bytes.size();
    _table.clear(static_cast<std::size_t>(bytes / (members_size + 32)));
    _chains.clear();
    _lists.clear();
    for (const Piece& piece : pieces) {
      const char* const end = piece.bytes.data() + piece.bytes.size();
      for (const char* from = piece.bytes.data(); from != end;) {
        const char* const members = from;
        from += members_size;
        const std::uint64_t first = piece.occurrences_before + get_short(from);
        _add(_table.find_or_add(hash(members), members), first, from);
        skip_lists(from);
      }
    }
  }

  // Calls `take(members, first, lists)` for every record; its lists are from the newest to the oldest.
  template <typename Take>
  void for_each(const Take& take) {
    for (std::uint32_t i = 0; i < _table.size(); ++i) {
      _of_record.clear();
      for (std::uint32_t list = _chains[i].first; list != none; list = _lists[list].next)
        _of_record.push_back(_lists[list].bytes);
      const Sum<K>& sum = _table[i];
      take(reinterpret_cast<const char*>(sum.members), sum.first, std::span<const char*>(_of_record));
    }
  }

 private:
  static constexpr std::uint32_t none = 0xFFFFFFFF;

  struct Chain {
    std::uint32_t first;
    std::uint32_t last;
  };
  struct List {
    const char* bytes;
    std::uint32_t next;
  };

  void _add(std::uint32_t record, std::uint64_t first, const char* lists) {
    const auto number = static_cast<std::uint32_t>(_lists.size());
    _lists.push_back({lists, none});
    if (record == _chains.size()) {
      _chains.push_back({number, number});
    } else {
      _lists[_chains[record].last].next = number;
      _chains[record].last = number;
    }
    _table[record].first = first;  // older than what was there
  }

  Positions _positions;
  bool _has_narrow;
  SumTable<K> _table;
  std::vector<Chain> _chains;  // by record
  std::vector<List> _lists;
  std::vector<const char*> _of_record;
};

class ContextMerger {
 public:
  ContextMerger(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout, std::size_t task)
      : _plan(plan),
        _layout(layout),
        _most_bytes(std::max<std::size_t>(plan.memory / 8, 4096)),
        _shift(firsts_shift(layout.occurrences)),
        _cells_path(folder.file(merge_name(task), "cells")),
        _merged(folder.file(merge_name(task), "merged"), merged_kind),
        _firsts_file(folder.file(merge_name(task), "firsts"), firsts_kind),
        _first_type(layout.first_type(task)),
        _first_cell(layout.first_cells[layout.last_type(task)]),
        _cell_bytes(layout.end_cell(layout.first_type(task)) - _first_cell, 0),
        _firsts((layout.last_type(task) - _first_type + 1) * firsts_pieces) {
    std::size_t runs = 0;
    for (const std::size_t count : layout.runs)
      runs += count;
    const std::size_t buffer = std::clamp<std::size_t>(plan.memory / 8 / std::max<std::size_t>(runs, 1), 4096, 1 << 18);
    const SegmentReader::Hold hold = SegmentReader::hold_for(runs);
    for (std::size_t i = layout.shards.size(); i-- > 0;) {
      for (std::size_t run = layout.runs[i]; run-- > 0;)
        _sources.push_back({SegmentReader(sightings_file(folder, layout.shards[i], run), sightings_kind, buffer, hold),
                            layout.before[i]});
    }
    for (std::size_t type = NGram::_full_ngram_type; type > 0; --type)
      _listings.emplace_back(std::max<std::uint64_t>(layout.records[type], 1));
    std::reverse(_listings.begin(), _listings.end());
  }

  void run(const Pairs& pairs, TaskResult& done) {
    for (ContextSource& source : _sources)
      source.file.stop_ahead_of(pairs.end);
    for (std::size_t pair = pairs.first; pair < pairs.end; ++pair) {
      Progress::set(pair - pairs.first, pairs.end - pairs.first);
      const std::uint8_t type = _layout.type_of(pair);
      with_members_of(type, [&]<unsigned K>() { _merge_pair<K>(type, pair); });
    }
    if (!_records.empty()) _write_round();
    std::string bytes;
    for (const std::uint64_t count : _cell_bytes)
      append_fixed(bytes, count);
    SegmentWriter cells(_cells_path, cells_kind);
    cells.add(bytes);
    done.add_file("cells", cells.finish());
    done.add_file("merged", _merged.finish());
    done.add_file("firsts", _firsts_file.finish());
  }

 private:
  // A merged record in memory, and where it goes.
  struct Record {
    std::uint64_t begin;  // in the bytes
    std::uint64_t size;
    std::size_t cell;  // counted from the first of the task
  };

  template <unsigned K>
  void _merge_pair(std::uint8_t type, std::size_t pair) {
    std::uint64_t bytes = 0;
    for (const ContextSource& source : _sources)
      bytes += source.file.size(pair);
    // What is too much at a time is read once for each part of it.
    unsigned part_bits = 0;
    while ((bytes >> part_bits) > _most_bytes && part_bits < most_part_bits)
      ++part_bits;
    PieceRecords<K> records(type);
    for (std::size_t part = 0; part < std::size_t{1} << part_bits; ++part)
      _merge_part<K>(type, pair, part_bits, part, records);
  }

  template <unsigned K>
  void _merge_part(std::uint8_t type, std::size_t pair, unsigned part_bits, std::size_t part,
                   PieceRecords<K>& records) {
    std::vector<Piece> pieces;
    std::size_t held = 0;
    std::size_t most = _most_bytes * 2;
    for (ContextSource& source : _sources) {
      if (source.file.size(pair) == 0) continue;
      Piece& piece = pieces.emplace_back(Piece{{}, source.occurrences_before});
      _append_part<K>(source.file.read(pair), part_bits, part, records, piece.bytes);
      source.file.shrink();
      held += piece.bytes.size();
      if (held <= most) continue;
      // Few records fill the memory by long lists, which get shorter when they are joined.
      _join<K>(type, pieces, records);
      held = pieces.front().bytes.size();
      most = std::max(_most_bytes * 2, held * 2);
    }
    records.find(pieces);
    records.for_each([&](const char* members, std::uint64_t first, std::span<const char*> lists) {
      _take_merged<K>(type, members, first, lists);
    });
  }

  template <unsigned K>
  void _append_part(std::string_view segment, unsigned part_bits, std::size_t part, const PieceRecords<K>& records,
                    std::string& bytes) const {
    if (part_bits == 0) {
      bytes = segment;
      return;
    }
    const char* const end = segment.data() + segment.size();
    for (const char* from = segment.data(); from != end;) {
      const char* const begin = from;
      from += PieceRecords<K>::members_size;
      get_short(from);
      records.skip_lists(from);
      if (bucket_of(records.hash(begin) << _plan.context_bits, part_bits) == part) bytes.append(begin, from);
    }
  }

  // Makes one piece of all.
  template <unsigned K>
  void _join(std::uint8_t type, std::vector<Piece>& pieces, PieceRecords<K>& records) {
    std::string joined;
    records.find(pieces);
    records.for_each([&](const char* members, std::uint64_t first, std::span<const char*> lists) {
      joined.append(members, PieceRecords<K>::members_size);
      append_short(joined, first);
      if (type == NGram::_full_ngram_type) append_seen_words(joined, _joined(lists));
      append_seen_words(joined, _joined(lists));
    });
    pieces.clear();
    pieces.push_back({std::move(joined), 0});
  }

  // Reads one list of each and leaves them behind it.
  std::span<const SeenWord> _joined(std::span<const char*> lists) {
    _list.clear();
    for (const char*& list : lists)
      for_each_seen_word(list, [&](std::uint32_t word, std::uint32_t count) { _list.add(word, count); });
    return _list.words();
  }

  void _append_ranked(std::span<const char*> lists) {
    _ranked.clear();
    if (lists.size() == 1) {
      for_each_seen_word(lists[0], [&](std::uint32_t word, std::uint32_t count) { _ranked.push_back({word, count}); });
    } else {
      const std::span<const SeenWord> joined = _joined(lists);
      _ranked.assign(joined.begin(), joined.end());
    }
    rank_seen_words(_ranked);
    append_ranked_words(_lists, _ranked);
  }

  template <unsigned K>
  void _take_merged(std::uint8_t type, const char* members, std::uint64_t first, std::span<const char*> lists) {
    _lists.clear();
    if (type == NGram::_full_ngram_type) _append_ranked(lists);
    _append_ranked(lists);

    Members loaded;
    load_members(members, K, loaded);
    const Listing& listing = _listings[type - 1U];
    const std::uint32_t bucket = listing.bucket(NGramHashCounter::count_hash({loaded.data(), K}));
    const std::size_t begin = _bytes.size();
    _bytes.append(members, PieceRecords<K>::members_size);
    append_short(_bytes, first);
    append_short(_bytes, _lists.size());
    _bytes.append(_lists);
    _records.push_back({begin, _bytes.size() - begin, _layout.cell_of(type, bucket, listing.buckets()) - _first_cell});
    _firsts[(type - _first_type) * firsts_pieces + (first >> _shift)].push_back(first);
    if (_bytes.size() + _records.size() * bytes_beside_merged > _most_bytes) _write_round();
  }

  void _write_round() {
    std::vector<std::size_t> begins(_cell_bytes.size() + 1, 0);
    for (const Record& record : _records)
      begins[record.cell + 1] += record.size;
    for (std::size_t cell = 0; cell < _cell_bytes.size(); ++cell) {
      _cell_bytes[cell] += begins[cell + 1];
      begins[cell + 1] += begins[cell];
    }
    std::string sorted(_bytes.size(), '\0');
    std::vector<std::size_t> next(begins.begin(), begins.end() - 1);
    for (const Record& record : _records) {
      std::memcpy(sorted.data() + next[record.cell], _bytes.data() + record.begin, record.size);
      next[record.cell] += record.size;
    }
    for (std::size_t cell = 0; cell < _cell_bytes.size(); ++cell)
      _merged.add({sorted.data() + begins[cell], begins[cell + 1] - begins[cell]});
    for (std::vector<std::uint64_t>& piece : _firsts) {
      _firsts_file.add({reinterpret_cast<const char*>(piece.data()), piece.size() * sizeof(std::uint64_t)});
      piece.clear();
    }
    _bytes.clear();
    _records.clear();
  }

  static constexpr unsigned most_part_bits = 12;
  static constexpr std::size_t bytes_beside_merged = 2 * sizeof(Record) + 2 * sizeof(std::uint64_t);

  const Plan& _plan;
  const ContextLayout& _layout;
  std::size_t _most_bytes;
  unsigned _shift;
  std::vector<ContextSource> _sources;  // from the newest
  std::vector<Listing> _listings;       // by type, from 1
  std::string _cells_path;
  SegmentWriter _merged;
  SegmentWriter _firsts_file;
  SeenWords _list;
  std::vector<SeenWord> _ranked;
  std::string _lists;
  std::string _bytes;
  std::vector<Record> _records;
  std::size_t _first_type;
  std::size_t _first_cell;
  std::vector<std::uint64_t> _cell_bytes;           // by cell of the task
  std::vector<std::vector<std::uint64_t>> _firsts;  // by type of the task, and piece
};

}  // namespace

unsigned firsts_shift(std::uint64_t occurrences) {
  unsigned shift = 0;
  while ((occurrences >> shift) >= firsts_pieces)
    ++shift;
  return shift;
}

std::string merge_name(std::size_t task) {
  return fmt::format("merge-{}", task);
}

std::uint64_t merges_mark(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout) {
  std::string key;
  append_fixed(key, plan.memory);
  append_fixed(key, plan.reduces);
  for (const std::size_t shard : layout.shards)
    append_fixed(key, folder.mark(collect_name(shard)));
  for (const std::uint64_t count : layout.records)
    append_fixed(key, count);
  return checksum(key);
}

std::uint64_t merge_key(std::uint64_t merges_mark, const Pairs& pairs) {
  std::string key;
  append_fixed(key, merges_mark);
  append_fixed(key, pairs.first);
  append_fixed(key, pairs.end);
  return checksum(key);
}

void merge(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout, std::uint64_t merges_mark,
           std::size_t task) {
  const Pairs& pairs = layout.merges[task];
  TaskResult done(folder, merge_name(task), merge_key(merges_mark, pairs));
  ContextMerger(folder, plan, layout, task).run(pairs, done);
  done.save();
}

std::vector<std::uint64_t> merged_bytes(const WorkFolder& folder, const Plan& plan, const ContextLayout& layout) {
  const std::uint64_t mark = merges_mark(folder, plan, layout);
  std::vector<std::uint64_t> bytes(layout.cells, 0);
  for (std::size_t task = 0; task < layout.merges.size(); ++task) {
    folder.result(merge_name(task), merge_key(mark, layout.merges[task]));
    SegmentReader file(folder.file(merge_name(task), "cells"), cells_kind);
    const std::string_view counts = file.read(0);
    const char* from = counts.data();
    const std::size_t end = layout.end_cell(layout.first_type(task));
    for (std::size_t cell = layout.first_cells[layout.last_type(task)]; cell < end; ++cell)
      bytes[cell] += get_fixed<std::uint64_t>(from);
  }
  return bytes;
}

}  // namespace colx::scale
