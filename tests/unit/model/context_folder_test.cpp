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
  folder.take_sighting(PartOfContext(1, false));
  folder.take_sighting(PartOfContext(3, false));
  folder.take_sighting(PartOfContext(2, true));
  expect_same(folder.fold(), {a, b, PartOfContext(3, false, 6)});
}

TEST(ContextFolderTest, FoldsListAfterListAsSightingBySightingWould) {
  test::Random random;
  ContextFolder folder;
  for (int round = 0; round < 400; ++round) {
    const std::uint32_t vocabulary = 1 + random.below(random.once_in(4) ? 2000 : 30);
    reference::PlainContextList plain;
    std::vector<PartOfContext> list;
    for (int folds = 0; folds < 6; ++folds) {
      std::vector<PartOfContext> sightings;
      for (std::uint32_t left = random.below(random.once_in(4) ? 1000 : 40); left > 0; --left)
        sightings.emplace_back(random.below(1 + random.below(vocabulary)), random.once_in(3));
      folder.clear(list.size() + sightings.size());
      for (const PartOfContext& part : list)
        folder.take_listed(part);
      for (const PartOfContext& part : sightings) {
        folder.take_sighting(part);
        plain.add(part);
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
