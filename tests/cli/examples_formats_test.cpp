// ngrex-examples with a sentence file, seen from outside.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temporary_folder.h"
#include "tool_runner.h"

namespace colx::cli {
namespace {

const std::string two_sentences =
    "1\tHeavy\theavy\tA\t2\tAtr\n2\train\train\tN\t3\tSb\n3\tfell\tfall\tV\t0\tPred\n\n"
    "1\tCold\tcold\tA\t2\tAtr\n2\train\train\tN\t0\tExD\n\n";
const std::string origins =
    "# ngrex sentences 1\n"
    "d.dat\t1\t3\tbank\t3\tw-1\tHeavy rain - fell\n"
    "d.dat\t5\t2\tbank\t9\t\t\n";

class ExampleFormats : public ::testing::Test {
 protected:
  ExampleFormats() {
    folder.write("d.dat", two_sentences);
    folder.write("list", "d.dat\n");
    folder.write("sentences", origins);
  }
  ToolResult run(std::vector<std::string> arguments) const {
    ToolOptions options;
    options.working_directory = folder.path();
    arguments.insert(arguments.begin(), {"-i", "list", "--pattern", "* <Atr rain", "--examples", "all"});
    return run_tool("ngrex-examples", arguments, "", options);
  }
  test::TemporaryFolder folder;
};

TEST_F(ExampleFormats, ShowSentencesAsTheyWereWritten) {
  EXPECT_EQ(run({"--sentences", "sentences"}).out,
            "* <Atr rain (found 2 times)\n"
            "  w-1\n"
            "    [Heavy] [rain] - fell\n"
            "  bank:9\n"
            "    [Cold] [rain]\n");
  EXPECT_EQ(run({}).out,
            "* <Atr rain (found 2 times)\n"
            "  d.dat:1\n"
            "    [Heavy] [rain] fell\n"
            "  d.dat:5\n"
            "    [Cold] [rain]\n");
}

TEST_F(ExampleFormats, GoWithoutWhatASentenceFileDoesNotCover) {
  folder.write("e.dat", two_sentences);
  folder.write("list", "e.dat\nd.dat\n");
  // Of 100 columns the names take seven and two; of the other 91 the left side has (91 - 6) / 2.
  EXPECT_EQ(run({"--sentences", "sentences", "--format", "kwic"}).out,
            "* <Atr rain (found 4 times)\n"
            "e.dat:1                                    [Heavy] [rain] fell\n"
            "e.dat:5                                     [Cold] [rain]\n"
            "w-1                                        [Heavy] [rain] - fell\n"
            "bank:9                                      [Cold] [rain]\n");
}

TEST_F(ExampleFormats, RefuseASentenceFileThatDoesNotFit) {
  const auto complaint = [&](const std::string& content) {
    folder.write("sentences", content);
    const ToolResult result = run({"--sentences", "sentences"});
    EXPECT_EQ(result.status, 1);
    return result.err;
  };
  std::string other = origins;
  other.replace(other.find("\t5\t2\t"), 5, "\t5\t4\t");
  EXPECT_EQ(
      complaint(other),
      "ngrex-examples: sentences: line 3: expected a sentence of 2 words at line 5 of d.dat, found one of 4 at line "
      "5; the file was not made together with this datafile\n");
  other = origins;
  while (other.find("d.dat") != std::string::npos)
    other.replace(other.find("d.dat"), 5, "x.dat");
  EXPECT_EQ(complaint(other),
            "ngrex-examples: sentences: expected sentences of a datafile of the list, such as d.dat, found those of "
            "x.dat\n");
  EXPECT_EQ(complaint("# ngrex sentences 1\n"),
            "ngrex-examples: sentences: expected sentences of a datafile of the list, such as d.dat, found none\n");
  EXPECT_EQ(complaint(two_sentences),
            "ngrex-examples: sentences: line 1: expected \"# ngrex sentences 1\", with which a sentence file begins, "
            "found \"1?Heavy?heavy?A?2?Atr\"\n");
}

TEST_F(ExampleFormats, WriteATreebankWithEachSentenceOnce) {
  ASSERT_EQ(run({"--pattern", "rain Sb> *", "--pattern", "rain <Sb fall", "--format", "conllu", "-o", "shown"}).status,
            0);
  std::ifstream file(folder.path("shown"), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
            "# sent_id = d.dat:1\n"
            "# text = Heavy rain fell\n"
            "# datafile = d.dat:1\n"
            "# hit_1 = 1 * <Atr rain\n"
            "# hit_2 = 3 rain <Sb fall\n"
            "1\tHeavy\theavy\t_\tA\t_\t2\tAtr\t_\tHit=1:1\n"
            "2\train\train\t_\tN\t_\t3\tSb\t_\tHit=1:2,2:1\n"
            "3\tfell\tfall\t_\tV\t_\t0\tPred\t_\tHit=2:2\n"
            "\n"
            "# sent_id = d.dat:5\n"
            "# text = Cold rain\n"
            "# datafile = d.dat:5\n"
            "# hit_1 = 1 * <Atr rain\n"
            "1\tCold\tcold\t_\tA\t_\t2\tAtr\t_\tHit=1:1\n"
            "2\train\train\t_\tN\t_\t0\tExD\t_\tHit=1:2\n"
            "\n");
}

}  // namespace
}  // namespace colx::cli
