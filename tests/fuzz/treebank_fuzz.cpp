// Whatever comes out of the importer, the parser of datafiles reads without a warning, word for word. The first byte
// chooses format and conversion.

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "companion/errors.h"
#include "corpus/parser.h"
#include "corpus/word_queue.h"
#include "import/datafile_words.h"
#include "import/foreign_format.h"
#include "import/relation_tables.h"
#include "import/sentence_reader.h"
#include "import/treebank_format.h"
#include "import/treebank_source.h"
#include "tests/fuzz/memory_file.h"
#include "tests/fuzz/target.h"
#include "tests/support/parsing.h"
#include "tests/support/settings_guard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace colx;
  using fuzz::promise;
  if (size == 0) return 0;
  static constexpr TreebankFormat formats[] = {TreebankFormat::conllu, TreebankFormat::conllx, TreebankFormat::datafile,
                                               TreebankFormat::conllu};
  static constexpr TagSource tags[] = {TagSource::xpos, TagSource::upos, TagSource::feats, TagSource::feats};
  const unsigned choice = bytes[0];
  const Conversion conversion{.format = formats[choice & 3],
                              .tag = tags[choice >> 2 & 3],
                              .relations = (choice & 16) == 0    ? nullptr
                                           : (choice & 128) == 0 ? &map_of(universal_relations())
                                                                 : &map_of(surface_relations()),
                              .protect_lemmas = (choice & 32) != 0,
                              .protect_forms = (choice & 64) != 0};
  const fuzz::MemoryFile file(fuzz::text_of(bytes + 1, size - 1));
  std::string text;
  std::vector<std::uint32_t> lengths;
  try {
    TreebankSource source(file.path(), false);
    const std::string_view beginning = source.preview();
    if (const auto foreign = foreign_bytes(beginning)) promise(!foreign->advice.empty(), "there is advice");
    if (const auto foreign = foreign_rows(beginning)) promise(!foreign->advice.empty(), "there is advice");
    if (!recognise_format(beginning)) promise(!guess_of_unrecognised(beginning).found.empty(), "there is a guess");
    SentenceReader reader(source, conversion.format);
    SentenceConverter converter(conversion);
    TreebankSentence sentence;
    std::vector<TreebankProblem> problems;
    while (reader.next(sentence, problems)) {
      promise(must_be_skipped(problems) || sentence.words.size() == sentence.rows, "a sentence that is read is whole");
      promise(sentence.rows > 0 || !problems.empty(), "where there is no sentence something is wrong");
      if (sentence.rows == 0 || must_be_skipped(problems)) continue;
      const std::vector<DatafileWord>& words = converter.convert(sentence, problems);
      if (must_be_skipped(problems)) continue;
      append_rows(text, sentence, words);
      text += "\n";
      lengths.push_back(static_cast<std::uint32_t>(words.size()));
    }
  } catch (const input_error&) {
    return 0;  // compressed data that are none
  }

  const test::SettingsGuard guard;
  test::Warnings warnings;
  std::istringstream stream(text);
  StringStore<std::uint32_t> lemmas(65535);
  StringStore<std::uint8_t> no_tags(65535);
  WordQueue words;
  Parser parser(stream, lemmas, no_tags, warnings.sink());
  parser.next(4294967295, ContextWindow::sentences, words);
  promise(warnings.text().empty(), "no warning about what was imported");
  promise(test::lengths_of(parser) == lengths, "every sentence is read whole");
  return 0;
}
