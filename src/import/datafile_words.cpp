#include "import/datafile_words.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <fmt/format.h>

#include "companion/lemma_protection.h"
#include "corpus/datafile_format.h"
#include "import/datafile_writer.h"
#include "import/function_names.h"
#include "import/xpos_lengths.h"
#include "output/number_format.h"
#include "util/short_runs.h"

namespace colx {

namespace {

// A column of the input for a message.
struct ColumnName {
  unsigned number;
  const char* name;
};

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
  if (text.size() <= longest_text) return;
  problems.push_back(
      {line, column.number, column.name,
       fmt::format("expected a text that takes at most {} bytes in a datafile, found {}", longest_text, text.size()),
       Fault::text_too_long});
}

}  // namespace

std::string_view SentenceConverter::_field(const TreebankWord& word, std::string_view text) {
  const bool may_stand = word.is_plain ? !text.empty() : is_datafile_field(text);
  return may_stand ? text : _texts.keep(datafile_field(text));
}

void SentenceConverter::_convert_lemma(const TreebankWord& word, DatafileWord& result) {
  const bool is_datafile = _conversion.format == TreebankFormat::datafile;
  result.lemma_is_form = word.lemma.empty() || (word.lemma == "_" && !is_datafile);
  result.lemma = _field(word, result.lemma_is_form ? word.form : word.lemma);
  result.kept_lemma = kept_lemma(result.lemma);
  const bool protects = result.lemma_is_form ? _conversion.protect_forms : _conversion.protect_lemmas;
  if (!protects || result.kept_lemma.size() == result.lemma.size()) return;
  result.lemma = _texts.keep(protect_lemma(result.lemma));
  result.kept_lemma = result.lemma;
  result.is_protected = true;
}

void SentenceConverter::_convert_tag(const TreebankWord& word, DatafileWord& result) {
  if (_conversion.format == TreebankFormat::datafile || _conversion.tag == TagSource::xpos) {
    result.is_odd_tag = _conversion.tag_length != 0 && _conversion.format != TreebankFormat::datafile &&
                        (word.xpos.size() != _conversion.tag_length || word.xpos == "_");
    result.tag = result.is_odd_tag ? _texts.keep(datafile_field(brought_to_length(word.xpos, _conversion.tag_length)))
                                   : _field(word, word.xpos);
  } else if (_conversion.tag == TagSource::upos) {
    result.tag = _field(word, word.upos);
  } else {
    _make_tag(word, result);
  }
}

void SentenceConverter::_make_tag(const TreebankWord& word, DatafileWord& result) {
  // The class and the features have nothing to do with each other.
  MadeTag made = _made_tags.get(word.feats, [](std::string_view feats) {
    const std::string tag = positional_tag("_", feats);
    MadeTag made_tag{{}, tag.find('?') != std::string::npos};
    std::copy(tag.begin(), tag.end(), made_tag.letters.begin());
    return made_tag;
  });
  const char word_class =
      _word_classes.get(word.upos, [](std::string_view upos) { return positional_tag(upos, "_")[0]; });
  made.letters[0] = word_class;
  result.tag = _texts.keep({made.letters.data(), made.letters.size()});
  result.has_unknown_values = made.has_unknown_values || word_class == '?';
}

const std::vector<DatafileWord>& SentenceConverter::convert(const TreebankSentence& sentence,
                                                            std::vector<TreebankProblem>& problems) {
  _texts.clear();
  const bool converts = _functions.has_value();
  const std::vector<std::string_view>* const functions = converts ? &_functions->of(sentence) : nullptr;
  _words.assign(sentence.words.size(), {});
  for (std::size_t i = 0; i < _words.size(); ++i) {
    const TreebankWord& word = sentence.words[i];
    DatafileWord& result = _words[i];
    result.form = _field(word, word.form);
    _convert_lemma(word, result);
    _convert_tag(word, result);
    result.relation = converts ? (*functions)[i] : _field(word, word.relation);
    const bool is_known = result.relation != undefined_function &&
                          (converts || _known_relations.get(result.relation, is_analytical_function));
    result.relation_is_undefined = !is_known && word.relation != undefined_function;
    _check_length(result.kept_lemma, _lemma_column(_conversion, result), word.line, problems);
    _check_length(result.tag, _tag_column(_conversion), word.line, problems);
  }
  return _words;
}

void append_rows(std::string& text, const TreebankSentence& sentence, const std::vector<DatafileWord>& words) {
  // Two numbers of up to ten digits, five separators and a line feed.
  constexpr std::size_t longest_besides = 26;
  const std::size_t size = text.size();
  std::size_t most = size;
  for (const DatafileWord& word : words)
    most += word.form.size() + word.lemma.size() + word.tag.size() + word.relation.size() + longest_besides;
  text.resize(most);
  char* out = text.data() + size;
  const auto field = [&](std::string_view value, char separator) {
    out = copy_bytes(out, value.data(), value.size());
    *out++ = separator;
  };
  const auto number = [&](std::uint32_t value) {
    out = format_unsigned(out, value);
    *out++ = '\t';
  };
  for (std::size_t i = 0; i < words.size(); ++i) {
    const DatafileWord& word = words[i];
    number(static_cast<std::uint32_t>(i + 1));
    field(word.form, '\t');
    field(word.lemma, '\t');
    field(word.tag, '\t');
    number(sentence.words[i].parent);
    field(word.relation, '\n');
  }
  text.resize(static_cast<std::size_t>(out - text.data()));
}

}  // namespace colx
