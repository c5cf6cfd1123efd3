// What a run that was killed has left of an output file is removed, and nothing else is.

#include "scale/engine/unfinished_output.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

// Has a process write that ends without clearing up; returns the name of what it leaves.
std::string leave_behind(const test::TemporaryFolder& folder, const WorkFolder& work) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    const UnfinishedOutput unfinished(work);
    const NewFile file(folder.path("output"));
    unfinished.remember(file);
    ::_exit(0);
  }
  ::waitpid(pid, nullptr, 0);
  return folder.path("output." + std::to_string(pid) + ".part");
}

TEST(UnfinishedOutputTest, WhatWasLeftIsRemovedOnce) {
  const test::TemporaryFolder folder;
  const test::TemporaryFolder work;
  const std::string left = leave_behind(folder, WorkFolder(work.path()));
  ASSERT_TRUE(std::filesystem::exists(left));
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_FALSE(std::filesystem::exists(left));
  folder.write(left.substr(folder.path().size() + 1), "of somebody else");
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_TRUE(std::filesystem::exists(left));
}

TEST(UnfinishedOutputTest, AnotherFileOfThatNameStays) {
  const test::TemporaryFolder folder;
  const test::TemporaryFolder work;
  const std::string left = leave_behind(folder, WorkFolder(work.path()));
  // The file itself stays under another name, so that its number is not given away again.
  std::filesystem::rename(left, folder.path("moved"));
  std::ofstream(left) << "of somebody else";
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_TRUE(std::filesystem::exists(left));
  EXPECT_TRUE(std::filesystem::exists(folder.path("moved")));
}

TEST(UnfinishedOutputTest, WhatWasMadeAndNotYetRememberedIsRemovedAsLongAsItIsEmpty) {
  const test::TemporaryFolder folder;
  const test::TemporaryFolder work;
  const auto leave_at_once = [&] {
    const pid_t pid = ::fork();
    if (pid == 0) {
      const UnfinishedOutput unfinished(WorkFolder(work.path()));
      const NewFile file(folder.path("output"), [&](const std::string& name) { unfinished.expect(name); });
      ::_exit(0);
    }
    ::waitpid(pid, nullptr, 0);
    return folder.path("output." + std::to_string(pid) + ".part");
  };
  std::string left = leave_at_once();
  ASSERT_TRUE(std::filesystem::exists(left));
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_FALSE(std::filesystem::exists(left));
  left = leave_at_once();
  std::ofstream(left) << "of somebody else";
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_TRUE(std::filesystem::exists(left));
}

TEST(UnfinishedOutputTest, AFileThatWasWrittenIsForgotten) {
  const test::TemporaryFolder folder;
  const test::TemporaryFolder work;
  {
    const UnfinishedOutput unfinished(WorkFolder(work.path()));
    NewFile file(folder.path("output"));
    unfinished.remember(file);
    EXPECT_FALSE(std::filesystem::is_empty(work.path()));
    file.commit();
  }
  EXPECT_TRUE(std::filesystem::is_empty(work.path()));
  remove_unfinished_output(WorkFolder(work.path()));
  EXPECT_TRUE(std::filesystem::exists(folder.path("output")));
}

TEST(UnfinishedOutputTest, WithoutAPlaceToRememberItTheFileIsWrittenAllTheSame) {
  const test::TemporaryFolder folder;
  const UnfinishedOutput unfinished(WorkFolder(folder.path("nowhere")));
  NewFile file(folder.path("output"));
  unfinished.remember(file);
  file.commit();
  EXPECT_TRUE(std::filesystem::exists(folder.path("output")));
}

}  // namespace
}  // namespace colx::scale
