#include "rows/chosen_rows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

std::string _pair(const std::string& lemma, int frequency) {
  return "1\t" + lemma + "\tA\t2\tAtr\n2\train\tN\t0\tHead\n40\t1\t1\t" + std::to_string(frequency) +
         "\n1\t1\t1\t1\t1\t1\n\n";
}

// Lemmas of the rows that are chosen of four, and how many were read of them.
std::vector<std::string> _chosen(RowChoice choice, std::uint64_t& found, std::uint64_t& admitted) {
  const test::TemporaryFolder folder;
  BlockReader reader(
      folder.write("pairs", _pair("heavy", 3) + _pair("cold", 5) + _pair("warm", 1) + _pair("acid", 4) + "\n"));
  make_filters(choice);
  ChosenRows rows(reader, choice);
  std::vector<std::string> lemmas;
  for (Block block; rows.next(block);)
    lemmas.emplace_back(block.members[0].lemma);
  found = rows.found();
  admitted = rows.admitted();
  rows.read_on();
  EXPECT_EQ(rows.found(), 4U);
  EXPECT_EQ(rows.n(), 2U);
  return lemmas;
}

using Lemmas = std::vector<std::string>;

TEST(ChosenRows, WithoutAChoiceAllComeAsTheyStand) {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  EXPECT_EQ(_chosen({}, found, admitted), (Lemmas{"heavy", "cold", "warm", "acid"}));
  EXPECT_EQ(found, 4U);
  EXPECT_EQ(admitted, 4U);
}

TEST(ChosenRows, ConditionsAndALeastFrequencyChoose) {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  RowChoice choice;
  choice.min_frequency = 3;
  choice.conditions = {"lemma1!=COLD"};
  choice.letters = CaseOf::is_ignored;
  EXPECT_EQ(_chosen(choice, found, admitted), (Lemmas{"heavy", "acid"}));
  EXPECT_EQ(found, 4U);
  EXPECT_EQ(admitted, 2U);
}

TEST(ChosenRows, TheFirstOnesOfAnOrderAreThoseOfAll) {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  RowChoice choice;
  choice.sort = parse_sort_order("frequency");
  choice.top = 2;
  choice.min_frequency = 3;
  EXPECT_EQ(_chosen(choice, found, admitted), (Lemmas{"cold", "acid"}));
  EXPECT_EQ(found, 4U);
  EXPECT_EQ(admitted, 3U);
  choice.memory = 0;  // in a temporary file
  EXPECT_EQ(_chosen(choice, found, admitted), (Lemmas{"cold", "acid"}));
}

TEST(ChosenRows, WithoutAnOrderTheRestIsNotRead) {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  RowChoice choice;
  choice.top = 2;
  EXPECT_EQ(_chosen(choice, found, admitted), (Lemmas{"heavy", "cold"}));
  EXPECT_EQ(found, 2U);
}

TEST(ChosenRows, WhatNGramsOfThisSizeDoNotHaveIsRefused) {
  std::uint64_t found = 0;
  std::uint64_t admitted = 0;
  RowChoice choice;
  choice.conditions = {"lemma3=x"};
  EXPECT_THROW(_chosen(choice, found, admitted), usage_error);
}

}  // namespace
}  // namespace colx::table
