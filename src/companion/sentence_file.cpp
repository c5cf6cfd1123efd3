#include "companion/sentence_file.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "base/files.h"
#include "companion/errors.h"
#include "companion/utf8.h"

namespace colx {

namespace {

constexpr std::size_t between_places = std::size_t{1} << 14;

std::string _expected_sentence(std::uint64_t line, std::uint64_t words, const std::string& datafile) {
  return fmt::format("expected a sentence of {} word{} at line {} of {}", words, words == 1 ? "" : "s", line,
                     printable(datafile));
}

}  // namespace

SentenceFile::SentenceFile(const std::string& path) : _bytes(path), _buffer(between_places) {
  _index();
  rewind();
}

void SentenceFile::_fail(std::string_view message) const {
  throw input_error(fmt::format("{}: line {}: {}", _bytes.name(), _number, message));
}

bool SentenceFile::_next_line(std::string_view& line) {
  std::size_t searched = 0;  // bytes of the line known to hold no line feed
  _byte = _next;
  ++_number;
  for (;;) {
    const char* const begin = _buffer.data() + _begin;
    const void* const found = std::memchr(begin + searched, '\n', _end - _begin - searched);
    if (found != nullptr) {
      line = {begin, static_cast<std::size_t>(static_cast<const char*>(found) - begin)};
      _begin += line.size() + 1;
      _next += line.size() + 1;
      return true;
    }
    searched = _end - _begin;
    if (searched > longest_sentence_line) _fail("expected a sentence, found a line of more than 4 MiB");
    std::memmove(_buffer.data(), begin, searched);
    _begin = 0;
    _end = searched;
    if (_end == _buffer.size()) _buffer.resize(2 * _buffer.size());
    const std::size_t count = _bytes.read_some(_buffer.data() + _end, _buffer.size() - _end);
    _end += count;
    if (count > 0) continue;
    if (searched == 0) return false;
    _fail("the file ends within this line");
  }
}

bool SentenceFile::_next_record() {
  std::string_view line;
  _has_record = _next_line(line);
  if (!_has_record) return false;
  const std::string complaint = parse_sentence_record(line, _record);
  if (!complaint.empty()) _fail(complaint);
  return true;
}

void SentenceFile::_index() {
  std::string_view header;
  if (!_next_line(header) || header != sentence_file_header)
    _fail(fmt::format("expected \"{}\", with which a sentence file begins, found \"{}\"", sentence_file_header,
                      printable(header.substr(0, 40))));
  std::uint64_t last_line = 0;
  std::uint64_t last_place = 0;
  while (_next_record()) {
    const bool begins = _datafiles.empty() || _datafiles.back().path != _record.datafile;
    if (begins) {
      if (!_by_path.emplace(_record.datafile, _datafiles.size()).second)
        _fail(fmt::format("expected the sentences of a datafile together, found more of {}",
                          printable(_record.datafile)));
      _datafiles.push_back({std::string(_record.datafile), 0});
    } else if (_record.line <= last_line) {
      _fail(fmt::format("expected a sentence behind line {} of {}, found one at line {}", last_line,
                        printable(_record.datafile), _record.line));
    }
    if (begins || _byte - last_place >= between_places) {
      _places.push_back({_byte, _number, _datafiles.size() - 1, _record.line});
      last_place = _byte;
    }
    ++_datafiles.back().sentences;
    last_line = _record.line;
  }
}

void SentenceFile::_go_to(const Place& place) {
  _bytes.go_to(place.byte);
  _begin = 0;
  _end = 0;
  _next = place.byte;
  _number = place.number - 1;
  _datafile = place.datafile;
  _has_record = false;
}

void SentenceFile::rewind() {
  _go_to({sentence_file_header.size() + 1, 2, 0, 0});
}

// Goes to the next record of a file that has been looked at.
void SentenceFile::_advance() {
  if (_next_record() && _datafiles[_datafile].path != _record.datafile) ++_datafile;
}

bool SentenceFile::next(SentenceRecord& record) {
  _advance();
  record = _record;
  return _has_record;
}

std::optional<std::size_t> SentenceFile::datafile(std::string_view entry, const std::string& path) {
  for (const std::string_view name : {entry, std::string_view(path)})
    if (const auto found = _by_path.find(name); found != _by_path.end()) return found->second;
  const auto file = regular_file(path);
  if (!file) return std::nullopt;
  if (!_by_identity) {
    _by_identity.emplace();
    for (std::size_t i = 0; i < _datafiles.size(); ++i)
      if (const auto other = regular_file(_datafiles[i].path)) _by_identity->emplace(other->identity, i);
  }
  const auto found = _by_identity->find(file->identity);
  if (found == _by_identity->end()) return std::nullopt;
  return found->second;
}

const SentenceRecord& SentenceFile::find(std::size_t datafile, std::uint64_t line, std::uint64_t words) {
  auto place = std::upper_bound(_places.begin(), _places.end(), std::pair(datafile, line),
                                [](const std::pair<std::size_t, std::uint64_t>& sought, const Place& p) {
                                  return sought < std::pair(p.datafile, p.first_line);
                                });
  // The first place of the datafile, where the line is before that.
  if (place != _places.begin() && std::prev(place)->datafile == datafile) --place;
  const bool goes_on = _has_record && _datafile == datafile && _record.line <= line && _byte >= place->byte;
  if (!goes_on) {
    _go_to(*place);
    _advance();
  }
  while (_has_record && _datafile == datafile && _record.line < line)
    _advance();
  if (!_has_record || _datafile != datafile) _fail_to_find(datafile, line, words, "none there or behind it");
  if (_record.line != line || _record.words != words)
    _fail_to_find(datafile, line, words, fmt::format("one of {} at line {}", _record.words, _record.line));
  return _record;
}

void SentenceFile::_fail_to_find(std::size_t datafile, std::uint64_t line, std::uint64_t words,
                                 const std::string& found) const {
  _fail(fmt::format("{}, found {}; the file was not made together with this datafile",
                    _expected_sentence(line, words, _datafiles[datafile].path), found));
}

}  // namespace colx
