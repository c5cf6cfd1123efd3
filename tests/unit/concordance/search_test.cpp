#include "concordance/search.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/block_reader.h"
#include "tests/support/temporary_folder.h"

namespace colx::concordance {
namespace {

constexpr std::size_t memory = std::size_t{1} << 20;

const std::string rain =
    "1\tHeavy\theavy\tAAS1\t2\tAtr\n2\train\train_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tPred\n\n"
    "1\tCold\tcold\tAAS1\t2\tAtr\n2\train\train_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tnsubj\n\n";
const std::string snow =
    "1\tHeavy\theavy\tAAS1\t2\tAtr\n2\tsnow\tsnow_;N\tNNS-\t3\tSb\n3\tfell\tfall_:W\tVpS-\t0\tPred\n\n"
    "1\tHeavy\theavy\tAAP1\t2\tAtr\n2\train\train\tNNP-\t0\tExD\n";

// A corpus of these datafiles, searched for N-grams under a mask.
class Corpus {
 public:
  explicit Corpus(const std::vector<std::string>& datafiles, const std::string& mask = "",
                  const std::string& rules = "") {
    std::string list;
    for (std::size_t i = 0; i < datafiles.size(); ++i)
      list += _folder.write("datafile" + std::to_string(i), datafiles[i]) + "\n";
    _settings.list = _folder.write("list", list);
    _settings.mask = mask;
    if (!rules.empty()) _settings.rules = _folder.write("rules", rules);
    _datafiles = datafiles_of(_settings);
  }

  Search search(unsigned n) const { return {_settings, _datafiles, n}; }

  // How often an N-gram occurs; its member lines are given, and a frequency that does not matter.
  std::uint64_t found(const std::string& members) {
    const table::Block block = block_of(members);
    Search search(_settings, _datafiles, static_cast<unsigned>(block.n));
    search.add(block);
    search.run({}, memory, [&](std::string_view warning) { warnings.emplace_back(warning); });
    return search.found(0);
  }

  std::uint64_t found(const Query& query) {
    Search search(_settings, _datafiles, static_cast<unsigned>(query.n()));
    search.add(query);
    search.run({}, memory, [&](std::string_view warning) { warnings.emplace_back(warning); });
    return search.found(0);
  }

  table::Block block_of(const std::string& members) {
    const auto n = static_cast<std::size_t>(std::count(members.begin(), members.end(), '\n'));
    _text = members + "9";
    for (std::size_t i = 1; i < std::size_t{1} << n; ++i)
      _text += "\t9";
    _text += n == 2 ? "\n1\t1\t1\t1\t1\t1\n\n" : "\n1\t1\n\n";
    table::Block block;
    table::Fault fault;
    EXPECT_EQ(table::parse_block(_text, block, fault), table::ParseStatus::complete) << fault.message;
    return block;
  }

  std::string path(const std::string& name) const { return _folder.path(name); }
  const test::TemporaryFolder& folder() const { return _folder; }

  std::vector<std::string> warnings;

