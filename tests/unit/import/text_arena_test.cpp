#include "import/text_arena.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(TextArena, KeepsTextsOfAllLengthsWhereTheyAreUntilItIsCleared) {
  test::Random random;
  TextArena arena;
  for (int round = 0; round < 20; ++round) {
    arena.clear();
    std::vector<std::pair<std::string, std::string_view>> kept;
    for (int i = 0; i < 1000; ++i) {
      std::string text = random.text(random.once_in(50) ? 40000 : 30, "abc");
      const std::string_view copy = arena.keep(text);
      kept.emplace_back(std::move(text), copy);
    }
    const TextArena moved = std::move(arena);
    for (const auto& [text, copy] : kept)
      ASSERT_EQ(copy, text);
    arena = TextArena();
  }
}

TEST(TextArena, UsesItsMemoryAgain) {
  TextArena arena;
  const char* const first = arena.keep("first").data();
  arena.clear();
  EXPECT_EQ(arena.keep("second").data(), first);
}

}  // namespace
}  // namespace colx
