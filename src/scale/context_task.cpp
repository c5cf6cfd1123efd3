#include "scale/context_task.h"

#include <array>
#include <streambuf>

#include "base/config.h"
#include "base/notifier.h"
#include "corpus/buffer.h"
#include "corpus/datafile_format.h"
#include "corpus/dependencies.h"
#include "extraction/occurrence.h"
#include "output/contexts.h"
#include "scale/datafile_sentences.h"
#include "scale/filters.h"
#include "scale/number_task.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

constexpr std::string_view context_kind = "cont";

// A file of segments as a stream buffer; text comes in large pieces.
class SegmentBuffer : public std::streambuf {
 public:
  explicit SegmentBuffer(SegmentWriter& file) : _file(file) {}

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    _file.add({text, static_cast<std::size_t>(size)});
    return size;
  }

 private:
  SegmentWriter& _file;
};

// All stores of a run.
class Collector {
 public:
  Collector(const WorkFolder& folder, const Plan& plan)
      : _folder(folder),
        _plan(plan),
        _lemmas(longest_text),
        _tags(longest_text),
        _ngrams(constants::ngram_within_block) {
    load_lemmas(folder, _lemmas);
    load_tags(folder, _tags);
    add_morphologic_rules(plan, _morphologic_filter);
    add_context_rules(plan, _context_filter);
  }

  void run(SegmentWriter& file) {
    std::vector<bool> used;
    for (const NumberedShard& shard : Numbering::from(_folder.result(number_name)).shards)
      used.push_back(shard.used);
    const std::vector<SentencesOfDatafile> datafiles = sentences_of_datafiles(_folder, _plan, used);
    for (std::size_t d = 0; d < datafiles.size(); ++d)
      if (!datafiles[d].pieces.empty()) _take_datafile(_plan.datafiles[d], datafiles[d]);
    SegmentBuffer buffer(file);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit);
    std::ostream nowhere(nullptr);
    write_contexts(out, _ngrams, {_lemmas, _tags}, Notifier(nowhere));
  }

 private:
  void _take_datafile(const Datafile& datafile, const SentencesOfDatafile& sentences) {
    DatafileSentences source(_folder, sentences, true);
    Buffer buffer(source, settings::context_window);
    buffer._init();
    if (buffer.empty()) return;
    NamedDataFileStats stats;
    NTree tree;
    SubtreeEnumerator enumerator;
    OccurrenceCounter counter(buffer, stats, {_lemmas, _tags, _ngrams, _morphologic_filter, _context_filter});
    do {
      tree.build(buffer.current());
      counter.begin_sentence();
      enumerator.extract_subtrees(tree, settings::n, [&](std::span<const Position> piece) { counter.add(piece); });
      counter.flush();
    } while (!(datafile.has_bar && source.at_end()) && buffer.next());
  }

  const WorkFolder& _folder;
  const Plan& _plan;
  StringStore<std::uint32_t> _lemmas;
  StringStore<std::uint8_t> _tags;
  NGramStore _ngrams;
  MultiRulesFilter _morphologic_filter;
  UniRulesFilter _context_filter;
};

}  // namespace

std::uint64_t context_key(const WorkFolder& folder) {
  return folder.mark(number_name);
}

void collect_contexts(const WorkFolder& folder, const Plan& plan) {
  TaskResult done(folder, context_name, context_key(folder));
  string2dependency("");  // sets the code of "Head"
  SegmentWriter file(folder.file(context_name, "text"), context_kind);
  Collector(folder, plan).run(file);
  done.add_file("text", file.finish());
  done.save();
}

void write_context_file(const WorkFolder& folder, std::ostream& out) {
  SegmentReader file(folder.file(context_name, "text"), context_kind);
  for (std::size_t i = 0; i < file.segments(); ++i)
    out << file.read(i);
}

}  // namespace colx::scale
