// The parser's two ways through a line, against reading every line by formatted extraction from a stream.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "tests/reference/plain_parser.h"
#include "tests/support/parsing.h"
#include "tests/support/piecewise_buffer.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

// Larger than the parser's input buffer.
constexpr std::size_t large = 400000;

std::string any_bytes() {
  // White space, digits and suffix marks are as frequent as all other bytes together.
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte)
    bytes += static_cast<char>(byte);
  for (int i = 0; i < 24; ++i)
    bytes += " \t\n0123:_-+";
  return bytes;
}

// Sentences as they should be, up to so many bytes. Tags are few.
std::string ordinary_text(test::Random& random, std::size_t size) {
  const char* const relations[] = {"Sb", "Obj", "Atr_Co", "unknown"};
  std::string text;
  while (text.size() < size) {
    const std::uint32_t length = 1 + random.below(random.once_in(50) ? 300 : 20);
    const char blank = random.once_in(2) ? ' ' : '\t';
    for (std::uint32_t order = 1; order <= length; ++order) {
      const auto add = [&](const std::string& field) { text += field + blank; };
      add(std::to_string(order));
      add("form" + random.text(random.once_in(200) ? 9000 : 6, "abc'\xC3\xA9"));
      add(random.text(1, "AB_") + "l" + random.text(random.once_in(200) ? 6000 : 4, "em:;^_'\xC3\xA9"));
      add("N" + random.text(3, "ABC"));
      add(std::to_string(random.below(random.once_in(9) ? 4294967295U : 30)));
      text += std::string(relations[random.below(4)]) + '\n';
    }
    text += '\n';
  }
  return text;
}

void damage(std::string& text, test::Random& random, std::uint32_t damages) {
  static const std::string bytes = any_bytes();
  for (; damages > 0 && !text.empty(); --damages) {
    const std::size_t place = random.below(static_cast<std::uint32_t>(text.size()));
    if (random.once_in(3)) {
      text.erase(place, 1 + random.below(4));
    } else if (random.once_in(2)) {
      text.insert(place, random.text(3, " \n\r\t-+19x"));
    } else {
      text[place] = bytes[random.below(static_cast<std::uint32_t>(bytes.size()))];
    }
  }
}

// Reads a text in both ways, in the same calls, and compares everything that can be seen after each. Pieces of the
// given length at the most; 0: all at once.
void expect_plain_reading(const std::string& text, test::Random& random, const char* mask, std::uint32_t pieces) {
  const test::SettingsGuard guard;
  settings::morphologic_tag_mask = mask;
  test::Warnings warnings;
  std::istringstream whole(text);
  test::PiecewiseBuffer piecewise(text, pieces == 0 ? 1 : pieces, random);
  std::istream stream(pieces == 0 ? whole.rdbuf() : static_cast<std::streambuf*>(&piecewise));
  StringStore<std::uint32_t> lemmas(65535);
  StringStore<std::uint8_t> tags(65535);
  WordForms forms;
  const bool with_forms = random.once_in(2);
  Parser parser(stream, lemmas, tags, warnings.sink(), with_forms ? &forms : nullptr);
  std::istringstream plain_stream(text);
  reference::PlainParser plain(plain_stream, mask);
  const std::uint32_t largest_limit = random.once_in(3) ? 100000 : 6;
  while (!plain.at_end()) {
    const ContextWindow::Mode mode = random.once_in(2) ? ContextWindow::words : ContextWindow::sentences;
    const std::uint32_t limit = random.below(largest_limit);
    WordQueue words;
    forms.clear();
    std::vector<reference::PlainWord> plain_words;
    ASSERT_EQ(parser.next(limit, mode, words), plain.next(limit, mode, plain_words));
    ASSERT_EQ(parser.sentences().size(), plain.sentences().size());
    for (std::size_t i = 0; i < plain.sentences().size(); ++i) {
      const reference::PlainSentence& sentence = plain.sentences()[i];
      ASSERT_EQ(parser.sentences()[i].length, sentence.length);
      ASSERT_EQ(parser.sentences()[i].line, sentence.line);
      ASSERT_EQ(parser.sentences()[i].begin, sentence.begin);
      ASSERT_EQ(parser.sentences()[i].end, sentence.end);
    }
    ASSERT_EQ(words.size(), plain_words.size());
    ASSERT_EQ(forms.size(), with_forms ? words.size() : 0U);
    for (std::size_t i = 0; i < words.size(); ++i) {
      ASSERT_EQ(words[i].lemma, plain_words[i].lemma) << plain.lemmas[plain_words[i].lemma];
      ASSERT_EQ(words[i].tag, plain_words[i].tag);
      if (with_forms) {
        ASSERT_EQ(forms[i], plain_words[i].form);
      }
      ASSERT_EQ(words[i].order, plain_words[i].order);
      ASSERT_EQ(words[i].parent, plain_words[i].parent);
      ASSERT_EQ(words[i].dependency, plain_words[i].dependency);
    }
    ASSERT_EQ(parser.at_end(), plain.at_end());
    if (plain.at_end()) break;
    ASSERT_EQ(parser.position(), plain.position());
  }
  ASSERT_EQ(warnings.text(), plain.warnings());
  ASSERT_EQ(lemmas.size(), plain.lemmas.size());
  for (std::uint32_t i = 0; i < plain.lemmas.size(); ++i)
    ASSERT_EQ(lemmas[i], plain.lemmas[i]);
  ASSERT_EQ(tags.size(), plain.tags.size());
  for (std::uint32_t i = 0; i < plain.tags.size(); ++i)
    ASSERT_EQ(tags[static_cast<std::uint8_t>(i)], plain.tags[i]);
}

