#include "companion/byte_source.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "companion/errors.h"
#include "tests/support/gzip.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

using test::gzip;

// What a source gives before it ends or fails, and how it fails.
struct Read {
  std::string text;
  std::string error;  // behind the name
};

Read _read(const std::string& bytes, std::size_t piece) {
  const test::TemporaryFolder folder;
  Read result;
  const std::string path = folder.write("x", bytes);
  ByteSource source(path);
  std::string room(piece, '\0');
  try {
    while (const std::size_t count = source.read_some(room.data(), piece))
      result.text.append(room, 0, count);
    EXPECT_EQ(source.bytes_read(), bytes.size());
  } catch (const input_error& error) {
    result.error = std::string(error.what()).substr(path.size() + 2);
  }
  return result;
}

// Text that gzip cannot make small, so that it takes several readings of the file.
std::string _incompressible(std::size_t size) {
  std::mt19937_64 random(20261121);
  std::string text;
  while (text.size() < size)
    text += static_cast<char>(random() & 0xFF);
  return text;
}

TEST(ByteSource, GivesPlainAndCompressedTextWhateverThePiece) {
  const std::string large = "x" + _incompressible(400000);
  for (const std::size_t piece : {1U, 3U, 1000U, 1000000U}) {
    for (const std::string& text : {std::string(), std::string("a"), std::string("one\n\ntwo"), large}) {
      if (piece < 1000 && text.size() > 1000) continue;
      EXPECT_EQ(_read(text, piece).text, text);
      EXPECT_EQ(_read(gzip(text), piece).text, text);
      EXPECT_EQ(_read(gzip(text) + gzip("") + gzip("more") + std::string(20, '\0'), piece).text, text + "more");
    }
  }
}

TEST(ByteSource, TellsATruncatedMemberAfterItsText) {
  const std::string first = gzip("first\n");
  const std::string whole = first + gzip("second\n");
  for (std::size_t size = 2; size < whole.size(); ++size) {
    if (size == first.size()) continue;
    const Read read = _read(whole.substr(0, size), 4096);
    EXPECT_EQ(read.error, "the compressed data end too early; the file is truncated") << size;
    if (size > first.size()) {
      EXPECT_TRUE(read.text.starts_with("first\n")) << size;
    }
  }
}

TEST(ByteSource, TellsDamageAfterTheTextBeforeIt) {
  const std::string text = _incompressible(300000);
  std::string damaged = gzip(text);
  damaged[damaged.size() - 6] = static_cast<char>(damaged[damaged.size() - 6] ^ 1);
  const Read read = _read(damaged, 1000000);
  EXPECT_EQ(read.text, text);
  EXPECT_EQ(read.error, "the compressed data are damaged: incorrect data check");
  EXPECT_EQ(_read(gzip("a") + "rest", 10).error,
            "there are bytes behind the compressed data that are not compressed data");
  EXPECT_EQ(_read("\x1f\x8b" + std::string(30, 'x'), 10).error,
            "the compressed data are damaged: unknown compression method");
}

TEST(ByteSource, CanBeReadTwice) {
  const test::TemporaryFolder folder;
  for (const std::string& bytes : {gzip("abcdef"), std::string("abcdef")}) {
    ByteSource source(folder.write("x", bytes));
    for (const std::size_t piece : {2U, 6U}) {
      std::string room(piece, '\0');
      EXPECT_GT(source.read_some(room.data(), piece), 0U);
      EXPECT_EQ(room[0], 'a');
      source.rewind();
    }
  }
}

}  // namespace
}  // namespace colx
