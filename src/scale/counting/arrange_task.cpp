#include "scale/counting/arrange_task.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include <fmt/format.h>

#include "model/ngram_hash.h"
#include "scale/counting/patterns.h"
#include "scale/counting/records.h"
#include "scale/counting/records_writer.h"
#include "scale/counting/reduce_task.h"
#include "scale/engine/progress.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::string_view candidates_kind = "cand";

// In which pieces of the corpus the records lie that made the set grow.
struct Growing {
  struct Record {
    std::size_t piece;
    std::uint64_t number;  // within the piece, in the order of first sight
  };
  std::vector<Record> records;
  std::vector<bool> wanted;  // by piece

  Growing(const WorkFolder& folder, const Plan& plan, const Layout& layout) : wanted(most_pieces + 1, false) {
    if (layout.listed == 0) return;
    std::vector<std::uint64_t> counts(most_pieces + 1, 0);
    for (std::size_t task = 0; task < plan.reduces; ++task) {
      SegmentReader file(folder.file(reduce_name(task), "pieces"), pieces_kind);
      const std::string_view bytes = file.read(0);
      const char* from = bytes.data();
      for (std::uint64_t& count : counts)
        count += get_fixed<std::uint32_t>(from);
    }
    std::size_t piece = 0;
    std::uint64_t before = 0;
    for (const std::uint64_t number : Listing(layout.listed).growing_records()) {
      while (before + counts[piece] <= number)
        before += counts[piece++];
      records.push_back({piece, number - before});
      wanted[piece] = true;
    }
  }
};

class Arranger {
 public:
  Arranger(const WorkFolder& folder, const Plan& plan, std::size_t task)
      : _folder(folder),
        _plan(plan),
        _task(task),
        _layout(Layout::from(folder, plan)),
        _growing(folder, plan, _layout),
        _listing(std::max<std::uint64_t>(_layout.listed, 1)),
        _file(folder.file(arrange_name(task), "arranged"), arranged_kind),
        _counts(_layout.ranges, 0) {}

  void run(TaskResult& done) {
    _arrange_listed();
    done.add_file("arranged", _file.finish());
    done.add_file("candidates", _write_candidates());
    if (_layout.whole) done.add_file("refused", _copy_refused());
    const std::size_t refused_rounds = _layout.whole ? 0 : _write_refused(done);
    Manifest& manifest = done.manifest();
    manifest.add("rounds", _rounds);
    manifest.add("refused_rounds", refused_rounds);
    Manifest::Fields ranges{"ranges"};
    for (const std::uint64_t count : _counts)
      ranges.push_back(std::to_string(count));
    manifest.add(std::move(ranges));
  }

 private:
  // A record in memory, and where it goes.
  struct Record {
    std::uint64_t begin;  // in the bytes
    std::uint32_t size;
    std::uint32_t range;
  };

  void _arrange_listed() {
    SegmentReader listed(_folder.file(reduce_name(_task), "listed"), listed_kind);
    const std::size_t most_bytes = std::max<std::size_t>(_plan.memory / 4, std::size_t{4} << 10);
    const std::size_t members_size = settings::n * NGram::Member::size;
    // Memory that is not used is not taken from the system.
    const std::size_t most_held = std::min<std::size_t>(listed.bytes(), most_bytes + RecordsWriter::block_size * 2);
    _bytes.reserve(most_held);
    _records.reserve(most_held / members_size);
    Members members;
    for (std::size_t i = 0; i < listed.segments(); ++i) {
      const std::string_view block = listed.read(i);
      const char* const end = block.data() + block.size();
      for (const char* from = block.data(); from != end;) {
        const char* const begin = from;
        load_members(from, settings::n, members);
        from += members_size;
        get_short(from);
        const std::uint64_t first = get_short(from);
        if (_growing.wanted[first >> _layout.piece_shift]) append_fixed(_candidates, first);
        const std::uint32_t hash = NGramHashCounter::count_hash({members.data(), settings::n});
        const std::size_t range = _layout.range_of(_listing.bucket(hash), _listing.buckets());
        _records.push_back(
            {_bytes.size(), static_cast<std::uint32_t>(from - begin), static_cast<std::uint32_t>(range)});
        _bytes.append(begin, static_cast<std::size_t>(from - begin));
        ++_counts[range];
      }
      Progress::set(i, listed.segments());
      if (_bytes.size() + _records.size() * 2 * sizeof(Record) > most_bytes) _write_round();
    }
    if (!_records.empty()) _write_round();
  }

  void _write_round() {
    std::vector<std::size_t> begins(_layout.ranges + 1, 0);
    for (const Record& record : _records)
      begins[record.range + 1] += record.size;
    for (std::size_t range = 1; range < begins.size(); ++range)
      begins[range] += begins[range - 1];
    std::string sorted(_bytes.size(), '\0');
    std::vector<std::size_t> next(begins.begin(), begins.end() - 1);
    for (const Record& record : _records) {
      std::memcpy(sorted.data() + next[record.range], _bytes.data() + record.begin, record.size);
      next[record.range] += record.size;
    }
    for (std::size_t range = 0; range < _layout.ranges; ++range)
      _file.add({sorted.data() + begins[range], begins[range + 1] - begins[range]});
    _bytes.clear();
    _records.clear();
    ++_rounds;
  }

