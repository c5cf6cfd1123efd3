// Frequencies on their way from the counting of patterns to the writing: written pair by pair, read part by part.

#include "scale/counting/frequencies.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "spill/damaged_file.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

// By pair and part.
using Lists = std::vector<std::vector<std::vector<std::uint64_t>>>;

std::string encoded(const std::vector<std::uint64_t>& numbers) {
  std::string bytes;
  for (const std::uint64_t number : numbers)
    append_short(bytes, number);
  return bytes;
}

void write(const std::string& path, const Lists& lists, std::size_t parts, std::size_t memory) {
  FrequenciesWriter writer(path, parts, memory);
  for (const auto& pair : lists) {
    for (std::size_t part = 0; part < parts; ++part)
      writer.add(part, encoded(pair[part]));
    writer.end_pair();
  }
  writer.finish();
}

TEST(FrequenciesTest, EveryPartGetsWhatEveryPairHasForItWhateverTheMemory) {
  test::Random random;
  const test::TemporaryFolder folder;
  for (int round = 0; round < 40; ++round) {
    const std::size_t parts = 1 + random.below(5);
    Lists lists(random.below(200));
    for (auto& pair : lists) {
      pair.resize(parts);
      for (auto& list : pair) {
        for (std::uint32_t left = random.below(4); left > 0; --left)
          list.push_back(std::uint64_t{random.below(1U << 20)} << random.below(40));
      }
    }
    const std::string path = folder.path("frequencies");
    write(path, lists, parts, random.below(60));
    FrequenciesReader reader(path, parts, SegmentReader::Hold::closed);
    for (std::size_t part = 0; part < parts; ++part) {
      std::string bytes = "of another task";
      std::vector<std::size_t> begins{7};
      reader.load(part, bytes, begins);
      ASSERT_EQ(begins.size(), lists.size() + 1);
      for (std::size_t pair = 0; pair < lists.size(); ++pair) {
        const std::string expected = encoded(lists[pair][part]);
        EXPECT_EQ(bytes.substr(begins[pair + 1], expected.size()), expected);
      }
    }
  }
}

TEST(FrequenciesTest, ManyPartsAndPairsMakeNoIndexThatIsLargerThanWhatItTells) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("frequencies");
  write(path, Lists(640, std::vector<std::vector<std::uint64_t>>(100)), 100, 0);
  // A byte for each part of each pair, and a round whenever there are 64 of a part.
  EXPECT_EQ(SegmentReader(path, "frq2").segments(), 10U * 100 + 1);
}

TEST(FrequenciesTest, AFileForOtherPartsIsRefused) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path("frequencies");
  write(path, {{{1}, {2}}, {{3}, {4}}}, 2, 0);
  EXPECT_THROW(FrequenciesReader(path, 3, SegmentReader::Hold::open), damaged_file);
}

}  // namespace
}  // namespace colx::scale
