#include "extraction/extractor.h"

#include <cstdint>
#include <ios>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "base/progress_bar.h"
#include "corpus/buffer.h"
#include "corpus/parser.h"
#include "extraction/ntree.h"
#include "extraction/occurrence.h"

namespace colx {

namespace {

// How much of a datafile has been read, as a bar over its bytes.
class ReadingProgress {
 public:
  // Takes the length of the stream and leaves the stream at its beginning, ready to be read. A stream that does not
  // come back from its end has failed then. The channels must outlive this object.
  ReadingProgress(std::istream& stream, const Channels& channels) : _channels(channels) {
    stream.seekg(0, std::ios::end);
    const std::streamoff end = stream.tellg();
    if (stream.fail())
      stream.clear();
    else
      stream.seekg(0, std::ios::beg);
    if (end < 0) {
      const ProgressBar scale_alone(channels.progress.stream(), 1);
      channels.error.warning("Progress bar initialization failed! Going on without progress bar display...");
      return;
    }
    _length = static_cast<unsigned long>(end);
    _bar.emplace(channels.progress.stream(), _length);
  }

  unsigned long length() const { return _length; }

  // Draws what has been read since the last call. Returns false when the input is at its end and nothing more is to
  // come.
  bool update(const Parser& parser) {
    if (!_bar) return true;
    if (parser.at_end()) {
      _bar->complete();
      return false;
    }
    const std::int64_t position = parser.position();
    if (position < 0) {
      _channels.progress.info("");
      _channels.error.warning("Progress bar update failed! Stopping progress bar display...");
      _bar.reset();
      return true;
    }
    _bar->advance(static_cast<unsigned long>(position - _position));
    _position = position;
    return true;
  }

 private:
  const Channels& _channels;
  std::optional<ProgressBar> _bar;
  unsigned long _length = 0;
  std::int64_t _position = 0;
};

}  // namespace

std::uint32_t extract(std::istream& stream, NamedDataFileStats& stats, const Stores& stores, const Channels& channels) {
  ReadingProgress progress(stream, channels);
  // On the heap because of its caches: the stack would keep their memory for the rest of the run.
  const auto parser = std::make_unique<Parser>(stream, stores.lemmas, stores.tags,
                                               [&](std::string_view warning) { channels.error.warning(warning); });
  Buffer buffer(*parser, settings::context_window);
  buffer._init();
  if (buffer.empty()) return 0;

  NTree tree;
  SubtreeEnumerator enumerator;
  OccurrenceCounter counter(buffer, stats, stores);
  do {
    tree.build(buffer.current());
    counter.begin_sentence();
    enumerator.extract_subtrees(tree, settings::n, [&](std::span<const Position> piece) { counter.add(piece); });
  } while (progress.update(*parser) && buffer.next());
  counter.flush();

  stats.words_count += buffer.words_count();
  stats.sentences_count += buffer.sentences_count();
  return static_cast<std::uint32_t>(progress.length());
}

}  // namespace colx
