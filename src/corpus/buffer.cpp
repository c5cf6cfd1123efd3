#include "corpus/buffer.h"

namespace colx {

Buffer::Buffer(SentenceSource& source, const ContextWindow& window)
    : _source(source), _mode(window.mode), _radius(window.size) {}

void Buffer::_push(std::uint32_t count, ContextWindow::Mode mode) {
  std::uint64_t start = _dropped_words + _words.size();
  if (!_source.next(count, mode, _words)) return;
  for (const SentenceExtent& sentence : _source.sentences()) {
    _sentences.push_back({start, sentence.length});
    start += sentence.length;
    ++_sentences_count;
    _words_count += sentence.length;
  }
}

void Buffer::_init() {
  _push(1, ContextWindow::sentences);
  if (_radius != 0) _push(_radius, _mode);
  _current = 0;
}

WordRange Buffer::current() const {
  const Sentence& sentence = _sentences[_current];
  const WordIterator first = _words.begin() + _start(sentence);
  return {first, first + sentence.length};
}

bool Buffer::next() {
  if (_words.empty()) return false;
  if (!_source.at_end()) {
    if (_mode == ContextWindow::sentences) {
      _push(1, ContextWindow::sentences);
    } else if (_current + 1 < _sentences.size()) {
      const Sentence& following = _sentences[_current + 1];
      const std::uint64_t beyond = _words.size() - _start(following) - following.length;
      if (beyond < _radius) _push(_radius - static_cast<std::uint32_t>(beyond), ContextWindow::words);
    }
  }
  if (_current + 1 >= _sentences.size()) return false;
  ++_current;

  if (_mode == ContextWindow::sentences) {
    _pop();
    return true;
  }
  // A sentence leaves on the left only when all of it lies beyond the radius.
  const std::uint64_t start = _start(_sentences[_current]);
  if (start <= _radius) return true;
  std::uint64_t surplus = start - _radius;
  if (surplus <= _sentences.front().length) return true;
  do {
    surplus -= _pop();
  } while (_sentences.front().length < surplus);
  return true;
}

std::uint32_t Buffer::_pop() {
  const std::uint32_t length = _sentences.front().length;
  _words.drop_front(length);
  _sentences.pop_front();
  --_current;
  _dropped_words += length;
  return length;
}

WordRange Buffer::context_range(WordIterator first, WordIterator last) const {
  const std::ptrdiff_t radius = _radius;
  const WordIterator begin = first - _words.begin() >= radius ? first - radius : _words.begin();
  const WordIterator end = _words.end() - last - 1 >= radius ? last + radius + 1 : _words.end();
  return {begin, end};
}

}  // namespace colx
