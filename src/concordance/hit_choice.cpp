#include "concordance/hit_choice.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "rows/sorted_rows.h"
#include "util/hashing.h"

namespace colx::concordance {

namespace {

// Lengths of sentences that are easily read and yet say something.
constexpr std::uint32_t shortest_liked = 6;
constexpr std::uint32_t longest_liked = 25;

// The best hits of every N-gram, wherever they stand.
class BestHits : public HitChoice {
 public:
  BestHits(std::uint64_t each, std::vector<ChoiceTerms> ngrams, std::vector<std::uint32_t> ranks)
      : _each(each), _ngrams(std::move(ngrams)), _ranks(std::move(ranks)), _kept(_ngrams.size()) {}

  void add(const Hit& hit, std::uint64_t sentence) override {
    const std::uint32_t words = hit.place.words;
    const bool is_liked = words >= shortest_liked && words <= longest_liked;
    Candidate candidate{mix(sentence ^ hash_keys[4], _ngrams[hit.ngram].hash ^ hash_keys[5]) >> 1, hit.place,
                        hit.positions};
    if (!is_liked) candidate.key |= std::uint64_t{1} << 63;
    Kept& kept = _kept[hit.ngram];
    if (candidate.key > kept.highest_key) return;
    kept.hits.push_back(candidate);
    // Some hits more than are wanted, so that they are seldom sorted.
    if (kept.hits.size() > _each && kept.hits.size() - _each > _each / 4) _cut(kept);
  }

  void finish() override {
    for (Kept& kept : _kept)
      _cut(kept);
  }

  bool next(Hit& hit) override {
    while (_ngram < _kept.size() && _taken == _kept[_ngram].hits.size()) {
      ++_ngram;
      _taken = 0;
    }
    if (_ngram == _kept.size()) return false;
    const Candidate& candidate = _kept[_ngram].hits[_taken++];
    hit = {_ngram, candidate.place, candidate.positions};
    return true;
  }

 private:
  struct Candidate {
    std::uint64_t key = 0;  // the same for the same sentence; the lowest ones are chosen
    Place place;
    std::array<Position, constants::max_grammity> positions{};
  };

  // The best ones, and some more that came behind the last cut.
  struct Kept {
    std::vector<Candidate> hits;
    std::uint64_t highest_key = std::numeric_limits<std::uint64_t>::max();  // that can still be chosen
  };

  bool _comes_before(const Candidate& a, const Candidate& b) const {
    const auto decisive = [&](const Candidate& candidate) {
      return std::tuple(candidate.key, _ranks[candidate.place.datafile], candidate.place.begin, candidate.positions);
    };
    return decisive(a) < decisive(b);
  }

  // Leaves the best ones in their order, as many as are wanted. Of hits in the same sentence, or in sentences that say
  // the same, one stands for all; the others fill places for which there are no sentences.
  void _cut(Kept& kept) const {
    std::vector<Candidate>& hits = kept.hits;
    std::sort(hits.begin(), hits.end(), [&](const Candidate& a, const Candidate& b) { return _comes_before(a, b); });
    std::vector<Candidate> others;
    std::size_t sentences = 0;
    for (const Candidate& candidate : hits)
      if (sentences > 0 && hits[sentences - 1].key == candidate.key)
        others.push_back(candidate);
      else
        hits[sentences++] = candidate;
    hits.erase(hits.begin() + static_cast<std::ptrdiff_t>(sentences), hits.end());
    hits.insert(hits.end(), others.begin(), others.end());
    if (hits.size() > _each) hits.erase(hits.begin() + static_cast<std::ptrdiff_t>(_each), hits.end());
    if (sentences >= _each) kept.highest_key = hits.back().key;
  }

  std::uint64_t _each;
  std::vector<ChoiceTerms> _ngrams;
  std::vector<std::uint32_t> _ranks;
  std::vector<Kept> _kept;  // by N-gram
  std::size_t _ngram = 0;
  std::size_t _taken = 0;
};

// The first hits of every N-gram.
class FirstHits : public HitChoice {
 public:
  FirstHits(std::uint64_t each, const std::vector<ChoiceTerms>& ngrams) : _each(each), _kept(ngrams.size()) {
    for (const ChoiceTerms& terms : ngrams)
      _missing.push_back(std::min(each, terms.most));
    _unfilled = static_cast<std::size_t>(
        std::count_if(_missing.begin(), _missing.end(), [](std::uint64_t missing) { return missing > 0; }));
  }

  void add(const Hit& hit, std::uint64_t) override {
    if (_kept[hit.ngram].size() < _each) _kept[hit.ngram].push_back({hit.place, hit.positions});
    std::uint64_t& missing = _missing[hit.ngram];
    if (missing > 0 && --missing == 0) --_unfilled;
  }

  bool is_full() const override { return _unfilled == 0; }

  void finish() override {}

  bool next(Hit& hit) override {
    while (_ngram < _kept.size() && _taken == _kept[_ngram].size()) {
      ++_ngram;
      _taken = 0;
    }
    if (_ngram == _kept.size()) return false;
    const Occurrence& occurrence = _kept[_ngram][_taken++];
    hit = {_ngram, occurrence.place, occurrence.positions};
    return true;
  }

 private:
  struct Occurrence {
    Place place;
    std::array<Position, constants::max_grammity> positions;
  };

  std::uint64_t _each;
  std::vector<std::vector<Occurrence>> _kept;  // by N-gram
  std::vector<std::uint64_t> _missing;         // by N-gram: how many more are wanted and can be had
  std::size_t _unfilled = 0;                   // N-grams that miss some
  std::size_t _ngram = 0;
  std::size_t _taken = 0;
};

// Appends a number so that keys are in its order.
void _append_number(std::string& key, std::uint64_t number) {
  for (int shift = 56; shift >= 0; shift -= 8)
    key += static_cast<char>(number >> shift & 0xFF);
}

// All hits, in bounded memory.
class AllHits : public HitChoice {
 public:
  explicit AllHits(std::size_t memory) : _rows(memory) {}

  // Hits in one sentence keep their order, as equal rows do.
  void add(const Hit& hit, std::uint64_t) override {
    _key.clear();
    _append_number(_key, hit.ngram);
    _append_number(_key, hit.place.datafile);
    _append_number(_key, hit.place.begin);
    std::array<char, sizeof(Hit)> bytes;
    std::memcpy(bytes.data(), &hit, sizeof hit);
    _rows.add({_key, {bytes.data(), bytes.size()}, 0});
  }

  void finish() override { _rows.sort(); }

  bool next(Hit& hit) override {
    table::KeyedRow row;
    if (!_rows.next(row)) return false;
    std::memcpy(&hit, row.text.data(), sizeof hit);
    return true;
  }

 private:
  table::SortedRows _rows;
  std::string _key;
};

}  // namespace

std::unique_ptr<HitChoice> make_choice(const ExampleSettings& settings, std::vector<ChoiceTerms> ngrams,
                                       std::vector<std::uint32_t> ranks, std::size_t memory) {
  if (!settings.examples.has_value()) return std::make_unique<AllHits>(memory);
  if (settings.first) return std::make_unique<FirstHits>(*settings.examples, ngrams);
  return std::make_unique<BestHits>(*settings.examples, std::move(ngrams), std::move(ranks));
}

}  // namespace colx::concordance
