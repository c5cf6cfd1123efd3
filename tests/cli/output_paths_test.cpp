// An output file that is also an input, or another output, from outside: refused before anything is opened for writing,
// whatever names lead to it.
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

const std::string corpus = "1 a a AB 2 Sb\n2 b b AB 0 Pred\n\n";

class OutputPathsTest : public CliTest {
 protected:
  OutputPathsTest() {
    write_corpus(corpus);
    write("rules", "A A\n");
    std::filesystem::create_directory(path("folder"));
    std::filesystem::create_directory_symlink("folder", path("linked_folder"));
  }

  // The run must end during the start-up checks with this message behind the warnings, and nothing may have been made.
  void expect_refused(const Arguments& arguments, const std::string& message, const std::string& warnings = "") const {
    const auto before = _entries();
    const RunResult result = run_job("2", arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, warnings + fatal(message));
    EXPECT_EQ(result.out, "Performing start-up checks.\n" + termination_screen());
    EXPECT_EQ(_entries(), before);
    EXPECT_EQ(read("list"), "corpus.dat\n");
    EXPECT_EQ(read("corpus.dat"), corpus);
    EXPECT_EQ(read("rules"), "A A\n");
  }

  void expect_accepted(const Arguments& arguments) const {
    const RunResult result = run_job("2", arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
  }

 private:
  std::ptrdiff_t _entries() const {
    return std::distance(std::filesystem::recursive_directory_iterator(path(".")), {});
  }
};

const std::string is_input = "Output file is also an input: ";
const std::string is_output = "Two outputs have the same path: ";

TEST_F(OutputPathsTest, EveryOutputIsComparedWithTheList) {
  for (const char* const option : {"-o", "-s", "-c"})
    expect_refused({option, "list"}, is_input + "list!");
  expect_refused({"-m", "*", "-f", "rules", "-fs", "list"}, is_input + "list!");
}

TEST_F(OutputPathsTest, EveryDatafileIsAnInput) {
  write("other.dat", corpus);
  write("list", "corpus.dat\nother.dat\n");
  const RunResult result = run_job("2", {"-s", "other.dat"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, fatal(is_input + "other.dat!"));
  EXPECT_EQ(read("other.dat"), corpus);
  EXPECT_FALSE(exists("output"));
}

TEST_F(OutputPathsTest, DatafilesAreComparedWithTheirPrefix) {
  write("folder/corpus.dat", corpus);
  expect_refused({"-d", "folder/", "-o", "folder/corpus.dat"}, is_input + "folder/corpus.dat!");
  expect_accepted({"-d", "folder/", "-o", "corpus.dat"});
  EXPECT_NE(read("corpus.dat"), corpus);
}

TEST_F(OutputPathsTest, RuleFilesAreInputsEvenWhenTheyAreNotRead) {
  expect_refused({"-m", "*", "-f", "rules", "-o", "rules"}, is_input + "rules!");
  expect_refused({"-m", "*", "-c", "contexts", "-cf", "rules", "-s", "rules"}, is_input + "rules!");
  expect_refused(
      {"-f", "rules", "-o", "rules"}, is_input + "rules!",
      warning("Extraction of morphologic information is not set on (parameter -m not specified). Morphologic "
              "filter will not be applied..."));
  expect_refused({"-cf", "rules", "-o", "rules"}, is_input + "rules!",
                 warning("Context output file is not specified (parameter -c). Morphologic filter for N-gram context "
                         "will not be applied..."));
}

TEST_F(OutputPathsTest, AnInputIsKnownUnderOtherNames) {
  std::filesystem::create_hard_link(path("corpus.dat"), path("hard_link"));
  std::filesystem::create_symlink("folder/../corpus.dat", path("soft_link"));
  for (const std::string name : {"hard_link", "soft_link", "./corpus.dat", "linked_folder/../corpus.dat"})
    expect_refused({"-o", name}, is_input + name + "!");
  expect_refused({"-o", path("corpus.dat")}, is_input + path("corpus.dat") + "!");
}

TEST_F(OutputPathsTest, OutputsThatAreThereAreToldApart) {
  write("stats", "old\n");
  std::filesystem::create_hard_link(path("stats"), path("hard_link"));
  std::filesystem::create_symlink("stats", path("soft_link"));
  for (const std::string name : {"stats", "hard_link", "soft_link", "folder/../stats"})
    expect_refused({"-o", "stats", "-s", name}, is_output + name + "!");
  EXPECT_EQ(read("stats"), "old\n");
  expect_accepted({"-o", "stats", "-s", "soft_link.txt"});
}

TEST_F(OutputPathsTest, OutputsThatAreStillToBeMadeAreToldApart) {
  std::filesystem::create_symlink("folder/new", path("dangling"));
  std::filesystem::create_symlink("dangling", path("dangling_twice"));
  std::filesystem::create_symlink(path("folder/new"), path("folder/absolute"));
  for (const std::string name :
       {"folder/new", "./folder/new", "linked_folder/new", "dangling", "dangling_twice", "linked_folder/absolute"})
    expect_refused({"-c", "folder/new", "-s", name}, is_output + name + "!");
  expect_refused({"-c", "dangling", "-m", "*", "-f", "rules", "-fs", "folder/new"}, is_output + "folder/new!");
  expect_refused({"-o", "new", "-c", "./new"}, is_output + "./new!");
  expect_accepted({"-o", "new", "-c", "dangling", "-s", "folder/newer"});
}

TEST_F(OutputPathsTest, AnInputComesBeforeAnOutput) {
  expect_refused({"-o", "same", "-c", "same", "-s", "list"}, is_input + "list!");
}

TEST_F(OutputPathsTest, WhatIsNoRegularFileMayBeNamedAtWill) {
  expect_accepted({"-o", "/dev/null", "-c", "/dev/null", "-s", "/dev/null"});
  write("list", "/dev/null\n");
  expect_accepted({"-o", "/dev/null"});
}

TEST_F(OutputPathsTest, WhatCannotBeMadeIsLeftToOpening) {
  std::filesystem::create_symlink("circle", path("circle"));
  for (const std::string name : {"nowhere/output", "folder", "circle", "list/output", "new/"}) {
    const RunResult result = run_job("2", {"-o", name, "-s", name});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, fatal("Cannot open output file: " + name + "!"));
  }
}

}  // namespace
}  // namespace colx::cli
