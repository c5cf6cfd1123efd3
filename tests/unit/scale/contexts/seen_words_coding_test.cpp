// Lists of context words as bytes, and back.

#include "scale/contexts/seen_words_coding.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "model/part_of_context.h"
#include "tests/support/random.h"

namespace colx::scale {
namespace {

// Words with frequencies at the ends of all their forms.
std::vector<SeenWord> random_words(test::Random& random) {
  constexpr std::uint32_t counts[] = {1,        1,        1,         2,         0xFFFFFD,
                                      0xFFFFFE, 0xFFFFFF, 0x1000000, 0x1000001, PartOfContext::_max_frequency};
  std::vector<SeenWord> words(random.below(200));
  for (SeenWord& word : words)
    word = {static_cast<std::uint32_t>(random.engine()()) % frequency_mark, counts[random.below(std::size(counts))]};
  return words;
}

template <typename Read>
std::vector<SeenWord> read_back(const std::string& bytes, const Read& read) {
  std::vector<SeenWord> words;
  const char* from = bytes.data();
  read(from, [&](std::uint32_t word, std::uint32_t count) { words.push_back({word, count}); });
  EXPECT_EQ(from, bytes.data() + bytes.size());
  return words;
}

TEST(SeenWordsCodingTest, AListInTheMakingComesBack) {
  test::Random random;
  for (int round = 0; round < 100; ++round) {
    const std::vector<SeenWord> words = random_words(random);
    std::string bytes;
    append_seen_words(bytes, words);
    ASSERT_EQ(read_back(bytes, [](const char*& from, const auto& take) { for_each_seen_word(from, take); }), words);
    const char* from = bytes.data();
    skip_seen_words(from);
    ASSERT_EQ(from, bytes.data() + bytes.size());
  }
}

TEST(SeenWordsCodingTest, AWordSeenOnceTakesFourBytes) {
  std::string bytes;
  append_seen_words(bytes, std::vector<SeenWord>{{5, 1}, {6, 1}});
  EXPECT_EQ(bytes.size(), 1U + 2 * 4);
}

TEST(SeenWordsCodingTest, ARankedListComesBack) {
  test::Random random;
  for (int round = 0; round < 100; ++round) {
    std::vector<SeenWord> words = random_words(random);
    rank_seen_words(words);
    std::string bytes;
    append_ranked_words(bytes, words);
    ASSERT_EQ(read_back(bytes, [](const char*& from, const auto& take) { for_each_ranked_word(from, take); }), words);
  }
}

}  // namespace
}  // namespace colx::scale
