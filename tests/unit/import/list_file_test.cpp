#include "import/list_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "companion/errors.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

std::string _content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(ListFile, NamesNoFileTwiceUnderWhateverName) {
  const test::TemporaryFolder folder;
  const std::string list = folder.write("list", "a.dat");
  const std::string file = folder.write("c.dat", "");
  ListFile(list, {}).add({"a.dat", "b.dat", file});
  ListFile(list, {}).add({"b.dat", folder.path() + "/./c.dat"});
  EXPECT_EQ(_content(list), "a.dat\nb.dat\n" + file + "\n");
}

TEST(ListFile, TakesEmptyLinesForNoEntries) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("list", "\n\na.dat\n\n");
  EXPECT_EQ(ListFile(path, {}).entries(), 1U);
  EXPECT_FALSE(ListFile(path, {}).names_others({"a.dat"}));
  EXPECT_TRUE(ListFile(path, {}).names_others({"b.dat"}));
}

TEST(ListFile, RefusesWhatIsNoList) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(ListFile("/dev/full", {}), output_error);
  EXPECT_THROW(ListFile(folder.path(), {}), output_error);
  EXPECT_THROW(ListFile(folder.path("no/list"), {}), output_error);
  EXPECT_THROW(ListFile(folder.write("words", "1 f l t 0 Pred\n"), {}), output_error);
  const std::string input = folder.write("input", "a.dat\n");
  EXPECT_THROW(ListFile(input, {regular_file(input).value().identity}), output_error);
}

TEST(ListFile, GoesAwayWhenItWasMadeForNothing) {
  const test::TemporaryFolder folder;
  { const ListFile list(folder.path("new"), {}); }
  EXPECT_FALSE(regular_file(folder.path("new")).has_value());
  ListFile(folder.path("new"), {}).add({"a.dat"});
  EXPECT_EQ(_content(folder.path("new")), "a.dat\n");
  { const ListFile list(folder.path("new"), {}); }
  EXPECT_EQ(_content(folder.path("new")), "a.dat\n");
}

TEST(ListFile, KnowsLinesThatEndWithCrLf) {
  const test::TemporaryFolder folder;
  EXPECT_TRUE(ListFile(folder.write("a", "a.dat\r\n"), {}).has_carriage_returns());
  EXPECT_FALSE(ListFile(folder.write("b", "a.dat\n"), {}).has_carriage_returns());
}

}  // namespace
}  // namespace colx
