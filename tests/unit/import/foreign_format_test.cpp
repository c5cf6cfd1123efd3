// What is taken for a treebank by mistake is known for what it is, and treebanks are not.

#include "import/foreign_format.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/treebank_format.h"

namespace colx {
namespace {

using namespace std::string_literals;

std::string _row(const std::string& middle) {
  return "1\t" + middle + "\t_\t_\n";
}

std::string _found(const std::string& text) {
  if (const auto foreign = foreign_bytes(text)) return foreign->found;
  if (const auto foreign = foreign_rows(text)) return foreign->found;
  return recognise_format(text) ? "" : guess_of_unrecognised(text).found;
}

std::string _wide(const std::string& text, bool high_first) {
  std::string wide;
  for (const char c : text)
    wide += high_first ? "\0"s + c : c + "\0"s;
  return wide;
}

const std::string ordinary = _row("a\ta\tNOUN\tN\t_\t0\troot");
const std::string standard = "ID FORM LEMMA UPOS XPOS FEATS HEAD DEPREL DEPS MISC";

TEST(ForeignFormat, IsKnownByItsFirstBytes) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"\xFD\x37zXZ\0\0\x04"s, "data compressed with xz"},
      {"BZh91AY&SY", "data compressed with bzip2"},
      {"\x28\xB5\x2F\xFD\x24", "data compressed with zstd"},
      {"\x1F\x8B\x08", "data compressed twice"},
      {"PK\x03\x04\x14", "a zip archive"},
      {"7z\xBC\xAF\x27\x1C\x00", "a 7z archive"},
      {"bank.conllu" + std::string(246, '\0') + "ustar\00000" + std::string(240, '\0'), "a tar archive"},
      {"\xFF\xFE" + _wide(ordinary, false), "text in UTF-16"},
      {"\xFE\xFF" + _wide(ordinary, true), "text in UTF-16"},
      {"\xFF\xFE\0\0a\0\0\0"s, "text in UTF-32"},
      {_wide(ordinary, false), "text in UTF-16LE"},
      {_wide(ordinary, true), "text in UTF-16BE"},
      {"\x7F"s + "ELF\x02\x01\x01" + std::string(60, '\0'), "binary data"},
  };
  for (const auto& [text, found] : cases)
    EXPECT_EQ(_found(text), found);
}

TEST(ForeignFormat, IsKnownByItsRows) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"# global.columns = " + standard + " PARSEME:MWE\n# c\n1\ta\ta\tNOUN\tN\t_\t0\troot\t_\t_\t*\n",
       "CoNLL-U Plus (.cupt and others) with the column PARSEME:MWE behind those of CoNLL-U"},
      {"# global.columns = ID FORM TAG\n1\ta\tN\n", "CoNLL-U Plus with the columns \"ID FORM TAG\""},
      {"# global.columns = ID FORM LEMMA UPOS HEAD DEPREL\n1\ta\ta\tNOUN\t0\troot\n",
       "CoNLL-U Plus with the columns \"ID FORM LEMMA UPOS HEAD DEPREL\""},
      {"# a\r1\ta\r", "lines that end with CR alone"},
      {_row("a\t_\t_\t_\t_\t_\t_"), "words without a tree: _ in every row as LEMMA, UPOS, HEAD, DEPREL"},
      {_row("a\ta\tNOUN\tN\t_\t_\tdep"), "words without a tree: _ in every row as HEAD"},
      {_row("_\t_\tNOUN\tN\t_\t0\tdep") + _row("_\t_\tX\tN\t_\t0\tdep") + _row("_\t_\tX\tN\t_\t0\tdep") +
           _row("_\t_\tX\tN\t_\t0\tdep") + _row("_\t_\tX\tN\t_\t0\tdep"),
       "words without text: FORM and LEMMA are _ in every row"},
      {"1\ta\ta\tNOUN\tN\t_\t0\troot\t_\t_\t*\n",
       "rows of more columns than CoNLL-U (.cupt and others), line 1 has 11 columns separated by TAB and 11 fields "
       "separated by white space"},
      {"1\ta\ta\ta\tN\tN\t_\t_\t0\t0\tROOT\tROOT\t_\t_\n",
       "rows as in CoNLL-2009, line 1 has 14 columns separated by TAB and 14 fields separated by white space"},
      {"1 a a NOUN N _ 0 root _ _\n",
       "ten columns that are not separated by TAB, line 1 has 1 columns separated by TAB and 10 fields separated by "
       "white space"},
      {"It rained heavily.\n",
       "plain text, line 1 has 1 columns separated by TAB and 3 fields separated by white space"},
      {"%PDF-1.4\n%\xE2\xE3\xCF\xD3\n",
       "binary data or text that is not in UTF-8, line 1 has 1 columns separated by TAB and 1 fields separated by "
       "white space"},
      {"\x1B[31mrain\n",
       "binary data or text that is not in UTF-8, line 1 has 1 columns separated by TAB and 1 fields separated by "
       "white space"},
      {"\n<!DOCTYPE html>\n<html>\n", "a page of HTML"},
      {"<?xml version=\"1.0\"?>\n<s>\n", "XML or another text with markup"},
      {"a\tb\tc\n", "other rows, line 1 has 3 columns separated by TAB and 3 fields separated by white space"},
  };
  for (const auto& [text, found] : cases)
    EXPECT_EQ(_found(text), found);
}

TEST(ForeignFormat, IsNotSeenInTreebanks) {
  for (const std::string& text : std::vector<std::string>{
           "", ordinary, "# global.columns = " + standard + "\n" + ordinary,
           "# global.columns = " + standard + " PARSEME:MWE\n" + ordinary,  // the eleventh column was cut
           "# global.columns = ID FORM\n", ordinary + "# global.columns = ID FORM\n",
           _row("_\t_\tPUNCT\tN\t_\t0\troot"), _row("a\t_\t_\t_\t_\t0\t_"), _row("a\ta\tX\tX\t_\t_\t_") + ordinary,
           "1\ta\ta\tNOUN\tN\t_\t0\troot\t_\t_\r", std::string("1\ta\0\ta\tNOUN\tN\t_\t0\troot\t_\t_\n", 28),
           "1 f l t 0 Pred\n"})
    EXPECT_EQ(_found(text), "") << text;
}

}  // namespace
}  // namespace colx
