#include "corpus/parser.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "base/limits.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"

namespace colx {

namespace {

// The most characters of a line that are discarded at once while a bad sentence is skipped; a longer line counts as
// several.
constexpr std::size_t longest_skip = 100000;

// What a character is to a lemma that is read.
enum class CharacterClass : std::uint8_t { plain, suffix_mark, ends_text };

constexpr std::array<CharacterClass, 256> character_classes = [] {
  std::array<CharacterClass, 256> classes{};
  for (std::size_t c = 0; c <= ' '; ++c)
    classes[c] = CharacterClass::ends_text;
  for (const char c : suffix_marks)
    classes[static_cast<unsigned char>(c)] = CharacterClass::suffix_mark;
  return classes;
}();

}  // namespace

Parser::Parser(std::istream& stream, StringStore<std::uint32_t>& lemmas, StringStore<std::uint8_t>& tags,
               WarningSink warn, WordForms* forms)
    : _input(stream), _lemmas(lemmas), _tags(tags), _warning_sink(std::move(warn)), _forms(forms) {}

bool Parser::next(std::uint32_t limit, ContextWindow::Mode mode, WordQueue& words) {
  _sentences.clear();
  std::uint32_t words_read = 0;
  std::uint32_t length = 0;                // of the sentence in hand
  std::int64_t begin = _input.consumed();  // of the sentence in hand
  Fields fields;

  const auto drop_sentence = [&] {
    words.drop_back(length);
    if (_forms != nullptr) _forms->drop_back(length);
    length = 0;
    _skip_sentence();
    begin = _input.consumed();
  };
  // Ends the sentence behind its last line. Each of its words was one line.
  const auto end_sentence = [&](std::uint32_t last_line, std::int64_t end) {
    _sentences.push_back(
        {length, last_line - length + 1, static_cast<std::uint64_t>(begin), static_cast<std::uint64_t>(end)});
    words_read += length;
    length = 0;
  };

  while (!_input.fail() && (length > 0 || begin < _stop)) {
    const int first = _input.peek();
    if (first == Input::end_of_input) break;
    ++_line;

    if (first == '\n') {
      if (length > 0) end_sentence(_line - 1, _input.consumed());
      _input.consume(1);
      begin = _input.consumed();
      if (mode == ContextWindow::words && words_read >= limit) break;
      if (mode == ContextWindow::sentences && _sentences.size() >= limit) break;
      continue;
    }

    const Line line = _read_word_line(fields);
    if (line == Line::incomplete) {
      if (length > 0) end_sentence(_line - 1, _incomplete_begin);
      break;
    }
    if (line == Line::malformed) {
      _warn("Incorrect input format detected at line " + std::to_string(_line));
      drop_sentence();
    } else if (length == constants::max_sentence_length) {
      _warn("Word order overflow detected at line " + std::to_string(_line) + ". Got word ordered as " +
            std::to_string(length + 1) + ", while maximum allowed value for word order is " +
            std::to_string(constants::max_sentence_length));
      drop_sentence();
    } else if (fields.order != length + 1) {
      _warn("Word order mismatch detected at line " + std::to_string(_line) + ". Got word ordered as " +
            std::to_string(fields.order) + ", while expecting " + std::to_string(length + 1));
      drop_sentence();
    } else {
      words.push_back(_make_word(fields));
      if (_forms != nullptr) _forms->push_back(fields.form);
      ++length;
    }
  }

  if (length > 0) end_sentence(_line, _input.consumed());
  return !_sentences.empty();
}

// Reads the six fields and the one character after them. Input that ends inside them makes no word: its fields are not
// all its own.
Parser::Line Parser::_read_word_line(Fields& fields) {
  if (const std::size_t length = _split_ordinary_line(_input.buffered(), fields); length != 0) {
    _input.consume(length);
    return Line::word;
  }
  _incomplete_begin = _input.consumed();
  _input.read(fields.order);
  _input.read(_form);
  _input.read(_lemma);
  _input.read(_tag);
  _input.read(fields.parent);
  _input.read(_dependency);
  if (_input.fail()) {
    if (_input.eof()) return Line::incomplete;
    _input.clear();
    _input.get();
    return Line::malformed;
  }
  _input.get();
  _lemma.resize(kept_lemma(_lemma).size());
  fields.form = _form;
  fields.lemma = _lemma.c_str();  // the stores take texts up to a zero byte
  fields.tag = _tag;
  fields.dependency = _dependency;
  return Line::word;
}

// Takes a line apart that begins with a digit and whose fields are followed by exactly one blank or TAB each, the last
// by a newline. Returns its length, or 0 for every other line.
std::size_t Parser::_split_ordinary_line(std::string_view text, Fields& fields) {
  const char* p = text.data();
  const char* const end = p + text.size();
  const auto number = [&](std::uint32_t& value) {
    // Nine digits never overflow.
    const char* const limit = end - p > 9 ? p + 9 : end;
    const char* const first = p;
    value = 0;
    for (; p != limit && *p >= '0' && *p <= '9'; ++p)
      value = value * 10 + static_cast<std::uint32_t>(*p - '0');
    return p != first && p != end && (*p == ' ' || *p == '\t');
  };
  const auto ends_text = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  const auto word = [&](std::string_view& value) {
    const char* const first = p;
    while (p != end && !ends_text(*p))
      ++p;
    value = {first, static_cast<std::size_t>(p - first)};
    return p != first && p != end && (*p == ' ' || *p == '\t');
  };

  if (!number(fields.order)) return 0;
  ++p;
  if (!word(fields.form)) return 0;
  ++p;
  const char* const lemma = p;
  while (p != end && character_classes[static_cast<unsigned char>(*p)] == CharacterClass::plain)
    ++p;
  fields.lemma = {lemma, static_cast<std::size_t>(p - lemma)};
  std::string_view suffix;
  if (!word(suffix) && (p == end || p == lemma || (*p != ' ' && *p != '\t'))) return 0;
  ++p;
  if (!word(fields.tag)) return 0;
  ++p;
  if (!number(fields.parent)) return 0;
  ++p;
  const char* const dependency = p;
  while (p != end && !ends_text(*p))
    ++p;
  if (p == end || p == dependency || *p != '\n') return 0;
  fields.dependency = {dependency, static_cast<std::size_t>(p - dependency)};
  return static_cast<std::size_t>(p - text.data()) + 1;
}

void Parser::_warn(const std::string& problem) const {
  _warning_sink(problem + ". Skipping current sentence...");
}

// Discards lines up to and including the next empty one.
void Parser::_skip_sentence() {
  while (_input.good()) {
    const int first = _input.get();
    if (first == '\n') {
      ++_line;
      return;
    }
    _input.ignore(longest_skip, '\n');
    ++_line;
  }
  ++_line;
}

Word Parser::_make_word(const Fields& fields) {
  const std::uint8_t dependency = _dependency_codes.get(
      fields.dependency, [](std::string_view name) { return string2dependency(std::string(name)); });
  const std::uint8_t tag = _tag_indexes.get(fields.tag, [&](std::string_view text) { return _intern_tag(text); });
  const std::uint32_t lemma = _intern_lemma(fields.lemma);
  return {lemma, tag, static_cast<std::uint16_t>(fields.order), static_cast<std::uint16_t>(fields.parent), dependency};
}

std::uint8_t Parser::_intern_tag(std::string_view tag) {
  const char* const mask = settings::morphologic_tag_mask;
  return _tags.store(masked_tag(tag, mask == nullptr ? "" : mask).c_str());
}

std::uint32_t Parser::_intern_lemma(std::string_view text) {
  const std::size_t known_lemmas = _lemmas.size();
  const std::uint32_t lemma = _lemmas.store(text);
  if (_lemmas.size() > known_lemmas && known_lemmas == limits::lemmas) {
    _warning_sink("More than " + std::to_string(limits::lemmas) +
                  " different lemmas were read. N-grams whose lemmas differ by a multiple of that number of "
                  "indexes are counted as the same...");
  }
  return lemma;
}

}  // namespace colx
