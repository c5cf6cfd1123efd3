#include "scale/writing/written_listing.h"

#include <algorithm>
#include <array>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "base/config.h"
#include "companion/memory_size.h"
#include "corpus/datafile_format.h"
#include "corpus/string_store.h"
#include "output/members.h"
#include "output/result_lines.h"
#include "output/text_buffer.h"
#include "scale/counting/count_task.h"
#include "scale/counting/frequencies.h"
#include "scale/counting/order_task.h"
#include "scale/counting/patterns.h"
#include "scale/writing/saturation.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// To make a process takes as long as to format so many records or less.
constexpr std::uint64_t least_records_of_a_process = 1024;

// Gives the frequencies of the patterns of listed records, part by part.
class Frequencies {
 public:
  Frequencies(const WorkFolder& folder, std::size_t tasks, std::size_t parts) {
    for (std::size_t task = 0; task < tasks; ++task)
      _files.emplace_back(folder.file(count_name(task), "frequencies"), parts, SegmentReader::hold_for(tasks));
  }

  void load(std::size_t part) {
    _bytes.clear();
    _begins.clear();
    for (FrequenciesReader& file : _files)
      file.load(part, _bytes, _begins);
    _next.clear();
    for (const std::size_t begin : _begins)
      _next.push_back(_bytes.data() + begin);
  }

  std::uint64_t next(std::size_t pair) { return get_short(_next[pair]); }

 private:
  std::vector<FrequenciesReader> _files;
  std::string _bytes;
  std::vector<std::size_t> _begins;  // by pair
  std::vector<const char*> _next;    // by pair
};

// Formats one part after another.
template <typename Count>
class ListingText {
 public:
  explicit ListingText(const Counted& counted)
      : _counted(counted),
        _lemmas(longest_text),
        _tags(longest_text),
        _frequencies(counted.folder, count_tasks(counted.plan, counted.layout).size(), counted.parts),
        _values(NGram::_types_count) {
    load_lemmas(counted.folder, _lemmas);
    load_tags(counted.folder, _tags);
    for (std::size_t type = 0; type < NGram::_full_ngram_type; ++type)
      _positions.emplace_back(static_cast<std::uint8_t>(type));
    _values[0] = frequency_as<Count>(counted.occurrences);
  }

  void write(std::size_t part, TextBuffer& text) {
    const std::size_t full = NGram::_full_ngram_type;
    _frequencies.load(part);
    SegmentReader file(_counted.folder.file(order_name(part), "ordered"), ordered_kind);
    Members members;
    for (std::size_t i = 0; i < file.segments(); ++i) {
      const std::string_view block = file.read(i);
      const char* const end = block.data() + block.size();
      for (const char* from = block.data(); from != end;) {
        load_members(from, settings::n, members);
        from += settings::n * NGram::Member::size;
        _values[full] = frequency_as<Count>(get_short(from));
        _take_patterns(members);
        if (_values[full] < settings::sieves.frequency) continue;
        const std::string_view results = _result_lines.get(_values);
        if (results.empty()) continue;
        for (unsigned m = 0; m < settings::n; ++m)
          _print_member(text, {_lemmas, _tags}, m + 1, members[m]);
        text << results;
      }
    }
  }

 private:
  // Takes the frequencies of all patterns of the next record.
  void _take_patterns(const Members& members) {
    const unsigned bits = _counted.layout.partition_bits;
    if (bits == 0) {
      for (std::size_t type = 1; type < NGram::_full_ngram_type; ++type)
        _values[type] = frequency_as<Count>(_frequencies.next(type - 1));
      return;
    }
    std::array<std::uint64_t, constants::max_grammity> hashes;
    for (unsigned m = 0; m < settings::n; ++m)
      hashes[m] = member_hash(members[m], m);
    for (std::size_t type = 1; type < NGram::_full_ngram_type; ++type) {
      std::uint64_t hash = 0;
      for (unsigned k = 0; k < _positions[type].count; ++k)
        hash += hashes[_positions[type].at[k]];
      const std::size_t pair = pair_of(static_cast<std::uint8_t>(type), bucket_of(hash, bits), bits);
      _values[type] = frequency_as<Count>(_frequencies.next(pair));
    }
  }

  const Counted& _counted;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  Frequencies _frequencies;
  std::vector<Positions> _positions;  // by type
  std::vector<Count> _values;         // of the record in hand, by type
  ResultLinesOf<Count> _result_lines;
};

template <typename Count>
PartsFile _listing_file(const Counted& counted, std::size_t jobs) {
  PartsFile file;
  file.parts = counted.parts + 1;
  file.processes = std::min<std::size_t>(jobs, counted.layout.listed / least_records_of_a_process + 1);
  // More processes may write than the plan was made for.
  const std::size_t share = memory_of_machine() / 4 * 3 / file.processes;
  file.memory = std::min<std::size_t>(counted.plan.memory, share) / 2;
  const auto listing = std::make_shared<ListingText<Count>>(counted);
  file.make = [listing, parts = counted.parts](std::size_t part, std::ostream& out) {
    TextBuffer text(out);
    if (part < parts) {
      listing->write(part, text);
    } else {
      text << '\n';
    }
    text.flush();
  };
  return file;
}

}  // namespace

template <typename Count>
PartsFile listing_file(const Counted& counted, std::size_t jobs) {
  return _listing_file<Count>(counted, jobs);
}

template PartsFile listing_file<std::uint32_t>(const Counted&, std::size_t);
template PartsFile listing_file<std::uint64_t>(const Counted&, std::size_t);

}  // namespace colx::scale
