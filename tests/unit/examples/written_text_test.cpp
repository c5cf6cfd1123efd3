#include "examples/written_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "companion/utf8.h"
#include "tests/support/random.h"

namespace colx::examples {
namespace {

// What find_words finds: for every word the text at its place, in parentheses where it is not the form itself.
std::vector<std::string> _found(std::string_view text, const std::vector<std::string>& forms) {
  use_utf8_characters();
  std::vector<concordance::ExampleWord> words;
  for (const std::string& form : forms)
    words.emplace_back().form = form;
  std::vector<std::string> found;
  for (const TextSpan& span : find_words(text, words)) {
    const std::string part(text.substr(span.begin, span.end - span.begin));
    found.push_back(span.is_whole ? part : "(" + part + ")");
  }
  return found;
}

using Texts = std::vector<std::string>;

TEST(FindWords, FindsFormsWithAndWithoutBlanksBetweenThem) {
  EXPECT_EQ(_found("Heavy rain, again.", {"Heavy", "rain", ",", "again", "."}),
            (Texts{"Heavy", "rain", ",", "again", "."}));
  EXPECT_EQ(_found("下了雨。", {"下", "了", "雨", "。"}), (Texts{"下", "了", "雨", "。"}));
}

TEST(FindWords, TakesANoBreakSpaceForAnySpace) {
  EXPECT_EQ(_found("In New York 10\xE2\x80\xAF"
                   "000",
                   {"In", "New\xC2\xA0York",
                    "10\xC2\xA0"
                    "000"}),
            (Texts{"In", "New York",
                   "10\xE2\x80\xAF"
                   "000"}));
}

TEST(FindWords, GivesWordsThatAreWrittenAsOneTheSamePlace) {
  EXPECT_EQ(_found("zum Zug", {"zu", "dem", "Zug"}), (Texts{"(zum)", "(zum)", "Zug"}));
  EXPECT_EQ(_found("Il va du lac aux monts.", {"Il", "va", "de", "le", "lac", "à", "les", "monts", "."}),
            (Texts{"Il", "va", "(du)", "(du)", "lac", "(aux)", "(aux)", "monts", "."}));
}

TEST(FindWords, DoesNotTakeAPieceOfAWordForIt) {
  EXPECT_EQ(_found("another a", {"a"}), (Texts{"a"}));
  EXPECT_EQ(_found("isn't", {"is", "n't"}), (Texts{"is", "n't"}));
}

TEST(FindWords, PassesOverWhatStandsOnOneSideOnly) {
  EXPECT_EQ(_found("rain [sic] fell", {"rain", "fell"}), (Texts{"rain", "fell"}));
  EXPECT_EQ(_found("rain fell", {"rain", "pro", "fell"}), (Texts{"rain", "()", "fell"}));
  EXPECT_EQ(_found("", {"rain"}), (Texts{"()"}));
  EXPECT_EQ(_found("snow", {"rain", "fell"}), (Texts{"(snow)", "(snow)"}));
}

// With one word of the text replaced all others are found where they stand.
TEST(FindWords, FindsEverythingAroundADifference) {
  test::Random random;
  for (int round = 0; round < 500; ++round) {
    std::string text;
    std::vector<std::string> forms;
    std::vector<std::size_t> places;
    const std::uint32_t count = 1 + random.below(8);
    const std::uint32_t other = random.below(2 * count);  // often none
    for (std::uint32_t i = 0; i < count; ++i) {
      // No two forms are alike, and none is the beginning of another one.
      const std::string form = std::string(1, static_cast<char>('a' + i)) + random.text(3, "xyz") + "é";
      forms.push_back(form);
      places.push_back(text.size());
      text += i == other ? "Q" : form;
      text += random.once_in(4) ? ", " : " ";
    }
    const Texts found = _found(text, forms);
    for (std::uint32_t i = 0; i < count; ++i) {
      if (i != other) {
        EXPECT_EQ(found[i], forms[i]) << text;
      } else {
        EXPECT_TRUE(found[i].starts_with("(") && found[i].find('Q') != std::string::npos && found[i].size() <= 6)
            << text;
      }
    }
  }
}

// Whatever bytes there are, places are within the text and in its order, and what is whole is the form.
TEST(FindWords, TakesAnyBytes) {
  test::Random random;
  use_utf8_characters();
  constexpr std::string_view odd_bytes("ab. \xC2\xA0\xE2\x80\xAF\xE9\x9B\xA8\xFF\0", 14);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = random.text(30, odd_bytes);
    std::vector<concordance::ExampleWord> words(random.below(8));
    for (concordance::ExampleWord& word : words)
      word.form = random.text(4, odd_bytes);
    const std::vector<TextSpan> spans = find_words(text, words);
    ASSERT_EQ(spans.size(), words.size());
    std::size_t last = 0;
    for (std::size_t i = 0; i < spans.size(); ++i) {
      const bool is_shared = i > 0 && spans[i] == spans[i - 1];
      ASSERT_TRUE(is_shared || spans[i].begin >= last);
      ASSERT_LE(spans[i].begin, spans[i].end);
      ASSERT_LE(spans[i].end, text.size());
      if (spans[i].is_whole && words[i].form.find('\xC2') == std::string::npos) {
        EXPECT_EQ(text.substr(spans[i].begin, spans[i].end - spans[i].begin), words[i].form);
      }
      last = spans[i].end;
    }
  }
}

}  // namespace
}  // namespace colx::examples
