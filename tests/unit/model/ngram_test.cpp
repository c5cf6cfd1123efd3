// The packed record: class-wide tables, how records are built from occurrences and from each other, and counting.

#include "model/ngram.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "corpus/dependencies.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Record;
using test::relation;
using test::SettingsGuard;

using Counts = std::vector<std::uint8_t>;
using Sizes = std::vector<std::uint32_t>;

TEST(NGramTest, TablesOfPairs) {
  const SettingsGuard guard(2);
  EXPECT_EQ(NGram::_types_count, 4);
  EXPECT_EQ(NGram::_full_ngram_type, 3);
  EXPECT_EQ(NGram::_members_count, (Counts{0, 1, 1, 2}));
  EXPECT_EQ(NGram::_ngrams_memory_sizes, (Sizes{4, 10, 16}));
}

TEST(NGramTest, ContextsTakeTwelveBytesInEveryRecordWithMembers) {
  const SettingsGuard guard(2, true);
  EXPECT_EQ(NGram::_members_count, (Counts{0, 1, 1, 2}));
  EXPECT_EQ(NGram::_ngrams_memory_sizes, (Sizes{4, 22, 28}));
}

TEST(NGramTest, TablesOfSeptuplesFitTheSevenTypeBits) {
  const SettingsGuard guard(7);
  EXPECT_EQ(NGram::_types_count, 128);
  EXPECT_EQ(NGram::_full_ngram_type, 127);
  EXPECT_EQ(NGram::_full_ngram_type & NGram::_type_mask, 127);
  EXPECT_EQ(NGram::_members_count.size(), 128U);
  EXPECT_EQ(NGram::_members_count[127], 7);
  EXPECT_EQ(NGram::_members_count[0b1010001], 3);
  EXPECT_EQ(NGram::_ngrams_memory_sizes, (Sizes{4, 10, 16, 22, 28, 34, 40, 46}));
}

TEST(NGramTest, TheHighestBitOfATypeIsTheFirstWord) {
  const SettingsGuard guard(3);
  EXPECT_TRUE(NGram::significant(4, 0));
  EXPECT_FALSE(NGram::significant(4, 1));
  EXPECT_FALSE(NGram::significant(4, 2));
  EXPECT_TRUE(NGram::significant(1, 2));
}

TEST(NGramTest, ARecordIsPackedByteByByte) {
  const SettingsGuard guard(2);
  const Record record({{0x030201, 7, 2, "Obj"}, {0x0C0B0A, 9, 1, "Atr"}}, 3);
  // Header: frequency 1, type 3. Member: three bytes of lemma, tag, parent, relation.
  EXPECT_EQ(record.bytes(), (std::vector<unsigned>{1, 0, 0, 3, 0x01, 0x02, 0x03, 7, 2, relation("Obj"),  //
                                                   0x0A, 0x0B, 0x0C, 9, 1, relation("Atr")}));
}

TEST(NGramTest, ContextTailOfANewRecordIsCleared) {
  const SettingsGuard guard(2, true);
  const Record record({{1, 0, 2}, {2, 0, 0}}, 1);
  const std::vector<unsigned> bytes = record.bytes();
  ASSERT_EQ(bytes.size(), 22U);
  EXPECT_EQ(std::vector<unsigned>(bytes.begin() + 10, bytes.end()), std::vector<unsigned>(12, 0));
}

TEST(NGramTest, LemmaIndexesKeepTheirLowest24Bits) {
  const SettingsGuard guard(2);
  const Record record({{0x1000005, 255, 2}, {0, 0, 0}}, 2);
  EXPECT_EQ(record->member(0).lemma(), 5U);
  EXPECT_EQ(record->member(0).tag(), 255);
}

TEST(NGramTest, KeepsOnlySignificantPositions) {
  const SettingsGuard guard(3);
  const std::vector<MemberSpec> words = {{10, 1, 2}, {20, 2, 0}, {30, 3, 2}};
  const Record record(words, 5);
  EXPECT_EQ(record->type(), 5);
  ASSERT_EQ(record->members_count(), 2U);
  EXPECT_EQ(record->member(0).lemma(), 10U);
  EXPECT_EQ(record->member(1).lemma(), 30U);
  // The parent is position 2 of the occurrence, which is open here and still counts.
  EXPECT_EQ(record->member(0).parent(), 2);
  EXPECT_EQ(record->member(1).parent(), 2);
  EXPECT_EQ(record->member(1).dependency(), relation("Atr"));
}

TEST(NGramTest, AMemberWhoseParentIsOutsideIsTheHeadWhateverItsRelation) {
  const SettingsGuard guard(2);
  const Record record({{1, 0, 2, "Obj"}, {2, 0, 0, "Obj"}}, 3);
  EXPECT_EQ(record->member(0).dependency(), relation("Obj"));
  EXPECT_EQ(record->member(1).dependency(), dependency::head);
  EXPECT_EQ(dependency::head, 96);
}

TEST(NGramTest, TheEmptyRecordHasNoMembers) {
  const SettingsGuard guard(3, true);
  const Record record({{1, 0, 2}, {2, 0, 0}, {3, 0, 2}}, 0);
  EXPECT_EQ(record.bytes(), (std::vector<unsigned>{1, 0, 0, 0}));
  EXPECT_EQ(record->members_count(), 0U);
}

