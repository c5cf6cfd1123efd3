#include "corpus/string_store.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "tests/reference/plain_string_store.h"
#include "tests/support/random.h"

namespace colx {
namespace {

using Lemmas = StringStore<std::uint32_t>;
using Tags = StringStore<std::uint8_t>;

// Fills a store of 8-bit indexes with the texts "0" to "253", which is all it takes.
void _fill(Tags& tags) {
  for (unsigned i = 0; i < 254; ++i)
    ASSERT_EQ(tags.store(std::to_string(i)), i);
}

TEST(StringStore, GivesEachTextOneIndexInOrderOfFirstSight) {
  Lemmas store(65535);
  EXPECT_EQ(store.size(), 0U);
  EXPECT_EQ(store.store("A"), 0U);
  EXPECT_EQ(store.store("B"), 1U);
  EXPECT_EQ(store.store("A"), 0U);
  EXPECT_EQ(store.size(), 2U);
  EXPECT_EQ(store[0], "A");
  EXPECT_EQ(store[1], "B");
}

TEST(StringStore, KeepsItsOwnCopy) {
  Lemmas store(65535);
  std::string text = "word";
  store.store(text);
  text = "lord";
  EXPECT_EQ(store[0], "word");
  EXPECT_EQ(store.store("word"), 0U);
  EXPECT_EQ(store.store("lord"), 1U);
}

TEST(StringStore, TakesTheEmptyTextLikeAnyOther) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("a"), 0U);
  EXPECT_EQ(store.store(""), 1U);
  EXPECT_EQ(store.store(""), 1U);
  EXPECT_EQ(store[1], "");
}

TEST(StringStore, TellsLowerAndUpperCaseApart) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("a"), 0U);
  EXPECT_EQ(store.store("A"), 1U);
  EXPECT_EQ(store.store("a"), 0U);
}

TEST(StringStore, TellsAPrefixFromTheWholeText) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("go"), 0U);
  EXPECT_EQ(store.store("gone"), 1U);
  EXPECT_EQ(store.store("g"), 2U);
  EXPECT_EQ(store.store("go"), 0U);
}

TEST(StringStore, TellsTextsApartByEveryByteWhateverTheirLength) {
  Lemmas store(65535);
  std::uint32_t next = 0;
  for (std::size_t length = 1; length <= 40; ++length) {
    std::string text(length, 'x');
    ASSERT_EQ(store.store(text), next++) << length;
    for (char& c : text) {
      for (const char other : {'y', '\xF8'}) {
        c = other;
        ASSERT_EQ(store.store(text), next++) << length;
      }
      c = 'x';
    }
    ASSERT_EQ(store.store(text) + 2 * length + 1, next);
  }
}

TEST(StringStore, FindsTextsWithoutTakingThem) {
  Tags store(65535);
  EXPECT_EQ(store.find("a"), std::nullopt);
  EXPECT_EQ(store.find(""), std::nullopt);
  EXPECT_EQ(store.size(), 0U);
  _fill(store);
  const std::string_view text = "12534";
  EXPECT_EQ(store.find(text.substr(0, 2)), 12);
  EXPECT_EQ(store.find(text.substr(1, 3)), 253);
  EXPECT_EQ(store.find("254"), std::nullopt);  // nor does a full store mind
  EXPECT_EQ(store.find(std::string(70000, 'x')), std::nullopt);
  EXPECT_EQ(store.size(), 254U);
}

TEST(StringStore, PutsAZeroBehindEveryText) {
  Lemmas store(65535);
  for (const std::string text : {"", "a", "words"}) {
    const std::uint32_t index = store.store(text);
    EXPECT_STREQ(store[index].data(), text.c_str());
  }
}

TEST(StringStore, GivesTheLastTagIndex253) {
  Tags tags(65535);
  _fill(tags);
  EXPECT_EQ(tags.size(), 254U);
  EXPECT_EQ(tags[253], "253");
}

TEST(StringStore, OverflowsAtThe255thTag) {
  Tags tags(65535);
  _fill(tags);
  try {
    tags.store("one too many");
    ADD_FAILURE() << "stored a 255th tag";
  } catch (const index_overflow& error) {
    EXPECT_STREQ(error.what(), "String store overflow!");
  }
  EXPECT_EQ(tags.size(), 255U) << "by this the processing loop recognises which store has overflowed";
}

TEST(StringStore, FindsOldTextsWhenItIsFull) {
  Tags tags(65535);
  _fill(tags);
  EXPECT_EQ(tags.store("7"), 7);
  EXPECT_EQ(tags.size(), 254U);
  EXPECT_THROW(tags.store("one too many"), index_overflow);
  for (unsigned i = 0; i < 254; ++i)
    EXPECT_EQ(tags.store(std::to_string(i)), i);
}

TEST(StringStore, TakesATextThatJustFillsABlock) {
  Lemmas store(65535);
  const std::string longest(65535, 'x');
  EXPECT_EQ(store.store("first"), 0U);
  EXPECT_EQ(store.store(longest), 1U);
  EXPECT_EQ(store.store("third"), 2U);
  EXPECT_EQ(store[1], longest);
  EXPECT_EQ(store[0], "first");
  EXPECT_EQ(store[2], "third");
}

TEST(StringStore, RefusesATextThatDoesNotFitInABlockAndNamesLengthAndLimit) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("before"), 0U);
  try {
    store.store(std::string(65536, 'x'));
    ADD_FAILURE() << "stored 65536 bytes and their end in a block of 65536 bytes";
  } catch (const string_too_long& error) {
    const std::string text = error.what();
    EXPECT_NE(text.find("65536"), std::string::npos) << text;
    EXPECT_NE(text.find("65535"), std::string::npos) << text;
  }
  EXPECT_EQ(store.size(), 1U);
  EXPECT_EQ(store.store("after"), 1U);
  EXPECT_EQ(store.store("before"), 0U);
}

TEST(StringStore, NeverMovesATextToANewAddress) {
  Lemmas store(63);
  std::vector<const char*> addresses;
  for (std::uint32_t i = 0; i < 5000; ++i) {
    store.store(("text number " + std::to_string(i)));
    addresses.push_back(store[i].data());
  }
  for (std::uint32_t i = 0; i < 5000; ++i) {
    ASSERT_EQ(store[i].data(), addresses[i]);
    ASSERT_EQ(store[i], "text number " + std::to_string(i));
  }
}

TEST(StringStore, AgreesWithAMapFromTextsToIndexes) {
  test::Random random;
  Lemmas store(31);
  reference::PlainStringStore plain;
  for (int round = 0; round < 30000; ++round) {
    const std::string text = random.text(random.once_in(3) ? 24 : 6, "aAb\x01\x7F\x80\xFF");
    ASSERT_EQ(store.store(text), plain.store(text));
    ASSERT_EQ(store.size(), plain.size());
  }
  for (std::uint32_t index = 0; index < plain.size(); ++index)
    ASSERT_EQ(store[index], plain[index]);
}

TEST(StringStore, TakesNoFurtherTextOnceItIsClosed) {
  Lemmas store(31);
  store.store("rain");
  store.close();
  EXPECT_EQ(store.store("rain"), 0U);
  EXPECT_EQ(store.store("snow"), Lemmas::others);
  EXPECT_EQ(store.store(std::string(100, 'x')), Lemmas::others);
  EXPECT_EQ(store.size(), 1U);
  EXPECT_EQ(store.find("snow"), std::nullopt);
}

}  // namespace
}  // namespace colx
