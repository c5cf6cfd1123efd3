#include "examples/marked_sentence.h"

#include <algorithm>

#include <fmt/format.h>

#include "examples/written_text.h"

namespace colx::examples {

namespace {

using concordance::ExampleSentence;
using concordance::Hit;

// The most bytes that are marked in place of a word whose form was not found.
constexpr std::size_t longest_marked_gap = 40;

bool _has_text(const ExampleSentence& sentence) {
  return sentence.origin.has_value() && !sentence.origin->text.empty();
}

std::vector<Piece> _joined_forms(const ExampleSentence& sentence, const Hit& hit, std::size_t n) {
  std::vector<Piece> pieces;
  const std::size_t top = top_of(sentence, hit, n);
  std::string between;
  std::size_t member = 0;
  for (std::size_t i = 0; i < sentence.words.size(); ++i) {
    if (i > 0) between += ' ';
    const std::string& form = sentence.words[i].form;
    if (member == n || hit.positions[member] != i + 1) {
      between += form;
      continue;
    }
    if (!between.empty()) pieces.push_back({between});
    between.clear();
    pieces.push_back({form, true, member == top});
    ++member;
  }
  if (!between.empty()) pieces.push_back({between});
  return pieces;
}

}  // namespace

std::size_t top_of(const ExampleSentence& sentence, const Hit& hit, std::size_t n) {
  const auto* const begin = hit.positions.begin();
  const auto* const end = begin + n;
  for (std::size_t k = 0; k < n; ++k)
    if (std::find(begin, end, sentence.words[hit.positions[k] - 1U].parent) == end) return k;
  return 0;
}

std::vector<Piece> marked_sentence(const ExampleSentence& sentence, const Hit& hit, std::size_t n) {
  if (!_has_text(sentence)) return _joined_forms(sentence, hit, n);
  const std::string& text = sentence.origin->text;
  const std::vector<TextSpan> spans = find_words(text, sentence.words);
  const std::size_t top = top_of(sentence, hit, n);
  std::vector<Piece> pieces;
  std::size_t at = 0;
  for (std::size_t k = 0; k < n; ++k) {
    const TextSpan& span = spans[hit.positions[k] - 1U];
    const bool is_shared = k > 0 && span == spans[hit.positions[k - 1] - 1U];
    if (span.begin == span.end || (!span.is_whole && span.end - span.begin > longest_marked_gap))
      return _joined_forms(sentence, hit, n);
    if (is_shared) {
      pieces.back().is_top |= k == top;
      continue;
    }
    if (span.begin > at) pieces.push_back({text.substr(at, span.begin - at)});
    pieces.push_back({text.substr(span.begin, span.end - span.begin), true, k == top});
    at = span.end;
  }
  if (at < text.size()) pieces.push_back({text.substr(at)});
  return pieces;
}

std::string plain_sentence(const ExampleSentence& sentence) {
  if (_has_text(sentence)) return sentence.origin->text;
  std::string text;
  for (const concordance::ExampleWord& word : sentence.words)
    text.append(text.empty() ? "" : " ").append(word.form);
  return text;
}

std::string name_of(const ExampleSentence& sentence) {
  if (!sentence.origin) return fmt::format("{}:{}", sentence.file, sentence.line);
  if (!sentence.origin->id.empty()) return sentence.origin->id;
  return fmt::format("{}:{}", sentence.origin->source, sentence.origin->line);
}

}  // namespace colx::examples
