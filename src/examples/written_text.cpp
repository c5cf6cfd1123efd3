#include "examples/written_text.h"

#include <wctype.h>

#include <algorithm>
#include <utility>

#include "companion/utf8.h"

namespace colx::examples {

namespace {

constexpr std::size_t longest_gap = 200;  // bytes in which the words behind a difference are sought
constexpr std::size_t most_lost_words = 8;

bool _is_space(char32_t code) {
  return code == ' ' || (code >= '\t' && code <= '\r') || code == 0x85 || code == 0xA0 || code == 0x1680 ||
         (code >= 0x2000 && code <= 0x200A) || code == 0x2028 || code == 0x2029 || code == 0x202F || code == 0x205F ||
         code == 0x3000;
}

// Whether a word goes on behind such a character without a sign of it. In Chinese and Japanese it may end anywhere.
bool _is_letter(char32_t code) {
  const bool is_ideographic = (code >= 0x2E80 && code < 0xA4D0) || (code >= 0xF900 && code < 0xFB00) || code >= 0x20000;
  return !is_ideographic && ::iswalnum(static_cast<wint_t>(code)) != 0;
}

class WordFinder {
 public:
  WordFinder(std::string_view text, const std::vector<concordance::ExampleWord>& words) : _text(text), _words(words) {}

  std::vector<TextSpan> run() {
    std::vector<TextSpan> spans(_words.size());
    std::size_t at = 0;
    for (std::size_t i = 0; i < _words.size();) {
      at = _behind_spaces(at);
      if (const std::size_t size = _size_of_word(i, at); size > 0) {
        spans[i++] = {at, at + size, true};
        at += size;
        continue;
      }
      const auto [word, place] = _resume(i, at);
      std::size_t end = place;
      while (end > at && _text[end - 1] == ' ')
        --end;
      for (; i < word; ++i)
        spans[i] = {at, end, false};
      at = place;
    }
    return spans;
  }

 private:
  Character _character(std::size_t at) const { return first_character(_text.substr(at)); }

  std::size_t _behind_spaces(std::size_t at) const {
    while (at < _text.size()) {
      const Character character = _character(at);
      if (!_is_space(character.code)) break;
      at += character.size;
    }
    return at;
  }

  // How much of the text from there on is that form; 0: it is another one. A no-break space, which stands in a datafile
  // for every other space, is any of them.
  std::size_t _match(std::string_view form, std::size_t at) const {
    const std::size_t begin = at;
    while (!form.empty()) {
      if (at == _text.size()) return 0;
      const Character wanted = first_character(form);
      const Character found = _character(at);
      const bool are_spaces = wanted.code == 0xA0 && _is_space(found.code);
      if (!are_spaces && form.substr(0, wanted.size) != _text.substr(at, wanted.size)) return 0;
      form.remove_prefix(wanted.size);
      at += are_spaces ? found.size : wanted.size;
    }
    return at - begin;
  }

  // The same for word i, which must not be a piece of a longer one unless the next word goes on there.
  std::size_t _size_of_word(std::size_t i, std::size_t at) const {
    const std::size_t size = _match(_words[i].form, at);
    const std::size_t end = at + size;
    if (size == 0 || end == _text.size() || !_is_letter(_character(end).code)) return size;
    const bool goes_on = i + 1 < _words.size() && _match(_words[i + 1].form, end) > 0;
    return goes_on || !_is_letter(_last_character(end)) ? size : 0;
  }

  char32_t _last_character(std::size_t end) const {
    std::size_t begin = end - 1;
    while (begin > 0 && (static_cast<unsigned char>(_text[begin]) & 0xC0U) == 0x80)
      --begin;
    return _character(begin).code;
  }

  // The next word, and its place, at which forms and text agree again; behind the end of both where they do not.
  std::pair<std::size_t, std::size_t> _resume(std::size_t i, std::size_t at) const {
    const std::size_t last_word = std::min(_words.size(), i + most_lost_words);
    const std::size_t last_place = std::min(_text.size(), at + longest_gap);
    bool is_inside = false;
    for (std::size_t place = at; place < last_place;) {
      const Character character = _character(place);
      const bool is_letter = _is_letter(character.code);
      if (!is_inside || !is_letter)
        for (std::size_t word = i; word < last_word; ++word)
          if (_size_of_word(word, place) > 0) return {word, place};
      is_inside = is_letter;
      place += character.size;
    }
    return {_words.size(), _text.size()};
  }

  std::string_view _text;
  const std::vector<concordance::ExampleWord>& _words;
};

}  // namespace

std::vector<TextSpan> find_words(std::string_view text, const std::vector<concordance::ExampleWord>& words) {
  return WordFinder(text, words).run();
}

}  // namespace colx::examples
