// The packed record: class-wide tables, how records are built from occurrences and from each other, and counting.

#include "model/ngram.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "corpus/dependencies.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Occurrence;
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
  EXPECT_EQ(record->members()[0].lemma(), 5U);
  EXPECT_EQ(record->members()[0].tag(), 255);
}

TEST(NGramTest, KeepsOnlySignificantPositions) {
  const SettingsGuard guard(3);
  const std::vector<MemberSpec> words = {{10, 1, 2}, {20, 2, 0}, {30, 3, 2}};
  const Record record(words, 5);
  EXPECT_EQ(record->type(), 5);
  ASSERT_EQ(record->members_count(), 2U);
  EXPECT_EQ(record->members()[0].lemma(), 10U);
  EXPECT_EQ(record->members()[1].lemma(), 30U);
  // The parent is position 2 of the occurrence, which is open here and still counts.
  EXPECT_EQ(record->members()[0].parent(), 2);
  EXPECT_EQ(record->members()[1].parent(), 2);
  EXPECT_EQ(record->members()[1].dependency(), relation("Atr"));
}

TEST(NGramTest, AMemberWhoseParentIsOutsideIsTheHeadWhateverItsRelation) {
  const SettingsGuard guard(2);
  const Record record({{1, 0, 2, "Obj"}, {2, 0, 0, "Obj"}}, 3);
  EXPECT_EQ(record->members()[0].dependency(), relation("Obj"));
  EXPECT_EQ(record->members()[1].dependency(), dependency::head);
  EXPECT_EQ(dependency::head, 96);
}

TEST(NGramTest, TheEmptyRecordHasNoMembers) {
  const SettingsGuard guard(3, true);
  const Record record({{1, 0, 2}, {2, 0, 0}, {3, 0, 2}}, 0);
  EXPECT_EQ(record.bytes(), (std::vector<unsigned>{1, 0, 0, 0}));
  EXPECT_EQ(record->members_count(), 0U);
}

TEST(NGramTest, ARecordFromAFullOneKeepsParentsAndTakesTheCounterOver) {
  const SettingsGuard guard(3);
  const Record full({{10, 1, 3, "Sb"}, {20, 2, 1}, {30, 3, 0}}, 7);
  full.set_counter(77);
  const Record part(*full, 3);
  EXPECT_EQ(part->type(), 3);
  EXPECT_EQ(part.counter(), 77U);
  EXPECT_FALSE(part.overflow_flag());
  EXPECT_EQ(part->members()[0], full->members()[1]);
  EXPECT_EQ(part->members()[1], full->members()[2]);
  EXPECT_EQ(part->members()[0].parent(), 1);
  EXPECT_EQ(*part, *Record({{10, 1, 3, "Sb"}, {20, 2, 1}, {30, 3, 0}}, 3));
}

TEST(NGramTest, ARecordFromAnOverflownOneIsFlagged) {
  const SettingsGuard guard(2);
  const Record full({{1, 0, 2}, {2, 0, 0}}, 3);
  full.set_counter(16777215);
  full->inc();
  EXPECT_TRUE(Record(*full, 1).overflow_flag());
  EXPECT_EQ(Record(*full, 1)->type(), 1);
}

TEST(NGramTest, EveryTypeFromAFullRecordEqualsTheOneFromTheOccurrence) {
  const SettingsGuard guard(7, true);
  const std::vector<MemberSpec> words = {{1, 1, 2}, {2, 2, 4}, {3, 3, 2}, {4, 4, 0}, {5, 5, 4}, {6, 6, 5}, {7, 7, 6}};
  const Record full(words, 127);
  for (std::uint8_t type = 0; type < 128; ++type) {
    EXPECT_EQ(*Record(*full, type), *Record(words, type)) << "type " << unsigned{type};
    EXPECT_EQ(*NGramToken::get(*full, type), *Record(words, type)) << "type " << unsigned{type};
    EXPECT_EQ(*NGramToken::get(Occurrence(words).members(), type), *Record(words, type)) << "type " << unsigned{type};
  }
}

