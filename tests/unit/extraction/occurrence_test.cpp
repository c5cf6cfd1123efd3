// One occurrence on its way into the store: members, types, filter, statistics and contexts.

#include "extraction/occurrence.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/limits.h"
#include "corpus/dependencies.h"
#include "corpus/parser.h"
#include "extraction/occurrence_members.h"
#include "tests/support/own_stores.h"
#include "tests/support/parsing.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"

namespace colx {
namespace {

using test::OwnStores;
using test::SettingsGuard;
using Texts = std::vector<std::string>;

// A sentence in the buffer, whose occurrences are stored. Tags keep their first character.
class LoadedSentence {
 public:
  LoadedSentence(const std::string& text, OwnStores& stores)
      : _stores(stores),
        _stream(text),
        _parser(_stream, stores.lemmas, stores.tags, _warnings.sink()),
        _buffer(_parser, settings::context_window),
        _counter(_buffer, stats, stores.all()) {
    _buffer._init();
  }

  // Counts the occurrence at these positions.
  void store(const std::vector<Position>& positions) { store_all({positions}); }

  // Counts occurrences, each at its positions.
  void store_all(const std::vector<std::vector<Position>>& occurrences) {
    _counter.begin_sentence();
    for (const std::vector<Position>& positions : occurrences)
      _counter.add(positions);
    _counter.flush();
  }

  void next() { ASSERT_TRUE(_buffer.next()); }

  // The stored record of a type of the occurrence at these positions, or null. The type is not 0.
  NGram* record(const std::vector<Position>& positions, std::uint8_t type) {
    OccurrenceBatch batch;
    batch.add();
    std::vector<NGram::Member> members(positions.size());
    occurrence_members(_buffer.current(), positions, members);
    for (unsigned i = 0; i < positions.size(); ++i)
      batch.set_last(i, members[i]);
    NGram* found = nullptr;
    RecordTable& records = _stores.ngrams.records(type);
    records.find(batch, [&](std::size_t, const NGram* pattern) {
      for (std::uint32_t r = 0; r < records.size(); ++r) {
        if (records.record(r) == pattern) found = records.record(r);
      }
    });
    return found;
  }
  std::uint32_t frequency(const std::vector<Position>& positions, std::uint8_t type) {
    if (type == 0) return _stores.ngrams.empty_frequency();
    const NGram* const found = record(positions, type);
    return found == nullptr ? 0 : test::frequency_of(_stores.ngrams, *found);
  }

  // Its contexts as texts: lemma and frequency, those of narrow ones in brackets.
  Texts contexts(const std::vector<Position>& positions, std::uint8_t type) {
    Texts texts;
    for (const test::ContextEntry& entry : test::entries_of(_stores.ngrams.contexts(*record(positions, type)))) {
      const std::string frequency = std::to_string(entry.frequency);
      texts.push_back(std::string(_stores.lemmas[entry.lemma]) + (entry.narrow ? "(" + frequency + ")" : frequency));
    }
    return texts;
  }

  NamedDataFileStats stats;

 private:
  OwnStores& _stores;
  std::istringstream _stream;
  test::Warnings _warnings;
  Parser _parser;
  Buffer _buffer;
  OccurrenceCounter _counter;
};

class OccurrenceTest : public ::testing::Test {
 protected:
  void set_up(std::uint8_t n, bool context_tracing = false, ContextWindow window = {}) {
    _guard.emplace(n, context_tracing);
    settings::morphologic_tag_mask = "*";
    settings::context_window = window;
    _stores.emplace();
  }

  OwnStores& stores() { return *_stores; }

