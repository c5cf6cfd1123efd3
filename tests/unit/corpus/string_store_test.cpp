#include "corpus/string_store.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "run/errors.h"
#include "tests/support/random.h"

namespace colx {
namespace {

using Lemmas = StringStore<std::uint32_t>;
using Tags = StringStore<std::uint8_t>;

// Fills a store of 8-bit indexes with the texts "0" to "253", which is all it takes.
void _fill(Tags& tags) {
  for (unsigned i = 0; i < 254; ++i)
    ASSERT_EQ(tags.store(std::to_string(i).c_str()), i);
}

TEST(StringStore, GivesEachTextOneIndexInOrderOfFirstSight) {
  Lemmas store(65535);
  EXPECT_EQ(store.size(), 0U);
  EXPECT_EQ(store.store("A"), 0U);
  EXPECT_EQ(store.store("B"), 1U);
  EXPECT_EQ(store.store("A"), 0U);
  EXPECT_EQ(store.size(), 2U);
  EXPECT_STREQ(store[0], "A");
  EXPECT_STREQ(store[1], "B");
}

TEST(StringStore, KeepsItsOwnCopy) {
  Lemmas store(65535);
  std::string text = "word";
  store.store(text.c_str());
  text = "lord";
  EXPECT_STREQ(store[0], "word");
  EXPECT_EQ(store.store("word"), 0U);
  EXPECT_EQ(store.store("lord"), 1U);
}

TEST(StringStore, TakesTheEmptyTextLikeAnyOther) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("a"), 0U);
  EXPECT_EQ(store.store(""), 1U);
  EXPECT_EQ(store.store(""), 1U);
  EXPECT_STREQ(store[1], "");
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

TEST(StringStoreLessComparator, OrdersByUnsignedBytes) {
  const std::vector<const char*> texts = {"", "A", "a", "a\x7F", "a\x80", "a\xFF", "b"};
  const StringStoreLessComparator<std::uint32_t> less(texts);
  for (std::uint32_t a = 0; a < texts.size(); ++a) {
    for (std::uint32_t b = 0; b < texts.size(); ++b)
      EXPECT_EQ(less(a, b), a < b) << a << " and " << b;
  }
}

TEST(StringStore, GivesTheLastTagIndex253) {
  Tags tags(65535);
  _fill(tags);
  EXPECT_EQ(tags.size(), 254U);
  EXPECT_STREQ(tags[253], "253");
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
    EXPECT_EQ(tags.store(std::to_string(i).c_str()), i);
}

TEST(StringStore, TakesATextThatJustFillsABlock) {
  Lemmas store(65535);
  const std::string longest(65535, 'x');
  EXPECT_EQ(store.store("first"), 0U);
  EXPECT_EQ(store.store(longest.c_str()), 1U);
  EXPECT_EQ(store.store("third"), 2U);
  EXPECT_EQ(store[1], longest);
  EXPECT_STREQ(store[0], "first");
  EXPECT_STREQ(store[2], "third");
}

TEST(StringStore, RefusesATextThatDoesNotFitInABlockAndNamesLengthAndLimit) {
  Lemmas store(65535);
  EXPECT_EQ(store.store("before"), 0U);
  try {
    store.store(std::string(65536, 'x').c_str());
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
    store.store(("text number " + std::to_string(i)).c_str());
    addresses.push_back(store[i]);
  }
  for (std::uint32_t i = 0; i < 5000; ++i) {
    ASSERT_EQ(store[i], addresses[i]);
    ASSERT_EQ(store[i], "text number " + std::to_string(i));
  }
}

TEST(StringStore, AgreesWithAMapFromTextsToIndexes) {
  test::Random random;
  Lemmas store(31);
  std::map<std::string, std::uint32_t> indexes;
  for (int round = 0; round < 20000; ++round) {
    const std::string text = random.text(6, "aAb\x01\x7F\x80\xFF");
    const auto next = static_cast<std::uint32_t>(indexes.size());
    const std::uint32_t expected = indexes.emplace(text, next).first->second;
    ASSERT_EQ(store.store(text.c_str()), expected);
    ASSERT_EQ(store.size(), indexes.size());
  }
  for (const auto& [text, index] : indexes)
    ASSERT_EQ(store[index], text);
}

}  // namespace
}  // namespace colx
