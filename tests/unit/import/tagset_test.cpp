#include "import/tagset.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace colx {
namespace {

TEST(Tagset, PutsEveryFeatureAtItsPosition) {
  EXPECT_EQ(positional_tag("NOUN", "Case=Gen|Gender=Fem|Number=Plur"), "NGPF--------");
  EXPECT_EQ(positional_tag("VERB", "Mood=Ind|Number=Sing|Person=3|Polarity=Neg|Tense=Pres|VerbForm=Fin|Voice=Act"),
            "V-S-3PIFA--N");
  EXPECT_EQ(positional_tag("ADJ", "Degree=Cmp"), "A--------2--");
  EXPECT_EQ(positional_tag("PRON", "PronType=Rel"), "P---------R-");
}

TEST(Tagset, MarksWhatIsAbsentAndWhatHasNoLetter) {
  EXPECT_EQ(positional_tag("_", "_"), "------------");
  EXPECT_EQ(positional_tag("Nonsense", "Case=Zzz|Foreign=Yes|Number="),
            "?"
            "?----------");
}

TEST(Tagset, NamesTheValuesThatHaveNoLetter) {
  using Values = std::vector<std::string>;
  EXPECT_EQ(unknown_values("Nonsense", "Tense=Yyy,Past|Case=Zzz|Foreign=Yes|Number=|Case=Nom"),
            (Values{"UPOS=Nonsense", "Case=Zzz", "Tense=Yyy"}));
  EXPECT_EQ(unknown_values("NOUN", "cas=Zzz"), Values{"Case=Zzz"});
  EXPECT_EQ(unknown_values("NOUN", "Case=Gen|Gender=Fem"), Values{});
}

TEST(Tagset, TakesTheFirstOfSeveralValues) {
  EXPECT_EQ(positional_tag("DET", "Gender=Masc,Neut"), "T--M--------");
}

TEST(Tagset, TakesNoNameWithoutValueForAShortFeature) {
  EXPECT_EQ(positional_tag("NOUN", "Case|Perf|Prop"), "N-----------");
  EXPECT_EQ(positional_tag("NOUN", "=Nom|=|Case="), "N-----------");
  EXPECT_EQ(positional_tag("NOUN", "Case=Nom|Case=Gen"), "NN----------");
  EXPECT_EQ(positional_tag("CONJ", "Negative=Neg|Case=Sbl"), "JU---------N");
}

TEST(Tagset, KeepsShortValuesOfOlderTreebanks) {
  EXPECT_EQ(positional_tag("1", "grn1|casA|gen3"), "1A-3-----1--");
  EXPECT_EQ(positional_tag("N", "SubPOS=N|Gen=F|Num=S|Cas=1|Neg=A"), "N1SF-------A");
}

TEST(Tagset, PrintsATableWithOneMeaningForALetterAtAPosition) {
  std::istringstream table(tag_table());
  std::string line;
  std::getline(table, line);
  EXPECT_EQ(line, "position\tname\tletter\tvalue");
  std::map<std::string, std::set<std::string>> letters;
  while (std::getline(table, line)) {
    const std::string position = line.substr(0, line.find('\t'));
    const std::size_t letter = line.find('\t', line.find('\t') + 1) + 1;
    EXPECT_EQ(line[letter + 1], '\t') << line;
    EXPECT_TRUE(letters[position].insert(line.substr(letter, 1)).second) << line;
  }
  EXPECT_EQ(letters.size(), feature_positions);
}

}  // namespace
}  // namespace colx
