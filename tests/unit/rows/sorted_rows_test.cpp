#include "rows/sorted_rows.h"

#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/best_rows.h"
#include "rows/temporary_file.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

struct TextRow {
  std::string key;
  std::string members;
  std::string rest;

  bool operator==(const TextRow&) const = default;
};

// Keys of eight bytes and perhaps a text that ends with two zeros, so that none is the beginning of another.
std::vector<TextRow> _random_rows(test::Random& random, std::size_t count) {
  std::vector<TextRow> rows;
  for (std::size_t i = 0; i < count; ++i) {
    TextRow row;
    row.key = "1234567" + random.text(1, "ab");
    row.key.resize(8, '\xff');
    row.key += random.text(3, "\x01\xf0z") + std::string(2, '\0');
    row.members = "1\t" + random.text(4, "ab") + "\n";
    row.rest = std::to_string(i) + std::string(random.below(30), 'x');
    rows.push_back(row);
  }
  return rows;
}

std::vector<TextRow> _through(OrderedRows& sorted, const std::vector<TextRow>& rows) {
  for (const TextRow& row : rows) {
    const std::string text = row.members + row.rest;
    sorted.add({row.key, text, row.members.size()});
  }
  sorted.sort();
  std::vector<TextRow> result;
  KeyedRow row;
  while (sorted.next(row))
    result.push_back({std::string(row.key), std::string(row.text.substr(0, row.members_size)),
                      std::string(row.text.substr(row.members_size))});
  return result;
}

std::vector<TextRow> _plainly_sorted(std::vector<TextRow> rows) {
  std::stable_sort(rows.begin(), rows.end(), [](const TextRow& a, const TextRow& b) {
    return a.key != b.key ? a.key < b.key : a.members < b.members;
  });
  return rows;
}

TEST(SortedRows, StandInTheSameOrderWhateverTheMemory) {
  test::Random random;
  for (int round = 0; round < 30; ++round) {
    const std::vector<TextRow> rows = _random_rows(random, random.below(600));
    const std::vector<TextRow> expected = _plainly_sorted(rows);
    for (const std::size_t memory : {std::size_t{1}, std::size_t{5000}, std::size_t{20000}, std::size_t{1} << 20}) {
      SortedRows sorted(memory);
      EXPECT_EQ(_through(sorted, rows), expected) << memory;
    }
  }
}

TEST(SortedRows, TheBestAreTheFirstOfAll) {
  test::Random random;
  for (int round = 0; round < 100; ++round) {
    const std::vector<TextRow> rows = _random_rows(random, random.below(200));
    std::vector<TextRow> expected = _plainly_sorted(rows);
    const std::size_t limit = random.below(60);
    expected.resize(std::min(expected.size(), limit));
    BestRows best(limit);
    EXPECT_EQ(_through(best, rows), expected);
  }
}

TEST(SortedRows, OfRowsThatBeginAlikeOnlyTheFirstAreGivenBack) {
  test::Random random;
  for (int round = 0; round < 30; ++round) {
    const std::vector<TextRow> rows = _random_rows(random, random.below(600));
    const std::size_t most = random.below(5);
    std::vector<TextRow> expected;
    std::string beginning;
    std::size_t seen = 0;
    for (const TextRow& row : _plainly_sorted(rows)) {
      if (row.key.substr(0, 8) != beginning) seen = 0;
      beginning = row.key.substr(0, 8);
      if (seen++ < most) expected.push_back(row);
    }
    for (const std::size_t memory : {std::size_t{5000}, std::size_t{1} << 20}) {
      SortedRows sorted(memory, most);
      EXPECT_EQ(_through(sorted, rows), expected) << memory;
    }
  }
}

TEST(SortedRows, HoldARowThatIsLargerThanTheMemory) {
  std::vector<TextRow> rows = {{"keyofrow", "1\tb\n", std::string(100000, 'x')},
                               {"keyofrow", "1\ta\n", std::string(200000, 'y')},
                               {"akeyalso", "1\tc\n", "z"}};
  SortedRows sorted(5000);
  EXPECT_EQ(_through(sorted, rows), (std::vector<TextRow>{rows[2], rows[1], rows[0]}));
}

TEST(SortedRows, LeaveNothingInTheTemporaryFolderAndSayWhenThereIsNone) {
  const test::TemporaryFolder folder;
  test::Random random;
  const std::vector<TextRow> rows = _random_rows(random, 400);
  const std::string before = ::getenv("TMPDIR") == nullptr ? "/tmp" : ::getenv("TMPDIR");
  ::setenv("TMPDIR", folder.path().c_str(), 1);
  {
    SortedRows sorted(5000);
    EXPECT_EQ(_through(sorted, rows), _plainly_sorted(rows));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  }
  ::setenv("TMPDIR", (std::filesystem::path(folder.path()) / "none").c_str(), 1);
  SortedRows sorted(5000);
  EXPECT_THROW(_through(sorted, rows), output_error);
  ::setenv("TMPDIR", before.c_str(), 1);
}

TEST(SortedRows, AFullDiskIsAnErrorThatNamesTheFolder) {
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const struct rlimit small { 8192, before.rlim_max };
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  std::string message;
  try {
    TemporaryFile file;
    file.append(std::string(100000, 'x'));
  } catch (const output_error& error) {
    message = error.what();
  }
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_TRUE(message.starts_with("cannot write to a temporary file in /")) << message;
}

}  // namespace
}  // namespace colx::table
