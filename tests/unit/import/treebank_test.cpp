// Sources, formats, rows and trees: what is read from a treebank and what is found wrong in it.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/errors.h"
#include "import/datafile_writer.h"
#include "import/sentence_reader.h"
#include "import/treebank_format.h"
#include "import/treebank_source.h"
#include "tests/support/gzip.h"
#include "tests/support/random.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

std::string _row(const std::string& id, const std::string& parent, const std::string& form = "f") {
  return id + "\t" + form + "\tl\tNOUN\tNN\t_\t" + parent + "\tdep\t_\t_\n";
}

std::string _all_lines(const std::string& path) {
  TreebankSource source(path, false);
  std::string text;
  std::string_view line;
  while (source.next_line(line))
    text += std::string(line) + "|";
  return text;
}

struct TextSeen {
  std::vector<std::size_t> lengths;   // of the sentences that can be used
  std::vector<std::string> problems;  // line:column text
};

TextSeen _read(const std::string& text, TreebankFormat format) {
  const test::TemporaryFolder folder;
  TreebankSource source(folder.write("x", text), false);
  SentenceReader reader(source, format);
  TextSeen seen;
  TreebankSentence sentence;
  std::vector<TreebankProblem> problems;
  while (reader.next(sentence, problems)) {
    if (sentence.rows > 0 && !must_be_skipped(problems)) seen.lengths.push_back(sentence.words.size());
    for (const TreebankProblem& p : problems)
      seen.problems.push_back(std::to_string(p.line) + ":" + std::to_string(p.column) + " " + p.text);
  }
  return seen;
}

using Lengths = std::vector<std::size_t>;
using Problems = std::vector<std::string>;

TEST(TreebankSource, ReadsPlainAndCompressedTextOfSeveralMembers) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(_all_lines(folder.write("a", "one\n\ntwo")), "one||two|");
  const std::string member = test::gzip("one\ntw");
  EXPECT_EQ(_all_lines(folder.write("b", member + member + std::string(20, '\0'))), "one|twone|tw|");
}

TEST(TreebankSource, RefusesDamagedAndTruncatedCompression) {
  const test::TemporaryFolder folder;
  const std::string member = test::gzip(std::string(5000, 'x') + "\n");
  for (std::size_t size = 2; size < member.size(); ++size)
    EXPECT_THROW(_all_lines(folder.write("a", member.substr(0, size))), input_error) << size;
  std::string damaged = member;
  damaged[member.size() - 6] = static_cast<char>(damaged[member.size() - 6] ^ 1);
  EXPECT_THROW(_all_lines(folder.write("b", damaged)), input_error);
  EXPECT_THROW(_all_lines(folder.write("c", member + "rest")), input_error);
  EXPECT_THROW(_all_lines(folder.path("missing")), input_error);
  EXPECT_THROW(_all_lines(folder.path()), input_error);
}

TEST(TreebankFormat, IsRecognisedByContent) {
  EXPECT_EQ(recognise_format(""), TreebankFormat::conllu);
  EXPECT_EQ(recognise_format(_row("1", "0")), TreebankFormat::conllu);
  EXPECT_EQ(recognise_format("1\tf\tl\tN\tN\t_\t0\tPred\t_\t_\n"), TreebankFormat::conllx);
  EXPECT_EQ(recognise_format("# x\n1\tf\tl\tN\tN\t_\t0\tPred\t_\t_\n"), TreebankFormat::conllu);
  EXPECT_EQ(recognise_format("\n1 f l t 0 Pred\n"), TreebankFormat::datafile);
  EXPECT_EQ(recognise_format("1 f l t 0 Pred\n" + _row("1", "0")), TreebankFormat::conllu);
  EXPECT_EQ(recognise_format("1\tf\tl\tCONJ\tN\t_\t0\tPred\t_\t_\n"), TreebankFormat::conllu);
  EXPECT_EQ(recognise_format("Once upon a time there was\n"), std::nullopt);
}

TEST(SentenceReader, PassesOverByteOrderMarksAtTheBeginningOfLines) {
  const std::string mark = "\xEF\xBB\xBF";
  const TextSeen seen =
      _read(mark + _row("1", "0") + "\n" + mark + "# c\n" + _row("1", "0") + "\n", TreebankFormat::conllu);
  EXPECT_EQ(seen.lengths, (Lengths{1, 1}));
  EXPECT_EQ(seen.problems, (Problems{"1:0 expected text, found a byte order mark",  //
                                     "3:0 expected text, found a byte order mark"}));
  EXPECT_EQ(recognise_format(mark + _row("1", "0")), TreebankFormat::conllu);
  const TextSeen datafile = _read(mark + "1 f l t 0 Pred\n", TreebankFormat::datafile);
  EXPECT_EQ(datafile.lengths, Lengths{1});
  EXPECT_EQ(datafile.problems.size(), 1U);
}

