#include "base/files.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

TEST(OpenInput, ReadsAFileByteForByte) {
  const test::TemporaryFolder folder;
  const std::string content("a\r\nb\0c\x1A\xFF\n", 9);
  std::ifstream stream = open_input(folder.write("file", content));
  ASSERT_TRUE(stream.is_open());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), content);
}

TEST(OpenInput, OpensAnEmptyFile) {
  const test::TemporaryFolder folder;
  EXPECT_TRUE(open_input(folder.write("empty", "")).is_open());
}

TEST(OpenInput, RefusesAFileThatIsNotThere) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(open_input(folder.path("missing")).is_open());
  EXPECT_FALSE(open_input("").is_open());
}

TEST(OpenInput, RefusesADirectory) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(open_input(folder.path()).is_open());
}

}  // namespace
}  // namespace colx
