// The input against formatted extraction from a stream, step by step.

#include "corpus/input.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ios>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>

#include "corpus/datafile_format.h"
#include "tests/support/piecewise_buffer.h"
#include "tests/support/random.h"

namespace colx {
namespace {

// Gives a few bytes and then breaks.
class BreakingBuffer : public std::streambuf {
 protected:
  std::streamsize xsgetn(char* out, std::streamsize) override {
    if (_given) throw std::runtime_error("broken");
    _given = true;
    out[0] = '7';
    return 1;
  }

 private:
  bool _given = false;
};

// Counts how often it is asked.
class CountingBuffer : public std::stringbuf {
 public:
  explicit CountingBuffer(const std::string& text)
      : std::stringbuf(text, std::ios::in | std::ios::out | std::ios::ate) {}

  int asked() const { return _asked; }

 protected:
  std::streamsize xsgetn(char* out, std::streamsize count) override {
    ++_asked;
    return std::stringbuf::xsgetn(out, count);
  }

 private:
  int _asked = 0;
};

// Does random things to both and compares what comes of them.
void expect_same_steps(const std::string& text, test::Random& random) {
  std::istringstream plain(text);
  test::PiecewiseBuffer pieces(text, 1 + random.below(9), random);
  std::istream stream(&pieces);
  Input input(stream);
  std::string steps;
  for (int step = 0; step < 40; ++step) {
    switch (random.below(random.once_in(4) ? 7 : 3)) {
      case 0: {
        steps += " number";
        std::uint32_t number = 77, expected = 77;
        input.read(number);
        plain >> expected;
        ASSERT_EQ(number, expected) << ::testing::PrintToString(text) << steps;
        break;
      }
      case 1: {
        steps += " word";
        std::string word = "old", expected = "old";
        input.read(word);
        plain >> expected;
        ASSERT_EQ(word, expected) << ::testing::PrintToString(text) << steps;
        break;
      }
      case 2:
        steps += " get";
        ASSERT_EQ(input.get(), plain.get()) << ::testing::PrintToString(text) << steps;
        break;
      case 3:
        steps += " peek";
        ASSERT_EQ(input.peek(), plain.peek()) << ::testing::PrintToString(text) << steps;
        break;
      case 4: {
        const std::uint32_t count = random.below(12);
        steps += " ignore" + std::to_string(count);
        input.ignore(count, '\n');
        plain.ignore(count, '\n');
        break;
      }
      case 5: {
        steps += " consume";
        const std::string_view held = input.buffered();
        const std::size_t count = random.below(static_cast<std::uint32_t>(held.size()) + 1);
        std::string expected(count, ' ');
        plain.rdbuf()->sgetn(expected.data(), static_cast<std::streamsize>(count));
        ASSERT_EQ(held.substr(0, count), expected) << ::testing::PrintToString(text) << steps;
        input.consume(count);
        break;
      }
      default:
        steps += " clear";
        input.clear();
        plain.clear();
    }
    ASSERT_EQ(input.good(), plain.good()) << ::testing::PrintToString(text) << steps;
    ASSERT_EQ(input.eof(), plain.eof()) << ::testing::PrintToString(text) << steps;
    ASSERT_EQ(input.fail(), plain.fail()) << ::testing::PrintToString(text) << steps;
    if (plain.good()) {
      const std::streamoff expected = plain.tellg();
      ASSERT_EQ(input.position(), expected) << ::testing::PrintToString(text) << steps;
    } else if (plain.fail()) {
      ASSERT_LT(input.position(), 0);
    }
  }
}

TEST(InputTest, DoesWhatAStreamDoesOnRandomShortTexts) {
  test::Random random;
  const std::string whitespace_and_letters = " \t\n\v\f\rab\xC3\xA9" + std::string(1, '\0') + "0129";
  for (int round = 0; round < 6000 && !::testing::Test::HasFatalFailure(); ++round)
    expect_same_steps(random.text(30, random.once_in(2) ? "+-0019 \nx" : whitespace_and_letters), random);
}

TEST(InputTest, ReadsNumbersAsAStreamDoes) {
  test::Random random;
  for (int round = 0; round < 6000; ++round) {
    std::string text = random.text(2, " \n+-") + random.text(3, "0") + std::to_string(random.engine()()) +
                       random.text(3, "0123456789") + random.text(2, " -x.");
    std::istringstream plain(text), stream(text);
    Input input(stream);
    for (int i = 0; i < 2; ++i) {
      std::uint32_t number = 77, expected = 77;
      input.read(number);
      plain >> expected;
      ASSERT_EQ(number, expected) << text;
      ASSERT_EQ(input.fail(), plain.fail()) << text;
      ASSERT_EQ(input.eof(), plain.eof()) << text;
    }
  }
}

TEST(InputTest, KnowsTheWhiteSpaceOfTheClassicLocale) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    EXPECT_EQ(is_white_space(c), std::isspace(c, std::locale::classic())) << byte;
  }
}

