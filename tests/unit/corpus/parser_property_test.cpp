// The parser over hostile input, against a second reading of the format: character by character, without streams.

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/dependencies.h"
#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "tests/support/parsing.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

constexpr std::uint32_t largest_number = 4294967295;

// What is seen of a text: one line for each word, an empty line after each sentence; and the warnings.
struct Reading {
  std::string sentences;
  std::string warnings;
};

std::string _word_line(std::uint32_t order, const std::string& lemma, std::uint32_t parent, unsigned dependency) {
  return std::to_string(order) + ' ' + lemma + ' ' + std::to_string(parent) + ' ' + std::to_string(dependency) + '\n';
}

// Follows the format to the letter, for texts without lines that are too long to be skipped at once.
class LiteralReader {
 public:
  explicit LiteralReader(std::string_view text) : _text(text) {}

  Reading read() {
    while (_at < _text.size()) {
      ++_line;
      if (_text[_at] == '\n') {
        ++_at;
        _end_sentence();
        continue;
      }
      _failed = false;
      _at_end = false;
      const std::uint32_t order = _number();
      _field();
      const std::string lemma = _field();
      _field();
      const std::uint32_t parent = _number();
      const std::string dependency = _field();
      if (_failed && _at_end) break;
      if (_failed) {
        _drop("Incorrect input format detected at line " + std::to_string(_line));
      } else if (order != _length + 1) {
        _drop("Word order mismatch detected at line " + std::to_string(_line) + ". Got word ordered as " +
              std::to_string(order) + ", while expecting " + std::to_string(_length + 1));
      } else {
        ++_at;
        ++_length;
        _sentence += _word_line(order, lemma.substr(0, lemma.find_first_of("':;^_")), parent % 65536,
                                string2dependency(dependency));
      }
    }
    _end_sentence();
    return _reading;
  }

 private:
  void _end_sentence() {
    if (_length > 0) _reading.sentences += _sentence + '\n';
    _sentence.clear();
    _length = 0;
  }

  // One character is given up, whether it is the one after the sixth field or part of what is no number.
  void _drop(const std::string& problem) {
    _reading.warnings += "WARNING: " + problem + ". Skipping current sentence...\n";
    _sentence.clear();
    _length = 0;
    ++_at;
    while (_at < _text.size() && _text[_at] != '\n') {
      const std::size_t newline = _text.find('\n', _at);
      _at = newline == std::string_view::npos ? _text.size() : newline + 1;
      ++_line;
    }
    ++_at;
    ++_line;
  }

  // Goes to the next field. A field that is not there fails, as does every field after one that has failed.
  bool _find_field() {
    if (_failed) return false;
    while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])) != 0)
      ++_at;
    if (_at == _text.size()) _failed = _at_end = true;
    return !_failed;
  }

  std::string _field() {
    if (!_find_field()) return "";
    const std::size_t begin = _at;
    while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])) == 0)
      ++_at;
    if (_at == _text.size()) _at_end = true;
    return std::string(_text.substr(begin, _at - begin));
  }

  // An unsigned number may have a sign; a negative one stands for what it is modulo 2^32.
  std::uint32_t _number() {
    if (!_find_field()) return 0;
    const bool negative = _text[_at] == '-';
    if (negative || _text[_at] == '+') ++_at;
    std::uint64_t value = 0;
    const std::size_t digits = _at;
    for (; _at < _text.size() && _text[_at] >= '0' && _text[_at] <= '9'; ++_at) {
      if (value <= largest_number) value = value * 10 + static_cast<std::uint64_t>(_text[_at] - '0');
    }
    if (_at == _text.size()) _at_end = true;
    if (_at == digits || value > largest_number) _failed = true;
    const auto magnitude = static_cast<std::uint32_t>(value);
    return negative ? 0 - magnitude : magnitude;
  }

  std::string_view _text;
  std::size_t _at = 0;
  unsigned _line = 0;
  std::uint32_t _length = 0;  // of the sentence in hand
  std::string _sentence;
  bool _failed = false;
  bool _at_end = false;
  Reading _reading;
};

