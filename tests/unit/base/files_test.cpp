#include "base/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "base/errors.h"
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

TEST(ReadLines, HandsOverEveryLineWithoutItsLineFeed) {
  const test::TemporaryFolder folder;
  std::vector<std::string> lines;
  EXPECT_TRUE(read_lines(folder.write("file", "a\r\n\nb"), [&](const std::string& line) { lines.push_back(line); }));
  EXPECT_EQ(lines, (std::vector<std::string>{"a\r", "", "b"}));
}

TEST(ReadLines, TellsAFileThatIsNotThereFromOneThatCannotBeRead) {
  const test::TemporaryFolder folder;
  const auto never = [](const std::string& line) { ADD_FAILURE() << line; };
  EXPECT_FALSE(read_lines(folder.path("missing"), never));
  EXPECT_THROW(read_lines("/proc/self/mem", never), fatal_error);  // where there is nothing at the first address
}

TEST(ReadLines, PassesOnWhatTheTakerThrows) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("file", "a\n");
  EXPECT_THROW(read_lines(path, [](const std::string&) { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(RegularFile, IsTheSameUnderAllItsNames) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("file", "abc");
  std::filesystem::create_hard_link(path, folder.path("hard"));
  std::filesystem::create_symlink("file", folder.path("soft"));
  const auto file = regular_file(path);
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->size, 3U);
  for (const char* const name : {"hard", "soft"})
    EXPECT_TRUE(regular_file(folder.path(name))->identity == file->identity) << name;
  EXPECT_FALSE(regular_file(folder.write("other", "abc"))->identity == file->identity);
}

TEST(RegularFile, IsNothingElse) {
  const test::TemporaryFolder folder;
  for (const std::string& path : {folder.path(), folder.path("missing"), std::string("/dev/null")})
    EXPECT_FALSE(regular_file(path).has_value()) << path;
}

TEST(OpenInput, RefusesADirectory) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(open_input(folder.path()).is_open());
}

}  // namespace
}  // namespace colx
