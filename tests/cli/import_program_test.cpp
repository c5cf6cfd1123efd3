// ngrex-import seen from outside.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"
#include "tool_runner.h"

namespace colx::cli {
namespace {

const std::string rain =
    "# text = Heavy rain isn't\n"
    "1\tHeavy\theavy\tADJ\tJJ\tDegree=Pos\t2\tamod\t_\t_\n"
    "2\train\train\tNOUN\tNN\tNumber=Sing\t0\troot\t_\t_\n"
    "3-4\tisn't\t_\t_\t_\t_\t_\t_\t_\t_\n"
    "3\tis\tbe\tAUX\tVB\t_\t2\tcop\t_\t_\n"
    "4\tn't\t_\tPART\tRB\t_\t2\tadvmod\t_\t_\n\n";
const std::string rain_datafile =
    "1\tHeavy\theavy\tJJ\t2\tAtr\n"
    "2\train\train\tNN\t0\tPred\n"
    "3\tis\tbe\tVB\t2\tAuxV\n"
    "4\tn't\tn\xE2\x80\x99t\tRB\t2\tAdv\n\n";
const std::string broken = "1\ta\ta\tX\tX\t_\tx\tdep\t_\t_\n\n";

class ImportTest : public ::testing::Test {
 protected:
  ToolResult run(const std::vector<std::string>& arguments, const std::string& input = "") const {
    ToolOptions options;
    options.working_directory = folder.path();
    return run_tool("ngrex-import", arguments, input, options);
  }
  std::string read(const std::string& name) const {
    std::ifstream file(folder.path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  test::TemporaryFolder folder;
};

TEST_F(ImportTest, TurnsStandardInputIntoADatafileOnStandardOutput) {
  const ToolResult result = run({"-q"}, rain);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, rain_datafile);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(run({"-q", "--", "-"}, rain).out, rain_datafile);
}

TEST_F(ImportTest, MakesTagsFromFeaturesWhereTagsAreNotOfEqualLength) {
  std::string other = rain;
  other.replace(other.find("\tJJ\t"), 4, "\tJJR\t");
  EXPECT_TRUE(run({"-q"}, other).out.starts_with("1\tHeavy\theavy\tA--------1--\t2\tAtr\n"));
}

TEST_F(ImportTest, SplitsAndExtendsTheList) {
  folder.write("in", rain + rain + rain);
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "8", "--list", "list", "in"}).status, 0);
  EXPECT_EQ(read("d-0001.dat"), rain_datafile + rain_datafile);
  EXPECT_EQ(read("d-0002.dat"), rain_datafile);
  EXPECT_EQ(read("list"), "d-0001.dat\nd-0002.dat\n");
}

TEST_F(ImportTest, NotesWhereSentencesComeFrom) {
  folder.write("in", "# sent_id = w-1\n" + rain + broken + rain);
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--sentences", "s", "in", "-"}, rain).status, 0);
  const std::string notes =
      "# ngrex sentences 1\n"
      "d.dat\t1\t4\tin\t3\tw-1\tHeavy rain isn't\n"
      "d.dat\t6\t4\tin\t12\t\tHeavy rain isn't\n"
      "d.dat\t11\t4\t-\t2\t\tHeavy rain isn't\n";
  EXPECT_EQ(read("s"), notes);
  EXPECT_EQ(run({"-q", "-o", "e.dat", "--split", "8", "--sentences", "s", "in"}, "").status, 0);
  EXPECT_EQ(read("s"), notes +
                           "e-0001.dat\t1\t4\tin\t3\tw-1\tHeavy rain isn't\n"
                           "e-0001.dat\t6\t4\tin\t12\t\tHeavy rain isn't\n");
  // What it said of parts of the same output is replaced, though their number was another one.
  EXPECT_EQ(run({"-q", "-o", "e.dat", "--split", "4", "--sentences", "s"}, rain).status, 0);
  EXPECT_EQ(read("s"), notes + "e-0001.dat\t1\t4\t-\t2\t\tHeavy rain isn't\n");
}

