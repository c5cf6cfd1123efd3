#include "corpus/datafile_list.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

TEST(ReadDatafileList, PathsHaveThePrefixAndSizesWhereTheyCanBeOpened) {
  const test::TemporaryFolder folder;
  folder.write("a", "four");
  folder.write("b", "");
  const std::string list = folder.write("list", "a\n\nb\ngone\n\na");
  std::vector<ListedDatafile> datafiles;
  EXPECT_TRUE(read_datafile_list(list, folder.path() + "/",
                                 [&](ListedDatafile datafile) { datafiles.push_back(std::move(datafile)); }));
  ASSERT_EQ(datafiles.size(), 4U);
  EXPECT_EQ(datafiles[0].entry, "a");
  EXPECT_EQ(datafiles[0].path, folder.path("a"));
  EXPECT_TRUE(datafiles[0].is_open);
  EXPECT_EQ(datafiles[0].size, 4U);
  EXPECT_EQ(datafiles[1].entry, "b");
  EXPECT_EQ(datafiles[1].size, 0U);
  EXPECT_FALSE(datafiles[2].is_open);
  EXPECT_EQ(datafiles[3].path, datafiles[0].path);
}

TEST(ReadDatafileList, AListThatCannotBeOpenedNamesNothing) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(read_datafile_list(folder.path("none"), "", [](const ListedDatafile&) { FAIL(); }));
}

}  // namespace
}  // namespace colx