TEST(SentenceReader, PassesOverCommentsRangesAndEmptyNodes) {
  const TextSeen seen =
      _read("# c\r\n1-2\tx\n" + _row("1", "0") + _row("1.1", "_") + _row("2", "1") + "\n\n" + _row("1", "0"),
            TreebankFormat::conllx);
  EXPECT_EQ(seen.lengths, (Lengths{2, 1}));
  EXPECT_EQ(seen.problems, Problems{});
}

TEST(SentenceReader, AsksOfOtherFormatsNothingThatOnlyConllUDemands) {
  const std::string text = "\xEF\xBB\xBF" + _row("01", "0", "a b") + "# c\n" + _row("2", "1", "") + _row("9.9", "_") +
                           "\n\n" + _row("1", "0", "caf\xE9") + "5-4\r\n";
  const TextSeen seen = _read(text, TreebankFormat::conllx);
  EXPECT_EQ(seen.lengths, (Lengths{2, 1}));
  EXPECT_EQ(seen.problems, Problems{});
}

TEST(SentenceReader, EndsASentenceWhereNumbersBeginAnewInEveryFormat) {
  const Problems missing{"2:0 expected an empty line between sentences, found the first word of the next one"};
  const TextSeen conllx = _read(_row("1", "0") + _row("1", "0") + _row("2", "1"), TreebankFormat::conllx);
  EXPECT_EQ(conllx.lengths, (Lengths{1, 2}));
  EXPECT_EQ(conllx.problems, missing);
  const TextSeen datafile = _read("1 f l t 0 Pred\n 1 f l t 0 Pred\n2 f l t 1 Sb\n", TreebankFormat::datafile);
  EXPECT_EQ(datafile.lengths, (Lengths{1, 2}));
  EXPECT_EQ(datafile.problems, missing);
}

// Rows that are right but for some, in which something is wrong that costs a sentence or does not.
std::string _random_treebank(test::Random& random) {
  std::string text;
  for (int sentence = 0; sentence < 8; ++sentence) {
    const std::uint64_t size = 1 + random.below(4);
    for (std::uint64_t word = 1; word <= size; ++word) {
      std::string id = std::to_string(word);
      const std::string parent = std::to_string(random.below(6) == 0 ? random.below(6) : word - 1);
      switch (random.below(20)) {
        case 0:
          id = std::to_string(random.below(4));
          break;
        case 1:
          id += "-" + std::to_string(random.below(6));
          break;
        case 2:
          id += "." + std::to_string(random.below(3));
          break;
        case 3:
          id = "0" + id;
          break;
        default:
          break;
      }
      std::string row = _row(id, parent, random.below(5) == 0 ? "a\xC3\xA9 " : "f");
      if (random.below(20) == 0)
        row[random.below(static_cast<std::uint32_t>(row.size()) - 1)] = "\t\0x \xFF"[random.below(5)];
      if (random.below(20) == 0) row.insert(0, "# comment\n");
      text += row;
    }
    if (random.below(8) != 0) text += random.below(8) == 0 ? " \n" : "\n";
  }
  return text;
}

TEST(SentenceReader, GivesTheSameSentencesWhereOnlyXposIsWanted) {
  test::Random random;
  for (int round = 0; round < 2000; ++round) {
    const std::string text = _random_treebank(random);
    const test::TemporaryFolder folder;
    const std::string path = folder.write("x", text);
    for (const TreebankFormat format : {TreebankFormat::conllu, TreebankFormat::conllx}) {
      const auto usable = [&](WantedFields wanted) {
        TreebankSource source(path, false);
        SentenceReader reader(source, format, wanted);
        std::vector<std::string> sentences;
        TreebankSentence sentence;
        std::vector<TreebankProblem> problems;
        while (reader.next(sentence, problems)) {
          if (sentence.rows == 0 || must_be_skipped(problems)) continue;
          std::string& words = sentences.emplace_back();
          for (const TreebankWord& word : sentence.words)
            words += std::to_string(word.line) + " " + std::string(word.xpos) + "\n";
        }
        return sentences;
      };
      ASSERT_EQ(usable(WantedFields::xpos), usable(WantedFields::all)) << ::testing::PrintToString(text);
    }
  }
}

