#include "rows/grouped_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/random.h"

namespace colx::table {
namespace {

struct OwnedRow {
  std::string group;
  std::uint64_t frequency;
  std::string key;
  std::string text;
};

std::vector<std::string> _through(GroupedRows& grouped, const std::vector<OwnedRow>& rows) {
  for (const OwnedRow& row : rows)
    grouped.add(row.group, row.frequency, {row.key, row.text, 4});
  grouped.sort();
  std::vector<std::string> result;
  KeyedRow row;
  while (grouped.next(row))
    result.emplace_back(row.text);
  return result;
}

std::vector<std::string> _plainly_grouped(std::vector<OwnedRow> rows, GroupOrder order, std::size_t most) {
  std::map<std::string, std::uint64_t> sizes;
  for (const OwnedRow& row : rows)
    sizes[row.group] += row.frequency;
  const auto standing = [&](const OwnedRow& row) {
    const std::uint64_t size = order == GroupOrder::size ? ~sizes[row.group] : 0;
    return std::tuple(size, row.group, row.key, row.text.substr(0, 4));
  };
  std::stable_sort(rows.begin(), rows.end(),
                   [&](const OwnedRow& a, const OwnedRow& b) { return standing(a) < standing(b); });
  std::map<std::string, std::size_t> seen;
  std::vector<std::string> result;
  for (const OwnedRow& row : rows)
    if (seen[row.group]++ < most) result.push_back(row.text);
  return result;
}

TEST(GroupedRows, StandGroupByGroupWhateverTheMemory) {
  test::Random random;
  for (int round = 0; round < 40; ++round) {
    std::vector<OwnedRow> rows(random.below(500));
    for (std::size_t i = 0; i < rows.size(); ++i)
      rows[i] = {random.text(2, "ab") + std::string(2, '\0'), 1 + random.below(9), "12345" + random.text(1, "xy"),
                 "1\t" + std::string(1, "ab"[random.below(2)]) + "\n" + std::to_string(i)};
    for (OwnedRow& row : rows)
      row.key.resize(8, 'z');
    const std::size_t most = random.once_in(2) ? 1 + random.below(5) : rows.size();
    for (const GroupOrder order : {GroupOrder::size, GroupOrder::name})
      for (const std::size_t memory : {std::size_t{2}, std::size_t{20000}, std::size_t{1} << 20}) {
        GroupedRows grouped(order, memory, most);
        EXPECT_EQ(_through(grouped, rows), _plainly_grouped(rows, order, most)) << memory;
      }
  }
}

}  // namespace
}  // namespace colx::table
