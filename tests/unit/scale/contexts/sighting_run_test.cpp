// Runs of occurrences: what is written of a record are all words seen around it.

#include "scale/contexts/sighting_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "corpus/datafile_format.h"
#include "scale/contexts/seen_words_coding.h"
#include "scale/counting/patterns.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

using Words = std::vector<std::uint32_t>;

// A record by type and members, and what was seen around it in the order of sighting.
using Key = std::tuple<std::uint8_t, std::vector<std::uint64_t>>;
struct Seen {
  std::uint64_t first = 0;
  Words narrow;
  Words wide;
};
using AllSeen = std::map<Key, Seen>;

std::vector<SeenWord> folded(const Words& sightings) {
  SeenWords list;
  list.clear();
  std::for_each(sightings.rbegin(), sightings.rend(), [&](std::uint32_t word) { list.add(word, 1); });
  return {list.words().begin(), list.words().end()};
}

std::vector<SeenWord> read_words(const char*& from) {
  std::vector<SeenWord> words;
  for_each_seen_word(from, [&](std::uint32_t word, std::uint32_t count) { words.push_back({word, count}); });
  return words;
}

// Pairs of few different words among random ones.
class SightingRunTest : public ::testing::Test {
 protected:
  SightingRunTest() : _tags(longest_text), _filter(_rules, _tags) {}

  // Fills a run, and notes what it should hold.
  AllSeen fill(SightingRun& run, std::uint64_t first, std::uint32_t occurrences) {
    Words words(30);
    for (std::uint32_t& word : words)
      run.add_word(word = _random.below(12));
    AllSeen seen;
    for (OccurrenceBatch batch; occurrences > 0; batch.clear()) {
      std::vector<Sighting> sightings;
      for (; occurrences > 0 && !batch.full(); --occurrences) {
        Sighting& sighting = sightings.emplace_back();
        sighting.begin = _random.below(20);
        sighting.end = sighting.begin + 1 + _random.below(10);
        sighting.words[0] = _random.below(15);
        sighting.words[1] = _random.once_in(4) ? Sighting::none : 15 + _random.below(15);
        sighting.left = _random.once_in(3) ? Sighting::none : _random.below(5);
        sighting.right = _random.once_in(3) ? Sighting::none : _random.below(5);
        batch.add();
        const NGram::Member members[] = {{_random.below(3), 0, 0, 0}, {_random.below(3), 0, 1, 2}};
        batch.set_last(0, members[0]);
        batch.set_last(1, members[1]);
        for (std::uint8_t type = 1; type <= 3; ++type)
          _note(seen, type, members, sighting, words, first + sightings.size() - 1);
      }
      run.take(batch, sightings, first);
      first += batch.size();
    }
    return seen;
  }

  void expect(const std::string& path, unsigned bits, const AllSeen& seen) {
    SegmentReader file(path, sightings_kind);
    ASSERT_EQ(file.segments(), std::size_t{3} << bits);
    std::size_t records = 0;
    for (std::size_t pair = 0; pair < file.segments(); ++pair) {
      const auto type = static_cast<std::uint8_t>((pair >> bits) + 1);
      const Positions positions(type);
      const std::string segment(file.read(pair));
      for (const char* from = segment.data(); from != segment.data() + segment.size(); ++records) {
        ASSERT_EQ(partition_of_pattern(from, positions, bits), pair & ((std::size_t{1} << bits) - 1));
        Key key{type, {}};
        for (unsigned m = 0; m < positions.count; ++m, from += NGram::Member::size)
          std::get<1>(key).push_back(member_at(from, 0).bits());
        const Seen& expected = seen.at(key);
        ASSERT_EQ(get_short(from), expected.first);
        if (type == 3) {
          ASSERT_EQ(read_words(from), folded(expected.narrow));
        }
        ASSERT_EQ(read_words(from), folded(expected.wide));
      }
    }
    EXPECT_EQ(records, seen.size());
  }

  const test::SettingsGuard _guard{2, true};
  test::Random _random;
  StringStore<std::uint8_t> _tags;
  MultiRulesFilter _rules;
  MorphologicFilter _filter;
  const test::TemporaryFolder _folder;

 private:
  static std::size_t partition_of_pattern(const char* members, const Positions& positions, unsigned bits) {
    std::uint64_t hash = 0;
    for (unsigned m = 0; m < positions.count; ++m)
      hash += member_hash(member_at(members, m), positions.at[m]);
    return bucket_of(hash, bits);
  }

  static void _note(AllSeen& seen, std::uint8_t type, const NGram::Member* members, const Sighting& sighting,
                    const Words& words, std::uint64_t number) {
    Key key{type, {}};
    for (unsigned m = 0; m < 2; ++m)
      if (NGram::significant(type, m)) std::get<1>(key).push_back(members[m].bits());
    const auto [found, is_new] = seen.try_emplace(key);
    Seen& record = found->second;
    if (is_new) record.first = number;
    for (const std::uint32_t word : {sighting.left, sighting.right})
      if (word != Sighting::none) record.narrow.push_back(word);
    for (std::uint32_t place = sighting.begin; place < sighting.end; ++place) {
      const bool own = (NGram::significant(type, 0) && place == sighting.words[0]) ||
                       (NGram::significant(type, 1) && place == sighting.words[1]);
      if (!own) record.wide.push_back(words[place]);
    }
  }
};

TEST_F(SightingRunTest, HasTheWordsAroundEveryRecordOfEveryType) {
  SightingRun run(1 << 20, _filter);
  for (const unsigned bits : {0U, 3U}) {
    const AllSeen seen = fill(run, 1000, 600);
    EXPECT_FALSE(run.empty());
    std::vector<std::uint64_t> bytes(4, 0);
    run.write(_folder.path("run"), bits, bytes);
    EXPECT_TRUE(run.empty());
    EXPECT_EQ(run.words(), 0U);
    expect(_folder.path("run"), bits, seen);
    std::uint64_t all = 0;
    SegmentReader file(_folder.path("run"), sightings_kind);
    for (std::size_t i = 0; i < file.segments(); ++i)
      all += file.size(i);
    EXPECT_EQ(bytes[1] + bytes[2] + bytes[3], all);
  }
}

TEST_F(SightingRunTest, IsFullWhenTheMemoryIsAndHasRoomForABatchAtLeast) {
  SightingRun small(1, _filter);
  EXPECT_FALSE(small.full());
  fill(small, 0, 1);
  EXPECT_TRUE(small.full());
  SightingRun large(1 << 20, _filter);
  fill(large, 0, 5000);
  EXPECT_FALSE(large.full());
  fill(large, 5000, 30000);
  EXPECT_TRUE(large.full());
}

TEST_F(SightingRunTest, IsFullOfWordsAlone) {
  SightingRun run(1, _filter);
  for (int i = 0; i < 5000; ++i)
    run.add_word(1);
  EXPECT_TRUE(run.full());
  run.forget_words();
  EXPECT_FALSE(run.full());
}

}  // namespace
}  // namespace colx::scale
