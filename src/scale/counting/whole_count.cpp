#include "scale/counting/whole_count.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "scale/counting/arrange_task.h"
#include "scale/counting/different_patterns.h"
#include "scale/counting/frequencies.h"
#include "scale/counting/order_task.h"
#include "scale/counting/pattern_columns.h"
#include "scale/counting/reduce_task.h"
#include "scale/engine/progress.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::size_t longest_frequency = short_size(std::numeric_limits<std::uint32_t>::max());

// All N-grams: first the listed ones, in their order, then those that the filter refuses.
struct Records {
  // Knows the members only at the positions that are significant in some of these pairs.
  Records(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Pairs& pairs, std::size_t parts)
      : members(settings::n), counts(layout.listed + layout.refused), _code(layout.code) {
    for (unsigned position = 0; position < settings::n; ++position) {
      bool needed = false;
      for (std::size_t pair = pairs.first; pair < pairs.end; ++pair)
        needed = needed || NGram::significant(static_cast<std::uint8_t>(pair + 1), position);
      if (!needed) continue;
      _needed.push_back(position);
      members[position].resize(counts.size());
    }
    for (std::size_t part = 0; part < parts; ++part) {
      _read(folder.file(order_name(part), "ordered"), ordered_kind);
      ends.push_back(_size);
    }
    for (std::size_t task = 0; task < plan.reduces; ++task)
      _read(folder.file(arrange_name(task), "refused"), refused_kind);
  }

  std::vector<PatternColumns::Column> members;  // by position
  PatternColumns::Column counts;
  std::vector<std::uint32_t> ends;  // of the parts of the listing

 private:
  void _read(const std::string& path, std::string_view kind) {
    SegmentReader file(path, kind);
    for (std::size_t i = 0; i < file.segments(); ++i) {
      const std::string_view block = file.read(i);
      const char* const end = block.data() + block.size();
      for (const char* from = block.data(); from != end; ++_size) {
        if (_size == counts.size()) file.refuse("has too many N-grams");
        for (const unsigned position : _needed)
          members[position][_size] = _code.code(member_at(from, position));
        from += settings::n * NGram::Member::size;
        counts[_size] = static_cast<std::uint32_t>(get_short(from));
      }
    }
  }

  const MemberCode& _code;
  std::vector<unsigned> _needed;
  std::uint32_t _size = 0;
};

}  // namespace

void count_whole(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Pairs& pairs,
                 std::size_t parts, const std::string& name, TaskResult& done) {
  FrequenciesWriter frequencies(folder.file(name, "frequencies"), parts, plan.memory / 8);
  DifferentPatterns different(folder, plan);
  Records records(folder, plan, layout, pairs, parts);
  PatternColumns columns(std::move(records.members), std::move(records.counts), static_cast<unsigned>(pairs.end + 1));
  std::string bytes;
  for (std::size_t pair = pairs.first; pair < pairs.end; ++pair) {
    const auto type = static_cast<std::uint8_t>(pair + 1);
    columns.work_out(type, !different.takes_all());
    if (different.takes_all()) {
      different.add(type, columns.different());
    } else {
      const Positions positions(type);
      for (const std::uint32_t record : columns.records())
        different.add_one(type, positions,
                          [&](unsigned k) { return layout.code.member(columns.member(record, positions.at[k])); });
    }
    std::uint32_t record = 0;
    for (std::size_t part = 0; part < parts; ++part) {
      const std::uint32_t end = records.ends[part];
      bytes.resize((end - record) * longest_frequency);
      char* to = bytes.data();
      for (; record < end; ++record)
        to = put_short(to, columns.sums()[record]);
      frequencies.add(part, {bytes.data(), static_cast<std::size_t>(to - bytes.data())});
    }
    frequencies.end_pair();
    Progress::set(pair - pairs.first, pairs.end - pairs.first);
  }
  done.add_file("frequencies", frequencies.finish());
  different.save(done.manifest());
}

}  // namespace colx::scale