TEST(ParserLanes, ReadHostileBytesAsAStreamDoes) {
  test::Random random;
  const std::string bytes = any_bytes();
  for (int round = 0; round < 4000 && !::testing::Test::HasFatalFailure(); ++round) {
    const std::string text = random.text(random.once_in(10) ? 3000 : 80, bytes);
    expect_plain_reading(text, random, nullptr, random.below(10));
    if (::testing::Test::HasFatalFailure()) ADD_FAILURE() << ::testing::PrintToString(text);
  }
}

TEST(ParserLanes, ReadShortDamagedTextAsAStreamDoes) {
  test::Random random;
  for (int round = 0; round < 4000 && !::testing::Test::HasFatalFailure(); ++round) {
    std::string text = ordinary_text(random, random.below(200));
    damage(text, random, random.below(4));
    text.resize(text.size() - random.below(random.once_in(3) ? static_cast<std::uint32_t>(text.size()) + 1 : 1));
    expect_plain_reading(text, random, random.once_in(2) ? "*-*" : nullptr, random.below(100));
    if (::testing::Test::HasFatalFailure()) ADD_FAILURE() << ::testing::PrintToString(text);
  }
}

TEST(ParserLanes, ReadTextLargerThanTheBufferAsAStreamDoes) {
  test::Random random;
  for (int round = 0; round < 12 && !::testing::Test::HasFatalFailure(); ++round) {
    std::string text = ordinary_text(random, large + random.below(large));
    if (round % 3 != 0) damage(text, random, random.below(200));
    expect_plain_reading(text, random, round % 2 == 0 ? nullptr : "-*", round % 4 == 0 ? 0 : 1 + random.below(7000));
  }
}

TEST(ParserLanes, ReadHostileBytesWithoutEndAsAStreamDoes) {
  test::Random random;
  const std::string bytes = any_bytes();
  const std::string without_newline = "0123456789 abc\t";
  for (int round = 0; round < 4 && !::testing::Test::HasFatalFailure(); ++round) {
    std::string text = random.text(2 * large, round % 2 == 0 ? bytes : without_newline);
    text += ordinary_text(random, large);
    expect_plain_reading(text, random, nullptr, random.once_in(2) ? 0 : 5000);
  }
}

}  // namespace
}  // namespace colx
