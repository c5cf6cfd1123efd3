// Small files that break the format of CoNLL-U in one way each, what must be found in them and how much is read all the
// same; and others that break nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "import/importer.h"
#include "import/sentence_reader.h"
#include "import/treebank_source.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

using Lengths = std::vector<std::size_t>;

// The text has | where the file has TABs, and @ for the rest of an ordinary row behind FORM whose HEAD follows it.
struct FaultyFile {
  std::string name;
  std::string text;
  std::vector<Fault> faults;
  Lengths lengths;  // of the sentences that are read
};

void PrintTo(const FaultyFile& file, std::ostream* out) {
  *out << file.name;
}

std::string _file_text(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '|') {
      result += '\t';
    } else if (text[i] == '@') {
      const std::size_t end = std::min(text.find_first_of("\r\n", i), text.size());
      result += "\tl\tNOUN\tN\t_\t" + text.substr(i + 1, end - i - 1) + "\tdep\t_\t_";
      i = end - 1;
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string _range(const std::string& id) {
  return id + "|ab|_|_|_|_|_|_|_|_\n";
}

std::string _node(const std::string& id) {
  return id + "|e|e|NOUN|N|_|_|_|0:dep|_\n";
}

const std::string one = "1|a@0\n";
const std::string two = "2|b@1\n";
const std::string three = "3|c@1\n";
const std::string pair = one + two;

const std::vector<FaultyFile>& _faulty_files() {
  static const std::vector<FaultyFile> files{
      // Numbers.
      {"FirstNumberIsZero", "0|a@0\n1|b@0\n\n", {Fault::order}, {}},
      {"FirstNumberIsTwo", "2|a@0\n\n", {Fault::order}, {}},
      {"NumbersCountFromZero", "0|a@1\n1|b@0\n2|c@1\n\n", {Fault::order}, {}},
      {"PartHasNoRoot",
       "1|a@2\n2|b@0\n1|c@2\n2|d@3\n3|e@4\n4|f@5\n5|g@5\n\n",
       {Fault::missing_empty_line, Fault::cycle},
       {2}},
      {"NumberIsLeftOut", one + three + "\n" + one + "\n", {Fault::order}, {1}},
      {"NumberIsRepeated", pair + two + "\n", {Fault::order}, {}},
      {"NumbersAreSwapped", one + three + two + "\n", {Fault::order}, {}},
      {"NumberIsNone", one + "x|b@1\n\n", {Fault::order}, {}},
      {"NumberIsEmpty", one + "|b@1\n\n", {Fault::order}, {}},
      {"NumberHasASpace", one + "2 |b@1\n\n", {Fault::order}, {}},
      {"NumberIsNegative", one + "-2|b@1\n\n", {Fault::order}, {}},
      {"NumberHasALeadingZero", "01|a@0\n\n", {Fault::leading_zero}, {1}},
      {"HeadHasALeadingZero", one + "2|b@01\n\n", {Fault::leading_zero}, {2}},
      {"HeadIsUnderscore", one + "2|b@_\n\n", {Fault::parent}, {}},
      {"HeadIsEmpty", one + "2|b@\n\n", {Fault::parent}, {}},
      {"HeadIsOutside", one + "2|b@3\n\n", {Fault::parent_outside}, {}},
      {"HeadsAreInACycle", "1|a@2\n2|b@1\n\n", {Fault::cycle}, {}},
      // Columns and blanks.
      {"RowHasNineColumns", "1|a|l|NOUN|N|_|0|dep|_\n\n", {Fault::columns}, {}},
      {"RowHasElevenColumns", one + "2|b|l|NOUN|N|_|1|dep|_|_|*\n\n", {Fault::columns}, {}},
      {"RowHasATabMore", "1|a|l|NOUN|N|_|0|dep|_|_|\n\n", {Fault::columns}, {}},
      {"ColumnsAreSeparatedBySpaces", "1 a l NOUN N _ 0 dep _ _\n\n", {Fault::columns}, {}},
      {"RowIsNeitherRowNorComment", "some text\n" + one + "\n" + one + "\n", {Fault::columns}, {1}},
      {"FormIsEmpty", "1|@0\n\n", {Fault::empty_column}, {1}},
      {"LemmaIsEmpty", "1|a||NOUN|N|_|0|dep|_|_\n\n", {Fault::empty_column}, {1}},
      {"FourColumnsAreEmpty",
       "1|a|l||||0||_|_\n\n",
       {Fault::empty_column, Fault::empty_column, Fault::empty_column, Fault::empty_column},
       {1}},
      {"MiscIsEmpty", "1|a|l|NOUN|N|_|0|dep|_|\n\n", {Fault::empty_column}, {1}},
      {"FormBeginsWithASpace", "1| a@0\n\n", {Fault::misplaced_space}, {1}},
      {"FormEndsWithASpace", "1|a @0\n\n", {Fault::misplaced_space}, {1}},
      {"FormHasTwoSpaces", "1|a  b@0\n\n", {Fault::misplaced_space}, {1}},
      {"LemmaIsASpace", "1|a| |NOUN|N|_|0|dep|_|_\n\n", {Fault::misplaced_space}, {1}},
      {"MiscEndsWithASpace", "1|a|l|NOUN|N|_|0|dep|_|_ \n\n", {Fault::misplaced_space}, {1}},
      {"UposHasASpace", "1|a|l|NOUN X|N|_|0|dep|_|_\n\n", {Fault::misplaced_space}, {1}},
      {"FeaturesHaveASpace", "1|a|l|NOUN|N|A=1 |0|dep|_|_\n\n", {Fault::misplaced_space}, {1}},
      {"RelationHasASpace", "1|a|l|NOUN|N|_|0|dep x|_|_\n\n", {Fault::misplaced_space}, {1}},
      {"FormHasAFormFeed", "1|a\fb@0\n\n", {Fault::misplaced_space}, {1}},
      // Lines.
      {"LineOfSpacesEndsASentence", pair + "  \n" + one + "\n", {Fault::blank_line}, {2, 1}},
      {"LineOfTabsEndsASentence", pair + "||\n" + one + "\n", {Fault::blank_line}, {2, 1}},
      {"RowOfEmptyColumnsEndsASentence", pair + "|||||||||\n" + one + "\n", {Fault::blank_line}, {2, 1}},
      {"LineOfSpacesStandsBetweenSentences", pair + "\n \n" + one + "\n", {Fault::blank_line}, {2, 1}},
      {"EmptyLineIsMissing", pair + pair + "\n", {Fault::missing_empty_line}, {2, 2}},
      {"EmptyLineIsMissingBeforeAComment", pair + "# c\n" + pair + "\n", {Fault::missing_empty_line}, {2, 2}},
      {"EmptyLineIsMissingBeforeARange", pair + _range("1-2") + pair + "\n", {Fault::missing_empty_line}, {2, 2}},
      {"EmptyLineIsMissingBeforeANode", pair + _node("0.1") + one + "\n", {Fault::missing_empty_line}, {2, 1}},
      {"AllEmptyLinesAreMissing",
       pair + one + pair + one + "\n",
       {Fault::missing_empty_line, Fault::missing_empty_line, Fault::missing_empty_line},
       {2, 1, 2, 1}},
      {"NumbersBeginAnewInsideASentence", "1|a@0\n1|b@2\n2|c@1\n\n", {Fault::missing_empty_line, Fault::cycle}, {1}},
      {"PartOfASentenceHasNoRoot",
       "1|a@2\n2|b@5\n1|c@0\n2|d@1\n\n",
       {Fault::missing_empty_line, Fault::parent_outside},
       {2}},
      {"EmptyLineIsDoubled", pair + "\n\n" + one + "\n", {Fault::extra_empty_line}, {2, 1}},
      {"FileBeginsWithAnEmptyLine", "\n" + one + "\n", {Fault::extra_empty_line}, {1}},
      {"CommentsHaveNoSentence", "# c\n\n" + one + "\n", {Fault::extra_empty_line}, {1}},
      {"CommentsHaveNoSentenceAtTheEnd", one + "\n# c\n", {Fault::missing_last_line}, {1}},
      {"CommentStandsInsideASentence", one + "# c\n" + two + "\n", {Fault::misplaced_comment}, {2}},
      {"CommentStandsBehindASentence", one + "# c\n\n", {Fault::misplaced_comment}, {1}},
      {"LastEmptyLineIsMissing", pair, {Fault::missing_last_line}, {2}},
      {"LastLineEndIsMissing", "1|a@0", {Fault::missing_last_line}, {1}},
      {"LinesEndWithCarriageReturns", "1|a@0\r\n2|b@1\r\n\r\n", {Fault::carriage_return}, {2}},
      {"FileBeginsWithAByteOrderMark", "\xEF\xBB\xBF" + one + "\n", {Fault::byte_order_mark}, {1}},
      {"FormIsLatin1", "1|caf\xE9@0\n\n", {Fault::not_utf8}, {1}},
      {"FormIsCutInsideACharacter", "1|caf\xC3@0\n\n", {Fault::not_utf8}, {1}},
      {"CommentIsASurrogate", "# \xED\xA0\x80\n" + one + "\n", {Fault::not_utf8}, {1}},
      {"FormHasAZeroByte", std::string("1|a\0b@0\n\n", 9), {Fault::zero_byte}, {}},
      // Ranges.
      {"RangeHasTwoColumns", "1-2|ab\n" + pair + "\n", {Fault::range}, {2}},
      {"RangeRunsBackwards", _range("2-1") + pair + "\n", {Fault::range}, {2}},
      {"RangeIsOneWord", _range("1-1") + pair + "\n", {Fault::range}, {2}},
      {"RangeStandsBehindItsWord", one + _range("1-2") + two + "\n", {Fault::range}, {2}},
      {"RangeStandsBeforeAnotherWord", _range("2-3") + pair + three + "\n", {Fault::range}, {3}},
      {"RangeIsRepeated", _range("1-2") + _range("1-2") + pair + "\n", {Fault::range}, {2}},
      {"RangesOverlap", _range("1-2") + one + _range("2-3") + two + three + "\n", {Fault::range}, {3}},
      {"RangeRunsBeyondTheSentence", one + _range("2-3") + two + "\n", {Fault::range}, {2}},
      {"RangeStandsAtTheEnd", pair + _range("3-4") + "\n", {Fault::range}, {2}},
      {"RangeHasALemma", "1-2|ab|ab|_|_|_|_|_|_|_\n" + pair + "\n", {Fault::range}, {2}},
      {"RangeHasAHead", "1-2|ab|_|_|_|_|0|_|_|_\n" + pair + "\n", {Fault::range}, {2}},
      {"RangeHasALeadingZero", _range("01-2") + pair + "\n", {Fault::range}, {2}},
      {"RangeHasAnEmptyColumn", "1-2|ab|_|_|_|_|_|_|_|\n" + pair + "\n", {Fault::empty_column}, {2}},
      {"RangeHasASpace", "1-2|ab |_|_|_|_|_|_|_|_\n" + pair + "\n", {Fault::misplaced_space}, {2}},
      {"RangeIsTheLastWord", one + "2-3|b@1\n\n", {Fault::range, Fault::word_as_other_row}, {}},
      {"RangeIsAWord", one + "1-2|b@1\n\n", {Fault::word_as_other_row}, {}},
      // Empty nodes.
      {"NodeIsTheLastWord", one + "1.5|b@1\n\n", {Fault::word_as_other_row}, {}},
      {"NodeHasNoFollower", one + _node("1.5") + "\n", {Fault::empty_node}, {1}},
      {"NodeBeginsWithTwo", one + _node("1.2") + two + "\n", {Fault::empty_node}, {2}},
      {"NodeBeginsWithZero", one + _node("1.0") + two + "\n", {Fault::empty_node}, {2}},
      {"NodeIsRepeated", one + _node("1.1") + _node("1.1") + two + "\n", {Fault::empty_node}, {2}},
      {"NodeStandsBehindAnotherWord", pair + _node("1.1") + "\n", {Fault::empty_node}, {2}},
      {"NodeStandsBeforeItsWord", _node("1.1") + pair + "\n", {Fault::empty_node}, {2}},
      {"FirstNodeStandsInside", one + _node("0.1") + two + "\n", {Fault::empty_node}, {2}},
      {"NodeHasALeadingZero", one + _node("1.01") + two + "\n", {Fault::empty_node}, {2}},
      {"NodeHasTwoColumns", one + "1.1|e\n" + two + "\n", {Fault::empty_node}, {2}},
      {"NodeHasAHead", one + "1.1|e|e|NOUN|N|_|1|_|_|_\n" + two + "\n", {Fault::empty_node}, {2}},
      {"NodeHasARelation", one + "1.1|e|e|NOUN|N|_|_|dep|_|_\n" + two + "\n", {Fault::empty_node}, {2}},
  };
  return files;
}

struct FaultlessFile {
  std::string name;
  std::string text;
  Lengths lengths;
};

void PrintTo(const FaultlessFile& file, std::ostream* out) {
  *out << file.name;
}

std::string _long_sentence(int words) {
  std::string text;
  for (int i = 1; i <= words; ++i)
    text += std::to_string(i) + "|w@" + std::to_string(i / 2) + "\n";
  return text + "\n";
}

const std::vector<FaultlessFile>& _faultless_files() {
  static const std::vector<FaultlessFile> files{
      {"OneWord", one + "\n", {1}},
      {"TwoWords", pair + "\n", {2}},
      {"SeveralSentences", pair + "\n" + one + "\n" + pair + "\n", {2, 1, 2}},
      {"TenWords", _long_sentence(10), {10}},
      {"HundredWords", _long_sentence(100), {100}},
      {"Comments", "# sent_id = 1\n# text = a b\n" + pair + "\n", {2}},
      {"CommentsBeforeEverySentence", "# 1\n" + one + "\n# 2\n" + one + "\n", {1, 1}},
      {"EmptyComment", "#\n" + one + "\n", {1}},
      {"CommentWithoutASpace", "#1|a\n" + one + "\n", {1}},
      {"CommentWithSpaces", "#   two   blanks \n" + one + "\n", {1}},
      {"CommentWithTabs", "#||\n" + one + "\n", {1}},
      {"CommentOfOtherWriting", "# \xD8\xA7\xD9\x84\n" + one + "\n", {1}},
      {"OtherWriting", "1|\xE4\xBB\x8A\xE6\x97\xA5@0\n\n", {1}},
      {"CharacterOfFourBytes", "1|\xF0\x9F\x8C\xA7@0\n\n", {1}},
      {"NoBreakSpaceInAForm", "1|a\xC2\xA0z@0\n\n", {1}},
      {"SpaceInAForm", "1|a b@0\n\n", {1}},
      {"SpacesInALemma", "1|a|b c d|NOUN|N|_|0|dep|_|_\n\n", {1}},
      {"SpaceInMisc", "1|a|l|NOUN|N|_|0|dep|_|Gloss=to go\n\n", {1}},
      {"FormOfAnUnderscore", "1|_@0\n\n", {1}},
      {"FormOfANumberSign", "1|#@0\n\n", {1}},
      {"FormOfAHyphen", "1|-@0\n2|1-2@1\n3|.@1\n\n", {3}},
      {"UnderscoresInEveryColumnThatMayHaveThem", "1|a|_|_|_|_|0|_|_|_\n\n", {1}},
      {"FeaturesAndMisc", "1|a|l|NOUN|N|A=1,2|0|dep:x|0:root|SpaceAfter=No\n\n", {1}},
      {"SeveralRoots", "1|a@0\n2|b@0\n\n", {2}},
      {"CrossingEdges", "1|a@3\n2|b@4\n3|c@0\n4|d@3\n\n", {4}},
      {"Range", _range("1-2") + pair + "\n", {2}},
      {"RangeInside", one + _range("2-3") + two + three + "\n", {3}},
      {"RangesSideBySide", _range("1-2") + pair + _range("3-4") + three + "4|d@1\n\n", {4}},
      {"RangeOfThree", _range("1-3") + pair + three + "\n", {3}},
      {"RangeWithTypo", "1-2|ab|_|_|_|Typo=Yes|_|_|_|SpaceAfter=No\n" + pair + "\n", {2}},
      {"RangeWithMisc", "1-2|ab|_|_|_|_|_|_|_|SpaceAfter=No\n" + pair + "\n", {2}},
      {"RangeWithASpace", "1-2|a b|_|_|_|_|_|_|_|_\n" + pair + "\n", {2}},
      {"RangeWithComment", "# c\n" + _range("1-2") + pair + "\n", {2}},
      {"Node", one + _node("1.1") + two + "\n", {2}},
      {"NodeAtTheEnd", pair + _node("2.1") + "\n", {2}},
      {"NodeBeforeTheFirstWord", _node("0.1") + one + "\n", {1}},
      {"NodesBeforeTheFirstWord", _node("0.1") + _node("0.2") + one + "\n", {1}},
      {"NodesBehindAWord", one + _node("1.1") + _node("1.2") + two + "\n", {2}},
      {"NodesBehindEveryWord", one + _node("1.1") + two + _node("2.1") + "\n", {2}},
      {"NodeBeforeARange", _node("0.1") + _range("1-2") + pair + "\n", {2}},
      {"NodeWithinARange", _range("1-2") + one + _node("1.1") + two + "\n", {2}},
      {"TenthNode",
       one + _node("1.1") + _node("1.2") + _node("1.3") + _node("1.4") + _node("1.5") + _node("1.6") + _node("1.7") +
           _node("1.8") + _node("1.9") + _node("1.10") + "\n",
       {1}},
      {"NodeWithoutForm", one + "1.1|_|_|_|_|_|_|_|0:dep|_\n\n", {1}},
      {"SameNumbersInTheNextSentence", _range("1-2") + pair + "\n" + _range("1-2") + pair + "\n", {2, 2}},
  };
  return files;
}

struct FileSeen {
  std::vector<Fault> faults;
  Lengths lengths;
};

FileSeen _read(const std::string& path) {
  TreebankSource source(path, false);
  SentenceReader reader(source, TreebankFormat::conllu);
  FileSeen seen;
  TreebankSentence sentence;
  std::vector<TreebankProblem> problems;
  while (reader.next(sentence, problems)) {
    for (const TreebankProblem& problem : problems)
      seen.faults.push_back(problem.fault);
    if (sentence.rows > 0 && !must_be_skipped(problems)) seen.lengths.push_back(sentence.words.size());
  }
  return seen;
}

// Runs a program without output; returns its status.
int _run(const std::vector<std::string>& arguments, std::string& messages) {
  testing::internal::CaptureStderr();
  const int status = run_import(arguments);
  messages = testing::internal::GetCapturedStderr();
  return status;
}

class FaultyFileTest : public ::testing::TestWithParam<FaultyFile> {};

TEST_P(FaultyFileTest, IsFoundOutAndCostsNoMoreThanItMust) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("x.conllu", _file_text(GetParam().text));
  const FileSeen seen = _read(path);
  EXPECT_EQ(seen.faults, GetParam().faults);
  EXPECT_EQ(seen.lengths, GetParam().lengths);
  std::string messages;
  EXPECT_EQ(_run({"--check", "--strict", "--quiet", "--from", "conllu", path}, messages), 1);
  EXPECT_EQ(static_cast<std::size_t>(std::count(messages.begin(), messages.end(), '\n')), GetParam().faults.size());
  EXPECT_EQ(_run({"--from", "conllu", "-o", folder.path("out"), path}, messages), 0);
  for (const Fault fault : GetParam().faults)
    EXPECT_NE(messages.find("  " + std::string(fault_name(fault)) + " "), std::string::npos) << messages;
}

class FaultlessFileTest : public ::testing::TestWithParam<FaultlessFile> {};

TEST_P(FaultlessFileTest, PassesWithoutAWord) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("x.conllu", _file_text(GetParam().text));
  const FileSeen seen = _read(path);
  EXPECT_EQ(seen.faults, std::vector<Fault>{});
  EXPECT_EQ(seen.lengths, GetParam().lengths);
  std::string messages;
  EXPECT_EQ(_run({"--check", "--strict", "--quiet", "--from", "conllu", path}, messages), 0);
  EXPECT_EQ(messages, "");
}

constexpr auto name_of = [](const auto& instance) { return instance.param.name; };
INSTANTIATE_TEST_SUITE_P(Format, FaultyFileTest, ::testing::ValuesIn(_faulty_files()), name_of);
INSTANTIATE_TEST_SUITE_P(Format, FaultlessFileTest, ::testing::ValuesIn(_faultless_files()), name_of);

}  // namespace
}  // namespace colx
