#include "concordance/datafile_sentences.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "corpus/datafile_format.h"
#include "corpus/input.h"

namespace colx::concordance {

namespace {

constexpr std::size_t most_open = 64;

}  // namespace

void DatafileSentences::take_origins(const std::string& path) {
  _origins.emplace(path);
  for (const ListedDatafile& datafile : _datafiles)
    _known.push_back(_origins->datafile(datafile.entry, datafile.path));
  if (std::any_of(_known.begin(), _known.end(), [](const auto& known) { return known.has_value(); })) return;
  throw input_error(fmt::format("{}: expected sentences of a datafile of the list, such as {}, found {}", path,
                                _datafiles.front().path,
                                _origins->datafiles().empty() ? "none" : "those of " + _origins->datafiles()[0].path));
}

const ExampleSentence& DatafileSentences::at(const Place& place) {
  if (place == _place) return _sentence;
  _place = Place();  // should reading fail
  _read_bytes(place);
  _read_words(place);
  _take_origin(place);
  _place = place;
  return _sentence;
}

const Descriptor& DatafileSentences::_opened(std::size_t datafile) {
  const auto found = std::find_if(_open.begin(), _open.end(), [&](const auto& open) { return open.first == datafile; });
  if (found != _open.end()) return found->second;
  if (_open.size() == most_open) _open.erase(_open.begin());
  _open.emplace_back(datafile, open_for_reading(_datafiles[datafile].path));
  return _open.back().second;
}

void DatafileSentences::_read_bytes(const Place& place) {
  const Descriptor& file = _opened(place.datafile);
  _bytes.resize(place.end - place.begin);
  const std::string& path = _datafiles[place.datafile].path;
  if (read_at(file, path, place.begin, _bytes.data(), _bytes.size()) < _bytes.size()) _fail(place);
  _sentence.line = static_cast<std::uint32_t>(_lines[place.datafile].line_of(file, path, place.begin));
}

// Takes the fields as the parser does.
void DatafileSentences::_read_words(const Place& place) {
  constexpr std::size_t buffer = 4096;
  std::istringstream stream(_bytes);
  Input input(stream, buffer);
  _sentence.entry = _datafiles[place.datafile].entry;
  _sentence.file = _datafiles[place.datafile].path;
  _sentence.words.resize(place.words);
  std::uint32_t expected = 0;
  for (ExampleWord& word : _sentence.words) {
    std::uint32_t order = 0;
    std::uint32_t parent = 0;
    input.read(order);
    input.read(word.form);
    input.read(word.whole_lemma);
    input.read(word.tag);
    input.read(parent);
    input.read(word.relation);
    if (input.fail() || order != ++expected) _fail(place);
    input.get();
    const std::string_view kept = kept_lemma(word.whole_lemma);
    word.lemma = kept.substr(0, kept.find('\0'));  // as the stores take texts up to a zero byte
    const auto kept_parent = static_cast<std::uint16_t>(parent);
    word.parent = kept_parent <= place.words ? kept_parent : 0;
  }
}

void DatafileSentences::_take_origin(const Place& place) {
  _sentence.origin.reset();
  if (!_origins.has_value() || !_known[place.datafile].has_value()) return;
  const SentenceRecord& record = _origins->find(*_known[place.datafile], _sentence.line, place.words);
  _sentence.origin = {std::string(record.id), std::string(record.text), std::string(record.source), record.source_line};
}

void DatafileSentences::_fail(const Place& place) const {
  throw input_error(
      fmt::format("{}: line {}: expected the sentence of {} words that was there before; the file has "
                  "changed",
                  _datafiles[place.datafile].path, place.line, place.words));
}

}  // namespace colx::concordance
