#include "corpus/word_queue.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <deque>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(WordQueue, StartsEmpty) {
  const WordQueue queue;
  EXPECT_TRUE(queue.empty());
  EXPECT_EQ(queue.begin(), queue.end());
}

TEST(WordQueue, HoldsWhatADequeHolds) {
  test::Random random;
  for (int round = 0; round < 200; ++round) {
    WordQueue queue;
    std::deque<std::uint32_t> lemmas;
    std::uint32_t next = 0;
    for (int step = 0; step < 200; ++step) {
      const auto count = random.below(static_cast<std::uint32_t>(lemmas.size()) + 1);
      switch (random.below(4)) {
        case 0:
          queue.drop_front(count);
          lemmas.erase(lemmas.begin(), lemmas.begin() + count);
          break;
        case 1:
          queue.drop_back(count / 4);
          lemmas.resize(lemmas.size() - count / 4);
          break;
        default:
          for (std::uint32_t more = random.below(20); more > 0; --more) {
            queue.push_back({next, 0, 0, 0, 0});
            lemmas.push_back(next++);
          }
      }
      ASSERT_EQ(queue.size(), lemmas.size());
      ASSERT_EQ(queue.empty(), lemmas.empty());
      ASSERT_EQ(static_cast<std::size_t>(queue.end() - queue.begin()), lemmas.size());
      for (std::size_t i = 0; i < lemmas.size(); ++i) {
        ASSERT_EQ(queue[i].lemma, lemmas[i]);
        ASSERT_EQ(queue.begin()[i].lemma, lemmas[i]);
      }
    }
  }
}

}  // namespace
}  // namespace colx
