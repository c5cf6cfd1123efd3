// The filters as the extraction asks them, against asking the filters themselves every time.

#include "extraction/tag_filters.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/config.h"
#include "model/ngram.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

TEST(MorphologicFilterTest, IsOnWhenThereAreRules) {
  const test::SettingsGuard guard(2);
  const StringStore<std::uint8_t> tags(65535);
  MultiRulesFilter filter;
  EXPECT_FALSE(MorphologicFilter(filter, tags).is_on());
  filter.add_rule({"A", "B"});
  EXPECT_TRUE(MorphologicFilter(filter, tags).is_on());
}

TEST(MorphologicFilterTest, AnswersAndCountsAsTheFilterDoesOnRandomTagsAndRules) {
  test::Random random;
  for (int round = 0; round < 60; ++round) {
    const auto n = static_cast<std::uint8_t>(2 + random.below(6));
    const test::SettingsGuard guard(n);
    StringStore<std::uint8_t> tags(65535);
    for (std::uint32_t i = random.once_in(2) ? 253 : 1 + random.below(8); i > 0; --i)
      tags.store(random.text(4, "AB-"));
    MultiRulesFilter filter, plain;
    for (std::uint32_t rules = 1 + random.below(6); rules > 0; --rules) {
      MultiRulesFilter::Rule rule(random.once_in(8) ? n - 1U : n);
      for (std::string& tag_rule : rule)
        tag_rule = random.text(2, "AB---");
      filter.add_rule(rule);
      plain.add_rule(rule);
    }
    MorphologicFilter asked(filter, tags);
    for (int batches = 0; batches < 10; ++batches) {
      OccurrenceBatch batch;
      while (!batch.full()) {
        batch.add();
        for (unsigned i = 0; i < n; ++i) {
          const auto tag = static_cast<std::uint8_t>(random.below(static_cast<std::uint32_t>(tags.size())));
          batch.set_last(i, NGram::Member(random.below(3), tag, 0, 0));
        }
      }
      for (std::size_t occurrence = 0; occurrence < batch.size(); ++occurrence) {
        const bool full = random.once_in(2);
        const auto type =
            full ? NGram::_full_ngram_type : static_cast<std::uint8_t>(1 + random.below(NGram::_full_ngram_type));
        std::vector<std::string> texts(n);
        for (unsigned i = 0; i < n; ++i) {
          if (NGram::significant(type, i)) texts[n - 1U - i] = tags[batch.member(occurrence, i).tag()];
        }
        ASSERT_EQ(asked.admits(batch, occurrence, type), plain.match(texts, type == NGram::_full_ngram_type))
            << ::testing::PrintToString(texts);
      }
    }
    ASSERT_EQ(filter.stats.matched, plain.stats.matched);
    ASSERT_EQ(filter.stats.unmatched, plain.stats.unmatched);
    ASSERT_EQ(filter.file_stats.matched, plain.file_stats.matched);
    ASSERT_EQ(filter.file_stats.unmatched, plain.file_stats.unmatched);
  }
}

TEST(ContextFilterTest, WithoutRulesAdmitsEverything) {
  StringStore<std::uint8_t> tags(65535);
  tags.store("A");
  UniRulesFilter filter;
  ContextFilter asked(filter, tags);
  EXPECT_TRUE(asked.admits(0));
}

TEST(ContextFilterTest, AnswersAsTheFilterDoesAndNeverCounts) {
  test::Random random;
  for (int round = 0; round < 50; ++round) {
    StringStore<std::uint8_t> tags(65535);
    for (int i = 0; i < 200; ++i)
      tags.store(random.text(5, "AB-"));
    UniRulesFilter filter;
    for (std::uint32_t rules = 1 + random.below(3); rules > 0; --rules)
      filter.add_rule("A" + random.text(3, "AB-"));
    ContextFilter asked(filter, tags);
    for (int i = 0; i < 1000; ++i) {
      const auto tag = static_cast<std::uint8_t>(random.below(static_cast<std::uint32_t>(tags.size())));
      ASSERT_EQ(asked.admits(tag), filter.match(std::string(tags[tag]), false)) << tags[tag];
    }
    ASSERT_EQ(filter.stats.unmatched, 0U);
  }
}

}  // namespace
}  // namespace colx
