// Folding sightings into a list at once, against keeping the list in order at every sighting.

#include "model/context_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tests/reference/plain_context_list.h"
#include "tests/support/random.h"

namespace colx {
namespace {

void expect_same(std::span<const PartOfContext> list, const std::vector<PartOfContext>& plain) {
  ASSERT_EQ(list.size(), plain.size());
  for (std::size_t i = 0; i < list.size(); ++i) {
    ASSERT_EQ(list[i].key(), plain[i].key()) << "place " << i;
    ASSERT_EQ(list[i].frequency(), plain[i].frequency()) << "place " << i;
  }
}

TEST(ContextFolderTest, OfNothingIsNothing) {
  ContextFolder folder;
  folder.clear(0);
  EXPECT_TRUE(folder.fold().empty());
}

TEST(ContextFolderTest, AWordWhoseCountIsFullDoesNotMove) {
  ContextFolder folder;
  folder.clear(6);
  const PartOfContext a(1, false, 0x7FFFFFFF), b(2, true, 0x7FFFFFFF), c(3, false, 5);
  for (const PartOfContext& part : {a, b, c})
    folder.take_listed(part);
  folder.take_wide(std::vector<std::uint32_t>{1, 3});
  folder.take_narrow(2);
  expect_same(folder.fold(), {a, b, PartOfContext(3, false, 6)});
}

// With few moments, so that sightings are folded on the way, and with as many as there are.
TEST(ContextFolderTest, FoldsListAfterListAsSightingBySightingWould) {
  test::Random random;
  constexpr std::uint32_t most_at_once = 30;
  ContextFolder usual;
  ContextFolder of_few_moments(most_at_once + 10);
  for (int round = 0; round < 400; ++round) {
    ContextFolder& folder = round % 2 == 0 ? usual : of_few_moments;
    const std::uint32_t vocabulary = 1 + random.below(random.once_in(4) ? 2000 : 30);
    reference::PlainContextList plain;
    std::vector<PartOfContext> list;
    for (int folds = 0; folds < 6; ++folds) {
      folder.clear(random.below(2000));
      for (const PartOfContext& part : list)
        folder.take_listed(part);
      const auto any_word = [&] { return random.below(1 + random.below(vocabulary)); };
      for (std::uint32_t windows = random.below(random.once_in(4) ? 50 : 4); windows > 0; --windows) {
        std::vector<std::uint32_t> words(random.below(most_at_once + 1));
        for (std::uint32_t& word : words) {
          word = any_word();
          plain.add(PartOfContext(word, false));
        }
        folder.take_wide(words);
        for (std::uint32_t left = random.below(3); left > 0; --left) {
          const std::uint32_t word = any_word();
          plain.add(PartOfContext(word, true));
          folder.take_narrow(word);
        }
      }
      const auto folded = folder.fold();
      expect_same(folded, plain.parts());
      if (::testing::Test::HasFatalFailure()) return;
      list.assign(folded.begin(), folded.end());
    }
  }
}

}  // namespace
}  // namespace colx