 private:
  std::optional<SettingsGuard> _guard;
  std::optional<OwnStores> _stores;
};

const char* const pair = "1 w a A 2 Sb\n2 w b B 0 Pred\n\n";
const char* const triple = "1 w a A 2 Sb\n2 w b B 0 Pred\n3 w c C 2 Obj\n\n";
const char* const five = "1 w a A 2 Sb\n2 w b B 0 Pred\n3 w c C 2 Obj\n4 w d D 3 Atr\n5 w e E 2 AuxK\n\n";

TEST_F(OccurrenceTest, ParentsArePlacesAmongTheMembers) {
  set_up(3);
  // 1 hangs under 3, 3 under 2, which is not among the positions, and 4 under 3.
  LoadedSentence sentence("1 w a A 3 Sb\n2 w b B 0 Pred\n3 w c C 2 Obj\n4 w d D 3 Atr\n\n", stores());
  sentence.store({1, 3, 4});
  const NGram* const record = stores().ngrams.records(7).record(0);
  const auto lemma = [&](unsigned i) { return stores().lemmas[record->member(i).lemma()]; };
  EXPECT_EQ(lemma(0), "a");
  EXPECT_EQ(lemma(1), "c");
  EXPECT_EQ(lemma(2), "d");
  EXPECT_EQ(record->member(0).parent(), 2);
  EXPECT_EQ(record->member(1).parent(), 0);
  EXPECT_EQ(record->member(2).parent(), 2);
  EXPECT_EQ(record->member(0).dependency(), test::relation("Sb"));
  EXPECT_EQ(record->member(1).dependency(), dependency::head);
  EXPECT_EQ(record->member(2).dependency(), test::relation("Atr"));
}

TEST_F(OccurrenceTest, APairRaisesTheEmptyNGramAndItsThreeTypes) {
  set_up(2);
  LoadedSentence sentence(pair, stores());
  sentence.store({1, 2});
  for (std::uint8_t type = 0; type < 4; ++type)
    EXPECT_EQ(sentence.frequency({1, 2}, type), 1U) << "type " << unsigned{type};
  EXPECT_EQ(sentence.stats.extracted_count, 1U);
  EXPECT_EQ(sentence.stats.passed_count, 1U);
  EXPECT_EQ(sentence.stats.filtered_count, 0U);
  sentence.store({1, 2});
  for (std::uint8_t type = 0; type < 4; ++type)
    EXPECT_EQ(sentence.frequency({1, 2}, type), 2U) << "type " << unsigned{type};
  EXPECT_EQ(sentence.stats.extracted_count, 2U);
  EXPECT_EQ(sentence.stats.words_count, 0U);
}

TEST_F(OccurrenceTest, WhenPatternsAreCountedLastAnOccurrenceRaisesTheFullTypeAlone) {
  set_up(2);
  stores().ngrams.count_patterns_last();
  LoadedSentence sentence(pair, stores());
  sentence.store({1, 2});
  sentence.store({1, 2});
  EXPECT_EQ(sentence.frequency({1, 2}, 0), 2U);
  EXPECT_EQ(stores().ngrams.records(1).size(), 0U);
  EXPECT_EQ(stores().ngrams.records(2).size(), 0U);
  EXPECT_EQ(sentence.frequency({1, 2}, 3), 2U);
  EXPECT_EQ(sentence.stats.extracted_count, 2U);
  EXPECT_EQ(sentence.stats.passed_count, 2U);
}

TEST_F(OccurrenceTest, TheFullTypeAloneEntersTheStatisticsOfTheFilter) {
  set_up(2);
  // Tag rules from the last position to the first. An open position agrees with anything, so that the first rule admits
  // the second word alone, the second rule the first word alone, and neither the pair.
  stores().morphologic_filter.add_rule({"B", "X"});
  stores().morphologic_filter.add_rule({"X", "A"});
  LoadedSentence sentence(pair, stores());
  sentence.store({1, 2});
  EXPECT_EQ(sentence.frequency({1, 2}, 0), 1U);
  EXPECT_EQ(sentence.frequency({1, 2}, 1), 1U);
  EXPECT_EQ(sentence.frequency({1, 2}, 2), 1U);
  EXPECT_EQ(sentence.record({1, 2}, 3), nullptr);
  EXPECT_EQ(sentence.stats.extracted_count, 1U);
  EXPECT_EQ(sentence.stats.passed_count, 0U);
  EXPECT_EQ(sentence.stats.filtered_count, 1U);
  // Only the verdict on the pair was counted by the filter.
  EXPECT_EQ(stores().morphologic_filter.stats.matched, (std::vector<std::uint32_t>{0, 0}));
  EXPECT_EQ(stores().morphologic_filter.stats.unmatched, 1U);
}

TEST_F(OccurrenceTest, TheEmptyNGramIsCountedEvenWhenTheFilterRefusesEverything) {
  set_up(2);
  stores().morphologic_filter.add_rule({"X", "X"});
  LoadedSentence sentence(pair, stores());
  sentence.store({1, 2});
  EXPECT_EQ(sentence.frequency({1, 2}, 0), 1U);
  for (std::uint8_t type = 1; type < 4; ++type)
    EXPECT_EQ(sentence.record({1, 2}, type), nullptr) << "type " << unsigned{type};
}

TEST_F(OccurrenceTest, TheFilterSeesTagsFromTheLastPositionToTheFirstAndNothingAtOpenOnes) {
  set_up(3);
  // For type 5 the tags are C, nothing and A.
  stores().morphologic_filter.add_rule({"C", "X", "A"});
  LoadedSentence sentence(triple, stores());
  sentence.store({1, 2, 3});
  EXPECT_NE(sentence.record({1, 2, 3}, 5), nullptr);
  EXPECT_EQ(sentence.record({1, 2, 3}, 7), nullptr);  // C, B, A
  EXPECT_EQ(sentence.record({1, 2, 3}, 2), nullptr);  // nothing, B, nothing
  stores().morphologic_filter.add_rule({"A", "B", "C"});
  LoadedSentence second(triple, stores());
  second.store({1, 2, 3});
  EXPECT_EQ(second.record({1, 2, 3}, 7), nullptr);
  stores().morphologic_filter.add_rule({"C", "B", "A"});
  LoadedSentence third(triple, stores());
  third.store({1, 2, 3});
  EXPECT_NE(third.record({1, 2, 3}, 7), nullptr);
}

TEST_F(OccurrenceTest, NothingIsCountedBeforeABatchIsFullOrFlushed) {
  set_up(2);
  std::string text;
  for (unsigned order = 1; order <= 300; ++order)
    text += std::to_string(order) + " w a A " + std::to_string(order - 1) + " Sb\n";
  std::istringstream stream(text);
  test::Warnings warnings;
  Parser parser(stream, stores().lemmas, stores().tags, warnings.sink());
  Buffer buffer(parser, settings::context_window);
  buffer._init();
  NamedDataFileStats stats;
  OccurrenceCounter counter(buffer, stats, stores().all());
  counter.begin_sentence();
  for (Position first = 1; first < 300; ++first) {
    counter.add(std::vector<Position>{first, static_cast<Position>(first + 1)});
    ASSERT_EQ(stats.extracted_count, first < 256 ? 0U : 256U);
  }
  counter.flush();
  counter.flush();
  EXPECT_EQ(stats.extracted_count, 299U);
  EXPECT_EQ(stores().ngrams.empty_frequency(), 299U);
}

TEST_F(OccurrenceTest, WithoutTracingNoContextsAreKept) {
  set_up(2, false, {ContextWindow::words, 5});
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});
  // A record has no room for any, and nothing behind it is touched.
  EXPECT_EQ(NGram::_ngrams_memory_sizes[2], 16U);
  const auto* const bytes = reinterpret_cast<const unsigned char*>(sentence.record({2, 3}, 3));
  const std::vector<unsigned char> behind(bytes + 16, bytes + 32);
  sentence.store({2, 3});
  EXPECT_EQ(std::vector<unsigned char>(bytes + 16, bytes + 32), behind);
  EXPECT_EQ(sentence.frequency({2, 3}, 3), 2U);
}

