#include "extraction/extractor.h"

#include <ios>
#include <optional>

#include "corpus/buffer.h"
#include "corpus/parser.h"
#include "corpus/persistent.h"
#include "extraction/ntree.h"
#include "extraction/occurrence.h"
#include "run/notifier.h"
#include "run/progress_bar.h"

namespace colx {

namespace {

// How much of a datafile has been read, as a bar over its bytes.
class ReadingProgress {
 public:
  // Takes the length of the stream and leaves the stream at its beginning, ready to be read.
  explicit ReadingProgress(std::istream& stream) : _stream(stream) {
    stream.seekg(0, std::ios::end);
    const std::streamoff end = stream.tellg();
    stream.seekg(0, std::ios::beg);
    if (end < 0) {
      stream.clear();
      const ProgressBar scale_alone(1);
      notifier::error.warning("Progress bar initialization failed! Going on without progress bar display...");
      return;
    }
    _length = static_cast<unsigned long>(end);
    _bar.emplace(_length);
  }

  unsigned long length() const { return _length; }

  // Draws what has been read since the last call. Returns false when the stream is at its end and nothing more is to
  // come.
  bool update() {
    if (!_bar) return true;
    if (_stream.eof()) {
      _bar->complete();
      return false;
    }
    const std::streamoff position = _stream.tellg();
    if (position < 0) {
      notifier::progress.info("");
      notifier::error.warning("Progress bar update failed! Stopping progress bar display...");
      _bar.reset();
      return true;
    }
    _bar->advance(static_cast<unsigned long>(position - _position));
    _position = position;
    return true;
  }

 private:
  std::istream& _stream;
  std::optional<ProgressBar> _bar;
  unsigned long _length = 0;
  std::streamoff _position = 0;
};

}  // namespace

std::uint32_t extract(std::istream& stream, NamedDataFileStats& stats) {
  ReadingProgress progress(stream);
  Parser parser(stream, persistent::lemmas, persistent::tags);
  Buffer buffer(parser, settings::context_window);
  buffer._init();
  if (buffer.empty()) return 0;

  NTree tree = {{0, 0, {}}};
  Pieces pieces;
  MemberList members;
  do {
    const WordRange sentence = buffer.current();
    _build_tree(sentence, tree);
    extract_subtrees(tree, settings::n, pieces);
    for (const auto& [top, positions] : pieces) {
      const WordIterator root = _extract_ngram(sentence.first, positions, members);
      _store_raw_ngram(members, buffer, stats, root);
    }
    tree.erase(tree.begin() + 1, tree.end());
    tree.front().children.clear();
    pieces.clear();
  } while (progress.update() && buffer.next());

  stats.words_count += buffer.words_count();
  stats.sentences_count += buffer.sentences_count();
  return static_cast<std::uint32_t>(progress.length());
}

}  // namespace colx
