// The member lines of records.

#include "output/members.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/own_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::MemberSpec;
using test::Record;

class MembersTest : public ::testing::Test {
 protected:
  MembersTest() {
    for (const char* const lemma : {"heavy", "rain", "fall"})
      _stores.lemmas.store(lemma);
    for (const char* const tag : {"AA", "NN", ""})
      _stores.tags.store(tag);
  }

  std::string n_members(std::uint8_t type) {
    std::ostringstream os;
    TextBuffer text(os);
    _print_n_members(text, _stores.texts(), *Record(words, type));
    text.flush();
    return os.str();
  }

  std::string members(std::uint8_t type) {
    std::ostringstream os;
    TextBuffer text(os);
    _print_members(text, _stores.texts(), *Record(words, type));
    text.flush();
    return os.str();
  }

  // heavy <- rain <- fall, fall having an empty tag and its parent outside.
  inline static const std::vector<MemberSpec> words = {{0, 0, 2, "Atr"}, {1, 1, 3, "Sb_Co"}, {2, 2, 0, "Pred"}};

  test::SettingsGuard _guard{3};
  test::OwnStores _stores;
};

TEST_F(MembersTest, PositionsAndParentsAreWrittenAsNumbers) {
  std::ostringstream os;
  TextBuffer text(os);
  _print_member(text, _stores.texts(), 7, NGram::Member(1, 1, 6, test::relation("Obj")));
  text.flush();
  EXPECT_EQ(os.str(), "7\train\tNN\t6\tObj\n");
}

TEST_F(MembersTest, AFullRecordHasALineForEveryPosition) {
  const std::string lines = "1\theavy\tAA\t2\tAtr\n2\train\tNN\t3\tSb_Co\n3\tfall\t\t0\tHead\n";
  EXPECT_EQ(n_members(7), lines);
  EXPECT_EQ(members(7), lines);
}

TEST_F(MembersTest, AnOpenPositionIsAStar) {
  EXPECT_EQ(n_members(5), "1\theavy\tAA\t2\tAtr\n2\t*\n3\tfall\t\t0\tHead\n");
  EXPECT_EQ(n_members(2), "1\t*\n2\train\tNN\t3\tSb_Co\n3\t*\n");
  EXPECT_EQ(n_members(0), "1\t*\n2\t*\n3\t*\n");
}

TEST_F(MembersTest, StoredMembersAloneAreNumberedFromOne) {
  EXPECT_EQ(members(5), "1\theavy\tAA\t2\tAtr\n2\tfall\t\t0\tHead\n");
  EXPECT_EQ(members(1), "1\tfall\t\t0\tHead\n");
  EXPECT_EQ(members(0), "");
}

}  // namespace
}  // namespace colx
