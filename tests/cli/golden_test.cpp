// Whole small runs compared with files that were worked out by hand; the arithmetic stands beside each of them in a
// README. A case is a directory with the files of the run, its arguments (one a line) and for every file X of the
// result an "expected_X"; standard output and standard error are files of the result too.
#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

namespace fs = std::filesystem;

const std::string expectation = "expected_";

// The expected files show what x86-64 prints for a value that is not a number.
std::string with_this_machines_nan(std::string text) {
  for (std::size_t at = 0; (at = text.find("-nan", at)) != std::string::npos; at += not_a_number().size()) {
    text.replace(at, 4, not_a_number());
  }
  return text;
}

class GoldenTest : public CliTest {
 protected:
  void expect_golden(const std::string& name) const {
    const fs::path golden = fs::path(NGREX_GOLDEN_PATH) / name;
    std::set<std::string> inputs;
    for (const fs::directory_entry& entry : fs::directory_iterator(golden)) {
      const std::string file = entry.path().filename().string();
      if (file.starts_with(expectation)) continue;
      fs::copy_file(entry.path(), path(file));
      inputs.insert(file);
    }

    Arguments arguments;
    std::istringstream lines(read("args"));
    for (std::string line; std::getline(lines, line);)
      arguments.push_back(line);
    const RunResult result = run(arguments);
    EXPECT_EQ(result.status, 0);
    write("stdout", result.out);
    write("stderr", result.err);

    for (const fs::directory_entry& entry : fs::directory_iterator(path("."))) {
      const std::string file = entry.path().filename().string();
      if (inputs.count(file) != 0) continue;
      EXPECT_EQ(read(file), with_this_machines_nan(read_file((golden / (expectation + file)).string()))) << file;
      inputs.insert(expectation + file);
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(golden)) {
      EXPECT_EQ(inputs.count(entry.path().filename().string()), 1u) << "no file made for " << entry.path();
    }
  }
};

TEST_F(GoldenTest, WeatherPairsWithStatisticsAndContexts) {
  expect_golden("weather");
}

TEST_F(GoldenTest, BarkingTriplesUnderARule) {
  expect_golden("barking");
}

}  // namespace
}  // namespace colx::cli