TEST_F(OccurrenceTest, WideContextsAreTheWordsAroundTheRoot) {
  set_up(2, true, {ContextWindow::words, 1});
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});  // the root is b, the range a b c
  EXPECT_EQ(sentence.contexts({2, 3}, 3), (Texts{"a1", "a(1)", "d(1)"}));
}

TEST_F(OccurrenceTest, AWordAtAnOpenPositionIsAWideContextOfThePattern) {
  set_up(2, true, {ContextWindow::words, 1});
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});
  EXPECT_EQ(sentence.contexts({2, 3}, 2), (Texts{"a1", "c1"}));  // b alone
  EXPECT_EQ(sentence.contexts({2, 3}, 1), (Texts{"a1", "b1"}));  // c alone, around the root of the pair
}

TEST_F(OccurrenceTest, ASecondSightingRaisesTheFrequencies) {
  set_up(2, true, {ContextWindow::words, 1});
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});
  sentence.store({2, 3});
  EXPECT_EQ(sentence.contexts({2, 3}, 3), (Texts{"a2", "a(2)", "d(2)"}));
}

TEST_F(OccurrenceTest, InSentencesTheWideContextIsAllThatTheBufferHolds) {
  set_up(2, true, {ContextWindow::sentences, 1});
  LoadedSentence sentence(std::string(pair) + "1 w x X 2 Sb\n2 w y Y 0 Pred\n\n1 w z Z 0 Pred\n\n", stores());
  sentence.store({1, 2});
  EXPECT_EQ(sentence.contexts({1, 2}, 3), (Texts{"x1", "y1"}));
  EXPECT_EQ(sentence.contexts({1, 2}, 1), (Texts{"a1", "x1", "y1"}));
  sentence.next();
  sentence.store({1, 2});  // the sentence before it has left the buffer
  EXPECT_EQ(sentence.contexts({1, 2}, 3), (Texts{"z1"}));
}

// Puts the limit back that a test has lowered.
struct SightingsLimit {
  explicit SightingsLimit(std::uint32_t most) { limits::sightings = most; }
  ~SightingsLimit() { limits::sightings = before; }
  std::uint32_t before = limits::sightings;
};