TEST(SentenceReader, CountsTheWordsOfSentencesThatAreLost) {
  const test::TemporaryFolder folder;
  TreebankSource source(folder.write("x", _row("1", "0") + _row("3", "1") + "short\n" + _row("4", "x") +
                                              _row("1", "0") + _row("2", "7") + "\n"),
                        false);
  SentenceReader reader(source, TreebankFormat::conllu);
  TreebankSentence sentence;
  std::vector<TreebankProblem> problems;
  for (const std::uint64_t rows : {4U, 2U}) {
    ASSERT_TRUE(reader.next(sentence, problems));
    EXPECT_TRUE(must_be_skipped(problems));
    EXPECT_EQ(sentence.rows, rows);
  }
  EXPECT_FALSE(reader.next(sentence, problems));
}

TEST(SentenceReader, NamesLineAndColumnOfWhatIsWrongAndSkipsThatSentenceOnly) {
  const TextSeen seen =
      _read(_row("1", "0") + "\n" + _row("1", "x") + _row("3", "0") + "\n" + "1\tshort\n\n" + _row("1", "2") + "\n" +
                _row("1", "2") + _row("2", "1") + "\n" + _row("1", "0") + "\n",
            TreebankFormat::conllu);
  EXPECT_EQ(seen.lengths, (Lengths{1, 1}));
  EXPECT_EQ(seen.problems,
            (Problems{"3:7 expected the number of a word or 0, found \"x\"", "4:1 expected the number 2, found \"3\"",
                      "6:0 expected 10 columns separated by TAB, found 2",
                      "8:7 expected the number of a word of the sentence, 1 to 1, or 0, found 2",
                      "10:7 expected a tree, found a cycle of parents through word 1 (1 -> 2)"}));
}

TEST(SentenceReader, NotesWhatNgrexWouldStumbleOnInADatafile) {
  const TextSeen seen =
      _read("1 f l t 0 Pred \n2 f l t 1 Atr\n \n1 f l t 0\n\n1 f l t 0 Pred\r\n", TreebankFormat::datafile);
  EXPECT_EQ(seen.lengths, (Lengths{2, 1}));
  EXPECT_EQ(seen.problems,
            (Problems{"1:0 expected the line to end with its sixth field, found white space, which ends the sentence",
                      "3:0 expected an empty line, found one of white space, which does not end a sentence",
                      "4:0 expected 6 fields separated by white space, found 5",
                      "6:0 expected lines that end with LF, found CR LF here and possibly further down"}));
  EXPECT_EQ(_read("1 f l t 0 Pred\n\r\n1 f l t 0 Pred\n", TreebankFormat::datafile).problems,
            (Problems{"2:0 expected lines that end with LF, found CR LF here and possibly further down"}));
}

TEST(SentenceReader, RefusesZeroBytesAndSentencesThatAreTooLong) {
  std::string text = _row("1", "0", std::string("a\0b", 3)) + "\n";
  for (int i = 1; i <= 65536; ++i)
    text += _row(std::to_string(i), "0");
  text += "\n";
  for (int i = 1; i <= 65535; ++i)
    text += _row(std::to_string(i), "0");
  text += "\n";
  const TextSeen seen = _read(text, TreebankFormat::conllu);
  EXPECT_EQ(seen.lengths, (Lengths{65535}));
  EXPECT_EQ(seen.problems, (Problems{"1:0 expected text, found a zero byte",
                                     "65538:1 expected a sentence of at most 65535 words, found more"}));
}

TEST(DatafileWriter, WritesNoWhiteSpaceAndNoEmptyField) {
  EXPECT_EQ(datafile_field(" a\vb\f\r"),
            "\xC2\xA0"
            "a\xC2\xA0"
            "b\xC2\xA0\xC2\xA0");
  EXPECT_EQ(datafile_field("\xE2\x80\xA8x\xE3\x80\x80\xC2\x85y\xE2\x80\x8B"),
            "\xC2\xA0x\xC2\xA0\xC2\xA0y\xE2\x80\x8B");  // a zero-width space is no white space
  EXPECT_EQ(datafile_field(""), "_");
}

TEST(DatafileWriter, NumbersBeforeTheExtension) {
  EXPECT_EQ(numbered_path("a.b/corpus.dat", 1), "a.b/corpus-0001.dat");
  EXPECT_EQ(numbered_path("corpus", 12345), "corpus-12345");
}

TEST(DatafileWriter, OverwritesNoFileThatIsToBeKept) {
  const test::TemporaryFolder folder;
  const std::string second = folder.write("d-0002.dat", "mine");
  DatafileWriter writer(folder.path("d.dat"), 1, {regular_file(second).value().identity});
  writer.write("1 a a N 0 Sb\n", 1);
  EXPECT_THROW(writer.write("1 a a N 0 Sb\n", 1), output_error);
  EXPECT_EQ(_all_lines(second), "mine|");
}

}  // namespace
}  // namespace colx
