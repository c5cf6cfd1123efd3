#include "concordance/query.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "companion/utf8.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"
#include "rows/block.h"
#include "rows/condition.h"

namespace colx::concordance {

namespace {

constexpr std::string_view any_lemma = "*";

bool _is_relation(std::string_view name) {
  const std::string text(name);
  return dependency2cstring(string2dependency(text)) == name;
}

// An arrow taken apart.
struct Arrow {
  bool from_right = false;  // the parent is on the right
  std::string relation;
  std::optional<std::uint32_t> parent;  // nothing: the next word on that side
};

std::optional<Arrow> _arrow(std::string_view word) {
  Arrow arrow;
  arrow.from_right = word.starts_with('<');
  if (!arrow.from_right && !word.ends_with('>')) return std::nullopt;
  word = arrow.from_right ? word.substr(1) : word.substr(0, word.size() - 1);
  const std::size_t colon = word.find(':');
  if (colon != std::string_view::npos) {
    const std::string_view digits = word.substr(colon + 1);
    std::uint32_t parent = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), parent);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    arrow.parent = parent;
  }
  arrow.relation = word.substr(0, colon);
  return arrow;
}

// Splits at every blank, so that there may be empty words.
std::vector<std::string_view> _split(std::string_view text) {
  std::vector<std::string_view> words;
  for (;;) {
    const std::size_t blank = text.find(' ');
    words.push_back(text.substr(0, blank));
    if (blank == std::string_view::npos) return words;
    text.remove_prefix(blank + 1);
  }
}

bool _is_tree(const QueryTree& tree) {
  for (const QueryMember& member : tree) {
    std::uint32_t parent = member.parent;
    for (std::size_t steps = 0; parent != 0; ++steps) {
      if (steps == tree.size()) return false;
      parent = tree[parent - 1].parent;
    }
  }
  return std::count_if(tree.begin(), tree.end(), [](const QueryMember& member) { return member.parent == 0; }) == 1;
}

// Finds all readings of a pattern of 2n - 1 words and blanks.
class Readings {
 public:
  explicit Readings(const std::vector<std::string_view>& words) : _words(words), _n((words.size() + 1) / 2) {}

  Query take() {
    if (_words.size() % 2 == 1 && _n >= table::smallest_n && _n <= table::largest_n) _take_member(0);
    return std::move(_query);
  }

 private:
  void _take_member(std::size_t at) {
    const std::size_t left = _words.size() - at;
    if (left == 0) {
      if (_tree.size() == _n && _is_tree(_tree)) _accept(_tree);
      return;
    }
    _take_word(at, std::nullopt, at + 1);
    if (left < 2) return;
    if (const auto arrow = _arrow(_words[at]); arrow.has_value() && !arrow->from_right)
      _take_word(at + 1, arrow, at + 2);
    if (const auto arrow = _arrow(_words[at + 1]); arrow.has_value() && arrow->from_right)
      _take_word(at, arrow, at + 2);
  }

  // Takes the word at a place as the next member, and goes on behind it.
  void _take_word(std::size_t at, const std::optional<Arrow>& arrow, std::size_t next) {
    QueryMember member;
    const auto position = static_cast<std::uint32_t>(_tree.size() + 1);
    if (arrow.has_value()) {
      if (!_is_relation(arrow->relation)) return;
      member.relation = arrow->relation;
      member.parent = arrow->parent.value_or(arrow->from_right ? position + 1 : position - 1);
      const bool fits = arrow->from_right ? member.parent > position : member.parent < position;
      if (member.parent == 0 || member.parent > _n || !fits) return;
    }
    const std::string_view word = _words[at];
    const std::size_t slash = word.rfind('/');
    const bool has_relation = slash != std::string_view::npos && _is_relation(word.substr(slash + 1));
    // What is no lemma by its relation is not taken for a lemma that is protected.
    if (!has_relation || kept_lemma(word) == word) _go_on(member, word, next);
    if (!has_relation) return;
    const std::string relation(word.substr(slash + 1));
    if (member.relation.value_or(relation) != relation) return;
    member.relation = relation;
    _go_on(member, word.substr(0, slash), next);
  }

  void _go_on(QueryMember member, std::string_view lemma, std::size_t next) {
    if (lemma != any_lemma) member.lemma = lemma;
    _tree.push_back(std::move(member));
    _take_member(next);
    _tree.pop_back();
  }

  void _accept(QueryTree tree) {
    for (QueryMember& member : tree) {
      if (!member.lemma.has_value()) continue;
      std::string note;
      member.lemma = table::as_lemma(*member.lemma, note);
      if (!note.empty() && std::find(_query.notes.begin(), _query.notes.end(), note) == _query.notes.end())
        _query.notes.push_back(std::move(note));
    }
    _query.readings.push_back(std::move(tree));
  }

  const std::vector<std::string_view>& _words;
  std::size_t _n;
  QueryTree _tree;
  Query _query;
};

[[noreturn]] void _refuse(std::string_view text, const std::vector<std::string_view>& words) {
  for (const std::string_view word : words) {
    const auto arrow = _arrow(word);
    if (arrow.has_value() && !arrow->relation.empty() && !_is_relation(arrow->relation))
      throw usage_error(
          fmt::format("the pattern \"{}\": there is no relation \"{}\"; ngrex knows those that "
                      "docs/formats.md lists, such as Sb, Obj and Atr, and Undef for all others",
                      printable(text), printable(arrow->relation)));
  }
  throw usage_error(
      fmt::format("the pattern \"{}\": expected a tree of {} to {} words, each but its top word with an arrow to its "
                  "parent, such as "
                  "\"heavy <Atr rain\" or \"take Obj> *\"",
                  printable(text), table::smallest_n, table::largest_n));
}

}  // namespace

Query parse_query(std::string_view text) {
  std::vector<std::string_view> words = _split(text);
  Query query = Readings(words).take();
  if (query.readings.empty()) {
    // Superfluous blanks, unless there are empty lemmas.
    std::erase(words, std::string_view());
    query = Readings(words).take();
  }
  if (query.readings.empty()) _refuse(text, words);
  query.text = text;
  return query;
}

}  // namespace colx::concordance
