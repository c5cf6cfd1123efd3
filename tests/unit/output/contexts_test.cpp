// The contexts file.

#include "output/contexts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/notifier.h"
#include "tests/support/own_stores.h"
#include "tests/support/records.h"
#include "tests/support/settings_guard.h"
#include "tests/support/stream_capture.h"

namespace colx {
namespace {

using test::MemberSpec;

class ContextsFileTest : public ::testing::Test {
 protected:
  void set_up(std::uint8_t n) {
    _guard.emplace(n, true);
    _stores.emplace();
    for (const char* const lemma : {"heavy", "rain", "fall", "today"})
      _stores->lemmas.store(lemma);
    for (const char* const tag : {"AA", "NN"})
      _stores->tags.store(tag);
  }

  // Stores words under one type alone.
  NGram* store(const std::vector<MemberSpec>& words, std::uint8_t type) {
    return test::count(_stores->ngrams, test::Occurrence(words), type);
  }

  std::string written() {
    std::ostringstream out;
    std::ostringstream bar;
    write_contexts(out, _stores->ngrams, _stores->texts(), Notifier(bar));
    progress = bar.str();
    return out.str();
  }

  std::string progress;
  std::optional<test::SettingsGuard> _guard;
  std::optional<test::OwnStores> _stores;
};

const std::vector<MemberSpec> pair = {{0, 0, 2, "Atr"}, {1, 1, 0, "Sb"}};

TEST_F(ContextsFileTest, AnEmptyStoreGivesASingleLineEnd) {
  set_up(2);
  EXPECT_EQ(written(), "\n");
  EXPECT_EQ(progress, test::bar_scale);
}

TEST_F(ContextsFileTest, AFullRecordWithoutContextsEndsInFourEmptyLines) {
  set_up(2);
  store(pair, 3);
  // The line after the members, the empty narrow and wide lists, and the line that closes the block; then the last
  // line end of the file.
  EXPECT_EQ(written(), "1\theavy\tAA\t2\tAtr\n2\train\tNN\t0\tHead\n\n\n\n\n\n");
  EXPECT_EQ(progress, test::complete_bar);
}

TEST_F(ContextsFileTest, APartialRecordHasNoNarrowSection) {
  set_up(2);
  NGram* const record = store(pair, 1);
  test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 3, 1, true);
  test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 2, 1, false);
  EXPECT_EQ(written(), "1\t*\n2\train\tNN\t0\tHead\n\nfall\tNN\t1\n\n\n\n");
}

TEST_F(ContextsFileTest, NarrowContextsComeBeforeWideOnesEachByFrequency) {
  set_up(2);
  NGram* const record = store(pair, 3);
  test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 3, 0, false);
  test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 3, 1, true);
  for (int i = 0; i < 12; ++i)
    test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 2, 1, false);
  for (int i = 0; i < 2; ++i)
    test::see(_stores->ngrams.sightings(), _stores->ngrams.contexts(*record), 2, 0, true);
  EXPECT_EQ(written(),
            "1\theavy\tAA\t2\tAtr\n2\train\tNN\t0\tHead\n\n"
            "fall\tAA\t2\ntoday\tNN\t1\n\n"
            "fall\tNN\t12\ntoday\tAA\t1\n\n"
            "\n\n");
}

TEST_F(ContextsFileTest, AnOpenPositionIsAStar) {
  set_up(3);
  store({{0, 0, 2, "Atr"}, {1, 1, 3, "Sb"}, {2, 1, 0, "Pred"}}, 5);
  EXPECT_EQ(written(), "1\theavy\tAA\t2\tAtr\n2\t*\n3\tfall\tNN\t0\tHead\n\n\n\n\n");
}

TEST_F(ContextsFileTest, TypesDescendAndTheEmptyNGramIsNotAmongThem) {
  set_up(2);
  test::count_all_types(_stores->ngrams, pair);
  EXPECT_EQ(written(),
            "1\theavy\tAA\t2\tAtr\n2\train\tNN\t0\tHead\n\n\n\n\n"
            "1\theavy\tAA\t2\tAtr\n2\t*\n\n\n\n"
            "1\t*\n2\train\tNN\t0\tHead\n\n\n\n"
            "\n");
}

TEST_F(ContextsFileTest, RecordsOfATypeComeInTheOrderOfTheStore) {
  set_up(2);
  for (std::uint32_t first = 0; first < 4; ++first)
    store({{first, 0, 2, "Atr"}, {1, 1, 0, "Sb"}}, 2);
  std::string expected;
  for (const NGram* record : test::records_of(_stores->ngrams, 2))
    expected += "1\t" + std::string(_stores->lemmas[record->member(0).lemma()]) + "\tAA\t2\tAtr\n2\t*\n\n\n\n";
  EXPECT_EQ(written(), expected + "\n");
}

TEST_F(ContextsFileTest, AListEndsWithAnEmptyLineAlsoWhenNothingWasWritten) {
  set_up(2);
  std::ostringstream os;
  TextBuffer text(os);
  const PartOfContext part(TaggedLemma::pack(3, 0), true);
  _print_context(text, _stores->texts(), {}, true);
  _print_context(text, _stores->texts(), {&part, 1}, false);
  _print_context(text, _stores->texts(), {&part, 1}, true);
  text.flush();
  EXPECT_EQ(os.str(), "\n\ntoday\tAA\t1\n\n");
}

}  // namespace
}  // namespace colx