TEST_F(ImportTest, NotesNoSentencesOverSomethingElse) {
  const auto complaint = [&](const std::vector<std::string>& arguments) {
    const ToolResult result = run(arguments);
    EXPECT_EQ(result.status, 1);
    return result.err;
  };
  const std::string overwritten =
      "ngrex-import: cannot write to in: it is an input or another output, and would be overwritten; stopping\n";
  folder.write("in", rain);
  folder.write("letter", "Dear\n");
  EXPECT_EQ(complaint({"-q", "-o", "d", "--sentences", "in", "in"}), overwritten);
  EXPECT_EQ(complaint({"-q", "-o", "d", "--sentences", "letter", "in"}),
            "ngrex-import: letter: line 1: expected \"# ngrex sentences 1\", with which a sentence file begins, found "
            "\"Dear\"; stopping\n");
  EXPECT_EQ(complaint({"-q", "-o", "./d", "--sentences", "d", "in"}),
            "ngrex-import: cannot write to d: it is a datafile, and would be overwritten; stopping\n");
  EXPECT_EQ(complaint({"-q", "-o", "d", "--list", "l", "--sentences", "l", "in"}),
            "ngrex-import: cannot write to l: it is an input or another output, and would be overwritten; stopping\n");
  EXPECT_EQ(read("in") + read("letter"), rain + "Dear\n");
  // Nothing remains of a run that fails, and what was noted before stays.
  EXPECT_EQ(run({"-q", "-o", "d", "--sentences", "s", "in"}).status, 0);
  const std::string notes = read("s");
  EXPECT_EQ(complaint({"-q", "-o", "s", "--sentences", "./s", "in"}),
            "ngrex-import: cannot write to s: it is an input or another output, and would be overwritten; stopping\n");
  EXPECT_EQ(read("s"), notes);
}

TEST_F(ImportTest, SkipsABrokenSentenceAndFailsUnderStrictOnly) {
  const std::string message =
      "ngrex-import: standard input:1: column 7 (HEAD): expected the number of a word or 0, found \"x\"; the sentence "
      "is skipped\n";
  const ToolResult lenient = run({"-q"}, broken + rain);
  EXPECT_EQ(lenient.status, 0);
  EXPECT_EQ(lenient.out, rain_datafile);
  EXPECT_EQ(lenient.err, message);
  EXPECT_EQ(run({"-q", "--strict"}, broken + rain).status, 1);
}

TEST_F(ImportTest, ReportsItsFigures) {
  const ToolResult result = run({"--mask", "*-"}, rain);
  EXPECT_EQ(result.err,
            "format:                 CoNLL-U\n"
            "words:                  4\n"
            "sentences:              1\n"
            "skipped sentences:      0\n"
            "multiword ranges:       1 passed over\n"
            "distinct lemmas:        4\n"
            "lemmas from forms:      1 words\n"
            "protected lemmas:       1 words\n"
            "tags:                   from XPOS\n"
            "distinct tags:          4\n"
            "distinct masked tags:   4 under *-\n"
            "suggested mask:         ** (4 distinct tags, 2.00 of 2.00 bits)\n"
            "relations:              to functions (ud)\n"
            "widest node:            3 children at standard input:3\n"
            "longest sentence:       4 words at standard input:2\n");
}

TEST_F(ImportTest, NamesValuesWithoutALetterAndSaysWhereLemmasAreForms) {
  const ToolResult result = run({"--tag", "feats"},
                                "1\ta\t_\tNOUN\t_\tCase=Zzz|Case=Nom\t0\troot\t_\t_\n"
                                "2\tb\t_\tNN\t_\tCase=Zzz\t1\tobj\t_\t_\n"
                                "3\tc\tc\tNOUN\t_\tCase=Nom\t1\tobj\t_\t_\n\n");
  EXPECT_NE(result.err.find("lemmas from forms:      2 words\n"
                            "                        most lemmas are forms: every inflected form will be counted as a "
                            "lemma of its own\n"
                            "tags:                   made from UPOS and FEATS\n"
                            "                        values without a letter (?): 2 words\n"
                            "  \"Case=Zzz\"            2\n"
                            "  \"UPOS=NN\"             1\n"
                            "distinct tags:          3\n"),
            std::string::npos)
      << result.err;
}

