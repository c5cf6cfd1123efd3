#include "run/processor.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "run/persistent.h"
#include "tests/support/settings_guard.h"
#include "tests/support/stream_capture.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

// Datafiles without sentences only: they leave the string stores and the N-grams of the process as they are. The
// statistics of the process are put back.
class Processing : public ::testing::Test {
 protected:
  ~Processing() override { persistent::overall_stats = std::move(_saved); }

  static bool _says(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

  const test::TemporaryFolder folder;

 private:
  const test::SettingsGuard _guard{2};
  std::vector<NamedDataFileStats> _saved = std::exchange(persistent::overall_stats, {});
};

TEST_F(Processing, SkipsADatafileThatHasVanishedAndGoesOn) {
  const std::string missing = folder.path("missing");
  const std::string empty = folder.write("empty", "\n");
  const test::StreamCapture out(std::cout);
  const test::StreamCapture err(std::cerr);
  process({missing, empty}, 0);
  EXPECT_EQ(err.text(), "WARNING: Input datafile: " + missing + " cannot be opened for reading! Skipping...\n");
  ASSERT_EQ(persistent::overall_stats.size(), 1U);
  EXPECT_EQ(persistent::overall_stats[0].name, empty);
  EXPECT_FALSE(_says(out.text(), "Processing datafile: " + missing));
  EXPECT_TRUE(_says(out.text(), "Processing datafile: " + empty + "\n"));
  EXPECT_TRUE(_says(out.text(), "Finished processing input datafiles.\n"));
}

TEST_F(Processing, SaysNothingOfOverallProgressWhenAllDatafilesAreEmpty) {
  const std::string empty = folder.write("empty", "");
  const test::StreamCapture out(std::cout);
  process({empty, empty}, 0);
  EXPECT_TRUE(_says(out.text(), "Finished processing datafile: " + empty + " (0 bytes)\n"));
  EXPECT_FALSE(_says(out.text(), "Overall processing progress"));
  EXPECT_EQ(persistent::overall_stats.size(), 2U);
}

TEST_F(Processing, AddsNothingToTheProgressForADatafileWithoutSentences) {
  const std::string file = folder.write("newlines", "\n\n\n\n");
  const test::StreamCapture out(std::cout);
  process({file}, 4);
  EXPECT_TRUE(_says(out.text(), "Finished processing datafile: " + file + " (0 bytes)\n"));
  EXPECT_TRUE(_says(out.text(), "Overall processing progress: 0%\n"));
}

}  // namespace
}  // namespace colx
