// Whatever the importer is fed, the parser of datafiles reads exactly what was not skipped, without a warning.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "import/importer.h"
#include "tests/support/parsing.h"
#include "tests/support/random.h"
#include "tests/support/settings_guard.h"

#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

constexpr std::string_view odd_bytes("a'b:;^_ \v\f\r#\x01\x7F\x80\xC3\xA0\xFF-.0", 21);

std::string _field(test::Random& random) {
  std::string text = random.text(6, odd_bytes);
  return random.once_in(30) ? text + std::string(1, '\0') : text;
}

// One sentence: sometimes with comments, ranges and empty nodes, sometimes broken.
// Appends it and, when it is whole, its length.
void _add_sentence(test::Random& random, std::string& text, std::vector<std::uint32_t>& whole) {
  static constexpr std::string_view relations[] = {"conj", "nsubj", "punct", "appos", "SBJ_CO", "x:y", "", "Obj"};
  const std::string end = random.once_in(4) ? "\r\n" : "\n";
  const std::uint32_t length = 1 + random.below(8);
  const std::uint32_t broken = random.once_in(4) ? 1 + random.below(length) : 0;
  bool intact = broken == 0;
  if (random.once_in(3)) text += "# " + random.text(6, "ab\t1 ") + end;
  for (std::uint32_t i = 1; i <= length; ++i) {
    const std::string number = std::to_string(i);
    if (random.once_in(8)) text += number + "-" + std::to_string(i + 1) + "\tx\t_\t_\t_\t_\t_\t_\t_\t_" + end;
    std::string id = number;
    std::string parent = std::to_string(random.below(i));
    std::string tail = "\t_";
    if (i == broken) {
      const std::uint32_t kind = random.below(5);
      if (kind == 0) id = std::to_string(i + 1);
      if (kind == 1) parent = "_";
      if (kind == 2) tail = "";
      if (kind == 3) parent = number;
      if (kind == 4) parent = std::to_string(length + 1);
    }
    std::string row = id;
    for (int column = 0; column < 5; ++column)
      row += "\t" + _field(random);
    row += "\t" + parent + "\t" + std::string(relations[random.below(8)]) + "\t" + _field(random) + tail;
    if (row.find('\0') != std::string::npos) intact = false;
    text += row + end;
    if (random.once_in(8)) text += number + ".1\tx\t_\t_\t_\t_\t_\t_\t_\t_" + end;
  }
  text += end;
  if (intact) whole.push_back(length);
}

TEST(ImporterProperty, LetsNothingOutThatTheParserStumblesOn) {
  test::Random random;
  const test::SettingsGuard settings;
  const test::TemporaryFolder folder;
  for (int round = 0; round < 300; ++round) {
    std::string text;
    std::vector<std::uint32_t> whole;
    for (std::uint32_t sentences = random.below(12); sentences > 0; --sentences)
      _add_sentence(random, text, whole);
    const std::string input = folder.write("in", text);
    const std::string output = folder.path("out");
    std::vector<std::string> arguments{"--quiet", "--from", "conllu", "-o", output, input};
    if (random.once_in(2)) arguments.insert(arguments.begin(), {"--relations", "keep"});
    if (random.once_in(2)) arguments.insert(arguments.begin(), "--no-protect-lemmas");
    if (random.once_in(2)) arguments.insert(arguments.begin(), {"--tag", random.once_in(2) ? "xpos" : "upos"});
    testing::internal::CaptureStderr();  // the messages about broken sentences
    const int status = run_import(arguments);
    const std::string messages = testing::internal::GetCapturedStderr();
    ASSERT_EQ(status, 0) << messages;

    std::ifstream file(output, std::ios::binary);
    std::istringstream stream(std::string(std::istreambuf_iterator<char>(file), {}));
    StringStore<std::uint32_t> lemmas(65535);
    StringStore<std::uint8_t> tags(65535);
    WordQueue words;
    test::Warnings warnings;
    Parser parser(stream, lemmas, tags, warnings.sink());
    parser.next(4294967295, ContextWindow::sentences, words);
    EXPECT_EQ(warnings.text(), "");
    ASSERT_EQ(test::lengths_of(parser), whole) << text << "\n" << messages;
  }
}

}  // namespace
}  // namespace colx