TEST_F(ImportTest, RecognisesSurfaceSyntacticRelationsAndReadsATableOfItsOwn) {
  const std::string surface =
      "1\tSleep\tsleep\tVERB\tV\t_\t0\troot\t_\t_\n"
      "2\tin\tin\tADP\tI\t_\t1\tudep\t_\t_\n"
      "3\tpeace\tpeace\tNOUN\tN\t_\t2\tcomp:obj\t_\t_\n\n";
  const ToolResult built_in = run({}, surface);
  EXPECT_EQ(built_in.out, "1\tSleep\tsleep\tV\t0\tPred\n2\tin\tin\tI\t1\tAuxP\n3\tpeace\tpeace\tN\t2\tAdv\n\n");
  EXPECT_NE(built_in.err.find("relations:              to functions (sud)\n"), std::string::npos) << built_in.err;
  folder.write("own", "root\tExD\nudep\tAuxY\n");
  const ToolResult own = run({"--relation-map", "own"}, surface);
  EXPECT_EQ(own.out, "1\tSleep\tsleep\tV\t0\tExD\n2\tin\tin\tI\t1\tAuxY\n3\tpeace\tpeace\tN\t2\tUndef\n\n");
  EXPECT_NE(own.err.find("relations:              to functions (own)\nrelations to Undef:     1\n"), std::string::npos);
  folder.write("wrong", "root\tPredicate\n");
  const ToolResult wrong = run({"--relation-map", "wrong"}, surface);
  EXPECT_EQ(wrong.status, 1);
  EXPECT_TRUE(wrong.err.starts_with("ngrex-import: wrong:1: expected an analytical function,")) << wrong.err;
  EXPECT_EQ(run({"--relation-map", "own", "-o", "own"}, surface).status, 1);
  EXPECT_EQ(read("own"), "root\tExD\nudep\tAuxY\n");
}

TEST_F(ImportTest, ReadsTheTablesThatItPrints) {
  const std::string treebank =
      "1\ta\ta\tNOUN\tN\t_\t0\troot\t_\t_\n2\tb\tb\tNOUN\tN\t_\t1\tconj\t_\t_\n"
      "3\tc\tc\tADP\tN\t_\t2\tmod\t_\t_\n4\td\td\tNOUN\tN\t_\t3\tcomp:obj\t_\t_\n"
      "5\te\te\tNOUN\tN\t_\t1\tvocative\t_\t_\n6\t.\t.\tPUNCT\tN\t_\t1\tpunct\t_\t_\n\n";
  for (const std::string& name : {std::string("ud"), std::string("sud")}) {
    const ToolResult printed = run({"--print-relation-map", name});
    EXPECT_EQ(printed.status, 0);
    folder.write("map", printed.out);
    const ToolResult result = run({"-q", "--relation-map", "map"}, treebank);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out.find("Undef") == std::string::npos, name == "sud") << result.out;
    EXPECT_EQ(result.out == run({"-q"}, treebank).out, name == "sud");
  }
  EXPECT_EQ(run({"--print-relation-map", "x"}).status, 2);
  EXPECT_EQ(run({"--relations", "keep", "--relation-map", "map"}, treebank).status, 2);
}

TEST_F(ImportTest, BringsAFewOddTagsToTheLengthOfTheOthers) {
  std::string text = "1\tx\tx\tX\tX@\t_\t0\troot\t_\t_\n\n";
  for (int i = 1; i < 1000; ++i)
    text += "1\ta\ta\tNOUN\tNNFS1\t_\t0\troot\t_\t_\n\n";
  const ToolResult result = run({}, text);
  EXPECT_TRUE(result.out.starts_with("1\tx\tx\tX@---\t0\tPred\n\n1\ta\ta\tNNFS1\t")) << result.out.substr(0, 100);
  EXPECT_NE(result.err.find("tags:                   from XPOS\n"
                            "                        filled up or cut to the common length: 1 words, the first at "
                            "standard input:1\n"),
            std::string::npos)
      << result.err;
  EXPECT_TRUE(run({"-q", "--tag", "xpos"}, text).out.starts_with("1\tx\tx\tX@\t"));
}

