#include "import/import_options.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace colx {
namespace {

TEST(ImportOptions, TakesTheLastOfRepeatedOptionsAndValuesThatLookLikeOptions) {
  const ImportCommand command = parse_import_command({"--protect-lemmas", "--no-protect-lemmas", "--tag", "xpos",
                                                      "--tag", "upos", "--mask", "-*-", "-o", "-", "--", "-x"});
  ASSERT_TRUE(command.settings) << command.text;
  EXPECT_EQ(command.settings->protect_lemmas, false);
  EXPECT_EQ(command.settings->tag, TagSource::upos);
  EXPECT_EQ(command.settings->mask, "-*-");
  EXPECT_EQ(command.settings->output, "");
  EXPECT_EQ(command.settings->inputs, std::vector<std::string>{"-x"});
}

TEST(ImportOptions, StandInTheHelp) {
  const std::string help = parse_import_command({"--help"}).text;
  for (const ImportOption& option : import_options()) {
    const std::string_view names = option.names;
    EXPECT_NE(help.find(names.substr(names.find("--"))), std::string::npos) << names;
  }
}

// The man page lies beside the sources of this test.
TEST(ImportOptions, AreThoseOfTheManPage) {
  const std::string here = __FILE__;
  std::ifstream file(here.substr(0, here.rfind("tests/")) + "docs/ngrex-import.1");
  const std::string page(std::istreambuf_iterator<char>(file), {});
  for (const ImportOption& option : import_options()) {
    std::string entry = ".TP\n.B";
    entry += *option.value == '\0' ? " " : "I ";
    for (const char c : std::string_view(option.names))
      entry += c == '-' ? "\\-" : c == ',' ? ", " : std::string(1, c);
    if (*option.value != '\0') {
      entry.insert(entry.find(' ') + 1, "\"");
      entry += " \" " + std::string(option.value);
    }
    EXPECT_NE(page.find(entry + "\n"), std::string::npos) << entry;
  }
  std::size_t entries = 0;
  for (std::size_t at = page.find(".TP\n.B"); at != std::string::npos; at = page.find(".TP\n.B", at + 1)) {
    if (page.substr(at, 20).find("\\-") != std::string::npos) ++entries;
  }
  EXPECT_EQ(entries, import_options().size());
}

}  // namespace
}  // namespace colx
