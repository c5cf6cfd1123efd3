#pragma once

// For tests only, never linked into the program: the reading of datafiles by formatted extraction from a stream, field
// by field, which is how the format is defined.

#include <cstdint>
#include <cstring>
#include <istream>
#include <string>
#include <vector>

#include "base/config.h"
#include "corpus/dependencies.h"
#include "tests/reference/plain_string_store.h"

namespace colx::reference {

// A word with its texts' indexes in the plain stores.
struct PlainWord {
  std::uint32_t lemma;
  std::uint32_t tag;
  std::uint16_t order;
  std::uint16_t parent;
  std::uint8_t dependency;
  std::string form;
};

// A sentence and where it stood, as the parser says it.
struct PlainSentence {
  std::uint32_t length;
  std::uint32_t line;
  std::uint64_t begin;
  std::uint64_t end;
};

// Reads the sentences of one stream and keeps what it would warn of.
class PlainParser {
 public:
  // The mask may be null.
  PlainParser(std::istream& stream, const char* mask) : _stream(stream), _mask(mask) {}

  bool next(std::uint32_t limit, ContextWindow::Mode mode, std::vector<PlainWord>& words) {
    _sentences.clear();
    std::uint32_t words_read = 0;
    std::uint32_t length = 0;
    PlainSentence sentence{};
    const auto drop_sentence = [&] {
      words.resize(words.size() - length);
      length = 0;
      _skip_sentence();
    };
    while (_stream) {
      const int first = _stream.peek();
      if (first == std::char_traits<char>::eof()) break;
      ++_line;
      if (first == '\n') {
        _stream.get();
        if (length > 0) {
          _sentences.push_back(sentence);
          words_read += length;
          length = 0;
        }
        if (mode == ContextWindow::words && words_read >= limit) break;
        if (mode == ContextWindow::sentences && _sentences.size() >= limit) break;
        continue;
      }
      const std::uint64_t begin = _offset();
      _stream >> _order >> _occurrence >> _lemma >> _tag >> _parent >> _dependency;
      const bool malformed = _stream.fail();
      if (malformed && _stream.eof()) break;
      if (malformed) _stream.clear();
      _stream.get();
      if (malformed) {
        _warn("Incorrect input format detected at line " + std::to_string(_line));
        drop_sentence();
      } else if (length == constants::max_sentence_length) {
        _warn("Word order overflow detected at line " + std::to_string(_line) + ". Got word ordered as " +
              std::to_string(length + 1) + ", while maximum allowed value for word order is " +
              std::to_string(constants::max_sentence_length));
        drop_sentence();
      } else if (_order != length + 1) {
        _warn("Word order mismatch detected at line " + std::to_string(_line) + ". Got word ordered as " +
              std::to_string(_order) + ", while expecting " + std::to_string(length + 1));
        drop_sentence();
      } else {
        words.push_back(_make_word());
        if (length == 0) sentence = {0, _line, begin, 0};
        sentence.length = ++length;
        sentence.end = _offset();
      }
    }
    if (length > 0) _sentences.push_back(sentence);
    return !_sentences.empty();
  }

  const std::vector<PlainSentence>& sentences() const { return _sentences; }
  bool at_end() const { return _stream.eof(); }

  // Bytes consumed so far; only before the end of the input has been noticed.
  std::int64_t position() const { return _stream.fail() ? -1 : static_cast<std::int64_t>(_stream.tellg()); }

  const std::string& warnings() const { return _warnings; }

  PlainStringStore lemmas;
  PlainStringStore tags;

 private:
  // Bytes consumed so far, whatever the state of the stream.
  std::uint64_t _offset() {
    return static_cast<std::uint64_t>(_stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
  }

  void _warn(const std::string& problem) { _warnings += "WARNING: " + problem + ". Skipping current sentence...\n"; }

  void _skip_sentence() {
    while (_stream.good()) {
      const int first = _stream.get();
      if (first == '\n') {
        ++_line;
        return;
      }
      _stream.ignore(100000, '\n');
      ++_line;
    }
    ++_line;
  }

  PlainWord _make_word() {
    const std::string lemma = _lemma.substr(0, _lemma.find_first_of("':;^_"));
    std::string tag;
    for (std::size_t p = 0; _mask != nullptr && _mask[p] != '\0'; ++p)
      tag += p < _tag.size() && _mask[p] == '*' ? _tag[p] : '-';
    // Texts end at their first zero byte.
    const std::uint32_t tag_index = tags.store(tag.c_str());
    return {lemmas.store(lemma.c_str()),        tag_index,
            static_cast<std::uint16_t>(_order), static_cast<std::uint16_t>(_parent),
            string2dependency(_dependency),     _occurrence};
  }

  std::istream& _stream;
  const char* _mask;
  std::uint32_t _line = 0;
  std::vector<PlainSentence> _sentences;
  std::string _warnings;
  std::uint32_t _order = 0;
  std::string _occurrence;
  std::string _lemma;
  std::string _tag;
  std::uint32_t _parent = 0;
  std::string _dependency;
};

}  // namespace colx::reference