TEST_F(ImportTest, SaysWhyTagsAreNotTakenFromXpos) {
  std::string other = rain;
  other.replace(other.find("\tJJ\t"), 4, "\tJJR\t");
  EXPECT_NE(
      run({}, other).err.find(
          "tags:                   made from UPOS and FEATS\n"
          "                        XPOS is not taken: expected tags of length 2, found \"JJR\" at standard input:2; "
          "of the first 4 words 1 have no tag of that length\n"),
      std::string::npos);
}

TEST_F(ImportTest, DoesNotMixTagsOrRelationsInAListUnlessTold) {
  const auto import = [&](const std::string& output, std::vector<std::string> options) {
    options.insert(options.end(), {"-o", output, "--list", "list"});
    return run(options, rain);
  };
  EXPECT_EQ(import("a.dat", {"-q"}).err, "");
  EXPECT_EQ(read("list.import"), "tags: xpos\nrelations: functions\n");
  EXPECT_EQ(import("b.dat", {"-q"}).status, 0);

  // Another default, as the tags of this part are not of one length.
  std::string other = rain;
  other.replace(other.find("\tJJ\t"), 4, "\tJJR\t");
  const ToolResult mixed = run({"-o", "c.dat", "--list", "list"}, other);
  EXPECT_EQ(mixed.status, 2);
  EXPECT_TRUE(
      mixed.err.starts_with("ngrex-import: list.import says that the datafiles of list were made with --tag "
                            "xpos, this one would be made with --tag feats (XPOS is not taken: expected tags of "
                            "length 2, found \"JJR\" at standard input:2; of the first 4 words 1 have no tag of that "
                            "length); give --tag to say which of them is meant\n"))
      << mixed.err;
  EXPECT_EQ(read("c.dat"), "");
  EXPECT_EQ(read("list"), "a.dat\nb.dat\n");

  const ToolResult told = import("c.dat", {"--tag", "feats", "--relations", "keep"});
  EXPECT_EQ(told.status, 0);
  EXPECT_TRUE(
      told.err.ends_with("list:                   the other datafiles of list were made with --tag xpos, this "
                         "one with --tag feats\n"
                         "                        the other datafiles of list were made with --relations "
                         "functions, this one with --relations keep\n"))
      << told.err;
  EXPECT_EQ(read("list.import"), "tags: feats xpos\nrelations: functions keep\n");
}

TEST_F(ImportTest, ExtendsAListThatNothingIsKnownOfAndBeginsAnewWhereAllIsReplaced) {
  folder.write("list", "other.dat\n");
  const ToolResult unknown = run({"-o", "a.dat", "--list", "list"}, rain);
  EXPECT_EQ(unknown.status, 0);
  EXPECT_TRUE(
      unknown.err.ends_with("list:                   list.import is not there; whether the other datafiles of "
                            "list were made alike is not known\n"))
      << unknown.err;
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "4", "--list", "own"}, rain + rain).status, 0);
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "4", "--list", "own", "--tag", "upos"}, rain + rain).status, 0);
  EXPECT_EQ(read("own.import"), "tags: upos\nrelations: functions\n");
  // d-0002.dat stays as it was.
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "8", "--list", "own", "--tag", "xpos"}, rain + rain).status, 0);
  EXPECT_EQ(read("own.import"), "tags: upos xpos\nrelations: functions\n");
  // A whole file does not replace parts, nor parts a whole file.
  EXPECT_EQ(run({"-q", "-o", "w.dat", "--list", "whole", "--tag", "xpos"}, rain).status, 0);
  EXPECT_EQ(run({"-q", "-o", "w.dat", "--split", "4", "--list", "whole", "--tag", "upos"}, rain).status, 0);
  EXPECT_EQ(read("whole.import"), "tags: upos xpos\nrelations: functions\n");
  // What an import left that was interrupted.
  folder.write("own.import", "");
  const ToolResult empty = run({"-o", "e.dat", "--list", "own"}, rain);
  EXPECT_TRUE(
      empty.err.ends_with("list:                   own.import is empty; whether the other datafiles of own were made "
                          "alike is not known\n"))
      << empty.err;
  folder.write("own.import", "tags: penn\n");
  EXPECT_EQ(run({"-q", "-o", "e.dat", "--list", "own"}, rain).status, 1);
  EXPECT_EQ(read("own.import"), "tags: penn\n");
  EXPECT_EQ(run({"-q", "-o", "new.import", "--list", "new"}, rain).status, 1);
}

