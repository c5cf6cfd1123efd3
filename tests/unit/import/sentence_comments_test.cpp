#include "import/sentence_comments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "import/sentence_reader.h"
#include "tests/support/temporary_folder.h"

namespace colx {
namespace {

TEST(SentenceComments, TakesTheFirstValueOfEachKind) {
  SentenceComments comments;
  for (const char* const line : {"# text = Rain, x = y ", "#sent_id=w-1", "# text = Snow", "# sent_id = w-2",
                                 "# text_en = Hail", "# newdoc id = d", "# nothing", "#"})
    comments.take(line);
  EXPECT_EQ(comments.text, "Rain, x = y");
  EXPECT_EQ(comments.id, "w-1");
}

// The identifiers of the sentences of a text, in order, those without rows included.
std::vector<std::string> _identifiers(const std::string& text, TreebankFormat format) {
  const test::TemporaryFolder folder;
  TreebankSource source(folder.write("in", text), false);
  SentenceReader reader(source, format);
  TreebankSentence sentence;
  std::vector<TreebankProblem> problems;
  std::vector<std::string> identifiers;
  while (reader.next(sentence, problems))
    if (sentence.rows > 0) identifiers.push_back(sentence.comments.id);
  return identifiers;
}

TEST(SentenceComments, BelongToTheSentenceBelowThem) {
  const std::string word = "1\ta\ta\tX\tX\t_\t0\troot\t_\t_\n";
  const std::string second = "2\ta\ta\tX\tX\t_\t1\tdep\t_\t_\n";
  const auto id = [](const std::string& text) { return "# sent_id = " + text + "\n"; };
  using Identifiers = std::vector<std::string>;
  for (const TreebankFormat format : {TreebankFormat::conllu, TreebankFormat::conllx})
    EXPECT_EQ(_identifiers(id("lost") + "\n" + word + "\n" + id("a") + word + second + "\n", format),
              (Identifiers{"", "a"}));
  // Where the empty line is missing.
  EXPECT_EQ(_identifiers(id("a") + word + id("b") + word + "\n" + word, TreebankFormat::conllu),
            (Identifiers{"a", "b", ""}));
  EXPECT_EQ(_identifiers(id("a") + word + id("b") + second + word, TreebankFormat::conllu), (Identifiers{"a", ""}));
}

}  // namespace
}  // namespace colx