// Reads a text with the parser, in calls of this limit.
Reading _parse(const std::string& text, std::uint32_t limit, ContextWindow::Mode mode) {
  const test::SettingsGuard guard;
  test::Warnings warnings;
  std::istringstream stream(text);
  StringStore<std::uint32_t> lemmas(65535);
  StringStore<std::uint8_t> tags(65535);
  Parser parser(stream, lemmas, tags, warnings.sink());
  Reading reading;
  while (!parser.at_end()) {
    WordQueue words;
    parser.next(limit, mode, words);
    auto word = words.begin();
    for (const std::uint32_t length : test::lengths_of(parser)) {
      for (const auto end = word + length; word != end; ++word)
        reading.sentences += _word_line(word->order, std::string(lemmas[word->lemma]), word->parent, word->dependency);
      reading.sentences += '\n';
    }
    EXPECT_EQ(word, words.end());
  }
  reading.warnings = warnings.text();
  return reading;
}

void _expect_literal_reading(const std::string& text, test::Random& random) {
  const Reading expected = LiteralReader(text).read();
  const ContextWindow::Mode mode = random.once_in(2) ? ContextWindow::words : ContextWindow::sentences;
  const Reading actual = _parse(text, random.once_in(2) ? largest_number : random.below(6), mode);
  ASSERT_EQ(actual.sentences, expected.sentences) << text;
  ASSERT_EQ(actual.warnings, expected.warnings) << text;
}

TEST(ParserProperty, ReadsRandomCharactersToTheLetter) {
  test::Random random;
  for (int round = 0; round < 20000 && !::testing::Test::HasFatalFailure(); ++round)
    _expect_literal_reading(random.text(60, "0112 a\t\r\n\n\v-+_:\xC3\xA9"), random);
}

// Word lines most of which are right, so that sentences are found between the wrong ones.
TEST(ParserProperty, ReadsDamagedSentencesToTheLetter) {
  test::Random random;
  for (int round = 0; round < 10000 && !::testing::Test::HasFatalFailure(); ++round) {
    std::string text;
    unsigned order = 0;
    for (std::uint32_t lines = random.below(12); lines > 0; --lines) {
      text += std::to_string(++order) + " form le" + random.text(3, "m_") + " Tag " + std::to_string(random.below(4)) +
              (random.once_in(2) ? " Sb\n" : " Pred\n");
      if (!random.once_in(3)) continue;
      text += '\n';
      order = 0;
    }
    for (std::uint32_t damages = random.below(3); damages > 0 && !text.empty(); --damages) {
      const std::size_t place = random.below(static_cast<std::uint32_t>(text.size()));
      if (random.once_in(2)) {
        text.erase(place, 1 + random.below(4));
      } else {
        text.insert(place, random.text(4, " \n\r-19x"));
      }
    }
    _expect_literal_reading(text, random);
  }
}

// A bad sentence whose fault lies within its lines costs no other sentence, whatever bytes the rest of it holds.
TEST(ParserProperty, NeverLosesAGoodSentenceAfterTheEmptyLineOfABadOne) {
  test::Random random;
  std::string any_byte;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\n') any_byte += static_cast<char>(byte);
  }
  for (int round = 0; round < 300; ++round) {
    std::string text;
    std::string good_sentences;
    std::size_t bad_sentences = 0;
    for (unsigned sentence = 0; sentence < 20; ++sentence) {
      const std::uint32_t length = 1 + random.below(3);
      const bool bad = random.once_in(2);
      for (std::uint32_t order = 1; order <= length; ++order) {
        const std::string lemma = std::to_string(sentence) + 'w' + std::to_string(order);
        text += std::to_string(order) + " form " + lemma + " Tag 0 Pred\n";
        if (!bad) good_sentences += _word_line(order, lemma, 0, 109);
      }
      if (bad) {
        const char* const faults[] = {"seven form lemma Tag 0 Pred\n", "9 form lemma Tag 0 Pred\n",
                                      "0 form lemma Tag 0 Pred\n", "1 form lemma Tag above Pred\n"};
        text += faults[random.below(4)];
        for (std::uint32_t lines = random.below(4); lines > 0; --lines)
          text += '!' + random.text(40, any_byte) + '\n';
        ++bad_sentences;
      } else {
        good_sentences += '\n';
      }
      text += '\n';
    }
    const Reading reading = _parse(text, largest_number, ContextWindow::sentences);
    ASSERT_EQ(reading.sentences, good_sentences);
    std::size_t warnings = 0;
    for (const char c : reading.warnings)
      warnings += c == '\n';
    ASSERT_EQ(warnings, bad_sentences);
  }
}

}  // namespace
}  // namespace colx
