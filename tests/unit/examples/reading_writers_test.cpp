// The formats for people, byte for byte.

#include <gtest/gtest.h>

#include <string>

#include "companion/utf8.h"
#include "examples/heading.h"
#include "sentences.h"
#include "tests/support/random.h"

namespace colx::examples {
namespace {

using test::heavy_rain;
using test::hit_at;
using test::sentence_of;
using test::shown;
using test::written_as;

TEST(ExampleHeading, SaysHowOftenAndHowManyFollow) {
  const table::Block block;
  EXPECT_EQ(heading_text({3, "a <Atr b", &block, 9, 9, 5}), "3. a <Atr b (9 times, 5 shown)");
  EXPECT_EQ(heading_text({1, "a <Atr b", &block, 1, 1, 1}), "1. a <Atr b (1 time)");
  EXPECT_EQ(heading_text({1, "a <Atr b", &block, 2, 0, 0}), "1. a <Atr b (2 times, 0 shown)");
  EXPECT_EQ(heading_text({1, "* <Atr \x1b", nullptr, {}, 12, 12}), "* <Atr ? (found 12 times)");
  EXPECT_EQ(heading_text({1, "* <Atr a", nullptr, {}, 7, 5, false}), "* <Atr a (first 5 shown)");
}

TEST(TextFormat, PutsMembersInBrackets) {
  EXPECT_EQ(shown(Format::text, {},
                  {{heavy_rain(), hit_at({1, 2})}, {written_as(heavy_rain(), "Heavy rain fell."), hit_at({2, 3})}}),
            "1. heavy <Atr rain (9 times, 2 shown)\n"
            "  words.dat:1\n"
            "    [Heavy] [rain] fell .\n"
            "  w-1\n"
            "    Heavy [rain] [fell].\n");
}

TEST(TextFormat, ColoursMembersAndUnderlinesTheTopWord) {
  EXPECT_EQ(shown(Format::text, {.colour = true}, {{heavy_rain(), hit_at({1, 2})}}),
            "\x1b[1m1. heavy <Atr rain (9 times, 1 shown)\x1b[0m\n"
            "  \x1b[36mwords.dat:1\x1b[0m\n"
            "    \x1b[0;1;31mHeavy\x1b[0m \x1b[0;1;4;31mrain\x1b[0m fell .\n");
}

TEST(TextFormat, FoldsLinesOnATerminal) {
  use_utf8_characters();
  const auto folded = [](const std::string& text) {
    const std::string all = shown(Format::text, {.width = 30}, {{written_as(heavy_rain(), text), hit_at({1, 2})}});
    return all.substr(all.find("w-1\n") + 4);
  };
  EXPECT_EQ(folded("Heavy rain fell on twenty-six villages"),
            "    [Heavy] [rain] fell on\n"
            "    twenty-six villages\n");
  // Of twenty-six columns thirteen wide characters take all.
  EXPECT_EQ(folded("Heavy rain 一二三四五六七八九十"),
            "    [Heavy] [rain] 一二三四五\n"
            "    六七八九十\n");
  EXPECT_EQ(folded("Heavy rain " + std::string(30, 'x')),
            "    [Heavy] [rain]\n"
            "    xxxxxxxxxxxxxxxxxxxxxxxxxx\n"
            "    xxxx\n");
}

TEST(TextFormat, SendsATerminalNothingThatItWouldObey) {
  EXPECT_EQ(shown(Format::text, {},
                  {{written_as(heavy_rain(), "Heavy rain\x1b[2J\xFF\xE2\x80\xAE.", "i\x07"), hit_at({1, 2})}}, "a\x1b"),
            "1. a? (9 times, 1 shown)\n"
            "  i?\n"
            "    [Heavy] [rain]?[2J??.\n");
}

TEST(TreeDrawing, PutsWordsBelowTheirLeftDependentsAndAboveTheirRightOnes) {
  const auto sentence = sentence_of({{"The", 2},
                                     {"rain", 3, "Sb"},
                                     {"fell", 0, "Pred"},
                                     {"on", 3, "AuxP"},
                                     {"the", 6},
                                     {"village", 4, "Adv"},
                                     {"today", 3, "Adv"},
                                     {".", 0, "AuxK"}});
  EXPECT_EQ(shown(Format::text, {.tree = true}, {{sentence, hit_at({1, 2})}}),
            "1. heavy <Atr rain (9 times, 1 shown)\n"
            "  words.dat:1\n"
            "    [The] [rain] fell on the village today .\n"
            "    1     ┌─ [The]    Atr\n"
            "    2  ┌─ [rain]      Sb\n"
            "    3  fell           Pred\n"
            "    4  ├─ on          AuxP\n"
            "    5  │  │  ┌─ the   Atr\n"
            "    6  │  └─ village  Adv\n"
            "    7  └─ today       Adv\n"
            "    8  .              AuxK\n");
}

std::string _tree(const concordance::ExampleSentence& sentence, std::size_t width = 0) {
  const std::string all = shown(Format::text, {.tree = true, .width = width}, {{sentence, hit_at({1, 2})}});
  return all.substr(all.find("\n    1") + 1);
}

// 3 hangs from 1 across 2, which has no part in it.
TEST(TreeDrawing, KeepsBranchesTogetherThatCross) {
  EXPECT_EQ(_tree(sentence_of({{"a", 2}, {"b", 0}, {"c", 1}})),
            "    1  ┌─ [a]   Atr\n"
            "    3  │  └─ c  Atr\n"
            "    2  [b]      Atr\n");
}

TEST(TreeDrawing, DrawsWordsInACircleOnce) {
  EXPECT_EQ(_tree(sentence_of({{"a", 2}, {"b", 3}, {"c", 2}})),
            "    1  ┌─ [a]  Atr\n"
            "    2  [b]     Atr\n"
            "    3  └─ c    Atr\n");
}

TEST(TreeDrawing, DrawsDeepTreesNarrower) {
  const auto chain = sentence_of({{"a", 0}, {"b", 1}, {"c", 2}, {"d", 3}});
  // Before the forms stand seven columns, behind the longest one two and the relation.
  EXPECT_EQ(_tree(chain, 22),
            "    1  [a]         Atr\n"
            "    2  └─ [b]      Atr\n"
            "    3     └─ c     Atr\n"
            "    4        └─ d  Atr\n");
  EXPECT_EQ(_tree(chain, 21),
            "    1  [a]      Atr\n"
            "    2  └ [b]    Atr\n"
            "    3    └ c    Atr\n"
            "    4      └ d  Atr\n");
  EXPECT_EQ(_tree(chain, 18),
            "    1  [a]   Atr\n"
            "    2  └[b]  Atr\n"
            "    3   └c   Atr\n"
            "    4    └d  Atr\n");
}

TEST(TreeDrawing, DoesNotDrawEndlessSentences) {
  concordance::ExampleSentence sentence = heavy_rain();
  sentence.words.resize(501);
  const std::string all = shown(Format::text, {.tree = true}, {{sentence, hit_at({1, 2})}});
  EXPECT_TRUE(all.ends_with("\n    (the tree of 501 words is not drawn)\n"));
}

// Marks of direction as UTF-8.
const std::string left_to_right = "\xE2\x80\x8E";
const std::string begin_isolate = "\xE2\x81\xA7";
const std::string end_isolate = "\xE2\x81\xA9";

TEST(TreeDrawing, KeepsLinesWithRightToLeftFormsInTheirPlace) {
  use_utf8_characters();
  EXPECT_EQ(shown(Format::text, {.tree = true}, {{sentence_of({{"גשם", 2}, {"fell", 0, "Pred"}}), hit_at({1, 2})}}),
            "1. heavy <Atr rain (9 times, 1 shown)\n"
            "  words.dat:1\n"
            "    [גשם] [fell]\n" +
                left_to_right + "    1  ┌─ " + begin_isolate + "[גשם]" + end_isolate +
                "  Atr\n"
                "    2  [fell]    Pred\n");
}

TEST(KwicFormat, AlignsTopWordsAndCutsContexts) {
  use_utf8_characters();
  const auto other = written_as(sentence_of({{"Before", 3}, {"heavy", 3}, {"rain", 4}, {"fell", 0}}),
                                "Before heavy rain fell on the village", "long-identifier-1");
  // Of 40 columns the names take a quarter and two; of the other 28 eleven are on the left of the longest top word.
  EXPECT_EQ(shown(Format::kwic, {.width = 40},
                  {{written_as(heavy_rain(), "Heavy rain fell."), hit_at({1, 2})}, {other, hit_at({2, 3})}}),
            "1. heavy <Atr rain (9 times, 2 shown)\n"
            "w-1            [Heavy] [rain] fell.\n"
            "…ntifier-1  …e [heavy] [rain] fell on t…\n");
}

TEST(KwicFormat, AlignsByTheColumnsOfATerminal) {
  use_utf8_characters();
  const auto sentence = sentence_of({{"大", 2}, {"雨", 0}});
  // The names take three columns and two, the left side 15 of the other 35.
  EXPECT_EQ(shown(Format::kwic, {.width = 40},
                  {{written_as(sentence, "昨天晚上下了一场很大雨了"), hit_at({1, 2})},
                   {written_as(sentence_of({{"e\xCC\x81t\xCC\x81", 2}, {"b", 0}}), "e\xCC\x81t\xCC\x81 b c"),
                    hit_at({1, 2})}}),
            "1. heavy <Atr rain (9 times, 2 shown)\n"
            "w-1  …下了一场很[大][雨]了\n"
            "w-1            [e\xCC\x81t\xCC\x81] [b] c\n");
}

TEST(KwicFormat, KeepsLinesFromRightToLeftInTheirOwnOrder) {
  use_utf8_characters();
  const auto sentence = sentence_of({{"ירד", 0}, {"גשם", 1}});
  // Of 35 columns the left side has (35 - 5) / 2, and eight are left over on the right.
  EXPECT_EQ(shown(Format::kwic, {.width = 40}, {{written_as(sentence, "ירד גשם כבד."), hit_at({1, 2})}}),
            "1. heavy <Atr rain (9 times, 1 shown)\n"
            "w-1  " +
                begin_isolate + std::string(15, ' ') + "[ירד] [גשם] כבד." + std::string(4, ' ') + end_isolate + "\n");
}

TEST(KwicFormat, ColoursMembersAndDrawsTrees) {
  EXPECT_EQ(shown(Format::kwic, {.colour = true, .tree = true, .width = 40}, {{heavy_rain(), hit_at({1, 2})}}),
            "\x1b[1m1. heavy <Atr rain (9 times, 1 shown)\x1b[0m\n"
            "\x1b[36m…rds.dat:1\x1b[0m  "
            "      \x1b[0;1;31mHeavy\x1b[0m \x1b[0;1;4;31mrain\x1b[0m fell .\n"
            "    1     ┌─ \x1b[0;1;31mHeavy\x1b[0m  Atr\n"
            "    2  ┌─ \x1b[0;1;4;31mrain\x1b[0m      Sb\n"
            "    3  fell         Pred\n"
            "    4  .            AuxK\n");
}

TEST(KwicFormat, GoesOnWithTheWidthsOfTheFirstThousandExamples) {
  std::vector<test::ExampleOfTest> examples(1000, {written_as(heavy_rain(), "Heavy rain fell.", "w"), hit_at({1, 2})});
  examples.push_back({written_as(heavy_rain(), "Heavy rain fell.", "identifier"), hit_at({2, 3})});
  const std::string all = shown(Format::kwic, {.width = 40}, examples);
  // Of 37 columns the left side has 15. A long name is cut.
  const std::string last = "\nw         [Heavy] [rain] fell.\n…    Heavy [rain] [fell].\n";
  EXPECT_TRUE(all.ends_with(last)) << all.substr(all.size() - 100);
}

// Trees of any shape, rings among them, at any width: every word has its line, once.
TEST(ReadingFormats, ShowEveryWordOfAnySentenceAtAnyWidth) {
  test::Random random;
  use_utf8_characters();
  for (int round = 0; round < 300; ++round) {
    concordance::ExampleSentence sentence = sentence_of({});
    const std::uint32_t count = 2 + random.below(20);
    for (std::uint32_t i = 0; i < count; ++i)
      sentence.words.push_back({"<" + std::to_string(i + 1) + ">" + random.text(3, "a\xFF\xCC\x81"), "l", "l", "t", "r",
                                static_cast<std::uint16_t>(random.below(count + 1))});
    const auto first = static_cast<std::uint16_t>(1 + random.below(count - 1));
    const auto second = static_cast<std::uint16_t>(first + 1 + random.below(count - first));
    const Look look{.colour = random.once_in(2), .tree = true, .width = random.below(100)};
    const std::string all = shown(Format::text, look, {{sentence, hit_at({first, second})}});
    for (std::uint32_t i = 1; i <= count; ++i) {
      const std::string form = "<" + std::to_string(i) + ">";
      std::size_t times = 0;
      for (std::size_t at = all.find(form); at != std::string::npos; at = all.find(form, at + 1))
        ++times;
      // In the sentence, unless a line ends within it, and in the tree.
      EXPECT_GE(times, 1U) << all;
      EXPECT_LE(times, 2U) << all;
    }
    EXPECT_FALSE(shown(Format::kwic, look, {{sentence, hit_at({first, second})}}).empty());
  }
}

}  // namespace
}  // namespace colx::examples
