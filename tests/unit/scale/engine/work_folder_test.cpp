// What counts as done, and what goes.

#include "scale/engine/work_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "scale/engine/spent_files.h"
#include "spill/damaged_file.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

class WorkFolderTest : public ::testing::Test {
 protected:
  // Leaves a task as if it had been done, with one file.
  void make(const std::string& task, const std::string& what) const {
    SegmentWriter writer(folder.file(task, what), "test");
    writer.add(task);
    TaskResult done(folder, task, 1);
    done.add_file(what, writer.finish());
    done.save();
  }

  bool is_there(const std::string& name) const { return std::filesystem::exists(temporary.path(name)); }

  const test::TemporaryFolder temporary;
  const WorkFolder folder{temporary.path()};
};

TEST_F(WorkFolderTest, ATaskIsDoneWithItsFilesAndWithoutThoseThatMayGo) {
  make("map-7", "run-0");
  make("order-7", "ordered");
  EXPECT_EQ(last_reader("map-7", "run-0"), "reduce");
  EXPECT_EQ(last_reader("map-7", "done"), "");
  EXPECT_EQ(last_reader("order-7", "ordered"), "");
  EXPECT_TRUE(folder.done("map-7").has_value());
  EXPECT_TRUE(folder.done("order-7").has_value());
  std::filesystem::remove(temporary.path("map-7.run-0"));
  std::filesystem::remove(temporary.path("order-7.ordered"));
  EXPECT_TRUE(folder.done("map-7").has_value());
  EXPECT_FALSE(folder.done("order-7").has_value());
  temporary.write("map-7.run-0", "something else");
  EXPECT_FALSE(folder.done("map-7").has_value());
}

TEST_F(WorkFolderTest, TheMarkOfATaskIsThatOfWhatItHasLeftLast) {
  make("map-7", "run-0");
  const std::uint64_t mark = folder.mark("map-7");
  EXPECT_EQ(folder.mark("map-7"), mark);
  EXPECT_EQ(folder.mark("map-7"), folder.result("map-7").mark());
  make("map-7", "run-1");
  EXPECT_NE(folder.mark("map-7"), mark);
  folder.forget("map-7");
  EXPECT_THROW(folder.mark("map-7"), damaged_file);
  make("map-7", "run-0");
  EXPECT_EQ(folder.mark("map-7"), mark);
}

TEST_F(WorkFolderTest, AFileThatIsNotAsItWasLeftIsNamed) {
  make("order-7", "ordered");
  EXPECT_TRUE(folder.verified("order-7").has_value());
  EXPECT_FALSE(folder.verified("order-8").has_value());
  SegmentWriter other(folder.file("order-7", "ordered"), "test");
  other.add("something else");
  other.finish();
  try {
    folder.verified("order-7");
    FAIL();
  } catch (const damaged_file& error) {
    EXPECT_EQ(error.path(), temporary.path("order-7.ordered"));
  }
  EXPECT_FALSE(folder.done("order-7").has_value());
}

TEST_F(WorkFolderTest, WhatAnotherTaskHasLeftIsRefused) {
  make("order-7", "ordered");
  for (const char* const what : {".done", ".ordered"})
    std::filesystem::copy_file(temporary.path("order-7") + what, temporary.path("order-8") + what);
  EXPECT_TRUE(folder.done("order-7").has_value());
  EXPECT_FALSE(folder.done("order-8").has_value());
  EXPECT_THROW(folder.result("order-8"), damaged_file);
}

TEST_F(WorkFolderTest, WhatWasAboutToBeWrittenGoes) {
  make("map-7", "run-0");
  temporary.write("map-8.run-0.77.part", "half");
  temporary.write("plan.done.77.part", "");
  folder.drop_unfinished();
  EXPECT_FALSE(is_there("map-8.run-0.77.part"));
  EXPECT_FALSE(is_there("plan.done.77.part"));
  EXPECT_TRUE(is_there("map-7.run-0"));
  EXPECT_TRUE(is_there("map-7.done"));
}

TEST_F(WorkFolderTest, FilesGoBehindTheStepThatReadsThemLast) {
  make("map-7", "run-0");
  make("reduce-0", "listed");
  make("order-7", "ordered");
  folder.drop_spent("map");
  EXPECT_TRUE(is_there("map-7.run-0"));
  folder.drop_spent("reduce", 1);  // what reduce has left is brought to the disk before
  EXPECT_FALSE(is_there("map-7.run-0"));
  EXPECT_TRUE(is_there("reduce-0.listed"));
  folder.drop_spent("arrange");
  EXPECT_FALSE(is_there("reduce-0.listed"));
  for (const char* const step : {"order", "count", ""})
    folder.drop_spent(step);
  EXPECT_TRUE(is_there("order-7.ordered"));
  EXPECT_TRUE(folder.done("map-7").has_value());
}

TEST_F(WorkFolderTest, AMissingFileIsOfInterestToTheStepThatReadsItLast) {
  make("map-7", "run-0");
  make("order-7", "ordered");
  EXPECT_TRUE(folder.readers_of_missing("map-7").empty());
  std::filesystem::remove(temporary.path("map-7.run-0"));
  EXPECT_EQ(folder.readers_of_missing("map-7"), std::vector<std::string_view>{"reduce"});
  std::filesystem::remove(temporary.path("order-7.ordered"));
  EXPECT_TRUE(folder.readers_of_missing("order-7").empty());
  temporary.write("map-7.done", "damaged");
  EXPECT_TRUE(folder.readers_of_missing("map-7").empty());
  EXPECT_TRUE(folder.readers_of_missing("map-8").empty());
}

TEST_F(WorkFolderTest, ADamagedFileIsMadeAgainByItsTaskAndOneThatHasGoneByAllThatMissTheirs) {
  for (const char* const task : {"map-7", "map-8", "map-9"})
    make(task, "run-0");
  make("reduce-0", "listed");
  EXPECT_TRUE(folder.forget_maker(temporary.path("map-7.run-0")));
  EXPECT_FALSE(is_there("map-7.done"));
  EXPECT_FALSE(is_there("map-7.run-0"));
  EXPECT_TRUE(is_there("map-8.done"));
  make("map-7", "run-0");
  std::filesystem::remove(temporary.path("map-7.run-0"));
  std::filesystem::remove(temporary.path("map-8.run-0"));
  std::filesystem::remove(temporary.path("reduce-0.listed"));
  EXPECT_TRUE(folder.forget_maker(temporary.path("map-7.run-0")));
  EXPECT_FALSE(is_there("map-7.done"));
  EXPECT_FALSE(is_there("map-8.done"));
  EXPECT_TRUE(is_there("map-9.done"));
  EXPECT_TRUE(is_there("reduce-0.done"));
}

TEST_F(WorkFolderTest, NoTaskMakesThePlanOrWhatIsElsewhere) {
  EXPECT_FALSE(folder.forget_maker(temporary.path("plan.done")));
  EXPECT_FALSE(folder.forget_maker(temporary.path("lock")));
  EXPECT_FALSE(folder.forget_maker("/elsewhere/map-7.run-0"));
}

}  // namespace
}  // namespace colx::scale
