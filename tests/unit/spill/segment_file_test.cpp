// Intermediate files come back as they were written, and nothing else passes for one.

#include "spill/segment_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "spill/damaged_file.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class SegmentFileTest : public ::testing::Test {
 protected:
  FileMark write(const std::vector<std::string>& segments) const {
    SegmentWriter writer(path, "test");
    for (const std::string& segment : segments)
      writer.add(segment);
    return writer.finish();
  }

  // Whether somebody who reads all of the file notices that something is wrong with it.
  bool is_refused() const {
    try {
      SegmentReader reader(path, "test");
      for (std::size_t i = 0; i < reader.segments(); ++i)
        reader.read(i);
      return false;
    } catch (const damaged_file& error) {
      EXPECT_EQ(error.path(), path);
      return true;
    }
  }

  const test::TemporaryFolder folder;
  const std::string path = folder.path("file");
};

TEST_F(SegmentFileTest, GivesSegmentsBackInAnyOrder) {
  const std::vector<std::string> segments = {"first", "", std::string(300000, 'x'), std::string("\0\1\n", 3)};
  const FileMark mark = write(segments);
  for (const auto hold : {SegmentReader::Hold::open, SegmentReader::Hold::closed}) {
    SegmentReader reader(path, "test", 16, hold);
    ASSERT_EQ(reader.segments(), segments.size());
    for (const std::size_t i : std::vector<std::size_t>{0, 1, 2, 3, 2, 0, 3, 1}) {
      EXPECT_EQ(reader.read(i), segments[i]);
      EXPECT_EQ(reader.size(i), segments[i].size());
    }
    EXPECT_EQ(reader.mark(), mark);
  }
  EXPECT_EQ(mark_of(path), mark);
}

TEST_F(SegmentFileTest, GivesAllSegmentsBackWhereverReadingAheadIsToStop) {
  const std::vector<std::string> segments = {"first", "second", "third", "fourth"};
  write(segments);
  SegmentReader reader(path, "test");
  for (const std::size_t stop : std::vector<std::size_t>{2, 0, 4, 1}) {
    reader.stop_ahead_of(stop);
    for (std::size_t i = 0; i < segments.size(); ++i)
      EXPECT_EQ(reader.read(i), segments[i]) << stop;
  }
}

TEST_F(SegmentFileTest, IsRefusedWhenItHasNoSuchSegment) {
  write({"one", "two"});
  SegmentReader reader(path, "test");
  reader.stop_ahead_of(2);
  EXPECT_EQ(reader.size(1), 3U);
  EXPECT_THROW(reader.size(2), damaged_file);
  EXPECT_THROW(reader.read(2), damaged_file);
  EXPECT_THROW(reader.stop_ahead_of(3), damaged_file);
  write({});
  EXPECT_THROW(SegmentReader(path, "test").read(0), damaged_file);
}

TEST_F(SegmentFileTest, StandsUnderItsNameOnlyWhenItIsComplete) {
  {
    SegmentWriter writer(path, "test");
    writer.add("something");
    EXPECT_FALSE(std::filesystem::exists(path));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  EXPECT_TRUE(is_refused());
}

TEST_F(SegmentFileTest, HasAMarkThatTellsItsContent) {
  const FileMark mark = write({"one", "two"});
  EXPECT_EQ(write({"one", "two"}), mark);
  EXPECT_NE(write({"one", "twp"}), mark);
  EXPECT_NE(write({"onet", "wo"}), mark);
}

TEST_F(SegmentFileTest, IsRefusedWhenItIsOfAnotherKind) {
  write({"one"});
  EXPECT_THROW(SegmentReader(path, "othe"), damaged_file);
}

TEST_F(SegmentFileTest, IsRefusedWithAnyBitTurnedAndCutAnywhere) {
  write({"one", "", "three and some more"});
  const std::string whole = content_of(path);
  ASSERT_FALSE(is_refused());
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::string turned = whole;
    turned[i] = static_cast<char>(turned[i] ^ (1 << i % 8));
    folder.write("file", turned);
    EXPECT_TRUE(is_refused()) << "byte " << i;
    folder.write("file", whole.substr(0, i));
    EXPECT_TRUE(is_refused()) << "cut to " << i;
  }
  folder.write("file", whole + "x");
  EXPECT_TRUE(is_refused());
}

// Sizes below, at and above those of the words and blocks by which the sum goes.
TEST(ChecksumTest, ChangesWithEveryBitEveryCutAndWordsThatChangePlaces) {
  constexpr std::size_t word = 8;
  test::Random random;
  for (const bool is_random : {false, true}) {
    std::string bytes(13 * word + 5, '\0');
    for (char& byte : bytes)
      if (is_random) byte = static_cast<char>(random.below(256));
    std::set<std::uint64_t> sums{checksum("")};
    for (std::size_t size = 1; size <= bytes.size(); ++size)
      EXPECT_TRUE(sums.insert(checksum(bytes.substr(0, size))).second) << "cut to " << size;
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
      std::string turned = bytes;
      turned[bit / 8] = static_cast<char>(turned[bit / 8] ^ (1 << bit % 8));
      EXPECT_TRUE(sums.insert(checksum(turned)).second) << "bit " << bit;
    }
    for (std::size_t one = 0; is_random && one < bytes.size() / word; ++one) {
      for (std::size_t other = 0; other < one; ++other) {
        std::string swapped = bytes;
        std::swap_ranges(&swapped[one * word], &swapped[(one + 1) * word], &swapped[other * word]);
        EXPECT_TRUE(sums.insert(checksum(swapped)).second) << "words " << one << " and " << other;
      }
    }
  }
}

}  // namespace
}  // namespace colx