TEST(NGramTest, AMemberIsSixBytesInEitherDirection) {
  const unsigned char bytes[6] = {0x01, 0x02, 0x83, 0xFE, 7, 117};
  const NGram::Member member = NGram::Member::load(bytes);
  EXPECT_EQ(member.lemma(), 0x830201U);
  EXPECT_EQ(member.tag(), 0xFE);
  EXPECT_EQ(member.parent(), 7);
  EXPECT_EQ(member.dependency(), 117);
  EXPECT_EQ(member, NGram::Member(0x830201, 0xFE, 7, 117));
  unsigned char stored[8] = {0, 0, 0, 0, 0, 0, 0xAB, 0xAB};
  member.store(stored);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(stored[i], bytes[i]) << i;
  EXPECT_EQ(stored[6], 0xAB);
}

TEST(NGramTest, EveryTypeKeepsTheMembersOfTheFullRecord) {
  const SettingsGuard guard(7, true);
  const std::vector<MemberSpec> words = {{1, 1, 2}, {2, 2, 4}, {3, 3, 2}, {4, 4, 0}, {5, 5, 4}, {6, 6, 5}, {7, 7, 6}};
  const Record full(words, 127);
  for (std::uint8_t type = 0; type < 128; ++type) {
    const Record part(words, type);
    unsigned next = 0;
    for (unsigned i = 0; i < 7; ++i) {
      if (!NGram::significant(type, i)) continue;
      ASSERT_EQ(part->member(next++), full->member(i)) << "type " << unsigned{type};
    }
    ASSERT_EQ(next, part->members_count());
  }
}

TEST(NGramTest, AFullCounterStartsAgainAndCarriesWhatItHeld) {
  const SettingsGuard guard(2);
  Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  record.set_counter(16777214);
  record.inc();
  EXPECT_EQ(record.counter(), 16777215U);
  EXPECT_FALSE(record.overflow_flag());
  EXPECT_EQ(record.frequency(), 16777215U);
  record.inc();
  EXPECT_EQ(record.counter(), 1U);
  EXPECT_TRUE(record.overflow_flag());
  EXPECT_EQ(record->type(), 3);
  EXPECT_EQ(record.overflows.at(&*record), 16777215U);
  EXPECT_EQ(record.frequency(), 16777216U);
  // Once more: 2 x 16,777,215 carried and 1 counted.
  record.set_counter(16777215);
  record.inc();
  EXPECT_EQ(record.overflows.at(&*record), 33554430U);
  EXPECT_EQ(record.frequency(), 33554431U);
}

TEST(NGramTest, CarriedAmountsAndFrequenciesSaturate) {
  const SettingsGuard guard(2);
  Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  record.set_counter(16777215);
  record.inc();
  record.carried() = 4294967295U - 16777215U;
  record.set_counter(16777215);
  record.inc();
  EXPECT_EQ(record.overflows.at(&*record), 4294967295U);  // just reached
  EXPECT_EQ(record.frequency(), 4294967295U);             // and one more does not wrap
  record.set_counter(16777215);
  record.inc();
  EXPECT_EQ(record.overflows.at(&*record), 4294967295U);
  record.carried() = 4294967295U - 16777214U;  // one short of room for a full counter
  record.set_counter(16777215);
  EXPECT_EQ(record.frequency(), 4294967295U);
  record.inc();
  EXPECT_EQ(record.overflows.at(&*record), 4294967295U);
}

// All that is near the places where counters start again and carried amounts end, and anything between.
TEST(NGramTest, ANumberOfOccurrencesIsAddedAsOneByOne) {
  const SettingsGuard guard(2);
  test::Random random;
  constexpr std::uint32_t largest = 4294967295U;
  for (int round = 0; round < 300; ++round) {
    Record at_once({{1, 0, 2}, {2, 0, 0}}, 3), one_by_one({{1, 0, 2}, {2, 0, 0}}, 3);
    const std::uint32_t counter = random.once_in(2) ? 16777215 - random.below(5) : 1 + random.below(5);
    const bool carried = random.once_in(2);
    const std::uint32_t almost = largest - 16777215 + 5 - random.below(10);
    for (Record* const record : {&at_once, &one_by_one}) {
      if (carried) {
        record->set_counter(16777215);
        record->inc();
        record->carried() = almost;
      }
      record->set_counter(counter);
    }
    const std::uint32_t occurrences = random.below(10);
    at_once.add(occurrences);
    for (std::uint32_t i = 0; i < occurrences; ++i)
      one_by_one.inc();
    ASSERT_EQ(at_once.bytes(), one_by_one.bytes()) << counter << " and " << occurrences;
    ASSERT_EQ(at_once.overflows[&*at_once], one_by_one.overflows[&*one_by_one]);
    ASSERT_EQ(at_once.frequency(), one_by_one.frequency());
  }
}

TEST(NGramTest, ANumberOfOccurrencesMayFillTheCounterManyTimes) {
  const SettingsGuard guard(2);
  Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  record.add(16777214);  // full
  EXPECT_FALSE(record.overflow_flag());
  record.add(2 * 16777215);  // full again, for the third time
  EXPECT_TRUE(record.overflow_flag());
  EXPECT_EQ(record.counter(), 16777215U);
  EXPECT_EQ(record.carried(), 2 * 16777215U);
  EXPECT_EQ(record->type(), 3);
  record.add(4294967295U);
  EXPECT_EQ(record.carried(), 4294967295U);
  EXPECT_EQ(record.frequency(), 4294967295U);
}

TEST(NGramTest, TheOverflowFlagIsNoPartOfTheType) {
  const SettingsGuard guard(7);
  Record record({{1}, {2}, {3}, {4}, {5}, {6}, {7}}, 127);
  record.set_counter(16777215);
  record.inc();
  EXPECT_TRUE(record.overflow_flag());
  EXPECT_EQ(record->type(), 127);
  EXPECT_EQ(record->members_count(), 7U);
}

}  // namespace
}  // namespace colx
