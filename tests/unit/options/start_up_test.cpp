#include "options/start_up.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <vector>

#include "base/config.h"
#include "base/notifier.h"
#include "tests/support/settings_guard.h"
#include "tests/support/stream_capture.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

using Paths = std::vector<std::string>;

class DatafileList : public ::testing::Test {
 protected:
  // Reads a list of this content.
  bool read(const std::string& content) {
    const std::string list = folder.write("list", content);
    settings::input_file = list.c_str();
    return read_and_check_input_datafiles(files, total_size, notifier::error);
  }

  const test::TemporaryFolder folder;
  Paths files;
  std::uint32_t total_size = 0;

 private:
  const test::SettingsGuard _guard;

 protected:
  const test::StreamCapture errors{std::cerr};
};

TEST_F(DatafileList, TakesDatafilesInListOrderAndAddsTheirSizes) {
  const std::string a = folder.write("a", std::string(100, '\n'));
  const std::string b = folder.write("b", std::string(300, '\n'));
  EXPECT_TRUE(read(b + '\n' + a + "\n\n" + b));
  EXPECT_EQ(files, (Paths{b, a, b}));
  EXPECT_EQ(total_size, 700U);
  EXPECT_EQ(errors.text(), "");
}

TEST_F(DatafileList, PutsThePrefixBeforeEveryLineAsItStands) {
  folder.write("data.a", "x");
  const std::string prefix = folder.path("data");
  settings::dir = prefix.c_str();
  EXPECT_TRUE(read(".a\n"));
  EXPECT_EQ(files, (Paths{folder.path("data.a")}));
}

TEST_F(DatafileList, ReportsEveryDatafileThatCannotBeOpened) {
  const std::string a = folder.write("a", "x");
  const std::string missing = folder.path("missing");
  const std::string lost = folder.path("lost");
  EXPECT_FALSE(read(missing + '\n' + a + '\n' + lost + '\n' + folder.path() + '\n'));
  EXPECT_EQ(files, (Paths{a}));
  EXPECT_EQ(errors.text(), "FATAL ERROR: Input datafile : " + missing + " cannot be opened for reading!\n" +
                               "FATAL ERROR: Input datafile : " + lost + " cannot be opened for reading!\n" +
                               "FATAL ERROR: Input datafile : " + folder.path() + " cannot be opened for reading!\n");
}

TEST_F(DatafileList, TrimsNothingOffALine) {
  const std::string a = folder.write("a", "x");
  EXPECT_FALSE(read(a + "\r\n"));
  EXPECT_EQ(errors.text(), "FATAL ERROR: Input datafile : " + a + "\r cannot be opened for reading!\n" +
                               "FATAL ERROR: Input data files list is empty!\n");
}

TEST_F(DatafileList, RefusesAListWithoutDatafiles) {
  EXPECT_FALSE(read(""));
  EXPECT_FALSE(read("\n\n"));
  EXPECT_EQ(errors.text(),
            "FATAL ERROR: Input data files list is empty!\nFATAL ERROR: Input data files list is empty!\n");
}

TEST_F(DatafileList, RefusesAListThatIsNotThereOrADirectory) {
  const std::string missing = folder.path("missing");
  settings::input_file = missing.c_str();
  EXPECT_FALSE(read_and_check_input_datafiles(files, total_size, notifier::error));
  settings::input_file = folder.path().c_str();
  EXPECT_FALSE(read_and_check_input_datafiles(files, total_size, notifier::error));
  EXPECT_EQ(errors.text(), "FATAL ERROR: Cannot open the file: " + missing + "!\n" +
                               "FATAL ERROR: Cannot open the file: " + folder.path() + "!\n");
}

}  // namespace
}  // namespace colx
