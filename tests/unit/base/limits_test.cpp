// Limits that tests can lower are those of the parts that keep to them.

#include "base/limits.h"

#include <gtest/gtest.h>

#include "corpus/datafile_format.h"
#include "util/compact_index.h"

namespace colx {
namespace {

TEST(LimitsTest, AreWhatRecordsAndIndexesHold) {
  EXPECT_EQ(limits::lemmas, most_distinct_lemmas);
  EXPECT_EQ(limits::records, CompactIndex::largest_size);
}

}  // namespace
}  // namespace colx
