#include "import/tree_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace colx {

void check_tree(const TreebankSentence& sentence, unsigned column, const char* column_name,
                std::vector<TreebankProblem>& problems) {
  const auto& words = sentence.words;
  const auto note = [&](const TreebankWord& word, Fault fault, std::string text) {
    problems.push_back({word.line, column, column_name, std::move(text), fault});
  };
  // 0: not visited; else the word from which the walk that came here set out.
  std::vector<std::uint32_t> visited_from(words.size() + 1);
  for (const TreebankWord& word : words) {
    if (word.parent > words.size()) {
      note(word, Fault::parent_outside,
           fmt::format("expected the number of a word of the sentence, 1 to {}, or 0, found {}", words.size(),
                       word.parent));
    }
  }
  for (std::uint32_t start = 1; start <= words.size(); ++start) {
    std::uint32_t at = start;
    while (at != 0 && at <= words.size() && visited_from[at] == 0) {
      visited_from[at] = start;
      at = words[at - 1].parent;
    }
    if (at == 0 || at > words.size() || visited_from[at] != start) continue;
    std::uint32_t first = at;
    for (std::uint32_t member = words[at - 1].parent; member != at; member = words[member - 1].parent)
      first = std::min(first, member);
    note(words[first - 1], Fault::cycle,
         fmt::format("expected a tree, found a cycle of parents through word {} ({} -> {})", first, first,
                     words[first - 1].parent));
  }
}

WidestNode widest_node(const TreebankSentence& sentence) {
  std::vector<std::uint32_t> children(sentence.words.size());
  for (const TreebankWord& word : sentence.words) {
    if (word.parent != 0 && word.parent <= children.size()) ++children[word.parent - 1];
  }
  const auto widest = std::max_element(children.begin(), children.end());
  if (widest == children.end() || *widest == 0) return {};
  return {*widest, sentence.words[static_cast<std::size_t>(widest - children.begin())].line};
}

}  // namespace colx
