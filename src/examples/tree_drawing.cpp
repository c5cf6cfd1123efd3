#include "examples/tree_drawing.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "companion/utf8.h"
#include "examples/direction_marks.h"

namespace colx::examples {

namespace {

using concordance::ExampleSentence;

constexpr std::size_t most_words = 500;
constexpr std::size_t widest_step = 3;  // columns of a level
constexpr std::string_view before_tree = "    ";

// The words of a tree, by position from 1, in the order in which they are drawn.
class DrawnTree {
 public:
  explicit DrawnTree(const ExampleSentence& sentence)
      : _parents(_without_cycles(sentence)),
        _depths(_parents.size()),
        _lines(_parents.size()),
        _first_lines(_parents.size()),
        _last_lines(_parents.size()) {
    _arrange();
  }

  // The words, one a line.
  const std::vector<std::size_t>& order() const { return _order; }

  std::size_t depth(std::size_t word) const { return _depths[word]; }

  // What stands before a word, with so many columns a level.
  std::string branches(std::size_t word, std::size_t step) const {
    const auto fill = [&](std::string_view corner, std::string_view line) {
      std::string text(corner);
      for (std::size_t i = 2; i < step; ++i)
        text += line;
      return step > 1 ? text + " " : text;
    };
    std::string text;
    if (const std::size_t parent = _parents[word]; parent != 0) {
      const bool is_first = _lines[word] == _first_lines[parent];
      const bool is_last = _lines[word] == _last_lines[parent];
      text = fill(is_first ? "┌" : is_last ? "└" : "├", "─");
      for (std::size_t above = parent; _parents[above] != 0; above = _parents[above]) {
        const std::size_t head = _parents[above];
        const bool passes = _first_lines[head] < _lines[word] && _lines[word] < _last_lines[head];
        text.insert(0, fill(passes ? "│" : " ", " "));
      }
    }
    return text;
  }

 private:
  // Parents, of which those that would close a ring are left out.
  static std::vector<std::size_t> _without_cycles(const ExampleSentence& sentence) {
    std::vector<std::size_t> parents(sentence.words.size() + 1);
    std::vector<std::size_t> seen_from(parents.size());
    for (std::size_t word = 1; word < parents.size(); ++word)
      parents[word] = sentence.words[word - 1].parent;
    for (std::size_t word = 1; word < parents.size(); ++word) {
      std::size_t above = word;
      for (; above != 0 && seen_from[above] == 0; above = parents[above])
        seen_from[above] = word;
      if (above != 0 && seen_from[above] == word) parents[above] = 0;
    }
    return parents;
  }

  void _arrange() {
    std::vector<std::vector<std::size_t>> children(_parents.size());
    for (std::size_t word = 1; word < _parents.size(); ++word)
      children[_parents[word]].push_back(word);
    struct Step {
      std::size_t word;
      bool is_subtree;
    };
    std::vector<Step> steps;
    const auto push = [&](const std::vector<std::size_t>& words, std::size_t head) {
      std::for_each(words.rbegin(), words.rend(), [&](std::size_t word) {
        _depths[word] = head == 0 ? 0 : _depths[head] + 1;
        steps.push_back({word, true});
      });
    };
    push(children[0], 0);
    while (!steps.empty()) {
      const Step step = steps.back();
      steps.pop_back();
      const std::size_t word = step.word;
      if (!step.is_subtree) {
        _lines[word] = _order.size();
        _order.push_back(word);
        continue;
      }
      const auto middle = std::lower_bound(children[word].begin(), children[word].end(), word);
      push({middle, children[word].end()}, word);
      steps.push_back({word, false});
      push({children[word].begin(), middle}, word);
    }
    for (std::size_t word = 1; word < _parents.size(); ++word) {
      _first_lines[word] = _last_lines[word] = _lines[word];
      for (const std::size_t child : children[word]) {
        _first_lines[word] = std::min(_first_lines[word], _lines[child]);
        _last_lines[word] = std::max(_last_lines[word], _lines[child]);
      }
    }
  }

  std::vector<std::size_t> _parents;  // 0: none
  std::vector<std::size_t> _depths;
  std::vector<std::size_t> _order;
  std::vector<std::size_t> _lines;
  std::vector<std::size_t> _first_lines;  // of a word or, on its left, its first child
  std::vector<std::size_t> _last_lines;   // of a word or, on its right, its last child
};

}  // namespace

void draw_tree(Output& output, const ExampleSentence& sentence, const concordance::Hit& hit, std::size_t n, Marks marks,
               std::size_t width) {
  const std::size_t count = sentence.words.size();
  if (count > most_words) {
    output << before_tree << fmt::format("(the tree of {} words is not drawn)\n", count);
    return;
  }
  const DrawnTree tree(sentence);
  const std::size_t top = top_of(sentence, hit, n);
  std::vector<MarkedText> forms(count + 1, MarkedText(marks));
  std::vector<std::string> relations(count + 1);
  std::size_t widest_relation = 0;
  for (std::size_t word = 1; word <= count; ++word) {
    const auto* const end = hit.positions.begin() + n;
    const auto* const member = std::find(hit.positions.begin(), end, word);
    forms[word].append(Piece{sentence.words[word - 1].form, member != end, member == hit.positions.begin() + top});
    relations[word] = printable(sentence.words[word - 1].relation);
    widest_relation = std::max(widest_relation, display_width(relations[word]));
  }
  const std::size_t digits = std::to_string(count).size();
  const std::size_t besides = before_tree.size() + digits + 2 + 2 + widest_relation;
  const auto widest_word = [&](std::size_t step) {
    std::size_t widest = 0;
    for (std::size_t word = 1; word <= count; ++word)
      widest = std::max(widest, tree.depth(word) * step + forms[word].width());
    return widest;
  };
  std::size_t step = widest_step;
  while (step > 1 && besides + widest_word(step) > width)
    --step;
  const std::size_t relation_column = std::min(widest_word(step), width > besides ? width - besides : 0);
  for (const std::size_t word : tree.order()) {
    const bool is_right_to_left = forms[word].is_right_to_left();
    output << (is_right_to_left ? left_to_right_mark : "") << before_tree << fmt::format("{:>{}}  ", word, digits)
           << tree.branches(word, step) << (is_right_to_left ? begin_right_to_left : "");
    forms[word].write(output);
    output << (is_right_to_left ? end_right_to_left : "");
    const std::size_t used = tree.depth(word) * step + forms[word].width();
    output << std::string(used < relation_column ? relation_column - used : 0, ' ') << "  " << relations[word] << '\n';
  }
}

}  // namespace colx::examples
