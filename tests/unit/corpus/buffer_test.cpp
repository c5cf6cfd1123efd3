#include "corpus/buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "base/errors.h"
#include "tests/support/parsing.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using Lengths = std::vector<std::uint32_t>;

// Half-open run of words by their numbers in the datafile, from 0.
using Range = std::pair<std::size_t, std::size_t>;

// A buffer over sentences of these many words. Every word has a lemma of its own, so that the index of the lemma is the
// number of the word.
class Window {
 public:
  Window(const Lengths& lengths, ContextWindow window) : buffer(_parser, window) {
    std::string text;
    unsigned number = 0;
    for (const std::uint32_t length : lengths) {
      for (std::uint32_t order = 1; order <= length; ++order)
        text += std::to_string(order) + " w " + std::to_string(number++) + " T 0 Pred\n";
      text += '\n';
    }
    _stream.str(text);
    buffer._init();
  }

  static Range numbers(WordRange range) {
    const std::size_t first = range.first->lemma;
    return {first, first + static_cast<std::size_t>(range.second - range.first)};
  }

  Range current() const { return numbers(buffer.current()); }
  Range held() const { return numbers(buffer.all()); }

 private:
  const test::SettingsGuard _guard;
  std::istringstream _stream;
  StringStore<std::uint32_t> _lemmas{65535};
  StringStore<std::uint8_t> _tags{65535};
  test::Warnings _warnings;
  Parser _parser{_stream, _lemmas, _tags, _warnings.sink()};

 public:
  Buffer buffer;
};

TEST(Buffer, IsSpentAtOnceOnAnEmptyDatafile) {
  for (const ContextWindow window :
       {ContextWindow{ContextWindow::sentences, 0}, ContextWindow{ContextWindow::sentences, 2},
        ContextWindow{ContextWindow::words, 5}}) {
    Window empty({}, window);
    EXPECT_TRUE(empty.buffer.empty());
    EXPECT_FALSE(empty.buffer.next());
    EXPECT_EQ(empty.buffer.words_count(), 0U);
    EXPECT_EQ(empty.buffer.sentences_count(), 0U);
  }
}

TEST(Buffer, HoldsTheCurrentSentenceAndThoseAfterItInTheSentencesMode) {
  Window window({1, 1, 1, 1, 1}, {ContextWindow::sentences, 2});
  const Range held[] = {{0, 3}, {1, 4}, {2, 5}, {3, 5}, {4, 5}};
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(window.current(), (Range{i, i + 1}));
    EXPECT_EQ(window.held(), held[i]);
    EXPECT_EQ(window.buffer.next(), i < 4) << i;
  }
}

TEST(Buffer, HoldsOneSentenceAtATimeWithARadiusOfNothing) {
  Window window({2, 3, 1}, {ContextWindow::sentences, 0});
  for (const Range& sentence : {Range{0, 2}, Range{2, 5}, Range{5, 6}}) {
    EXPECT_EQ(window.current(), sentence);
    EXPECT_EQ(window.held(), sentence);
    EXPECT_EQ(window.buffer.next(), sentence.second < 6);
  }
}

TEST(Buffer, ReadsWholeSentencesUntilTheRadiusIsFilledInTheWordsMode) {
  Window window({2, 2, 2, 2}, {ContextWindow::words, 3});
  EXPECT_EQ(window.held(), (Range{0, 6}));
  ASSERT_TRUE(window.buffer.next());
  EXPECT_EQ(window.current(), (Range{2, 4}));
  EXPECT_EQ(window.held(), (Range{0, 8}));
}

// The third sentence begins at word 6, of which 6 - 3 words lie beyond the radius: more than the first sentence has, so
// that it goes. The one left is not more than the second has.
TEST(Buffer, DropsASentenceOnlyWhenAllOfItLiesBeyondTheRadius) {
  Window window({2, 4, 1, 1, 1, 1}, {ContextWindow::words, 3});
  ASSERT_TRUE(window.buffer.next());
  EXPECT_EQ(window.held().first, 0U);
  ASSERT_TRUE(window.buffer.next());
  EXPECT_EQ(window.current(), (Range{6, 7}));
  EXPECT_EQ(window.held().first, 2U);
}

// Word 5 less the radius of 3 leaves a surplus of 2, which is not greater than the length of the first sentence.
TEST(Buffer, KeepsASentenceThatEndsWhereTheRadiusBegins) {
  Window window({2, 3, 1}, {ContextWindow::words, 3});
  ASSERT_TRUE(window.buffer.next());
  ASSERT_TRUE(window.buffer.next());
  EXPECT_EQ(window.current(), (Range{5, 6}));
  EXPECT_EQ(window.held(), (Range{0, 6}));
}

TEST(Buffer, NeverReadsOnInTheWordsModeWithARadiusOfNothing) {
  Window window({2, 2, 2}, {ContextWindow::words, 0});
  EXPECT_EQ(window.held(), (Range{0, 2}));
  EXPECT_FALSE(window.buffer.next());
  EXPECT_EQ(window.buffer.sentences_count(), 1U);
}

