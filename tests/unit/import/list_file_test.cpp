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
  ListFile(list).add({"a.dat", "b.dat", file});
  ListFile(list).add({"b.dat", folder.path() + "/./c.dat"});
  EXPECT_EQ(_content(list), "a.dat\nb.dat\n" + file + "\n");
}

TEST(ListFile, RefusesWhatIsNoRegularFile) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(ListFile("/dev/full"), output_error);
  EXPECT_THROW(ListFile{folder.path()}, output_error);
  EXPECT_THROW(ListFile(folder.path("no/list")), output_error);
}

}  // namespace
}  // namespace colx
