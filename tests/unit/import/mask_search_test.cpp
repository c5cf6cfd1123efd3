#include "import/mask_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "corpus/datafile_format.h"
#include "tests/support/random.h"

namespace colx {
namespace {

std::size_t _distinct(const std::vector<std::string>& tags, const std::string& mask) {
  std::set<std::string> kept;
  for (const std::string& tag : tags)
    kept.insert(masked_tag(tag, mask));
  return kept.size();
}

TEST(MaskSearch, KeepsEverythingThatFits) {
  EXPECT_EQ(best_mask({"ab", "ac", "bb"}, 3), "**");
}

TEST(MaskSearch, FindsTheMostPositionsAndThenTheMostTags) {
  test::Random random;
  for (int round = 0; round < 300; ++round) {
    const std::size_t width = 1 + random.below(7);
    std::set<std::string> unique;
    const std::uint32_t count = 1 + random.below(40);
    for (std::uint32_t i = 0; i < count; ++i)
      unique.insert(random.text(static_cast<std::uint32_t>(width), "ab-c"));
    const std::vector<std::string> tags(unique.begin(), unique.end());
    std::size_t longest = 0;
    for (const std::string& tag : tags)
      longest = std::max(longest, tag.size());
    const std::size_t limit = 1 + random.below(12);

    const bool keep_first = random.once_in(2);

    bool any = false;
    std::size_t most_kept = 0;
    std::size_t most_tags = 0;
    for (unsigned set = 0; set < 1U << longest; ++set) {
      std::string mask(longest, '-');
      std::size_t kept = 0;
      for (std::size_t p = 0; p < longest; ++p) {
        if ((set >> p & 1U) == 0) continue;
        mask[p] = '*';
        ++kept;
      }
      const std::size_t distinct = _distinct(tags, mask);
      if (distinct > limit || kept < most_kept || (keep_first && mask[0] == '-')) continue;
      any = true;
      most_tags = kept > most_kept ? distinct : std::max(most_tags, distinct);
      most_kept = kept;
    }
    const std::string mask = best_mask(tags, limit, keep_first);
    if (!any) {
      EXPECT_EQ(mask, "");
      continue;
    }
    ASSERT_EQ(mask.size(), longest);
    EXPECT_EQ(static_cast<std::size_t>(std::count(mask.begin(), mask.end(), '*')), most_kept);
    EXPECT_EQ(_distinct(tags, mask), most_tags);
  }
}

}  // namespace
}  // namespace colx
