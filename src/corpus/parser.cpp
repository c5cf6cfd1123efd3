#include "corpus/parser.h"

#include <cstring>

#include "corpus/dependencies.h"
#include "corpus/tagged_lemma.h"
#include "output/utils.h"
#include "run/notifier.h"

namespace colx {

namespace {

// The most characters of a line that are discarded at once while a bad sentence is skipped; a longer line counts as
// several.
constexpr std::streamsize longest_skip = 100000;

// The lemmas that the records of N-grams can tell apart.
constexpr std::size_t distinct_lemmas = std::size_t{TaggedLemma::_lemma_bits_mask} + 1;

}  // namespace

Parser::Parser(std::istream& stream, StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags)
    : _stream(stream), _lemmas(lemmas), _tags(tags) {}

bool Parser::next(std::uint32_t limit, ContextWindow::Mode mode, std::deque<Word>& words) {
  _sentence_lengths.clear();
  std::uint32_t words_read = 0;
  std::uint32_t length = 0;  // of the sentence in hand

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
        _sentence_lengths.push_back(length);
        words_read += length;
        length = 0;
      }
      if (mode == ContextWindow::words && words_read >= limit) break;
      if (mode == ContextWindow::sentences && _sentence_lengths.size() >= limit) break;
      continue;
    }

    const Line line = _read_word_line();
    if (line == Line::incomplete) break;
    if (line == Line::malformed) {
      _warn("Incorrect input format detected at line " + unsigned2str(_line));
      drop_sentence();
    } else if (length == constants::max_sentence_length) {
      _warn("Word order overflow detected at line " + unsigned2str(_line) + ". Got word ordered as " +
            unsigned2str(length + 1) + ", while maximum allowed value for word order is " +
            unsigned2str(constants::max_sentence_length));
      drop_sentence();
    } else if (_order != length + 1) {
      _warn("Word order mismatch detected at line " + unsigned2str(_line) + ". Got word ordered as " +
            unsigned2str(_order) + ", while expecting " + unsigned2str(length + 1));
      drop_sentence();
    } else {
      words.push_back(_make_word());
      ++length;
    }
  }

  if (length > 0) _sentence_lengths.push_back(length);
  return !_sentence_lengths.empty();
}

// Reads the six fields and the one character after them. Input that ends inside them makes no word: its fields are not
// all its own.
Parser::Line Parser::_read_word_line() {
  _stream >> _order >> _occurrence >> _lemma >> _tag >> _parent >> _dependency;
  if (_stream.fail()) {
    if (_stream.eof()) return Line::incomplete;
    _stream.clear();
    _stream.get();
    return Line::malformed;
  }
  _stream.get();
  return Line::word;
}

void Parser::_warn(const std::string& problem) const {
  notifier::error.warning(problem + ". Skipping current sentence...");
}

// Discards lines up to and including the next empty one.
void Parser::_skip_sentence() {
  while (_stream.good()) {
    const int first = _stream.get();
    if (first == '\n') {
      ++_line;
      return;
    }
    _stream.ignore(longest_skip, '\n');
    ++_line;
  }
  ++_line;
}

Word Parser::_make_word() {
  cut_lemma(_lemma);
  mask_tag(_tag, settings::morphologic_tag_mask);
  const std::uint8_t dependency = string2dependency(_dependency);
  const std::uint8_t tag = _tags.store(_tag.c_str());
  const std::size_t known_lemmas = _lemmas.size();
  const std::uint32_t lemma = _lemmas.store(_lemma.c_str());
  if (known_lemmas == distinct_lemmas && _lemmas.size() > known_lemmas) {
    notifier::error.warning("More than " + std::to_string(distinct_lemmas) +
                            " different lemmas were read. N-grams whose lemmas differ by a multiple of that number of "
                            "indexes are counted as the same...");
  }
  return {lemma, tag, static_cast<std::uint16_t>(_order), static_cast<std::uint16_t>(_parent), dependency};
}

void cut_lemma(std::string& lemma) {
  const std::size_t suffix = lemma.find_first_of("':;^_");
  if (suffix != std::string::npos) lemma.resize(suffix);
}

void mask_tag(std::string& tag, const char* mask) {
  const std::size_t length = mask == nullptr ? 0 : std::strlen(mask);
  tag.resize(length, constants::insignificant_position_mark);
  for (std::size_t p = 0; p < length; ++p) {
    if (mask[p] != constants::significant_position_mark) tag[p] = constants::insignificant_position_mark;
  }
}

}  // namespace colx
