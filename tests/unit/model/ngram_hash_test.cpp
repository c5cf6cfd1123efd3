// The weak hash: its fields for every number of members, worked out by hand and against its definition.

#include "model/ngram_hash.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Record;
using test::SettingsGuard;

std::uint32_t hash_of(const std::vector<MemberSpec>& words, std::uint8_t type) {
  const Record record(words, type);
  return NGramHashCounter::count_hash(*record, record->members_count());
}

TEST(NGramHashTest, HashesNGramsOfUpToEightMembers) {
  EXPECT_TRUE(NGramHashCounter::check(2));
  EXPECT_TRUE(NGramHashCounter::check(7));
  EXPECT_TRUE(NGramHashCounter::check(8));
  EXPECT_FALSE(NGramHashCounter::check(9));
}

TEST(NGramHashTest, TheEmptyRecordHashesToTheSeed) {
  const SettingsGuard guard(2);
  EXPECT_EQ(hash_of({{1, 0, 2}, {2, 0, 0}}, 0), 0xDEADBEEFU);
}

TEST(NGramHashTest, OneMemberGivesItsLemmaAndItsRelation) {
  const SettingsGuard guard(2);
  // Head is 96: (96 & 0x7C) << 24 | 5 = 0x60000005, and 0xDEADBEEF ^ 0x60000005 = 0xBEADBEEA.
  EXPECT_EQ(hash_of({{5, 0, 0, "Obj"}, {9, 0, 1}}, 2), 0xBEADBEEAU);
}

TEST(NGramHashTest, TwoMembersShareTheHashByHalves) {
  const SettingsGuard guard(2);
  // Obj is 97: ((97 & 0xC) | (2 & 3)) << 12 | 0x123 & 0xFFF = 0x2123 below,
  // Head: ((96 & 0xC) | 0) << 12 | 0x1ABC & 0xFFF = 0x0ABC above; 0xDEADBEEF ^ 0x0ABC2123 = 0xD4119FCC.
  EXPECT_EQ(test::relation("Obj"), 97);
  EXPECT_EQ(hash_of({{0x123, 0, 2, "Obj"}, {0x1ABC, 0, 0, "Sb"}}, 3), 0xD4119FCCU);
}

TEST(NGramHashTest, TagsDoNotCount) {
  const SettingsGuard guard(3);
  const std::vector<MemberSpec> words = {{1, 0, 2}, {2, 0, 0}, {3, 0, 2}};
  std::vector<MemberSpec> retagged = words;
  for (MemberSpec& word : retagged)
    word.tag = 200;
  for (std::uint8_t type = 1; type < 8; ++type)
    EXPECT_EQ(hash_of(words, type), hash_of(retagged, type)) << "type " << unsigned{type};
}

// The definition, by number of members.
struct Row {
  unsigned bits_per_member;
  std::uint32_t lemma_bitmask;
  std::uint32_t dependency_bitmask;
  std::uint32_t parent_bitmask;
  unsigned dp_shift;
};
constexpr std::array<Row, 8> rows = {{{0, 0x0, 0x0, 0x0, 0},
                                      {32, 0xFFFFFF, 0x7C, 0x3, 24},
                                      {16, 0xFFF, 0xC, 0x3, 12},
                                      {11, 0xFF, 0x1C, 0x0, 6},
                                      {8, 0x3F, 0xC, 0x0, 4},
                                      {7, 0x3F, 0x4, 0x0, 4},
                                      {6, 0x3F, 0x0, 0x0, 0},
                                      {5, 0x1F, 0x0, 0x0, 0}}};

// Hashes members in 64 bits, of which the lower half is the hash.
std::uint32_t plain_hash(const std::vector<MemberSpec>& members) {
  const Row& row = rows[members.size()];
  std::uint64_t hash = 0xDEADBEEF;
  unsigned offset = 0;
  for (const MemberSpec& member : members) {
    const std::uint32_t code = member.parent == 0 ? 96 : test::relation(member.dependency);
    std::uint64_t field = (code & row.dependency_bitmask) | (member.parent & row.parent_bitmask);
    field = (field << row.dp_shift) | (member.lemma & row.lemma_bitmask);
    hash ^= field << offset;
    offset += row.bits_per_member;
  }
  return static_cast<std::uint32_t>(hash);
}

TEST(NGramHashTest, FollowsItsDefinitionForEveryNumberOfMembers) {
  constexpr std::array<const char*, 6> relations = {"Adv", "AuxP_Co", "Coord", "Obj_Pa", "Sb", "Undef"};
  const SettingsGuard guard(7);
  for (unsigned seed = 1; seed <= 3; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int i = 0; i < 3000; ++i) {
      std::vector<MemberSpec> words;
      for (int m = 0; m < 7; ++m) {
        words.push_back({static_cast<std::uint32_t>(random() & 0xFFFFFF), static_cast<std::uint8_t>(random() & 0xFF),
                         static_cast<std::uint8_t>(random() % 8), relations[random() % relations.size()]});
      }
      const auto type = static_cast<std::uint8_t>(random() % 128);
      std::vector<MemberSpec> kept;
      for (std::size_t m = 0; m < 7; ++m) {
        if ((type >> (6 - m) & 1) != 0) kept.push_back(words[m]);
      }
      ASSERT_EQ(hash_of(words, type), plain_hash(kept)) << "type " << unsigned{type};
    }
  }
}

}  // namespace
}  // namespace colx
