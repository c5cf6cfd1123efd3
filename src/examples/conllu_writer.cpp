#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "examples/clean_text.h"
#include "examples/data_writers.h"
#include "examples/marked_sentence.h"
#include "examples/written_text.h"

namespace colx::examples {

namespace {

// The sentences, each of them once and in the order of the corpus, with the hits of all N-grams in MISC.
class ConlluWriter : public ExampleWriter {
 public:
  ConlluWriter(Output& output, SentenceSource sentences) : _output(output), _sentences(std::move(sentences)) {}

  void begin(std::size_t n) override { _n = n; }

  void ngram(const Heading& heading) override {
    _patterns.push_back(fmt::format("{} {}", heading.rank, clean_text(heading.pattern)));
  }

  void example(const concordance::ExampleSentence& /*sentence*/, const concordance::Hit& hit) override {
    _hits.push_back({_patterns.size() - 1, hit});
  }

  void end() override {
    std::sort(_hits.begin(), _hits.end(), [](const KeptHit& a, const KeptHit& b) {
      return std::tie(a.hit.place, a.pattern, a.hit.positions) < std::tie(b.hit.place, b.pattern, b.hit.positions);
    });
    for (std::size_t begin = 0; begin < _hits.size();) {
      std::size_t end = begin + 1;
      while (end < _hits.size() && _hits[end].hit.place == _hits[begin].hit.place)
        ++end;
      _write(_sentences(_hits[begin].hit.place), begin, end);
      begin = end;
    }
    _output.flush();
  }

 private:
  struct KeptHit {
    std::size_t pattern;
    concordance::Hit hit;
  };

  void _write(const concordance::ExampleSentence& sentence, std::size_t begin, std::size_t end) {
    std::string id = clean_text(name_of(sentence));
    std::replace(id.begin(), id.end(), ' ', '_');
    _output << "# sent_id = " << id << "\n# text = " << clean_text(plain_sentence(sentence))
            << "\n# datafile = " << clean_text(sentence.file) << fmt::format(":{}\n", sentence.line);
    if (sentence.origin)
      _output << "# treebank = " << clean_text(sentence.origin->source) << fmt::format(":{}\n", sentence.origin->line);
    std::vector<std::string> misc(sentence.words.size());
    for (std::size_t i = begin; i < end; ++i) {
      const std::size_t number = i - begin + 1;
      _output << fmt::format("# hit_{} = {}\n", number, _patterns[_hits[i].pattern]);
      for (std::size_t k = 0; k < _n; ++k) {
        std::string& hits = misc[_hits[i].hit.positions[k] - 1U];
        hits += fmt::format("{}{}:{}", hits.empty() ? "Hit=" : ",", number, k + 1);
      }
    }
    _add_missing_spaces(sentence, misc);
    for (std::size_t i = 0; i < sentence.words.size(); ++i) {
      const concordance::ExampleWord& word = sentence.words[i];
      _output << fmt::format("{}\t{}\t{}\t_\t{}\t_\t{}\t{}\t_\t{}\n", i + 1, clean_text(word.form),
                             clean_text(word.whole_lemma), clean_text(word.tag), word.parent, clean_text(word.relation),
                             misc[i].empty() ? "_" : misc[i]);
    }
    _output << '\n';
    _output.end_row();
  }

  // Notes where a word is written without a blank behind it.
  static void _add_missing_spaces(const concordance::ExampleSentence& sentence, std::vector<std::string>& misc) {
    if (!sentence.origin || sentence.origin->text.empty()) return;
    const std::vector<TextSpan> spans = find_words(sentence.origin->text, sentence.words);
    for (std::size_t i = 0; i + 1 < spans.size(); ++i)
      if (spans[i].is_whole && spans[i + 1].is_whole && spans[i].end == spans[i + 1].begin)
        misc[i] += misc[i].empty() ? "SpaceAfter=No" : "|SpaceAfter=No";
  }

  Output& _output;
  SentenceSource _sentences;
  std::size_t _n = 0;
  std::vector<std::string> _patterns;
  std::vector<KeptHit> _hits;
};

}  // namespace

std::unique_ptr<ExampleWriter> make_conllu_writer(Output& output, SentenceSource sentences) {
  return std::make_unique<ConlluWriter>(output, std::move(sentences));
}

}  // namespace colx::examples