TEST(Buffer, CountsWhatItHasTakenInAlsoWhatItHasDropped) {
  Window window({2, 3, 4}, {ContextWindow::sentences, 1});
  EXPECT_EQ(window.buffer.sentences_count(), 2U);
  EXPECT_EQ(window.buffer.words_count(), 5U);
  while (window.buffer.next()) {
  }
  EXPECT_EQ(window.buffer.sentences_count(), 3U);
  EXPECT_EQ(window.buffer.words_count(), 9U);
}

TEST(Buffer, CutsTheContextAtItsOwnEnds) {
  Window window({4, 4}, {ContextWindow::words, 5});
  const auto [begin, end] = window.buffer.all();
  EXPECT_EQ(Window::numbers(window.buffer.context_range(begin, begin)), (Range{0, 6}));
  EXPECT_EQ(Window::numbers(window.buffer.context_range(end - 1, end - 1)), (Range{2, 8}));
  EXPECT_EQ(Window::numbers(window.buffer.context_range(begin, end - 1)), (Range{0, 8}));
}

TEST(Buffer, PutsTheRadiusOnBothSidesOfASpanItsLastWordIncluded) {
  Window window({3, 3, 3}, {ContextWindow::words, 1});
  ASSERT_TRUE(window.buffer.next());
  const WordIterator first = window.buffer.current().first;
  EXPECT_EQ(Window::numbers(window.buffer.context_range(first, first + 1)), (Range{2, 6}));
  EXPECT_EQ(Window::numbers(window.buffer.context_range(first + 1, first + 1)), (Range{3, 6}));
}

TEST(Buffer, CountsTheContextInWordsInTheSentencesModeToo) {
  Window window({3, 3, 3}, {ContextWindow::sentences, 2});
  const WordIterator first = window.buffer.current().first;
  EXPECT_EQ(Window::numbers(window.buffer.context_range(first + 3, first + 4)), (Range{1, 7}));
}

TEST(Buffer, PassesOnTheOverflowOfAStore) {
  const test::SettingsGuard guard;
  settings::morphologic_tag_mask = "***";
  std::string text;
  for (unsigned tag = 0; tag < 255; ++tag)
    text += "1 w w " + std::to_string(tag) + " 0 Pred\n\n";
  std::istringstream stream(text);
  StringStore<std::uint32_t> lemmas(65535);
  StringStore<std::uint8_t> tags(65535);
  test::Warnings warnings;
  Parser parser(stream, lemmas, tags, warnings.sink());
  Buffer buffer(parser, {ContextWindow::sentences, 1});
  buffer._init();
  for (unsigned sentence = 1; sentence < 253; ++sentence)
    ASSERT_TRUE(buffer.next());
  EXPECT_THROW(buffer.next(), index_overflow);
}

// The model knows the whole datafile. In the sentences mode the window is the current sentence i and `radius` more. In
// the words mode it ends with the first sentence by which `radius` words stand after sentence i, and begins with the
// first sentence k for which not more than `radius` words stand between its end and the beginning of i.
TEST(Buffer, AgreesWithAModelThatHoldsTheWholeDatafile) {
  test::Random random;
  for (int round = 0; round < 2000; ++round) {
    Lengths lengths(1 + random.below(12));
    for (std::uint32_t& length : lengths)
      length = 1 + random.below(random.once_in(4) ? 40 : 5);
    const bool by_sentences = random.once_in(2);
    const std::uint32_t radius = by_sentences ? random.below(4) : 1 + random.below(random.once_in(3) ? 50 : 8);
    std::vector<std::size_t> starts(lengths.size() + 1, 0);
    std::partial_sum(lengths.begin(), lengths.end(), starts.begin() + 1);

    Window window(lengths, {by_sentences ? ContextWindow::sentences : ContextWindow::words, radius});
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      std::size_t begin = i;
      std::size_t end = std::min<std::size_t>(i + radius + 1, lengths.size());
      if (!by_sentences) {
        for (begin = 0; begin < i && starts[i] - std::min(starts[begin + 1], starts[i]) > radius;)
          ++begin;
        for (end = i + 1; end < lengths.size() && starts[end] - starts[i + 1] < radius;)
          ++end;
      }
      ASSERT_EQ(window.current(), (Range{starts[i], starts[i + 1]}));
      ASSERT_EQ(window.held(), (Range{starts[begin], starts[end]})) << "radius " << radius << ", sentence " << i;
      ASSERT_EQ(window.buffer.sentences_count(), end);
      ASSERT_EQ(window.buffer.words_count(), starts[end]);

      const std::size_t first = random.below(lengths[i]);
      const std::size_t last = first + random.below(lengths[i] - static_cast<std::uint32_t>(first));
      const WordIterator sentence = window.buffer.current().first;
      const WordRange context = window.buffer.context_range(sentence + static_cast<std::ptrdiff_t>(first),
                                                            sentence + static_cast<std::ptrdiff_t>(last));
      const std::size_t from = starts[i] + first;
      const std::size_t reach = from < radius ? 0 : from - radius;
      ASSERT_EQ(Window::numbers(context),
                (Range{std::max(starts[begin], reach), std::min(starts[end], starts[i] + last + radius + 1)}));
      ASSERT_EQ(window.buffer.next(), i + 1 < lengths.size());
    }
  }
}

}  // namespace
}  // namespace colx