TEST(InputTest, CountsItsPositionAcrossManyBuffers) {
  std::string text(700000, 'x');
  for (std::size_t i = 0; i < text.size(); i += 1000)
    text[i] = '\n';
  std::istringstream stream(text);
  Input input(stream);
  for (std::int64_t line = 0; line < 700; ++line) {
    ASSERT_EQ(input.position(), line == 0 ? 0 : (line - 1) * 1000 + 1);
    input.ignore(5000, '\n');
  }
  EXPECT_FALSE(input.eof());
}

TEST(InputTest, ASourceThatGaveNothingIsAskedAgainAtTheLastByteOnly) {
  CountingBuffer buffer("1\n2\n3\n4\n");
  std::istream stream(&buffer);
  Input input(stream);
  for (const std::string_view left : {"1\n2\n3\n4\n", "2\n3\n4\n", "3\n4\n", "4\n"}) {
    EXPECT_EQ(input.buffered(), left);
    input.consume(2);
  }
  EXPECT_EQ(buffer.asked(), 2);
  EXPECT_EQ(input.buffered(), "");
  EXPECT_EQ(input.peek(), Input::end_of_input);
  EXPECT_TRUE(input.eof());
  EXPECT_EQ(buffer.asked(), 3);
}

TEST(InputTest, ASourceThatGrowsIsReadOn) {
  CountingBuffer buffer("1\n2");
  std::istream stream(&buffer);
  Input input(stream);
  EXPECT_EQ(input.buffered(), "1\n2");
  EXPECT_EQ(input.buffered(), "1\n2");  // nothing came
  buffer.sputn("3\n4\n", 4);
  std::uint32_t number = 0;
  input.read(number);
  EXPECT_EQ(number, 1U);
  input.read(number);
  EXPECT_EQ(number, 23U);
  EXPECT_TRUE(input.good());
  EXPECT_EQ(input.buffered(), "\n4\n");
  input.consume(3);
  EXPECT_EQ(input.peek(), Input::end_of_input);
  input.clear();
  buffer.sputn("5\n", 2);
  EXPECT_EQ(input.get(), '5');
  EXPECT_EQ(input.buffered(), "\n");
}

TEST(InputTest, AShortReadIsNotTheEnd) {
  test::Random random;
  const std::string text(9000, 'x');
  test::PiecewiseBuffer pieces(text, 7, random);
  std::istream stream(&pieces);
  Input input(stream);
  std::size_t seen = 0;
  while (!input.buffered().empty()) {
    input.consume(1);
    ++seen;
  }
  EXPECT_EQ(seen, text.size());
}

TEST(InputTest, AStreamThatBreaksIsAFailureAndNotTheEnd) {
  BreakingBuffer buffer;
  std::istream stream(&buffer);
  Input input(stream);
  EXPECT_EQ(input.get(), '7');
  EXPECT_TRUE(input.good());
  EXPECT_EQ(input.get(), Input::end_of_input);
  EXPECT_TRUE(input.fail());
  EXPECT_FALSE(input.eof());
  EXPECT_LT(input.position(), 0);
}

}  // namespace
}  // namespace colx
