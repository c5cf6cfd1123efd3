// The formats for programs, byte for byte.

#include <gtest/gtest.h>

#include <string>

#include "companion/utf8.h"
#include "examples/data_writers.h"
#include "sentences.h"

namespace colx::examples {
namespace {

using test::heavy_rain;
using test::hit_at;
using test::shown;
using test::written_as;

TEST(ExampleTsv, IsALineForEachHit) {
  EXPECT_EQ(shown(Format::tsv, {},
                  {{heavy_rain(), hit_at({1, 2})}, {written_as(heavy_rain(), "Heavy rain fell."), hit_at({2, 3})}}),
            "rank\tpattern\tfrequency\tfile\tline\ttreebank\ttreebank_line\tid\tword1\tword2\tsentence\n"
            "1\theavy <Atr rain\t9\twords.dat\t1\t\tNA\t\t1\t2\tHeavy rain fell .\n"
            "1\theavy <Atr rain\t9\twords.dat\t1\tbank.conllu\t4\tw-1\t2\t3\tHeavy rain fell.\n");
}

TEST(ExampleTsv, KeepsItsColumnsWhateverTextsAre) {
  const std::string all =
      shown(Format::tsv, {}, {{written_as(heavy_rain(), "Heavy\train\nfell\xFF", "\r1"), hit_at({1, 2})}});
  EXPECT_TRUE(all.ends_with("\t 1\t1\t2\tHeavy rain fell\xEF\xBF\xBD\n")) << all;
}

TEST(ExampleTsv, HasNoFrequencyOfAPattern) {
  TextOutput output;
  const auto writer = make_tsv_writer(output);
  writer->begin(2);
  writer->ngram({2, "* <Atr rain", nullptr, {}, 1, 1});
  writer->example(heavy_rain(), hit_at({1, 2}));
  writer->end();
  EXPECT_NE(output.text().find("\n2\t* <Atr rain\tNA\twords.dat\t1\t"), std::string::npos);
}

TEST(ExampleJson, IsAnObjectForEachHit) {
  const std::string words = R"("words":[{"form":"Heavy","lemma":"Heavy","tag":"NN","parent":2,"relation":"Atr"},)"
                            R"({"form":"rain","lemma":"rain","tag":"NN","parent":3,"relation":"Sb"},)"
                            R"({"form":"fell","lemma":"fell","tag":"NN","parent":0,"relation":"Pred"},)"
                            R"({"form":".","lemma":".","tag":"NN","parent":0,"relation":"AuxK"}]})";
  EXPECT_EQ(
      shown(Format::jsonl, {},
            {{heavy_rain(), hit_at({1, 2})}, {written_as(heavy_rain(), "\"Heavy\\\x01\xFF", ""), hit_at({2, 3})}}),
      R"({"rank":1,"pattern":"heavy <Atr rain","frequency":9,"file":"words.dat","line":1,"treebank":null,)"
      R"("treebank_line":null,"id":null,"text":null,"positions":[1,2],"top":2,)" +
          words + "\n" +
          R"({"rank":1,"pattern":"heavy <Atr rain","frequency":9,"file":"words.dat","line":1,)"
          R"("treebank":"bank.conllu","treebank_line":4,"id":null,)" +
          "\"text\":\"\\\"Heavy\\\\\\u0001\xEF\xBF\xBD\""
          R"(,"positions":[2,3],"top":3,)" +
          words + "\n");
}

TEST(ExampleConllu, HasEachSentenceOnceWithAllHitsInCorpusOrder) {
  use_utf8_characters();
  const auto second = written_as(heavy_rain(), "Heavy rain fell.", "w 2");
  EXPECT_EQ(shown(Format::conllu, {},
                  {{second, hit_at({2, 3}, 6)}, {heavy_rain(), hit_at({1, 2})}, {second, hit_at({1, 2}, 6)}}),
            "# sent_id = words.dat:1\n"
            "# text = Heavy rain fell .\n"
            "# datafile = words.dat:1\n"
            "# hit_1 = 1 heavy <Atr rain\n"
            "1\tHeavy\tHeavy\t_\tNN\t_\t2\tAtr\t_\tHit=1:1\n"
            "2\train\train\t_\tNN\t_\t3\tSb\t_\tHit=1:2\n"
            "3\tfell\tfell\t_\tNN\t_\t0\tPred\t_\t_\n"
            "4\t.\t.\t_\tNN\t_\t0\tAuxK\t_\t_\n"
            "\n"
            "# sent_id = w_2\n"
            "# text = Heavy rain fell.\n"
            "# datafile = words.dat:1\n"
            "# treebank = bank.conllu:4\n"
            "# hit_1 = 1 heavy <Atr rain\n"
            "# hit_2 = 1 heavy <Atr rain\n"
            "1\tHeavy\tHeavy\t_\tNN\t_\t2\tAtr\t_\tHit=1:1\n"
            "2\train\train\t_\tNN\t_\t3\tSb\t_\tHit=1:2,2:1\n"
            "3\tfell\tfell\t_\tNN\t_\t0\tPred\t_\tHit=2:2|SpaceAfter=No\n"
            "4\t.\t.\t_\tNN\t_\t0\tAuxK\t_\t_\n"
            "\n");
}

}  // namespace
}  // namespace colx::examples
