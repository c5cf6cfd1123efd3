// The patterns of records come back, merged and record by record.

#include "scale/counting/patterns.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/support/random.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

constexpr unsigned partition_bits = 2;

class PatternsTest : public ::testing::Test {
 protected:
  PatternsTest() {
    // Few different members, so that patterns repeat.
    for (int i = 0; i < 500; ++i) {
      std::string& members = _members.emplace_back();
      for (unsigned m = 0; m < settings::n; ++m)
        members += std::string(5, '\0') + static_cast<char>('a' + _random.below(6));
      _records.push_back({nullptr, i % 7 == 0 ? 1000000U + static_cast<unsigned>(i) : 1U});
    }
    for (std::size_t i = 0; i < _members.size(); ++i) {
      _members[i] += "  ";  // members are read eight bytes at a time
      _records[i].members = _members[i].data();
    }
  }

  std::string pattern(std::size_t record, const Positions& positions) const {
    std::string text;
    for (unsigned k = 0; k < positions.count; ++k)
      text.append(_records[record].members + positions.at[k] * NGram::Member::size, NGram::Member::size);
    return text;
  }

  // The partition in which a pattern has to stand.
  static std::size_t partition_of(const std::string& pattern, const Positions& positions) {
    const std::string padded = pattern + "  ";
    std::size_t partition = 0;
    with_count(positions.count,
               [&]<unsigned K>() { partition = bucket_of(pattern_hash<K>(padded.data(), positions), partition_bits); });
    return partition;
  }

  const test::SettingsGuard _settings{3};
  test::Random _random;
  std::vector<std::string> _members;
  std::vector<CountedRecord> _records;
  const test::TemporaryFolder folder;
};

TEST_F(PatternsTest, EveryPatternHasTheSumOfItsRecordsAndEveryRecordItsPattern) {
  for (const RecordsWanted wanted : {RecordsWanted::yes, RecordsWanted::no}) {
    write_patterns(folder.path("patterns"), _records, partition_bits, wanted);
    SegmentReader file(folder.path("patterns"), patterns_kind);
    ASSERT_EQ(file.segments(), pairs_count(partition_bits));
    for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type) {
      const Positions positions(type);
      for (std::size_t partition = 0; partition < std::size_t{1} << partition_bits; ++partition) {
        std::map<std::string, std::uint64_t> sums;
        std::vector<std::string> of_records;
        for (std::size_t i = 0; i < _records.size(); ++i) {
          if (partition_of(pattern(i, positions), positions) != partition) continue;
          sums[pattern(i, positions)] += _records[i].count;
          of_records.push_back(pattern(i, positions));
        }
        if (wanted == RecordsWanted::no) of_records.clear();
        std::map<std::string, std::uint64_t> read;
        std::vector<std::string> patterns;
        std::vector<std::string> read_of_records;
        with_members_of(type, [&]<unsigned K>() {
          read_patterns<K>(
              file.read(pair_of(type, partition, partition_bits)),
              [&](const char* members, std::uint64_t count) {
                patterns.emplace_back(members, K * NGram::Member::size);
                EXPECT_TRUE(read.emplace(patterns.back(), count).second) << "twice";
              },
              [&](std::size_t number) { read_of_records.push_back(patterns.at(number)); });
        });
        EXPECT_EQ(read, sums) << "type " << unsigned{type} << ", partition " << partition;
        EXPECT_EQ(read_of_records, of_records);
      }
    }
  }
}

TEST_F(PatternsTest, WithoutRecordsSegmentsAreEmpty) {
  write_patterns(folder.path("patterns"), {}, partition_bits, RecordsWanted::yes);
  SegmentReader file(folder.path("patterns"), patterns_kind);
  ASSERT_EQ(file.segments(), pairs_count(partition_bits));
  for (std::size_t pair = 0; pair < file.segments(); ++pair)
    EXPECT_EQ(file.size(pair), 0U);
  read_patterns<1>(
      file.read(0), [](const char*, std::uint64_t) { ADD_FAILURE(); }, [](std::size_t) { ADD_FAILURE(); });
}

}  // namespace
}  // namespace colx::scale
