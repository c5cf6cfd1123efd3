#include "corpus/text_cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "tests/support/random.h"

namespace colx {
namespace {

TEST(TextCache, ComputesATextOnceAsLongAsNoOtherTakesItsPlace) {
  TextCache<std::uint32_t, 4> cache;
  int computed = 0;
  const auto compute = [&](std::string_view text) {
    ++computed;
    return static_cast<std::uint32_t>(text.size());
  };
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(cache.get("word", compute), 4U);
  EXPECT_EQ(computed, 1);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(cache.get("", compute), 0U);
  EXPECT_LE(computed, 3) << "the empty text may have the place of the other but is remembered then";
}

TEST(TextCache, RemembersTextsOf28BytesAndNoLongerOnes) {
  TextCache<std::uint32_t, 4> cache;
  int computed = 0;
  const auto compute = [&](std::string_view) { return static_cast<std::uint32_t>(++computed); };
  const std::string longest(28, 'x'), longer(29, 'x');
  EXPECT_EQ(cache.get(longest, compute), 1U);
  EXPECT_EQ(cache.get(longest, compute), 1U);
  EXPECT_EQ(cache.get(longer, compute), 2U);
  EXPECT_EQ(cache.get(longer, compute), 3U);
  EXPECT_EQ(cache.get(longest, compute), 1U);
}

TEST(TextCache, RemembersLongerTextsWhereThatIsAskedFor) {
  TextCache<std::uint32_t, 4, 255> cache;
  int computed = 0;
  const auto compute = [&](std::string_view) { return static_cast<std::uint32_t>(++computed); };
  const std::string longest(255, 'x'), longer(256, 'x');
  EXPECT_EQ(cache.get(longest, compute), 1U);
  EXPECT_EQ(cache.get(longest, compute), 1U);
  EXPECT_EQ(cache.get(longer, compute), 2U);
  EXPECT_EQ(cache.get(longer, compute), 3U);
}

TEST(TextCache, KeepsNothingOfATextThatCannotBeComputed) {
  TextCache<std::uint32_t, 1> cache;
  EXPECT_THROW(cache.get("word", [](std::string_view) -> std::uint32_t { throw 1; }), int);
  EXPECT_EQ(cache.get("word", [](std::string_view) { return 5U; }), 5U);
}

// Two places, so that nearly all texts collide; many agree in their first and last bytes.
TEST(TextCache, NeverTakesOneTextForAnother) {
  test::Random random;
  TextCache<std::uint32_t, 1> cache;
  std::map<std::string, std::uint32_t, std::less<>> values;
  const std::string bytes = std::string("ab\xFF") + '\0';
  for (int i = 0; i < 200000; ++i) {
    std::string text = random.text(random.once_in(2) ? 3 : 20, bytes);
    if (random.once_in(2)) text = "aaaaaaaa" + text + "bbbbbbbb";
    const std::uint32_t value = values.emplace(text, static_cast<std::uint32_t>(values.size())).first->second;
    ASSERT_EQ(cache.get(text, [&](std::string_view asked) { return values.find(asked)->second; }), value);
  }
}

}  // namespace
}  // namespace colx
