// The datafile format from outside: what is a sentence, which lines are bad, where a warning says the fault is, and
// what is stored of a word.
#include <string>

#include "harness.h"

namespace colx::cli {
namespace {

std::string format_error(unsigned int line) {
  return warning("Incorrect input format detected at line " + std::to_string(line) + ". Skipping current sentence...");
}

std::string mismatch(unsigned int line, const std::string& got, unsigned int expected) {
  return warning("Word order mismatch detected at line " + std::to_string(line) + ". Got word ordered as " + got +
                 ", while expecting " + std::to_string(expected) + ". Skipping current sentence...");
}

const std::string good_sentence =
    "1 a a T 2 Sb\n"
    "2 b b T 0 Pred\n"
    "\n";

class ParserTest : public CliTest {
 protected:
  // Runs over the corpus and checks what was said about it and how many words and sentences were taken.
  void expect_read(const std::string& corpus, unsigned int words, unsigned int sentences,
                   const std::string& warnings = "") const {
    write_corpus(corpus);
    const RunResult result = run_job("2", {"-s", "statistics"});
    EXPECT_EQ(result.status, 0) << corpus;
    EXPECT_EQ(result.err, warnings) << corpus;
    const std::string begin = "Statistics for datafile corpus.dat:\n# of words: " + std::to_string(words) +
                              "\n# of sentences: " + std::to_string(sentences) + "\n";
    EXPECT_EQ(read("statistics").substr(0, begin.size()), begin) << corpus;
  }

