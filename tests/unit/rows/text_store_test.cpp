#include "rows/text_store.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/support/random.h"

namespace colx::table {
namespace {

TEST(TextStore, NumbersTextsInOrderOfFirstSightAndKeepsThem) {
  test::Random random;
  TextStore store;
  std::map<std::string, std::uint32_t> numbers;
  for (int round = 0; round < 3000; ++round) {
    const std::string text = random.text(3, std::string("ab\0\xC3\t", 5));
    const auto [known, is_new] = numbers.emplace(text, static_cast<std::uint32_t>(numbers.size()));
    ASSERT_EQ(store.number(text), known->second) << is_new;
  }
  EXPECT_EQ(store.size(), numbers.size());
  EXPECT_TRUE(numbers.contains(""));
  for (const auto& [text, number] : numbers)
    EXPECT_EQ(store[number], text);
}

}  // namespace
}  // namespace colx::table
