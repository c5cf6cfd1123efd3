// The parser of datafiles reads any bytes as its plain twin does. The first byte chooses the mask and how much is read
// at a time.

#include <sstream>
#include <string>
#include <vector>

#include "base/errors.h"
#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "tests/fuzz/target.h"
#include "tests/reference/plain_parser.h"
#include "tests/support/parsing.h"
#include "tests/support/settings_guard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace colx;
  using fuzz::promise;
  if (size == 0) return 0;
  static constexpr const char* masks[] = {nullptr, "*", "*-*", ""};
  const char* const mask = masks[bytes[0] & 3];
  const auto mode = (bytes[0] & 4) != 0 ? ContextWindow::words : ContextWindow::sentences;
  const std::uint32_t limit = bytes[0] >> 3;
  const std::string text(fuzz::text_of(bytes + 1, size - 1));

  const test::SettingsGuard guard;
  settings::morphologic_tag_mask = mask;
  test::Warnings warnings;
  std::istringstream stream(text);
  std::istringstream plain_stream(text);
  StringStore<std::uint32_t> lemmas(65535);
  StringStore<std::uint8_t> tags(65535);
  WordForms forms;
  Parser parser(stream, lemmas, tags, warnings.sink(), &forms);
  reference::PlainParser plain(plain_stream, mask);
  try {
    while (!plain.at_end()) {
      WordQueue words;
      forms.clear();
      std::vector<reference::PlainWord> plain_words;
      const bool any = parser.next(limit, mode, words);
      promise(any == plain.next(limit, mode, plain_words), "whether there are sentences");
      promise(parser.sentences().size() == plain.sentences().size(), "the number of sentences");
      for (std::size_t i = 0; i < plain.sentences().size(); ++i) {
        const reference::PlainSentence& sentence = plain.sentences()[i];
        promise(parser.sentences()[i] == SentenceExtent{sentence.length, sentence.line, sentence.begin, sentence.end},
                "where a sentence stood");
      }
      promise(words.size() == plain_words.size(), "the number of words");
      promise(forms.size() == words.size(), "the number of forms");
      for (std::size_t i = 0; i < words.size(); ++i)
        promise(words[i].lemma == plain_words[i].lemma && words[i].tag == plain_words[i].tag &&
                    words[i].order == plain_words[i].order && words[i].parent == plain_words[i].parent &&
                    words[i].dependency == plain_words[i].dependency && forms[i] == plain_words[i].form,
                "a word");
      promise(parser.at_end() == plain.at_end(), "the end");
    }
  } catch (const index_overflow&) {
    return 0;  // more than 254 tags, which the twin does not know of
  }
  promise(warnings.text() == plain.warnings(), "the warnings");
  return 0;
}
