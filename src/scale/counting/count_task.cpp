#include "scale/counting/count_task.h"

#include <algorithm>

#include <fmt/format.h>

#include "scale/counting/arrange_task.h"
#include "scale/counting/different_patterns.h"
#include "scale/counting/frequencies.h"
#include "scale/counting/order_task.h"
#include "scale/counting/patterns.h"
#include "scale/counting/sum_table.h"
#include "scale/counting/whole_count.h"
#include "scale/engine/progress.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// Counts the patterns of some pairs.
class PatternCounter {
 public:
  PatternCounter(const WorkFolder& folder, const Plan& plan, const Layout& layout, std::size_t parts,
                 const std::string& name)
      : _plan(plan),
        _layout(layout),
        _parts(parts),
        _frequencies(folder.file(name, "frequencies"), parts, plan.memory / 8),
        _different(folder, plan) {
    std::vector<std::string> paths;
    for (std::size_t part = 0; part < parts; ++part)
      paths.push_back(folder.file(order_name(part), "patterns"));
    for (std::size_t task = 0; task < plan.reduces; ++task) {
      const std::size_t rounds = ArrangeResult::from(folder.result(arrange_name(task))).refused_rounds;
      for (std::size_t round = 0; round < rounds; ++round)
        paths.push_back(folder.file(arrange_name(task), refused_patterns(round)));
    }
    const std::size_t all = std::max<std::size_t>(paths.size(), 1);
    const std::size_t buffer = std::clamp<std::size_t>(plan.memory / 4 / all, 4096, 1 << 18);
    for (const std::string& path : paths)
      _files.emplace_back(path, patterns_kind, buffer, SegmentReader::hold_for(all));
  }

  void run(const Pairs& pairs, TaskResult& done) {
    for (SegmentReader& file : _files)
      file.stop_ahead_of(pairs.end);
    for (std::size_t pair = pairs.first; pair < pairs.end; ++pair) {
      const auto type = static_cast<std::uint8_t>((pair >> _layout.partition_bits) + 1);
      with_members_of(type, [&]<unsigned K>() { _count<K>(type, pair); });
      Progress::set(pair - pairs.first, pairs.end - pairs.first);
    }
    done.add_file("frequencies", _frequencies.finish());
    _different.save(done.manifest());
  }

 private:
  // How many patterns are numbered at the most, instead of being looked up once more.
  std::size_t _most_numbers() const { return _plan.memory / 8 / sizeof(std::uint32_t); }

  // Reads what a file has of a pair. `take` gets the number in the table of the pattern of each record.
  template <unsigned K, typename Take>
  void _read(SegmentReader& file, std::size_t pair, const Positions& positions, SumTable<K>& table, bool adding,
             const Take& take) {
    _local.clear();
    read_patterns<K>(
        file.read(pair),
        [&](const char* members, std::uint64_t count) {
          const std::uint32_t number = table.find_or_add(pattern_hash<K>(members, positions), members);
          if (adding) table[number].count += count;
          _local.push_back(number);
        },
        [&](std::size_t local) { take(_local[local]); });
  }

  template <unsigned K>
  void _count(std::uint8_t type, std::size_t pair) {
    constexpr std::size_t size = K * NGram::Member::size;
    const Positions positions(type);
    static SumTable<K> table;
    std::uint64_t bytes = 0;
    for (const SegmentReader& file : _files)
      bytes += file.size(pair);
    table.clear(static_cast<std::size_t>(bytes / (size + 1) / 2));
    bool numbered = true;
    _numbers.clear();
    _ends.clear();
    for (SegmentReader& file : _files) {
      _read<K>(file, pair, positions, table, true, [&](std::uint32_t number) {
        if (numbered) _numbers.push_back(number);
      });
      _ends.push_back(_numbers.size());
      if (_numbers.size() > _most_numbers()) numbered = false;
    }
    _count_different(type, positions, table);

    std::size_t next = 0;
    for (std::size_t part = 0; part < _parts; ++part) {
      _out.clear();
      const auto put = [&](std::uint32_t number) { append_short(_out, table[number].count); };
      if (numbered) {
        for (; next < _ends[part]; ++next)
          put(_numbers[next]);
      } else {
        _read<K>(_files[part], pair, positions, table, false, put);
      }
      _frequencies.add(part, _out);
    }
    _frequencies.end_pair();
  }

  template <unsigned K>
  void _count_different(std::uint8_t type, const Positions& positions, const SumTable<K>& table) {
    if (_different.takes_all()) return _different.add(type, table.size());
    for (const Sum<K>& sum : table.sums())
      _different.add_one(type, positions,
                         [&](unsigned k) { return member_at(reinterpret_cast<const char*>(sum.members), k); });
  }

  const Plan& _plan;
  const Layout& _layout;
  std::size_t _parts;
  std::vector<SegmentReader> _files;
  FrequenciesWriter _frequencies;
  DifferentPatterns _different;
  std::vector<std::uint32_t> _local;    // of the patterns of a segment, their numbers in the table
  std::vector<std::uint32_t> _numbers;  // record by record
  std::vector<std::size_t> _ends;       // in the numbers, file by file
  std::string _out;
};

}  // namespace

std::vector<Pairs> count_tasks(const Plan& plan, const Layout& layout) {
  const std::size_t pairs = pairs_count(layout.partition_bits);
  // Each of few tasks with all records in memory has less to find out again about those before it.
  const std::size_t tasks = std::clamp<std::size_t>(layout.whole ? plan.reduces : plan.reduces * 2, 1, pairs);
  std::vector<Pairs> list;
  for (std::size_t task = 0; task < tasks; ++task)
    list.push_back({pairs * task / tasks, pairs * (task + 1) / tasks});
  return list;
}

std::string count_name(std::size_t task) {
  return fmt::format("count-{}", task);
}

std::uint64_t count_key(const WorkFolder& folder, const Plan& plan, const Pairs& pairs, std::size_t parts) {
  std::string key;
  append_fixed(key, pairs.first);
  append_fixed(key, pairs.end);
  for (std::size_t part = 0; part < parts; ++part)
    append_fixed(key, folder.mark(order_name(part)));
  for (std::size_t task = 0; task < plan.reduces; ++task)
    append_fixed(key, folder.mark(arrange_name(task)));
  return checksum(key);
}

std::vector<std::uint64_t> records_by_type(const WorkFolder& folder, const Plan& plan, const Layout& layout) {
  std::vector<std::uint64_t> records(NGram::_types_count, 0);
  records[NGram::_full_ngram_type] = layout.listed;
  for (std::size_t task = 0; task < count_tasks(plan, layout).size(); ++task) {
    const std::vector<Manifest::Fields> lines = folder.result(count_name(task)).all("different");
    for (std::size_t type = 1; type < NGram::_full_ngram_type; ++type)
      records[type] += to_number(lines.at(type).at(1));
  }
  return records;
}

void count_patterns(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Pairs& pairs,
                    std::size_t parts, std::size_t number) {
  TaskResult done(folder, count_name(number), count_key(folder, plan, pairs, parts));
  if (layout.whole) {
    count_whole(folder, plan, layout, pairs, parts, count_name(number), done);
  } else {
    PatternCounter(folder, plan, layout, parts, count_name(number)).run(pairs, done);
  }
  done.save();
}

}  // namespace colx::scale