TEST(NGramTest, ACopyHasHeaderAndMembersButNoContexts) {
  const SettingsGuard guard(2, true);
  const Record record({{1, 4, 2}, {2, 5, 0}}, 3);
  record.set_counter(12);
  record->add_to_context(PartOfContext(8, 0, false));
  const Record copy = Record::copy_of(*record);
  EXPECT_EQ(copy.counter(), 12U);
  EXPECT_EQ(*copy, *record);
  EXPECT_TRUE(test::contexts_of(*copy).empty());
  EXPECT_EQ(test::contexts_of(*record).size(), 1U);
}

TEST(NGramTest, AFullCounterStartsAgainAndCarriesWhatItHeld) {
  const SettingsGuard guard(2);
  const Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  record.set_counter(16777214);
  record->inc();
  EXPECT_EQ(record.counter(), 16777215U);
  EXPECT_FALSE(record.overflow_flag());
  EXPECT_EQ(record->frequency(), 16777215U);
  record->inc();
  EXPECT_EQ(record.counter(), 1U);
  EXPECT_TRUE(record.overflow_flag());
  EXPECT_EQ(record->type(), 3);
  EXPECT_EQ(NGram::_overflows.at(&*record), 16777215U);
  EXPECT_EQ(record->frequency(), 16777216U);
  // Once more: 2 x 16,777,215 carried and 1 counted.
  record.set_counter(16777215);
  record->inc();
  EXPECT_EQ(NGram::_overflows.at(&*record), 33554430U);
  EXPECT_EQ(record->frequency(), 33554431U);
}

TEST(NGramTest, CarriedAmountsAndFrequenciesSaturate) {
  const SettingsGuard guard(2);
  const Record record({{1, 0, 2}, {2, 0, 0}}, 3);
  record.set_counter(16777215);
  record->inc();
  NGram::_overflows[&*record] = 4294967295U - 16777215U;
  record.set_counter(16777215);
  record->inc();
  EXPECT_EQ(NGram::_overflows.at(&*record), 4294967295U);  // just reached
  EXPECT_EQ(record->frequency(), 4294967295U);             // and one more does not wrap
  record.set_counter(16777215);
  record->inc();
  EXPECT_EQ(NGram::_overflows.at(&*record), 4294967295U);
  NGram::_overflows[&*record] = 4294967295U - 16777214U;  // one short of room for a full counter
  record.set_counter(16777215);
  EXPECT_EQ(record->frequency(), 4294967295U);
  record->inc();
  EXPECT_EQ(NGram::_overflows.at(&*record), 4294967295U);
}

TEST(NGramTest, ChangingTheTypeKeepsTheOverflowFlag) {
  const SettingsGuard guard(3);
  const Record record({{1, 0, 2}, {2, 0, 0}, {3, 0, 2}}, 7);
  record->_type(5);
  EXPECT_EQ(record->type(), 5);
  EXPECT_FALSE(record.overflow_flag());
  record.set_counter(16777215);
  record->inc();
  record->_type(2);
  EXPECT_EQ(record->type(), 2);
  EXPECT_TRUE(record.overflow_flag());
}

TEST(NGramTest, TheTokenIsOverwrittenByTheNextCall) {
  const SettingsGuard guard(2);
  const NGram* const first = NGramToken::get(Occurrence({{1, 0, 2}, {2, 0, 0}}).members(), 3);
  const NGram* const second = NGramToken::get(Occurrence({{5, 0, 2}, {2, 0, 0}}).members(), 2);
  EXPECT_EQ(first, second);
  EXPECT_EQ(first->members()[0].lemma(), 5U);
}

TEST(NGramDeathTest, ThereIsNoTokenBeforeItsMemory) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process, in which nothing has been initialised
  EXPECT_EXIT(std::exit(NGramToken::get(MemberList{}, 0) == nullptr ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace colx
