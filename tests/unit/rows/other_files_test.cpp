// Contexts files and statistics files, read back line by line.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "companion/errors.h"
#include "rows/contexts_reader.h"
#include "rows/line_reader.h"
#include "rows/statistics_reader.h"
#include "tests/support/temporary_folder.h"

namespace colx::table {
namespace {

const std::string contexts =
    "1\tcold\tA\t2\tAtr\n2\train\t\t0\tHead\n\nfall\tV\t1\n\t\t2\n\nrain\tN\t3\n\n\n"  // narrow: two words, wide: one
    "1\t*\n2\t*\t\t0\tHead\n\nfall\tV\t4\n\n\n"  // the lemma * is no open position
    "1\tcold\tA\t2\tAtr\n2\t*\n\n\n\n"           // no context words
    "\n";

const std::string statistics =
    "Statistics for datafile a: b:\n# of words: 6\n# of sentences: 2\n# of 2-grams extracted: 4\n"
    "# of 2-grams passed: 3\n# of 2-grams filtered: 1\n\n"
    "Overall datafiles statistics:\n# of words: 6\n# of sentences: 2\n# of 2-grams extracted: 4\n"
    "# of 2-grams passed: 3\n# of 2-grams filtered: 1\n\n"
    "Strings storage statistics:\n# of unique lemmas: 6\n# of unique tags: 3\n\n"
    "2-grams storage statistics:\n# of unique 2-grams of type 0: 1\n# of unique 2-grams of type 1: 4\n"
    "# of unique 2-grams of type 2: 4\n# of unique 2-grams of type 3: 6\n\n";

// What is read before the end or a fault, one entry each, and the fault behind the name of the file.
struct SeenEntries {
  std::vector<std::string> entries;
  std::string error;
};

template <typename Read>
SeenEntries _seen(const std::string& content, const Read& read) {
  const test::TemporaryFolder folder;
  const std::string path = folder.write("x", content);
  SeenEntries seen;
  try {
    read(path, seen.entries);
  } catch (const input_error& error) {
    seen.error = std::string(error.what()).substr(path.size() + 2);
  }
  return seen;
}

SeenEntries _contexts(const std::string& content) {
  return _seen(content, [](const std::string& path, std::vector<std::string>& entries) {
    ContextsReader reader(path);
    ContextWord word;
    while (reader.next(word)) {
      std::string entry = std::to_string(reader.pattern().type) + ":";
      for (std::size_t k = 0; k < reader.pattern().n; ++k) {
        const Member& member = reader.pattern().members[k];
        entry += reader.pattern().is_open(k) ? "_"
                                             : std::string(member.lemma) + "/" + std::string(member.tag) + "/" +
                                                   std::to_string(member.parent) + "/" + std::string(member.relation);
        entry += ' ';
      }
      entries.push_back(entry + (word.is_narrow ? "narrow " : "wide ") + std::string(word.lemma) + "/" +
                        std::string(word.tag) + "/" + std::to_string(word.frequency));
    }
  });
}

SeenEntries _statistics(const std::string& content) {
  return _seen(content, [](const std::string& path, std::vector<std::string>& entries) {
    StatisticsReader reader(path);
    DatafileCounters counters;
    while (reader.next(counters)) {
      const auto shown = [](const std::optional<std::uint64_t>& count) {
        return count.has_value() ? std::to_string(*count) : std::string("-");
      };
      entries.push_back((counters.is_overall ? "all" : counters.name) + " " + std::to_string(reader.n()) + " " +
                        shown(counters.words) + " " + shown(counters.sentences) + " " + shown(counters.extracted) +
                        " " + shown(counters.passed) + " " + shown(counters.filtered));
    }
  });
}

// The fault of a file in which one piece of a right one is replaced by another.
std::string _with(SeenEntries (*read)(const std::string&), std::string content, const std::string& piece,
                  const std::string& other) {
  content.replace(content.find(piece), piece.size(), other);
  return read(content).error;
}

TEST(ContextsReader, GivesEveryContextWordWithItsPattern) {
  const SeenEntries seen = _contexts(contexts);
  EXPECT_EQ(seen.error, "");
  EXPECT_EQ(seen.entries, (std::vector<std::string>{
                              "3:cold/A/2/Atr rain//0/Head narrow fall/V/1", "3:cold/A/2/Atr rain//0/Head narrow //2",
                              "3:cold/A/2/Atr rain//0/Head wide rain/N/3", "1:_ *//0/Head wide fall/V/4"}));
  EXPECT_EQ(_contexts("\n").error, "");
}

TEST(ContextsReader, RefusesEveryTruncation) {
  for (std::size_t size = 0; size < contexts.size(); ++size)
    EXPECT_NE(_contexts(contexts.substr(0, size)).error, "") << size;
}

TEST(ContextsReader, NamesTheLineOfAFault) {
  const auto fault = [](const std::string& piece, const std::string& other) {
    return _with(_contexts, contexts, piece, other);
  };
  EXPECT_EQ(fault("1\tcold", "2\tcold"),
            "line 1: expected position 1 of an N-gram (position, lemma, tag, parent, relation, or position and *, "
            "separated by TABs), found \"2\\tcold\\tA\\t2\\tAtr\"");
  EXPECT_EQ(fault("2\train\t\t0\tHead\n\n", "\n"), "line 2: expected position 2 of an N-gram, found an empty line");
  EXPECT_EQ(fault("\t2\tAtr", "\t8\tAtr"),
            "line 1: expected the position of the parent or 0 as 4th field, found \"8\"");
  EXPECT_EQ(fault("\t2\tAtr", "\t3\tAtr"), "line 3: the parent 3 above is no position of an N-gram of 2");
  EXPECT_EQ(fault("fall\tV\t1", "fall\t1"),
            "line 4: expected a context word (lemma, tag, frequency, separated by TABs) or an empty line, found "
            "\"fall\\t1\"");
  EXPECT_EQ(fault("rain\tN\t3\n\n\n", "rain\tN\t3\n\nmore\tN\t1\n\n"),
            "line 9: expected a second empty line below the wide context, found \"more\\tN\\t1\"");
  EXPECT_EQ(fault("2\t*\t\t0\tHead", "2\t*"), "line 12: an N-gram whose positions are all open has no contexts");
  EXPECT_EQ(fault("2\t*\t\t0\tHead", "2\t*\t\t0\tHead\n3\t*"),
            "line 13: an N-gram of 3 positions in a file of N-grams of 2");
  EXPECT_EQ(_contexts(contexts + "\n").error,
            "line 22: expected the end of the file after the empty line that ends it");
}

TEST(StatisticsReader, GivesTheCountersOfEveryDatafileAndTheSums) {
  const SeenEntries seen = _statistics(statistics);
  EXPECT_EQ(seen.error, "");
  EXPECT_EQ(seen.entries, (std::vector<std::string>{"a: b 2 6 2 4 3 1", "all 2 6 2 4 3 1"}));
  std::string plain = statistics;
  for (const std::string line : {"# of 2-grams passed: 3\n", "# of 2-grams filtered: 1\n"})
    for (int i = 0; i < 2; ++i)
      plain.erase(plain.find(line), line.size());
  EXPECT_EQ(_statistics(plain).entries, (std::vector<std::string>{"a: b 2 6 2 4 - -", "all 2 6 2 4 - -"}));
}

TEST(StatisticsReader, RefusesEveryTruncation) {
  for (std::size_t size = 0; size < statistics.size(); ++size)
    EXPECT_NE(_statistics(statistics.substr(0, size)).error, "") << size;
}

TEST(StatisticsReader, NamesTheLineOfAFault) {
  const auto fault = [](const std::string& piece, const std::string& other) {
    return _with(_statistics, statistics, piece, other);
  };
  EXPECT_EQ(fault("a: b:", "a"),
            "line 1: expected \"Statistics for datafile NAME:\" or \"Overall datafiles statistics:\", found "
            "\"Statistics for datafile a\"");
  EXPECT_EQ(fault("words: 6", "words: 06"), "line 2: expected \"# of words: \" and a number, found \"# of words: 06\"");
  EXPECT_EQ(fault("2-grams extracted", "8-grams extracted"),
            "line 4: expected \"# of N-grams extracted: \" with an N from 2 to 7 and a number, found \"# of 8-grams "
            "extracted: 4\"");
  EXPECT_EQ(fault("# of 2-grams passed: 3\n", ""),
            "line 5: expected \"# of 2-grams passed: \" and a number, found \"# of 2-grams filtered: 1\"");
  EXPECT_EQ(fault("# of unique tags: 3\n\n", "# of unique tags: 3\n"),
            "line 18: expected an empty line, found \"2-grams storage statistics:\"");
  EXPECT_EQ(_statistics(statistics + "x\n").error, "line 25: expected the end of the file, found \"x\"");
}

TEST(LineReader, GivesLongLinesAndRefusesLongerOnes) {
  const test::TemporaryFolder folder;
  const std::string line(LineReader::longest_line - 1, 'x');
  LineReader reader(folder.write("x", line + "\nshort\n" + line + line + "\n"));
  std::string_view got;
  ASSERT_TRUE(reader.next(got));
  EXPECT_EQ(got, line);
  ASSERT_TRUE(reader.next(got));
  EXPECT_EQ(got, "short");
  EXPECT_THROW(reader.next(got), input_error);
}

}  // namespace
}  // namespace colx::table
