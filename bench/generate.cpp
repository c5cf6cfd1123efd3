// Writes a synthetic datafile for benchmarks: Zipf-like text with dependency trees, as long as asked for, the same for
// the same seed. What makes counting hard or easy is modelled after treebanks: the skew of the lemmas, a vocabulary
// that never stops growing, lemmas that prefer the company of certain others, tags that follow from the lemma, fan-out.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The same numbers on every machine, unlike the distributions of the standard library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : _state(seed) {}

  std::uint64_t bits() {
    _state += 0x9E3779B97F4A7C15;
    return mixed(_state);
  }
  // From 0 to 1, 1 excluded.
  double fraction() { return static_cast<double>(bits() >> 11) * 0x1p-53; }
  // From 0 to limit, limit excluded.
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(((bits() >> 32) * limit) >> 32); }
  bool chance(double probability) { return fraction() < probability; }

  static std::uint64_t mixed(std::uint64_t x) {
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EB;
    return x ^ (x >> 31);
  }

 private:
  std::uint64_t _state;
};

struct Token {
  std::uint32_t lemma;   // rank from 0
  std::uint32_t parent;  // place in the sentence from 0; no_parent for the root
  std::uint8_t word_class;
  std::uint8_t form;
  std::uint8_t relation;
  bool joined;  // whether the relation has the suffix of coordination
};

constexpr std::uint32_t no_parent = 0xFFFFFFFF;

constexpr std::array<std::string_view, 14> relations = {"Sb",   "Obj",  "Atr",  "Adv",   "Pnom", "Atv",  "AuxP",
                                                        "AuxC", "AuxV", "AuxX", "Coord", "AuxY", "AuxZ", "AuxK"};

// Word classes: the first eight are inflected in 14 forms (two numbers, seven cases), the others have one form each,
// which makes 120 tags.
constexpr std::uint32_t inflected_classes = 8;
constexpr std::uint32_t classes = 16;
constexpr std::uint32_t cases = 7;

class Generator {
 public:
  Generator(std::uint64_t words, std::uint64_t seed) : _words(words), _random(seed) { _text.reserve(flush_at + 65536); }

  // Writes the whole text to a file that is open. Returns false when it cannot be written.
  bool run(std::FILE* file) {
    for (std::uint64_t written = 0; written < _words;) {
      const std::uint64_t left = _words - written;
      const std::uint32_t length = shortest + _random.below(longest - shortest + 1);
      _sentence.resize(left < length ? static_cast<std::size_t>(left) : length);
      _vocabulary = 14.0 * std::pow(static_cast<double>(written + 1000), 0.58);  // Heaps' law
      _make_tree();
      _print();
      written += _sentence.size();
      if (_text.size() >= flush_at || written == _words) {
        if (std::fwrite(_text.data(), 1, _text.size(), file) != _text.size()) return false;
        _text.clear();
      }
    }
    return true;
  }

 private:
  static constexpr std::size_t flush_at = std::size_t{1} << 20;
  static constexpr std::uint32_t shortest = 5;
  static constexpr std::uint32_t longest = 35;

  // A run of words that hang, with their common top word, on a parent.
  struct Span {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint32_t parent;
  };

  // Zipf-Mandelbrot over the vocabulary as it is now: the density falls with the 1.05th power of rank + 2.7. Inverted
  // in closed form.
  std::uint32_t _rank(double vocabulary) {
    constexpr double shift = 2.7;
    constexpr double exponent = 0.05;
    static const double low = std::pow(shift, -exponent);
    const double high = std::pow(shift + vocabulary, -exponent);
    return static_cast<std::uint32_t>(std::pow(low + _random.fraction() * (high - low), -1.0 / exponent) - shift);
  }

  // From 0 to limit, limit excluded, and mostly 0.
  std::uint32_t _skewed(std::uint32_t limit) {
    const double fraction = _random.fraction();
    return static_cast<std::uint32_t>(fraction * fraction * fraction * fraction * limit);
  }

  // Two words of three are of those few that its parent prefers.
  std::uint32_t _lemma(const Token* parent) {
    if (parent == nullptr || !_random.chance(0.7)) return _rank(_vocabulary);
    const std::uint64_t preference = (std::uint64_t{parent->lemma} << 8) | _rank(12.0);
    const double place = static_cast<double>(Random::mixed(preference) >> 11) * 0x1p-53;
    return static_cast<std::uint32_t>(std::pow(5000.0, place)) - 1;
  }

