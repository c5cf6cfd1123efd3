// A file that several processes make, part by part: it is what one would have made, or it is not there.

#include "scale/writing/parts_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/errors.h"
#include "companion/errors.h"
#include "spill/damaged_file.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx::scale {
namespace {

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Texts by part, each in pieces.
using Texts = std::vector<std::vector<std::string>>;

Texts random_texts(test::Random& random) {
  Texts texts(random.below(12));
  for (auto& text : texts) {
    text.resize(random.below(6));
    for (std::string& piece : text)
      piece.assign(random.below(2000), static_cast<char>('a' + random.below(26)));
  }
  return texts;
}

std::string joined(const Texts& texts) {
  std::string all;
  for (const auto& text : texts) {
    for (const std::string& piece : text)
      all += piece;
  }
  return all;
}

PartsFile as_parts(const Texts& texts) {
  PartsFile content;
  content.parts = texts.size();
  content.make = [&texts](std::size_t part, std::ostream& out) {
    for (const std::string& piece : texts[part])
      out << piece;
  };
  return content;
}

TEST(PartsFileTest, IsTheSameWhateverTheProcessesAndTheirMemory) {
  test::Random random;
  const test::TemporaryFolder folder;
  for (int round = 0; round < 40; ++round) {
    const Texts texts = random_texts(random);
    PartsFile content = as_parts(texts);
    content.processes = 1 + random.below(5);
    content.memory = random.below(3) * 1500;
    NewFile file(folder.path("made"));
    write_parts(file, content);
    file.commit();
    ASSERT_EQ(content_of(folder.path("made")), joined(texts)) << content.processes << " processes";
  }
}

// The first part is the last to be made, so all others wait for it with what they hold.
TEST(PartsFileTest, PartsThatAreReadyWaitForTheFirst) {
  const test::TemporaryFolder folder;
  const std::string go = folder.path("go");
  PartsFile content;
  content.parts = 4;
  content.processes = 4;
  content.memory = 10;
  content.make = [&](std::size_t part, std::ostream& out) {
    if (part == 3) std::ofstream(go) << "go";
    for (int i = 0; part == 0 && i < 3000 && !std::filesystem::exists(go); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    for (int i = 0; i < 5; ++i)
      out << std::string(7, static_cast<char>('0' + part));
  };
  NewFile file(folder.path("made"));
  write_parts(file, content);
  file.commit();
  EXPECT_EQ(content_of(folder.path("made")),
            std::string(35, '0') + std::string(35, '1') + std::string(35, '2') + std::string(35, '3'));
}

TEST(PartsFileTest, APipeGetsThePartsInTheirOrder) {
  test::Random random;
  const test::TemporaryFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  const Texts texts = random_texts(random);
  PartsFile content = as_parts(texts);
  content.processes = 3;
  // A process, as no thread should be at work while others are forked.
  const pid_t reader = ::fork();
  if (reader == 0) {
    std::ofstream(folder.path("read"), std::ios::binary) << content_of(path);
    ::_exit(0);
  }
  {
    NewFile file(path);
    write_parts(file, content);
    file.commit();
  }
  ::waitpid(reader, nullptr, 0);
  EXPECT_EQ(content_of(folder.path("read")), joined(texts));
}

// Fails in the third of five parts and looks what comes out of it.
template <typename Failure, typename Fail>
void expect_failure(const std::string& message, const Fail& fail) {
  const test::TemporaryFolder folder;
  PartsFile content;
  content.parts = 5;
  content.processes = 3;
  content.memory = 100;
  content.make = [&](std::size_t part, std::ostream& out) {
    out << std::string(1000, 'x');
    if (part == 2) fail();
  };
  try {
    const NewFile file(folder.path("made"));
    write_parts(file, content);
    FAIL() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.what(), message);
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 0);
}

TEST(PartsFileTest, AFailureInOneProcessEndsAllAndLeavesNothing) {
  expect_failure<fatal_error>("no more", [] { throw fatal_error("no more"); });
  expect_failure<output_error>("cannot write", [] { throw output_error("cannot write"); });
  expect_failure<damaged_file>("intermediate file a/b is damaged", [] { throw damaged_file("a/b", "is damaged"); });
  expect_failure<std::runtime_error>("the task write was ended by signal 9", [] { ::raise(SIGKILL); });
}

TEST(PartsFileTest, AProcessWithoutMemorySaysAtWhichFile) {
  const test::TemporaryFolder folder;
  PartsFile content;
  content.parts = 2;
  content.processes = 2;
  content.make = [](std::size_t, std::ostream&) { throw std::bad_alloc(); };
  const NewFile file(folder.path("made"));
  try {
    write_parts(file, content);
    FAIL() << "nothing was thrown";
  } catch (const fatal_error& failure) {
    EXPECT_EQ(failure.what(),
              "Program has met with out-of-memory condition while writing file: " + folder.path("made") + "!");
  }
}

}  // namespace
}  // namespace colx::scale