  FileMark _write_candidates() {
    SegmentWriter file(_folder.file(arrange_name(_task), "candidates"), candidates_kind);
    file.add(_candidates);
    return file.finish();
  }

  // N-grams that are not listed themselves, as they are.
  FileMark _copy_refused() const {
    SegmentReader refused(_folder.file(reduce_name(_task), "refused"), refused_kind);
    SegmentWriter file(_folder.file(arrange_name(_task), "refused"), refused_kind);
    for (std::size_t i = 0; i < refused.segments(); ++i)
      file.add(refused.read(i));
    return file.finish();
  }

  // The patterns of N-grams that are not listed themselves, as many at a time as the memory takes. Returns how often it
  // was full.
  std::size_t _write_refused(TaskResult& done) {
    SegmentReader refused(_folder.file(reduce_name(_task), "refused"), refused_kind);
    const std::size_t members_size = settings::n * NGram::Member::size;
    const std::size_t most = std::max(_plan.memory / 2 / (4 * members_size + 96), least_refused);
    std::string bytes;
    std::vector<std::uint64_t> counts;
    std::size_t rounds = 0;
    const auto write_round = [&] {
      const std::string name = refused_patterns(rounds++);
      done.add_file(name, _write_refused(_folder.file(arrange_name(_task), name), bytes, counts));
      bytes.clear();
      counts.clear();
    };
    for (std::size_t i = 0; i < refused.segments(); ++i) {
      const std::string_view block = refused.read(i);
      const char* const end = block.data() + block.size();
      for (const char* from = block.data(); from != end;) {
        bytes.append(from, members_size);
        from += members_size;
        counts.push_back(get_short(from));
        if (counts.size() == most) write_round();
      }
    }
    if (!counts.empty()) write_round();
    return rounds;
  }

  // The same of those in memory: their members, one behind the other, and their counts.
  FileMark _write_refused(const std::string& path, std::string& bytes, const std::vector<std::uint64_t>& counts) const {
    const std::size_t members_size = settings::n * NGram::Member::size;
    bytes.append(sizeof(std::uint64_t), '\0');  // members are read by eight bytes
    std::vector<CountedRecord> records;
    records.reserve(counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i)
      records.push_back({bytes.data() + i * members_size, counts[i]});
    return write_patterns(path, records, _layout.partition_bits, RecordsWanted::no);
  }

  static constexpr std::size_t least_refused = 4096;

  const WorkFolder& _folder;
  const Plan& _plan;
  std::size_t _task;
  Layout _layout;
  Growing _growing;
  Listing _listing;
  SegmentWriter _file;
  std::vector<std::uint64_t> _counts;
  std::string _bytes;
  std::vector<Record> _records;
  std::string _candidates;
  std::size_t _rounds = 0;
};

}  // namespace

ArrangeResult ArrangeResult::from(const Manifest& manifest) {
  ArrangeResult result;
  result.rounds = manifest.number("rounds");
  result.refused_rounds = manifest.number("refused_rounds");
  const Manifest::Fields* const ranges = manifest.find("ranges");
  if (ranges == nullptr) throw std::out_of_range("no line ranges");
  std::transform(ranges->begin() + 1, ranges->end(), std::back_inserter(result.records), to_number);
  return result;
}

std::string refused_patterns(std::size_t round) {
  return fmt::format("patterns-{}", round);
}

std::string arrange_name(std::size_t task) {
  return fmt::format("arrange-{}", task);
}

std::uint64_t arrange_key(const WorkFolder& folder, const Plan& plan) {
  std::string key;
  append_fixed(key, plan.memory);
  for (std::size_t task = 0; task < plan.reduces; ++task)
    append_fixed(key, folder.mark(reduce_name(task)));
  return checksum(key);
}

void arrange(const WorkFolder& folder, const Plan& plan, std::size_t task) {
  TaskResult done(folder, arrange_name(task), arrange_key(folder, plan));
  Arranger(folder, plan, task).run(done);
  done.save();
}

std::vector<std::uint64_t> growing_places(const WorkFolder& folder, const Plan& plan, const Layout& layout) {
  const Growing growing(folder, plan, layout);
  if (growing.records.empty()) return {};
  std::vector<std::uint64_t> candidates;
  for (std::size_t task = 0; task < plan.reduces; ++task) {
    SegmentReader file(folder.file(arrange_name(task), "candidates"), candidates_kind);
    const std::string_view bytes = file.read(0);
    const char* from = bytes.data();
    for (std::size_t i = 0; i < bytes.size() / sizeof(std::uint64_t); ++i)
      candidates.push_back(get_fixed<std::uint64_t>(from));
  }
  std::sort(candidates.begin(), candidates.end());
  std::vector<std::uint64_t> places;
  for (const Growing::Record& record : growing.records) {
    const auto begin =
        std::lower_bound(candidates.begin(), candidates.end(), std::uint64_t{record.piece} << layout.piece_shift);
    places.push_back(begin[static_cast<std::ptrdiff_t>(record.number)]);
  }
  return places;
}

}  // namespace colx::scale
