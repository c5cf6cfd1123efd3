// The frequencies of the patterns of records that are in memory.

#include "scale/counting/pattern_columns.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <vector>

#include "model/ngram.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx::scale {
namespace {

using Column = PatternColumns::Column;

class PatternColumnsTest : public ::testing::Test {
 protected:
  // Few different members, so that patterns repeat; large ones, so that all their bits count.
  void make(std::uint32_t size) {
    _members.assign(settings::n, {});
    _counts.clear();
    for (std::uint32_t i = 0; i < size; ++i) {
      for (Column& column : _members)
        column.push_back(0xFFFFFFFF - _random.below(4) * 0x40000001);
      _counts.push_back(1 + _random.below(1000));
    }
  }

  std::vector<std::uint32_t> pattern(std::uint8_t type, std::uint32_t record) const {
    std::vector<std::uint32_t> members;
    for (unsigned position = 0; position < settings::n; ++position)
      if (NGram::significant(type, position)) members.push_back(_members[position][record]);
    return members;
  }

  void check(PatternColumns& columns, std::uint8_t type, bool records_wanted) const {
    columns.work_out(type, records_wanted);
    std::map<std::vector<std::uint32_t>, std::uint32_t> sums;
    std::map<std::vector<std::uint32_t>, std::uint32_t> first;
    for (std::uint32_t i = 0; i < _counts.size(); ++i) {
      sums[pattern(type, i)] += _counts[i];
      first.emplace(pattern(type, i), i);
    }
    ASSERT_EQ(columns.different(), sums.size()) << "type " << unsigned{type};
    for (std::uint32_t i = 0; i < _counts.size(); ++i)
      ASSERT_EQ(columns.sums()[i], sums[pattern(type, i)]) << "type " << unsigned{type} << ", record " << i;
    if (!records_wanted) return;
    ASSERT_EQ(columns.records().size(), sums.size());
    for (const std::uint32_t record : columns.records())
      EXPECT_EQ(first.erase(pattern(type, record)), 1U);
  }

  const test::SettingsGuard _settings{5};
  test::Random _random;
  std::vector<Column> _members;
  Column _counts;
};

TEST_F(PatternColumnsTest, EveryRecordHasTheSumOfItsPattern) {
  make(700);
  for (const bool records_wanted : {false, true}) {
    PatternColumns columns(_members, _counts, NGram::_full_ngram_type);
    for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type)
      check(columns, type, records_wanted);
  }
}

TEST_F(PatternColumnsTest, AnyRangeOfTypesWillDo) {
  make(150);
  for (std::uint8_t first = 1; first < NGram::_full_ngram_type; ++first) {
    for (const unsigned end : {first + 1U, first + 5U, unsigned{NGram::_full_ngram_type}}) {
      if (end > NGram::_full_ngram_type) continue;
      PatternColumns columns(_members, _counts, end);
      for (std::uint8_t type = first; type < end; ++type)
        check(columns, type, _random.once_in(3));
    }
  }
}

TEST_F(PatternColumnsTest, WithoutRecordsThereIsNoPattern) {
  make(0);
  PatternColumns columns(_members, _counts, NGram::_full_ngram_type);
  for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type)
    check(columns, type, true);
}

}  // namespace
}  // namespace colx::scale
