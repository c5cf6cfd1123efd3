#include "import/mask_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "corpus/datafile_format.h"
#include "tests/support/random.h"

namespace colx {
namespace {

// By the definition, from probabilities.
TagInformation _plain_information(const TagCounts& tags, const std::string& mask) {
  std::map<std::string, double> counts;
  double total = 0;
  for (const auto& [tag, count] : tags) {
    counts[masked_tag(tag, mask)] += static_cast<double>(count);
    total += static_cast<double>(count);
  }
  double bits = 0;
  for (const auto& [tag, count] : counts)
    bits -= count / total * std::log2(count / total);
  return {counts.size(), bits};
}

struct Choice {
  std::string mask;
  double bits;

  // Higher entropy, more positions, earlier positions.
  bool is_better_than(const Choice& other) const {
    if (std::abs(bits - other.bits) > 1e-9) return bits > other.bits;
    const auto kept = std::count(mask.begin(), mask.end(), '*');
    const auto others = std::count(other.mask.begin(), other.mask.end(), '*');
    return kept != others ? kept > others : mask < other.mask;
  }
};

// Tries every mask.
std::string _plain_best_mask(const TagCounts& tags, std::size_t limit) {
  std::size_t width = 0;
  for (const auto& [tag, count] : tags)
    width = std::max(width, tag.size());
  const bool keep_first = _plain_information(tags, "*").distinct <= limit;
  std::optional<Choice> best;
  for (unsigned set = 0; set < 1U << width; ++set) {
    std::string mask(width, '-');
    for (std::size_t p = 0; p < width; ++p)
      if ((set >> p & 1U) != 0) mask[p] = '*';
    if (keep_first && mask.starts_with('-')) continue;
    const TagInformation information = _plain_information(tags, mask);
    const Choice choice{mask, information.bits};
    if (information.distinct <= limit && (!best || choice.is_better_than(*best))) best = choice;
  }
  return best->mask;
}

TEST(TagInformation, CountsTagsAndTheirEntropy) {
  EXPECT_EQ(tag_information({{"NN", 4}, {"NS", 2}, {"VB", 2}}).distinct, 3U);
  EXPECT_DOUBLE_EQ(tag_information({{"NN", 4}, {"NS", 2}, {"VB", 2}}).bits, 1.5);  // 1/2 1 + 1/4 2 + 1/4 2
  EXPECT_EQ(tag_information({{"NN", 4}, {"NS", 2}, {"VB", 6}}, "*-").distinct, 2U);
  EXPECT_DOUBLE_EQ(tag_information({{"NN", 4}, {"NS", 2}, {"VB", 6}}, "*-").bits, 1.0);
  EXPECT_EQ(tag_information({{"NN", 7}}).bits, 0.0);
  EXPECT_EQ(tag_information({}).bits, 0.0);
}

TEST(MaskSearch, KeepsEverythingThatFits) {
  EXPECT_EQ(best_mask({{"ab", 1}, {"ac", 1}, {"bb", 1}}, 3), "**");
  EXPECT_EQ(best_mask({{"ab", 1}, {"ab-", 1}, {"ab--", 1}}, 1), "****");
}

TEST(MaskSearch, KeepsTheRicherPositionRatherThanTwoPoorOnes) {
  // The second position has four letters, equally frequent; the third and the fourth have two, one of them rare.
  const TagCounts tags{{"naxx", 9}, {"nbxx", 9}, {"ncxx", 9}, {"ndxx", 9}, {"nayx", 1}, {"naxy", 1}, {"nbyx", 1}};
  EXPECT_EQ(best_mask(tags, 4), "**--");
  EXPECT_EQ(best_mask(tags, 5), "**-*");
}

TEST(MaskSearch, KeepsTheWordClass) {
  const TagCounts tags{{"aN", 1}, {"bV", 1}, {"cV", 1}, {"aA", 1}};
  EXPECT_EQ(best_mask(tags, 3), "*-");
  EXPECT_EQ(best_mask(tags, 2), "--") << "as even the word class alone has more letters";
}

TEST(MaskSearch, FindsTheMaskOfHighestEntropy) {
  test::Random random;
  for (int round = 0; round < 400; ++round) {
    TagCounts tags;
    const std::uint32_t width = 1 + random.below(8);
    const std::uint32_t count = 1 + random.below(60);
    for (std::uint32_t i = 0; i < count; ++i)
      tags[random.text(width, "ab-c")] = 1 + random.below(random.once_in(4) ? 1000 : 4);
    const std::size_t limit = 1 + random.below(14);
    ASSERT_EQ(best_mask(tags, limit), _plain_best_mask(tags, limit)) << round;
  }
}

TEST(MaskSearch, StaysWithinTheLimitWhereNotAllMasksCanBeTried) {
  test::Random random;
  TagCounts tags;
  while (tags.size() < 1000) {
    std::string tag;
    for (int p = 0; p < 70; ++p)
      tag += static_cast<char>('a' + random.below(3));
    ++tags[tag];
  }
  const std::string mask = best_mask(tags, 254);
  EXPECT_EQ(mask.size(), 64U);
  EXPECT_TRUE(mask.starts_with('*'));
  EXPECT_GT(std::count(mask.begin(), mask.end(), '*'), 4);
  EXPECT_LE(tag_information(tags, mask).distinct, 254U);
}

}  // namespace
}  // namespace colx
