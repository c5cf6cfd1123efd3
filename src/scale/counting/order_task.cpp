#include "scale/counting/order_task.h"

#include <algorithm>

#include <fmt/format.h>

#include "model/ngram_hash.h"
#include "scale/counting/arrange_task.h"
#include "scale/counting/listed_sort.h"
#include "scale/counting/patterns.h"
#include "scale/counting/records.h"
#include "scale/counting/records_writer.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// Count and first place of a record seldom take more bytes.
constexpr std::size_t usual_numbers_size = 7;

}  // namespace

std::string order_name(std::size_t part) {
  return fmt::format("order-{}", part);
}

std::uint64_t order_key(const WorkFolder& folder, const Plan& plan, const Part& part) {
  std::string key;
  append_fixed(key, part.first_range);
  append_fixed(key, part.end_range);
  for (std::size_t task = 0; task < plan.reduces; ++task)
    append_fixed(key, folder.mark(arrange_name(task)));
  return checksum(key);
}

void order(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Part& part, std::size_t number) {
  const std::string name = order_name(number);
  TaskResult done(folder, name, order_key(folder, plan, part));
  Listing listing(std::max<std::uint64_t>(layout.listed, 1));
  listing.set_growing_records(growing_places(folder, plan, layout));

  const std::size_t members_size = settings::n * NGram::Member::size;
  std::string bytes;
  bytes.reserve(part.records * (members_size + usual_numbers_size));
  for (std::size_t task = 0; task < plan.reduces; ++task) {
    SegmentReader file(folder.file(arrange_name(task), "arranged"), arranged_kind);
    for (std::size_t round = 0; round * layout.ranges < file.segments(); ++round) {
      file.stop_ahead_of(round * layout.ranges + part.end_range);
      for (std::size_t range = part.first_range; range < part.end_range; ++range)
        bytes.append(file.read(round * layout.ranges + range));
    }
  }
  std::vector<ListedEntry> entries;
  entries.reserve(part.records);
  Members members;
  const char* const end = bytes.data() + bytes.size();
  for (const char* from = bytes.data(); from != end;) {
    ListedEntry entry;
    entry.begin = static_cast<std::uint64_t>(from - bytes.data());
    load_members(from, settings::n, members);
    from += members_size;
    get_short(from);
    entry.first = get_short(from);
    entry.weak_hash = NGramHashCounter::count_hash({members.data(), settings::n});
    entry.bucket = listing.bucket(entry.weak_hash);
    entries.push_back(entry);
  }
  entries = sorted_by_listing(entries, listing);

  RecordsWriter ordered(folder.file(name, "ordered"), ordered_kind);
  std::vector<CountedRecord> records;
  if (!layout.whole) records.reserve(entries.size());
  for (const ListedEntry& entry : entries) {
    const char* const record = bytes.data() + entry.begin;
    const char* from = record + members_size;
    const std::uint64_t count = get_short(from);
    if (!layout.whole) records.push_back({record, count});
    char* const to = ordered.room(members_size + longest_short_number);
    std::copy(record, from, to);
    ordered.wrote_to(to + (from - record));
  }
  done.manifest().add("records", entries.size());
  std::vector<ListedEntry>().swap(entries);
  done.add_file("ordered", ordered.finish());
  if (!layout.whole)
    done.add_file("patterns",
                  write_patterns(folder.file(name, "patterns"), records, layout.partition_bits, RecordsWanted::yes));
  done.save();
}

}  // namespace colx::scale