TEST_F(ImportTest, ChecksADatafileAndWritesNothing) {
  const ToolResult result = run({"--check", "--strict", "-q"}, "1 a a N 0 Pred\n3 b b N 1 Atr\n\n1 a a N 1 Pred\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "ngrex-import: standard input:2: column 1 (order): expected the number 2, found \"3\"; the sentence would "
            "be skipped\n"
            "ngrex-import: standard input:4: column 5 (parent): expected a tree, found a cycle of parents through word "
            "1 (1 -> 1); the sentence would be skipped\n");
}

TEST_F(ImportTest, FailsLoudlyWhenItCannotWriteOrRead) {
  ToolOptions full;
  full.output_path = "/dev/full";
  EXPECT_EQ(run_tool("ngrex-import", {"-q"}, rain, full).status, 1);
  EXPECT_EQ(run_tool("ngrex-import", {"--help"}, "", full).status, 1);
  EXPECT_EQ(run({"missing"}).status, 1);
  EXPECT_EQ(run({"."}).status, 1);
  EXPECT_EQ(run({}, "not a treebank\n").status, 1);
}

TEST_F(ImportTest, AReaderThatGoesAwayCostsNoFile) {
  ToolOptions closed;
  closed.working_directory = folder.path();
  closed.output_closed_pipe = true;
  const ToolResult piped = run_tool("ngrex-import", {}, rain, closed);
  EXPECT_EQ(piped.status, 128 + SIGPIPE);
  EXPECT_EQ(piped.err, "");
  const ToolResult plain = run({"-o", "expected"}, rain);
  closed.errors_closed_pipe = true;
  EXPECT_EQ(run_tool("ngrex-import", {"-o", "got"}, rain, closed).status, plain.status);
  EXPECT_EQ(read("got"), read("expected"));
}

TEST_F(ImportTest, DoesNotOverwriteItsInput) {
  folder.write("in", rain);
  EXPECT_EQ(run({"-q", "-o", "in", "in"}).status, 1);
  EXPECT_EQ(read("in"), rain);
}

TEST_F(ImportTest, OverwritesNeitherAnInputNorTheListWithAPart) {
  folder.write("d-0002.dat", rain + rain + rain);
  const ToolResult result = run({"-q", "--split", "4", "-o", "d.dat", "d-0002.dat"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "ngrex-import: cannot write to d-0002.dat: it is an input or another output, and would be overwritten; "
            "stopping\n");
  EXPECT_EQ(read("d-0002.dat"), rain + rain + rain);
  EXPECT_EQ(run({"-q", "-o", "same", "--list", "same"}, rain).status, 1);
  folder.write("list", "other.dat\n");
  EXPECT_EQ(run({"-q", "-o", "list", "--list", "list"}, rain).status, 1);
  EXPECT_EQ(read("list"), "other.dat\n");
  folder.write("bank", rain);
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--list", "bank", "bank"}).status, 1);
  EXPECT_EQ(read("bank"), rain);
  ToolOptions onto_input;
  onto_input.output_path = folder.path("bank");
  onto_input.append_output = true;
  EXPECT_EQ(run_tool("ngrex-import", {"-q", folder.path("bank")}, "", onto_input).status, 1);
  EXPECT_EQ(read("bank"), rain);
}

TEST_F(ImportTest, FailsBeforeTheWorkWhenTheListCannotBeWritten) {
  folder.write("d.dat", "what was there");
  EXPECT_EQ(run({"-o", "d.dat", "--list", "/dev/full"}, rain).status, 1);
  const ToolResult result = run({"-o", "d.dat", "--list", "no/list"}, rain);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "ngrex-import: cannot write the list no/list: No such file or directory; stopping\n");
  EXPECT_EQ(read("d.dat"), "what was there");
}