  // The first member line of the output of a run over one pair whose first word is given.
  std::string first_member(const std::string& lemma, const std::string& tag, const Arguments& arguments) const {
    write_corpus("1 w " + lemma + " " + tag + " 2 Sb\n2 b b T 0 Pred\n\n");
    run_clean("2", arguments);
    const std::string output = read("output");
    return output.substr(0, output.find('\n'));
  }
};

TEST_F(ParserTest, EndOfInputEndsTheLastSentence) {
  expect_read("1 a a T 0 Pred\n2 b b T 1 Obj\n", 2, 1);
  expect_read("1 a a T 0 Pred\n2 b b T 1 Obj", 2, 1);
}

TEST_F(ParserTest, EmptyLinesWithoutWordsEndNothingButAreCounted) {
  expect_read("\n\n\n" + good_sentence + "\n\n" + good_sentence, 4, 2);
  // Lines 1 to 3 are empty.
  expect_read("\n\n\n2 a a T 0 Pred\n\n", 0, 0, mismatch(4, "2", 1));
}

TEST_F(ParserTest, OrdersMustRunFromOne) {
  expect_read("1 a a T 0 Pred\n2 b b T 1 Obj\n4 c c T 1 Obj\n5 d d T 1 Obj\n\n" + good_sentence, 2, 1,
              mismatch(3, "4", 3));
  expect_read("0 a a T 0 Pred\n\n", 0, 0, mismatch(1, "0", 1));
  expect_read("1 a a T 0 Pred\n1 a a T 0 Pred\n\n", 0, 0, mismatch(2, "1", 2));
}

TEST_F(ParserTest, LinesAreCountedOnAfterABadSentence) {
  // Lines: 1, 2 good, 3 bad, 4 skipped, 5 empty, 6 and 7 good, 8 empty, 9 bad.
  expect_read("1 a a T 0 Pred\n2 b b T 1 Obj\n4 c c T 1 Obj\n5 d d T 1 Obj\n\n" + good_sentence + "7 x x T 0 Pred\n", 2,
              1, mismatch(3, "4", 3) + mismatch(9, "7", 1));
}

TEST_F(ParserTest, NumberThatIsNoneDropsTheSentence) {
  expect_read("1 a a T 0 Pred\n2 b b T x Obj\n\n" + good_sentence, 2, 1, format_error(2));
  expect_read("a b c d e f\n\n" + good_sentence, 2, 1, format_error(1));
}

TEST_F(ParserTest, RestOfALineWithAFormatErrorCountsAsALineOfItsOwn) {
  // The fault is at line 1; what follows the x is line 2, the empty line 3, and so the next word stands in line 4.
  expect_read("1 a a T x Pred\n\n9 a a T 0 Pred\n\n", 0, 0, format_error(1) + mismatch(4, "9", 1));
}

TEST_F(ParserTest, LineOfOneBadCharacterEndsItsOwnSentence) {
  // The x is the one character consumed, and the line end behind it then looks like an empty line.
  expect_read("x\n" + good_sentence, 2, 1, format_error(1));
  expect_read("1 a a T 0 Pred\nx\n" + good_sentence, 2, 1, format_error(2));
  expect_read("xy\n" + good_sentence, 0, 0, format_error(1));
}

TEST_F(ParserTest, MissingFieldsAreTakenFromTheNextLine) {
  expect_read("1 a a T\n2 Sb\n2 b b T 0 Pred\n\n", 2, 1);
  // One line is counted for the six fields, so the fault of the third line is at line 2.
  expect_read("1 a a T\n2 Sb\n3 b b T 0 Pred\n\n", 0, 0, mismatch(2, "3", 2));
  // Over an empty line too.
  expect_read("1 a a T 2\n\nSb\n2 b b T 0 Pred\n\n", 2, 1);
}

TEST_F(ParserTest, MissingFieldTurnsTheNextOrderIntoAName) {
  // The tag is missing: 2 is read as the tag, Sb as the parent.
  expect_read("1 a a 2 Sb\n2 b b T 0 Pred\n\n" + good_sentence, 2, 1, format_error(1));
}

TEST_F(ParserTest, AnyWhiteSpaceSeparatesFields) {
  expect_read("1\ta \t a\v T\f2\r Sb\n  2 b b T 0 Pred\n\n", 2, 1);
}

TEST_F(ParserTest, TrailingBlankEndsTheSentence) {
  // The line end behind the blank is line 2, an empty one.
  expect_read("1 a a T 2 Sb \n2 b b T 0 Pred\n\n", 1, 1, mismatch(3, "2", 1));
  expect_read("1 a a T 2 Sb\n2 b b T 0 Pred \n\n1 c c T 0 Pred\n\n", 3, 2);
}

TEST_F(ParserTest, SeventhFieldBecomesTheNextWord) {
  // The blank is the one character behind the sixth field; "more" is then read as an order.
  expect_read("1 a a T 2 Sb more\n2 b b T 0 Pred\n\n" + good_sentence, 2, 1, format_error(2));
}

TEST_F(ParserTest, CarriageReturnsEndEverySentenceAfterOneWord) {
  // Line 1 a word, line 2 the line end behind the carriage return; line 3 is out of order, and the line end behind its
  // carriage return ends the skipping.
  expect_read("1 a a T 2 Sb\r\n2 b b T 0 Pred\r\n", 1, 1, mismatch(3, "2", 1));
}

TEST_F(ParserTest, LineOfACarriageReturnDoesNotEndTheSkipping) {
  expect_read("1 a a T x Sb\r\n2 b b T 0 Pred\r\n\r\n1 c c T 0 Pred\r\n\r\n", 0, 0, format_error(1));
}

TEST_F(ParserTest, NumbersAreReadLikeTheStandardStreamReadsThem) {
  expect_read("+1 a a T 0 Pred\n02 b b T 0 Pred\n\n", 2, 1);
  expect_read("-1 a a T 0 Pred\n\n", 0, 0, mismatch(1, "4294967295", 1));
  expect_read("4294967297 a a T 0 Pred\n\n", 0, 0, format_error(1));
  expect_read("4294967295 a a T 0 Pred\n\n", 0, 0, mismatch(1, "4294967295", 1));
  // The order ends before the x, which becomes the word form.
  expect_read("1x a T 0 Pred\n\n", 1, 1);
}

TEST_F(ParserTest, OrderIsComparedBeforeItIsReducedToSixteenBits) {
  // 65537 = 2^16 + 1
  expect_read("65537 a a T 0 Pred\n\n", 0, 0, mismatch(1, "65537", 1));
}

TEST_F(ParserTest, InputThatEndsInsideAWordLineDropsTheLineSilently) {
  const std::string one = "1 a a T 0 Pred\n";
  for (const char* rest :
       {"2", "2 ", "2 b", "2 b b", "2 b b T", "2 b b T ", "2 b b T 1", "2 b b T 1 ", "5 b", " ", "\t\n "}) {
    expect_read(one + rest, 1, 1);
  }
  expect_read(good_sentence + " \n \n", 2, 1);
  expect_read(good_sentence + "7 x", 2, 1);
  expect_read("1 a", 0, 0);
}

TEST_F(ParserTest, BadNumberAtTheVeryEndIsStillAFormatError) {
  // The reading stops at the x, before the end is seen.
  expect_read("1 a a T 0 Pred\n2 b b T x", 0, 0, format_error(2));
  expect_read("1 a a T 0 Pred\nx", 0, 0, format_error(2));
}

TEST_F(ParserTest, BadSentenceAtTheEndTakesOnlyItself) {
  expect_read(good_sentence + "1 a a T 0 Pred\n3 b b T 0 Pred\n4 c c T 0 Pred", 2, 1, mismatch(5, "3", 2));
  expect_read(good_sentence + "3 b b T 0 Pred", 2, 1, mismatch(4, "3", 1));
}

TEST_F(ParserTest, SkippedLineAboveOneHundredThousandCharactersIsCutUp) {
  // The skipped line has 1 + 100,000 + 10 characters and its line end: it counts as two lines, 2 and 3; the empty line
  // is line 4 and the next word stands in line 5.
  const std::string line(100011, 'x');
  expect_read("2 a a T 0 Pred\n" + line + "\n\n3 a a T 0 Pred\n\n", 0, 0, mismatch(1, "2", 1) + mismatch(5, "3", 1));
  // 1 + 100,000 characters: the line end left over is taken for an empty line (3), so the skipping is over there.
  expect_read("2 a a T 0 Pred\n" + line.substr(10) + "\n3 a a T 0 Pred\n\n", 0, 0,
              mismatch(1, "2", 1) + mismatch(4, "3", 1));
}

std::string numbered_words(unsigned int count) {
  std::string corpus;
  for (unsigned int order = 1; order <= count; ++order) {
    // Only the last two words are joined.
    corpus += std::to_string(order) + " w w T " + (order == count ? std::to_string(order - 1) : "0") + " Obj\n";
  }
  return corpus + "\n";
}

TEST_F(ParserTest, LongestSentenceIsRead) {
  expect_read(numbered_words(65535), 65535, 1);
  EXPECT_NE(read("statistics").find("# of 2-grams extracted: 1\n"), std::string::npos);
}

TEST_F(ParserTest, SentenceAboveTheLimitIsDropped) {
  const std::string overflow = warning(
      "Word order overflow detected at line 65536. Got word ordered as 65536, while maximum allowed value for word "
      "order "
      "is 65535. Skipping current sentence...");
  expect_read(numbered_words(65537) + good_sentence, 2, 1, overflow);
}

TEST_F(ParserTest, OverflowIsTestedBeforeTheOrder) {
  std::string corpus = numbered_words(65535);
  corpus.back() = '9';  // the 65536th line is "9 w w T 0 Pred"
  expect_read(
      corpus + " w w T 0 Pred\n\n", 0, 0,
      warning("Word order overflow detected at line 65536. Got word ordered as 65536, while maximum allowed value "
              "for word order is 65535. Skipping current sentence..."));
}

TEST_F(ParserTest, LemmaIsCutAtTheFirstMark) {
  EXPECT_EQ(first_member("go_comment", "T", {}), "1\tgo\t\t2\tSb");
  EXPECT_EQ(first_member("go'x", "T", {}), "1\tgo\t\t2\tSb");
  EXPECT_EQ(first_member("go:x", "T", {}), "1\tgo\t\t2\tSb");
  EXPECT_EQ(first_member("go;x_y", "T", {}), "1\tgo\t\t2\tSb");
  EXPECT_EQ(first_member("go^x", "T", {}), "1\tgo\t\t2\tSb");
  EXPECT_EQ(first_member("sleep-1", "T", {}), "1\tsleep-1\t\t2\tSb");
  EXPECT_EQ(first_member(":colon", "T", {}), "1\t\t\t2\tSb");
  EXPECT_EQ(first_member("_", "T", {}), "1\t\t\t2\tSb");
}

TEST_F(ParserTest, BytesAboveAsciiAreNoMarks) {
  // U+03BB, U+2019 and a lone byte 187 (59 with its highest bit set).
  EXPECT_EQ(first_member("\xCE\xBB\xE2\x80\x99\xBB_x", "T", {}), "1\t\xCE\xBB\xE2\x80\x99\xBB\t\t2\tSb");
}

TEST_F(ParserTest, TagIsMaskedCutAndPadded) {
  EXPECT_EQ(first_member("cat", "NNFP1", {"-m", "**-*"}), "1\tcat\tNN-P\t2\tSb");
  for (const char* tag : {"AB", "AC", "A"})
    EXPECT_EQ(first_member("cat", tag, {"-m", "*-"}), "1\tcat\tA-\t2\tSb");
  EXPECT_EQ(first_member("cat", "A", {"-m", "****"}), "1\tcat\tA---\t2\tSb");
  EXPECT_EQ(first_member("cat", "ABC", {"-m", "---"}), "1\tcat\t---\t2\tSb");
}

TEST_F(ParserTest, WithoutAMaskTagsAreEmpty) {
  EXPECT_EQ(first_member("cat", "NNFP1", {}), "1\tcat\t\t2\tSb");
  EXPECT_EQ(first_member("cat", "NNFP1", {"-m", ""}), "1\tcat\t\t2\tSb");
}

TEST_F(ParserTest, RelationNamesMatchExactly) {
  struct Case {
    const char* name;
    const char* stored;
  };
  for (const Case each : {Case{"Obj_Co", "Obj_Co"}, Case{"obj", "Undef"}, Case{"Obj_co", "Undef"}, Case{"Head", "Head"},
                          Case{"Head_Co", "Undef"}, Case{"Undef", "Undef"}, Case{"AuxZ_Pa", "AuxZ_Pa"},
                          Case{"Adv", "Adv"}, Case{"Adv_", "Undef"}, Case{"Sb_Ap", "Sb_Ap"}}) {
    write_corpus(std::string("1 a a T 2 ") + each.name + "\n2 b b T 0 Pred\n\n");
    run_clean("2");
    const std::string line = std::string("1\ta\t\t2\t") + each.stored + "\n";
    EXPECT_EQ(read("output").substr(0, line.size()), line) << each.name;
  }
}

TEST_F(ParserTest, EveryRelationNameIsKnown) {
  std::string corpus;
  unsigned int count = 0;
  for (const char* base : {"Adv",  "AdvAtr", "Apos",  "Atr",  "AtrAdv", "AtrAtr", "AtrObj", "Atv",  "AtvV", "Aux",
                           "AuxC", "AuxG",   "AuxK",  "AuxO", "AuxP",   "AuxR",   "AuxS",   "AuxT", "AuxV", "AuxX",
                           "AuxY", "AuxZ",   "Coord", "ExD",  "Obj",    "ObjAtr", "Pnom",   "Pred", "Sb"}) {
    for (const char* suffix : {"", "_Ap", "_Co", "_Pa"}) {
      corpus += std::string("1 a a T 2 ") + base + suffix + "\n2 b b T 0 Pred\n\n";
      ++count;
    }
  }
  ASSERT_EQ(count, 116u);
  write_corpus(corpus);
  run_clean("2", {"-s", "statistics"});
  // 116 different pairs, none of them Undef.
  EXPECT_NE(read("statistics").find("# of unique 2-grams of type 3: 116\n"), std::string::npos);
  EXPECT_EQ(read("output").find("Undef"), std::string::npos);
}

TEST_F(ParserTest, ParentIsReducedToSixteenBits) {
  // 65538 = 2^16 + 2, -65534 = 2^32 - 65534 = 65535 * 2^16 + 2
  for (const char* parent : {"2", "65538", "-65534"}) {
    write_corpus(std::string("1 a a T ") + parent + " Sb\n2 b b T 0 Pred\n\n");
    run_clean("2");
    EXPECT_EQ(read("output").find("1\ta\t\t2\tSb\n2\tb\t\t0\tHead\n"), 0u) << parent;
  }
}

}  // namespace
}  // namespace colx::cli
