// Counts beyond what ngrex holds: what its records would show, and how they get into intermediate files.

#include "scale/writing/saturation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "scale/counting/records.h"
#include "scale/counting/run_table.h"
#include "spill/encoding.h"
#include "tests/support/random.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

using test::SettingsGuard;

// Every place where a counter starts again or a carried amount ends, what lies around it, and anything between.
TEST(SaturationTest, IsWhatARecordShowsAfterSoManyOccurrences) {
  const SettingsGuard guard(2);
  test::Random random;
  for (std::uint64_t times_full = 0; times_full <= 520; ++times_full) {
    const std::uint64_t count =
        times_full * NGram::_max_frequency + (random.once_in(3) ? random.below(16777215) : random.below(9)) + 1;
    test::Record record({{1, 0, 2}, {2, 0, 0}}, 3);
    for (std::uint64_t left = count - 1; left > 0;) {
      const auto piece =
          static_cast<std::uint32_t>(std::min<std::uint64_t>(left, std::uint64_t{random.below(2000000000)} * 2 + 1));
      record.add(piece);
      left -= piece;
    }
    ASSERT_EQ(saturated(count), record.frequency()) << count;
  }
  EXPECT_EQ(saturated(4294967294), 4294967294U);
  EXPECT_EQ(saturated(4294967295), 4294967295U);
  EXPECT_EQ(saturated(4294967296), 4294967295U);
  EXPECT_EQ(saturated(std::numeric_limits<std::uint64_t>::max()), 4294967295U);
}

// Puts a limit back.
struct LimitGuard {
  ~LimitGuard() { limits::frequency = before; }
  std::uint32_t before = limits::frequency;
};

TEST(SaturationTest, ARunEndsBeforeARecordOfItPassesTheLimit) {
  const SettingsGuard guard(2);
  const LimitGuard limit;
  limits::frequency = 1000;
  const test::TemporaryFolder folder;
  RunTable table(1 << 20);
  OccurrenceBatch batch;
  while (!batch.full())
    test::Occurrence({{1, 0, 2}, {2, 0, 0}}).add_to(batch);
  std::uint64_t in_files = 0;
  std::uint64_t counted = 0;
  int runs = 0;
  const auto write = [&] {
    const std::string path = folder.path("run" + std::to_string(runs++));
    table.write(path, 0);
    SegmentReader file(path, run_kind);
    const char* from = file.read(0).data() + 2 * NGram::Member::size;
    const std::uint64_t count = get_short(from);
    EXPECT_LE(count, 1000U);
    in_files += count;
  };
  for (int i = 0; i < 20; ++i) {
    if (table.full()) write();
    table.count(batch, counted);
    counted += batch.size();
  }
  write();
  EXPECT_GT(runs, 5);
  EXPECT_EQ(in_files, counted);
}

}  // namespace
}  // namespace colx::scale
