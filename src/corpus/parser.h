#pragma once

// Reading of datafiles: one word a line in six fields (order, form, lemma, tag, parent, relation), an empty line after
// each sentence. A sentence that is malformed, or whose words are not ordered 1, 2, 3 ..., is warned of and skipped
// whole; nothing in a datafile stops the run but a string store without room.
//
// Fields are read as a formatted input stream reads them, newlines being white space like any other, and exactly one
// character is taken after the sixth. This is part of the format: a blank at the end of a word line leaves the newline,
// which then reads as an empty line and ends the sentence.

#include <cstddef>
#include <cstdint>
#include <istream>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/config.h"
#include "base/warning_sink.h"
#include "corpus/input.h"
#include "corpus/sentence_source.h"
#include "corpus/string_store.h"
#include "corpus/text_cache.h"
#include "corpus/word_forms.h"
#include "corpus/word_queue.h"

namespace colx {

// Reads the sentences of one stream, which it does not own, from where the stream stands, and interns their lemmas and
// tags in the two stores. Reads ahead of what it has consumed.
//
// Ordinary lines, six fields each followed by a single separator and all of it in the buffer, are taken apart in one
// pass; every other line is read field by field, which is slower and is the definition.
class Parser final : public SentenceSource {
 public:
  // Stream, stores and forms must outlive the parser. When there are `forms`, every word that is appended has its form
  // appended to them as well; there are none to be kept when it is null.
  Parser(std::istream& stream, StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags, WarningSink warn,
         WordForms* forms = nullptr);

  // As SentenceSource says. Passes on index_overflow and string_too_long of the stores.
  bool next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) override;

  const std::vector<SentenceExtent>& sentences() const override { return _sentences; }

  bool at_end() const override { return _input.eof(); }

  // Has `next` stop, with what it has read by then, at the first place where at least that many bytes of the input are
  // consumed and no sentence is in hand, if it gets there: behind an empty line. Reading goes on from there when it is
  // called again.
  void stop_behind(std::int64_t bytes) { _stop = bytes; }

  // Lines read so far, as warnings count them, modulo 2^32; while one is given out, the number of its line.
  std::uint32_t lines() const { return _line; }

  // Bytes consumed so far, or a negative number when the input has failed.
  std::int64_t position() const { return _input.position(); }

 private:
  enum class Line { word, malformed, incomplete };

  // The fields of a word line; the texts are valid until the input moves on.
  struct Fields {
    std::uint32_t order = 0;
    std::string_view form;
    std::string_view lemma;  // cut
    std::string_view tag;
    std::uint32_t parent = 0;
    std::string_view dependency;
  };

  Line _read_word_line(Fields& fields);
  static std::size_t _split_ordinary_line(std::string_view text, Fields& fields);
  void _warn(const std::string& problem) const;
  void _skip_sentence();
  Word _make_word(const Fields& fields);
  std::uint8_t _intern_tag(std::string_view tag);
  std::uint32_t _intern_lemma(std::string_view text);

  Input _input;
  StringStore<std::uint32_t>& _lemmas;
  StringStore<std::uint8_t>& _tags;
  WarningSink _warning_sink;
  WordForms* _forms;
  std::uint32_t _line = 0;
  std::int64_t _stop = std::numeric_limits<std::int64_t>::max();
  std::int64_t _incomplete_begin = 0;  // where the line begins that the input ended in
  std::vector<SentenceExtent> _sentences;

  // Texts of a line that is read field by field, kept so that reading one allocates nothing.
  std::string _form;
  std::string _lemma;
  std::string _tag;
  std::string _dependency;

  TextCache<std::uint8_t, 11> _tag_indexes;      // by tag as it is read
  TextCache<std::uint8_t, 9> _dependency_codes;  // by name
};

}  // namespace colx