 private:
  test::TemporaryFolder _folder;
  CorpusSettings _settings;
  std::vector<ListedDatafile> _datafiles;
  std::string _text;
};

TEST(Search, FindsWhatHasTheSameLemmasTagsAndRelations) {
  Corpus corpus({rain, snow}, "**-");
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t2\tAtr\n2\train\tNN-\t0\tHead\n"), 2U);
  EXPECT_EQ(corpus.found("1\train\tNN-\t2\tSb\n2\tfall\tVp-\t0\tHead\n"), 2U);
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t2\tSb\n2\train\tNN-\t0\tHead\n"), 0U);
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t0\tHead\n2\train\tNN-\t1\tAtr\n"), 0U);
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t2\tAtr\n2\train\tNNS\t0\tHead\n"), 0U);
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t2\tamod\n2\train\tNN-\t0\tHead\n"), 0U);
  EXPECT_EQ(corpus.found("1\theavy\tAA-\t2\tAtr\n2\train\tNN-\t3\tSb\n3\tfall\tVp-\t0\tHead\n"), 1U);
}

TEST(Search, RulesRefuseWhatTheyRefuse) {
  const std::string heavy_rain = "1\theavy\tAAS1\t2\tAtr\n2\train\tNNS-\t0\tHead\n";
  // Rules see the last word first.
  EXPECT_EQ(Corpus({rain, snow}, "****", "NNS AAS\n").found(heavy_rain), 1U);
  EXPECT_EQ(Corpus({rain, snow}, "****", "AAS NNS\n").found(heavy_rain), 0U);
  EXPECT_EQ(Corpus({rain, snow}, "****", "NNS AAS\n").found(parse_query("heavy <Atr rain")), 1U);
  EXPECT_EQ(Corpus({rain, snow}, "****", "NNP AAP\n").found(parse_query("heavy <Atr rain")), 1U);
  // They are not applied where there is no mask, or no rule for so many words.
  EXPECT_EQ(Corpus({rain, snow}, "", "NNP AAP\n").found(parse_query("heavy <Atr rain")), 2U);
  EXPECT_EQ(Corpus({rain, snow}, "****", "NNP\n").found(parse_query("heavy <Atr rain")), 2U);
}

TEST(Search, PatternsSayNothingOfTags) {
  Corpus corpus({rain, snow}, "****");
  EXPECT_EQ(corpus.found(parse_query("heavy <Atr rain")), 2U);
  EXPECT_EQ(corpus.found(parse_query("* <Atr rain")), 3U);
  EXPECT_EQ(corpus.found(parse_query("* <Atr *")), 4U);
  EXPECT_EQ(corpus.found(parse_query("* <Atr */Sb")), 3U);
  EXPECT_EQ(corpus.found(parse_query("* <Sb fall/Undef")), 1U);
  EXPECT_EQ(corpus.found(parse_query("* <Atr * <Sb *")), 3U);
  EXPECT_EQ(corpus.found(parse_query("rain Atr> *")), 0U);
}

// From five words on the rule of blocks counts some pieces twice and others not at all. The top word has two children
// with two children each; of the sizes 2 and 2 there are four pieces, of which two are formed, twice each.
TEST(Search, RepeatedPiecesAreFoundAsOftenAsTheyAreCounted) {
  const std::string bush =
      "1 t top X 0 Pred\n2 a a X 1 Sb\n3 b b X 1 Sb\n4 c c X 2 Sb\n5 d d X 2 Sb\n6 e e X 3 Sb\n7 f f X 3 Sb\n";
  Corpus corpus({bush});
  const auto piece = [&](const std::string& left, const std::string& right) {
    return corpus.found("1\ttop\t\t0\tHead\n2\ta\t\t1\tSb\n3\tb\t\t1\tSb\n4\t" + left + "\t\t2\tSb\n5\t" + right +
                        "\t\t3\tSb\n");
  };
  EXPECT_EQ(piece("c", "e"), 2U);
  EXPECT_EQ(piece("d", "f"), 2U);
  EXPECT_EQ(piece("c", "f"), 0U);
  EXPECT_EQ(piece("d", "e"), 0U);
}

TEST(Search, WordsInACycleAreInNoPiece) {
  Corpus corpus({"1 a a X 2 Sb\n2 b b X 1 Sb\n3 c c X 2 Sb\n4 d d X 3 Sb\n5 e e X 5 Sb\n6 f f X 9 Sb\n7 g g X 6 Sb\n"});
  EXPECT_EQ(corpus.found(parse_query("a <Sb b")), 0U);
  EXPECT_EQ(corpus.found(parse_query("a Sb> b")), 0U);
  EXPECT_EQ(corpus.found(parse_query("b Sb> c")), 0U);
  EXPECT_EQ(corpus.found(parse_query("c Sb> d")), 1U);
  EXPECT_EQ(corpus.found(parse_query("f Sb> g")), 1U);
  EXPECT_EQ(corpus.found(parse_query("* Sb> *")), 2U);
}

TEST(Search, HitsLeadToTheirSentencesWithAllThatStandsThere) {
  Corpus corpus({rain, snow});
  Search search = corpus.search(2);
  search.add(corpus.block_of("1\train\t\t2\tSb\n2\tfall\t\t0\tHead\n"));
  search.run({std::nullopt, false, ""}, memory, [](std::string_view) {});
  Hit hit;
  ASSERT_TRUE(search.next(hit));
  ASSERT_TRUE(search.next(hit));
  EXPECT_EQ(hit.ngram, 0U);
  EXPECT_EQ(hit.positions[0], 2U);
  EXPECT_EQ(hit.positions[1], 3U);
  const ExampleSentence& sentence = search.sentence(hit.place);
  EXPECT_EQ(sentence.file, corpus.path("datafile0"));
  EXPECT_EQ(sentence.line, 5U);
  ASSERT_EQ(sentence.words.size(), 3U);
  EXPECT_EQ(sentence.words[0].form, "Cold");
  EXPECT_EQ(sentence.words[1].whole_lemma, "rain_;N");
  EXPECT_EQ(sentence.words[1].lemma, "rain");
  EXPECT_EQ(sentence.words[1].tag, "NNS-");
  EXPECT_EQ(sentence.words[1].parent, 3U);
  EXPECT_EQ(sentence.words[2].relation, "nsubj");
  EXPECT_EQ(sentence.words[2].parent, 0U);
  EXPECT_FALSE(sentence.origin.has_value());
  EXPECT_FALSE(search.next(hit));
}

TEST(Search, AnNGramThatIsAskedForTwiceIsFoundUnderBothNumbers) {
  Corpus corpus({rain, snow});
  Search search = corpus.search(2);
  const std::string members = "1\theavy\t\t2\tAtr\n2\tsnow\t\t0\tHead\n";
  search.add(corpus.block_of(members));
  search.add(corpus.block_of("1\tno\t\t2\tAtr\n2\tno\t\t0\tHead\n"));
  search.add(corpus.block_of(members));
  search.run({}, memory, [](std::string_view) {});
  EXPECT_EQ(search.found(0), 1U);
  EXPECT_EQ(search.found(1), 0U);
  EXPECT_EQ(search.found(2), 1U);
  Hit hit;
  ASSERT_TRUE(search.next(hit));
  EXPECT_EQ(hit.ngram, 0U);
  ASSERT_TRUE(search.next(hit));
  EXPECT_EQ(hit.ngram, 2U);
  EXPECT_FALSE(search.next(hit));
}

TEST(Search, MalformedSentencesAreSkippedWithTheNameOfTheirDatafile) {
  Corpus corpus({"1 a a X x Sb\n\n" + rain, snow});
  EXPECT_EQ(corpus.found(parse_query("* <Atr rain")), 3U);
  EXPECT_EQ(corpus.warnings, std::vector<std::string>{corpus.path("datafile0") +
                                                      ": Incorrect input format detected at line 1. Skipping current "
                                                      "sentence..."});
}

TEST(Search, TheFirstOnesEndTheSearch) {
  Corpus corpus({rain, "1 a a X x Sb\n\n", snow});
  Search search = corpus.search(2);
  search.add(parse_query("* <Atr rain"));
  bool reached_the_second = false;
  search.run({2, true, ""}, memory, [&](std::string_view) { reached_the_second = true; });
  EXPECT_EQ(search.found(0), 2U);
  EXPECT_FALSE(search.is_complete());
  EXPECT_FALSE(reached_the_second);
}

TEST(Search, ADatafileThatHasChangedIsTold) {
  Corpus corpus({rain});
  Search search = corpus.search(2);
  search.add(parse_query("cold <Atr rain"));
  search.run({}, memory, [](std::string_view) {});
  Hit hit;
  ASSERT_TRUE(search.next(hit));
  corpus.folder().write("datafile0", rain.substr(0, 100));
  EXPECT_THROW(search.sentence(hit.place), input_error);
}

TEST(Search, MoreTagsThanNgrexTellsApartAreRefused) {
  std::string datafile;
  for (int i = 0; i < 300; ++i)
    datafile += "1 a a T" + std::to_string(i) + " 2 Sb\n2 b b T 0 Pred\n\n";
  EXPECT_EQ(Corpus({datafile}, "****").found(parse_query("a <Sb b")), 300U);
  EXPECT_THROW(Corpus({datafile}, "****", "T T\n").found(parse_query("a <Sb b")), input_error);
}

TEST(Search, ListsWithoutReadableDatafilesAreRefused) {
  const test::TemporaryFolder folder;
  CorpusSettings settings;
  settings.list = folder.write("list", "\n\n");
  EXPECT_THROW(datafiles_of(settings), input_error);
  settings.list = folder.write("list", folder.write("there", "") + "\n" + folder.path("gone") + "\n");
  EXPECT_THROW(datafiles_of(settings), input_error);
  settings.list = folder.write("list", "/dev/null\n");
  EXPECT_THROW(datafiles_of(settings), input_error);
  settings.list = folder.path("nolist");
  EXPECT_THROW(datafiles_of(settings), input_error);
  settings.list = folder.write("list", "there\n");
  settings.prefix = folder.path() + "/";
  const auto datafiles = datafiles_of(settings);
  ASSERT_EQ(datafiles.size(), 1U);
  EXPECT_EQ(datafiles[0].entry, "there");
  EXPECT_EQ(datafiles[0].path, folder.path("there"));
}

}  // namespace
}  // namespace colx::concordance