  void _fill(Token& token, const Token* parent) {
    token.lemma = _lemma(parent);
    const std::uint64_t nature = Random::mixed(token.lemma);
    // The most frequent words are not inflected.
    const bool function_word = token.lemma < 60 ? nature % 4 != 0 : nature % 40 == 0;
    const std::uint32_t choice = static_cast<std::uint32_t>(nature >> 32) % inflected_classes;
    token.word_class = static_cast<std::uint8_t>(choice + (function_word ? inflected_classes : 0));
    const std::uint32_t usual = static_cast<std::uint32_t>(nature >> 40) % cases;
    token.form = static_cast<std::uint8_t>(function_word ? 0 : (usual + _skewed(2 * cases)) % (2 * cases));
    token.relation = static_cast<std::uint8_t>((token.word_class * 3U + _skewed(5)) % relations.size());
    token.joined = _random.chance(0.03);
  }

  // Projective: every run of words has a top word, and what lies left and right of it falls into runs that hang on it.
  void _make_tree() {
    _open.clear();
    _open.push_back({0, static_cast<std::uint32_t>(_sentence.size()), no_parent});
    while (!_open.empty()) {
      const Span span = _open.back();
      _open.pop_back();
      const std::uint32_t top = span.begin + _random.below(span.end - span.begin);
      _sentence[top].parent = span.parent;
      _fill(_sentence[top], span.parent == no_parent ? nullptr : &_sentence[span.parent]);
      _split(span.begin, top, top);
      _split(top + 1, span.end, top);
    }
  }

  void _split(std::uint32_t begin, std::uint32_t end, std::uint32_t parent) {
    while (begin < end) {
      const double share = _random.fraction();
      const std::uint32_t length = 1 + static_cast<std::uint32_t>(share * share * (end - begin));
      _open.push_back({begin, begin + length, parent});
      begin += length;
    }
  }

  // Different for different ranks, and the shorter the more frequent.
  void _print_lemma(std::uint32_t rank) {
    static constexpr std::array<std::string_view, 6> vowels = {"a", "e", "i", "o", "u", "\xC3\xA1"};
    static constexpr std::string_view consonants = "bcdfghjklmnprstvz";
    for (std::uint64_t rest = std::uint64_t{rank} + 1; rest != 0;) {
      --rest;
      _text += consonants[rest % consonants.size()];
      rest /= consonants.size();
      _text += vowels[rest % vowels.size()];
      rest /= vowels.size();
    }
    _text += consonants[rank % consonants.size()];
  }

  void _print_tag(const Token& token) {
    _text += static_cast<char>('A' + token.word_class);
    _text += token.form < cases ? 's' : 'p';
    _text += static_cast<char>('1' + token.form % cases);
    _text += static_cast<char>('a' + _random.below(3));
    _text += static_cast<char>('x' + _random.below(3));
  }

  void _print() {
    for (std::size_t i = 0; i < _sentence.size(); ++i) {
      const Token& token = _sentence[i];
      _text += std::to_string(i + 1);
      _text += '\t';
      _print_lemma(token.lemma);
      if (token.word_class < inflected_classes) _text += static_cast<char>('a' + token.form);
      _text += '\t';
      _print_lemma(token.lemma);
      _text += '\t';
      _print_tag(token);
      _text += '\t';
      _text += token.parent == no_parent ? "0" : std::to_string(token.parent + 1);
      _text += '\t';
      _text += token.parent == no_parent ? "Pred" : relations[token.relation];
      if (token.joined) _text += "_Co";
      _text += '\n';
    }
    _text += '\n';
  }

  std::uint64_t _words;
  Random _random;
  double _vocabulary = 0;
  std::vector<Token> _sentence;
  std::vector<Span> _open;
  std::string _text;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argc > 3) {
    std::fputs(
        "Usage: generate words [seed]\n"
        "Writes a datafile of so many words to the standard output; its tags fit the mask ***--.\n",
        stderr);
    return 2;
  }
  const std::uint64_t words = std::strtoull(argv[1], nullptr, 10);
  const std::uint64_t seed = argc == 3 ? std::strtoull(argv[2], nullptr, 10) : 1;
  if (!Generator(words, seed).run(stdout) || std::fflush(stdout) != 0) {
    std::perror("generate");
    return 1;
  }
  return 0;
}