TEST_F(ImportTest, WarnsOfPartsThatAnEarlierImportLeft) {
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "4", "--list", "list"}, rain + rain + rain).err, "");
  const ToolResult result = run({"-q", "-o", "d.dat", "--split", "8", "--list", "list"}, rain + rain + rain);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(
      result.err,
      "ngrex-import: d-0003.dat is in the list list but not of this import; ngrex will count its words as well\n");
  EXPECT_EQ(run({"-q", "-o", "d.dat", "--split", "8"}, rain + rain + rain).err,
            "ngrex-import: d-0003.dat is there already and not of this import\n");
  EXPECT_EQ(
      run({"-q", "-o", "d.dat", "--list", "list"}, rain).err,
      "ngrex-import: d-0001.dat is in the list list but not of this import; ngrex will count its words as well\n");
}

TEST_F(ImportTest, TellsWhatNgrexWouldNotReadInADatafile) {
  const std::string words = "1 a a N 0 nsubj\n2 b b N 1 ATR_CO\n3 c c N 1 Atr\n\n";
  const ToolResult result = run({"--check"}, "\xEF\xBB\xBF" + words);
  EXPECT_TRUE(
      result.err.starts_with("ngrex-import: standard input:1: expected text, found a byte order mark, at which ngrex "
                             "loses the sentence; importing the datafile mends it\n"))
      << result.err;
  EXPECT_NE(result.err.find("relations to Undef:     2\n"), std::string::npos) << result.err;
  EXPECT_EQ(run({"-q"}, words).out, "1\ta\ta\tN\t0\tSb\n2\tb\tb\tN\t1\tAtr_Co\n3\tc\tc\tN\t1\tAtr\n\n");
}

TEST_F(ImportTest, TellsFiftyFaultsAndCountsTheRest) {
  std::string text = rain;
  for (int i = 0; i < 53; ++i)
    text += broken;
  const auto lines = [](const std::string& told) { return std::count(told.begin(), told.end(), '\n'); };
  const ToolResult result = run({"-q"}, text);
  EXPECT_EQ(lines(result.err), 51);
  EXPECT_TRUE(result.err.ends_with("ngrex-import: standard input: further faults: 3 (--check tells them all)\n"));
  EXPECT_EQ(lines(run({"-q", "--check"}, text).err), 53);
}

TEST_F(ImportTest, TellsTheFirstFaultOfAHarmlessKindAndCountsAllOfThem) {
  const std::string text = rain + " \n" + rain + "\t\n" + broken;
  const ToolResult result = run({}, text);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, rain_datafile + rain_datafile);
  EXPECT_TRUE(
      result.err.starts_with("ngrex-import: standard input:8: expected an empty line, found one of white space; "
                             "read as if it were right\n"
                             "ngrex-import: standard input:17: column 7 (HEAD): "))
      << result.err;
  EXPECT_NE(result.err.find("further faults: 1 (--check tells them all)\n"), std::string::npos);
  EXPECT_NE(result.err.find("\nskipped sentences:      1 with 1 words\n"), std::string::npos);
  EXPECT_TRUE(
      result.err.ends_with("faults that skip:       1\n"
                           "  parents not numbers   1\n"
                           "faults read over:       2\n"
                           "  lines of white space  2\n"))
      << result.err;
  EXPECT_EQ(run({"-q", "--strict"}, rain + " \n").status, 0);
  EXPECT_EQ(run({"-q", "--strict", "--check"}, rain + " \n").status, 1);
}

