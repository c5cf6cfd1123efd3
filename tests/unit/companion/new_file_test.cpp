#include "companion/new_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "companion/errors.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

std::string _content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::ptrdiff_t _files_in(const test::TemporaryFolder& folder) {
  return std::distance(std::filesystem::directory_iterator(folder.path()), {});
}

TEST(NewFile, HasItsNameWhenItIsComplete) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("t", "before");
  NewFile file(path);
  file.write("after");
  EXPECT_EQ(_content(path), "before");
  EXPECT_EQ(_content(file.temporary_path()), "after");
  file.commit();
  EXPECT_EQ(_content(path), "after");
  EXPECT_EQ(_files_in(folder), 1);
}

TEST(NewFile, PassesOverWhatAProcessOfTheSameNumberHasLeft) {
  const test::TemporaryFolder folder;
  const std::string left = folder.write("t." + std::to_string(::getpid()) + ".part", "left");
  NewFile file(folder.path("t"));
  file.write("x");
  file.commit();
  EXPECT_EQ(_content(folder.path("t")), "x");
  EXPECT_EQ(_content(left), "left");
  EXPECT_EQ(_files_in(folder), 2);
}

TEST(NewFile, AnnouncesItsNameBeforeItIsMade) {
  const test::TemporaryFolder folder;
  std::string announced;
  const NewFile file(folder.path("t"), [&](const std::string& name) {
    announced = name;
    EXPECT_EQ(_files_in(folder), 0);
  });
  EXPECT_EQ(announced, file.temporary_path());
}

TEST(NewFile, IsCheckedWithoutAFileThatHasAName) {
  const test::TemporaryFolder folder;
  const std::string there = folder.write("t", "before");
  const int nameless = ::open(folder.path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (nameless < 0) GTEST_SKIP() << "this file system has no files without names";
  ::close(nameless);
  const int events = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(::inotify_add_watch(events, folder.path().c_str(), IN_CREATE | IN_DELETE | IN_MODIFY), 0);
  check_new_file(there);
  check_new_file(folder.path("new"));
  char event[4096];
  EXPECT_LT(::read(events, event, sizeof event), 0);
  EXPECT_EQ(errno, EAGAIN);
  ::close(events);
}

TEST(NewFile, IsCheckedAsItWouldBeMade) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(check_new_file(folder.path("nowhere/t")), output_error);
  EXPECT_THROW(check_new_file(folder.path()), output_error);
  EXPECT_THROW(check_new_file(folder.path(std::string(254, 'n'))), output_error);
  check_new_file(folder.write("t." + std::to_string(::getpid()) + ".part", "left"));
  check_new_file(folder.path("t"));
}

TEST(NewFile, LeavesNothingWhenItIsGivenUp) {
  const test::TemporaryFolder folder;
  { NewFile(folder.path("t")).write("x"); }
  EXPECT_EQ(_files_in(folder), 0);
}

TEST(NewFileDeathTest, LeavesNothingWhenTheProgramIsInterrupted) {
  const test::TemporaryFolder folder;
  for (const int signal : {SIGHUP, SIGINT, SIGTERM})
    EXPECT_EXIT(
        {
          NewFile file(folder.path("t"));
          file.write("x");
          raise(signal);
        },
        testing::KilledBySignal(signal), "");
  EXPECT_EQ(_files_in(folder), 0);
}

TEST(NewFile, WritesThroughPipesAndLinksThatLeadNowhere) {
  const test::TemporaryFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const Descriptor reader(open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
  {
    NewFile file(pipe);
    EXPECT_EQ(file.temporary_path(), "");
    file.write("x");
    file.commit();
  }
  char read = 0;
  EXPECT_EQ(reader.read_some(&read, 1, pipe), 1U);
  EXPECT_EQ(read, 'x');
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));

  std::filesystem::create_symlink("later", folder.path("link"));
  NewFile file(folder.path("link"));
  file.write("y");
  file.commit();
  EXPECT_EQ(_content(folder.path("later")), "y");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(NewFile, DoesNotReplaceAFolder) {
  const test::TemporaryFolder folder;
  EXPECT_THROW(NewFile(folder.path()), output_error);
  EXPECT_THROW(NewFile(folder.path("no/such/folder")), output_error);
}

}  // namespace
}  // namespace colx