TEST_F(OccurrenceTest, ContextsThatAreKeptAsListsOnTheWayAreTheSame) {
  const std::string text = std::string(five) + triple + pair + five;
  for (const auto mode : {ContextWindow::words, ContextWindow::sentences}) {
    std::vector<Texts> contexts;
    for (const std::uint32_t most : {limits::sightings, 0U}) {
      const SightingsLimit limit(most);
      set_up(2, true, {mode, 2});
      LoadedSentence sentence(text, stores());
      sentence.store({1, 2});
      for (int sentences = 1; sentences < 4; ++sentences) {
        sentence.next();
        sentence.store({1, 2});
      }
      contexts.push_back(sentence.contexts({1, 2}, 3));
      contexts.push_back(sentence.contexts({1, 2}, 1));
    }
    EXPECT_FALSE(contexts[0].empty());
    EXPECT_EQ(contexts[0], contexts[2]);
    EXPECT_EQ(contexts[1], contexts[3]);
  }
}

// A sentence may have more occurrences than words, by far.
TEST_F(OccurrenceTest, OccurrencesAreForgottenWithinASentenceAsWell) {
  std::string text;
  for (unsigned order = 1; order <= 600; ++order)
    text += std::to_string(order) + " w " + (order % 2 == 0 ? "a" : "b") + " A " + (order == 1 ? "0" : "1") + " Sb\n";
  std::vector<Texts> contexts;
  for (const std::uint32_t most : {limits::sightings, 0U}) {
    const SightingsLimit limit(most);
    set_up(2, true, {ContextWindow::words, 2});
    LoadedSentence sentence(text, stores());
    std::vector<std::vector<Position>> occurrences;
    for (Position word = 2; word <= 600; ++word)
      occurrences.push_back({1, word});
    sentence.store_all(occurrences);
    EXPECT_EQ(stores().ngrams.sightings().size(), most == 0 ? 0U : 599U);
    for (std::uint8_t type = 1; type < 4; ++type)
      contexts.push_back(sentence.contexts({1, 2}, type));
  }
  EXPECT_EQ(contexts[2], (Texts{"b300", "b(299)", "a299"}));
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(contexts[i], contexts[i + 3]);
}

TEST_F(OccurrenceTest, TheNarrowContextStaysWithinTheSentence) {
  set_up(2, true, {ContextWindow::sentences, 0});
  LoadedSentence sentence(std::string(five) + pair, stores());
  sentence.store({1, 2});  // starts the sentence: only the word to the right; wide are c, d and e
  EXPECT_EQ(sentence.contexts({1, 2}, 3), (Texts{"c1", "d1", "e1", "c(1)"}));
  sentence.store({2, 5});  // ends the sentence: only the word to the left
  EXPECT_EQ(sentence.contexts({2, 5}, 3), (Texts{"a1", "c1", "d1", "a(1)"}));
}

TEST_F(OccurrenceTest, AnOccurrenceThatSpansItsSentenceHasNoNarrowContext) {
  set_up(2, true, {ContextWindow::words, 10});
  LoadedSentence sentence(std::string(pair) + five, stores());
  sentence.store({1, 2});
  // All the words read ahead are wide contexts; the members' lemmas occur again in the second sentence.
  EXPECT_EQ(sentence.contexts({1, 2}, 3), (Texts{"a1", "b1", "c1", "d1", "e1"}));
}

TEST_F(OccurrenceTest, TheContextFilterSelectsWideContextsOnly) {
  set_up(2, true, {ContextWindow::words, 50});
  stores().context_filter.add_rule("E");
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});
  EXPECT_EQ(sentence.contexts({2, 3}, 3), (Texts{"e1", "a(1)", "d(1)"}));
  // Asking does not count.
  EXPECT_EQ(stores().context_filter.stats.matched, (std::vector<std::uint32_t>{0}));
  EXPECT_EQ(stores().context_filter.stats.unmatched, 0U);
}

TEST_F(OccurrenceTest, AFilteredNGramHasNoContextsButItsPatternsHave) {
  set_up(2, true, {ContextWindow::words, 1});
  stores().morphologic_filter.add_rule({"X", "B"});  // admits b as first word alone
  LoadedSentence sentence(five, stores());
  sentence.store({2, 3});
  EXPECT_EQ(sentence.record({2, 3}, 3), nullptr);
  EXPECT_EQ(sentence.contexts({2, 3}, 2), (Texts{"a1", "c1"}));
}

}  // namespace
}  // namespace colx