TEST_F(ImportTest, CountsEveryLineThatEndsWithACarriageReturn) {
  const std::string windows = "1\ta\ta\tX\tX\t_\t0\troot\t_\t_\r\n\r\n";
  const ToolResult result = run({"--check"}, windows + windows);
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), ';'), 1) << result.err;
  EXPECT_TRUE(result.err.ends_with("  line ends of CR LF    4\n")) << result.err;
}

TEST_F(ImportTest, SaysWhatAnInputSeemsToBeAndTouchesNoOutput) {
  folder.write("d.dat", "what was there");
  folder.write("bank.cupt",
               "# global.columns = ID FORM LEMMA UPOS XPOS FEATS HEAD DEPREL DEPS MISC PARSEME:MWE\n"
               "1\ta\ta\tX\tX\t_\t0\troot\t_\t_\t*\n\n");
  folder.write("bank.zip", "PK\x03\x04\x14");
  const std::string expected =
      "expected rows of 10 columns separated by TAB (CoNLL-U, CoNLL-X) or of 6 fields (datafile), found ";
  const ToolResult cupt = run({"-o", "d.dat", "bank.cupt"});
  EXPECT_EQ(cupt.status, 1);
  EXPECT_EQ(cupt.err,
            "ngrex-import: bank.cupt: " + expected +
                "CoNLL-U Plus (.cupt and others) with the column PARSEME:MWE behind those of CoNLL-U; cut "
                "-f1-10 FILE | ngrex-import reads those of CoNLL-U, or --from FORMAT tells which format it is "
                "all the same; stopping\n");
  for (const char* const format : {"conllu", "conllx", "datafile"}) {
    const ToolResult zip = run({"-o", "d.dat", "--from", format, "bank.zip"});
    EXPECT_EQ(zip.status, 1);
    EXPECT_EQ(zip.err, "ngrex-import: bank.zip: " + expected +
                           "a zip archive; unzip -p FILE '*.conllu' | ngrex-import reads the treebanks in it; "
                           "stopping\n");
  }
  EXPECT_EQ(read("d.dat"), "what was there");
}

TEST_F(ImportTest, TellsOfAnInputWithoutSentences) {
  const ToolResult result = run({"-q"}, "# only a comment\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "ngrex-import: standard input: expected sentences, found none\n");
}

TEST_F(ImportTest, TellsOfTooManyTagsEvenWhenQuietIfThatIsWhatWasAsked) {
  std::string text;
  for (int i = 0; i < 255; ++i)
    text += "1 a a N" + std::to_string(i) + " 0 Sb\n\n";
  const ToolResult result = run({"-q", "--check", "--strict"}, text);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(
      result.err,
      "ngrex-import: expected at most 254 distinct tags, found 255; the first too many is at standard input:509\n");
  EXPECT_EQ(run({"-q", "--check", "--strict", "--mask", "*"}, text).status, 0);
  EXPECT_NE(run({"--check"}, text).err.find("suggested mask:         *-** (111 distinct tags, 6.31 of 7.99 bits)"),
            std::string::npos);
}

TEST_F(ImportTest, AnswersQuestionsWithZeroAndWrongUseWithTwo) {
  for (const char* const option : {"--help", "--version", "--tag-table"}) {
    const ToolResult result = run({option});
    EXPECT_EQ(result.status, 0) << option;
    EXPECT_NE(result.out, "") << option;
    EXPECT_EQ(result.err, "") << option;
  }
  for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{{"--bogus"},
                                                                                     {"--split", "0", "-o", "x"},
                                                                                     {"--split", "5"},
                                                                                     {"--list", "x"},
                                                                                     {"--tag", "x"},
                                                                                     {"--check", "-o", "x"},
                                                                                     {"--mask", "NN"},
                                                                                     {"-", "-"},
                                                                                     {"--from"}}) {
    const ToolResult result = run(wrong);
    EXPECT_EQ(result.status, 2) << wrong.front();
    EXPECT_EQ(result.out, "") << wrong.front();
    EXPECT_NE(result.err, "") << wrong.front();
  }
}

}  // namespace
}  // namespace colx::cli
