#include "import/datafile_words.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "import/datafile_writer.h"
#include "import/lemma_protection.h"
#include "import/relations.h"

namespace colx {

namespace {

// A column of the input for a message.
struct ColumnName {
  unsigned number;
  const char* name;
};

void _convert_lemma(const TreebankWord& word, const Conversion& conversion, DatafileWord& result) {
  const bool is_datafile = conversion.format == TreebankFormat::datafile;
  result.lemma_is_form = word.lemma.empty() || (word.lemma == "_" && !is_datafile);
  result.lemma = datafile_field(result.lemma_is_form ? word.form : word.lemma);
  if (!(result.lemma_is_form ? conversion.protect_forms : conversion.protect_lemmas)) return;
  std::string shielded = protect_lemma(result.lemma);
  result.is_protected = shielded != result.lemma;
  result.lemma = std::move(shielded);
}

void _convert_tag(const TreebankWord& word, const Conversion& conversion, DatafileWord& result) {
  if (conversion.format == TreebankFormat::datafile || conversion.tag == TagSource::xpos) {
    result.tag = datafile_field(word.xpos);
  } else if (conversion.tag == TagSource::upos) {
    result.tag = datafile_field(word.upos);
  } else {
    result.tag = positional_tag(word.upos, word.feats);
    result.has_unknown_values = result.tag.find('?') != std::string::npos;
  }
}

ColumnName _lemma_column(const Conversion& conversion, const DatafileWord& word) {
  if (conversion.format == TreebankFormat::datafile) return {3, "lemma"};
  return word.lemma_is_form ? ColumnName{2, "FORM"} : ColumnName{3, "LEMMA"};
}

ColumnName _tag_column(const Conversion& conversion) {
  if (conversion.format == TreebankFormat::datafile) return {4, "tag"};
  return conversion.tag == TagSource::upos ? ColumnName{4, "UPOS"} : ColumnName{5, "XPOS"};
}

void _check_length(std::string_view text, ColumnName column, std::uint64_t line,
                   std::vector<TreebankProblem>& problems) {
  if (text.size() <= longest_treebank_text) return;
  problems.push_back({line, column.number, column.name,
                      fmt::format("expected a text that takes at most {} bytes in a datafile, found {}",
                                  longest_treebank_text, text.size()),
                      Fault::text_too_long});
}

}  // namespace

std::vector<DatafileWord> datafile_words(const TreebankSentence& sentence, const Conversion& conversion,
                                         std::vector<TreebankProblem>& problems) {
  std::vector<std::string> functions;
  if (conversion.functions) functions = analytical_functions(sentence);
  std::vector<DatafileWord> words(sentence.words.size());
  for (std::size_t i = 0; i < words.size(); ++i) {
    const TreebankWord& word = sentence.words[i];
    DatafileWord& result = words[i];
    result.form = datafile_field(word.form);
    _convert_lemma(word, conversion, result);
    _convert_tag(word, conversion, result);
    result.relation = conversion.functions ? functions[i] : datafile_field(word.relation);
    const bool is_known =
        result.relation != "Undef" && (conversion.functions || is_analytical_function(result.relation));
    result.relation_is_undefined = !is_known && word.relation != "Undef";
    _check_length(kept_lemma(result.lemma), _lemma_column(conversion, result), word.line, problems);
    _check_length(result.tag, _tag_column(conversion), word.line, problems);
  }
  return words;
}

}  // namespace colx
