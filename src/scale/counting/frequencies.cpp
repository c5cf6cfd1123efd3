#include "scale/counting/frequencies.h"

#include <algorithm>
#include <utility>

namespace colx::scale {

namespace {

constexpr std::string_view kind = "frq2";

// A round holds at least so many bytes for each part on average, so that the index, which has 16 for each part of each
// round, is small beside what it tells of, however little memory there is and however many parts that makes.
constexpr std::size_t least_of_a_part = 64;

}  // namespace

FrequenciesWriter::FrequenciesWriter(std::string path, std::size_t parts, std::size_t memory)
    : _file(std::move(path), kind), _memory(std::max(memory, parts * least_of_a_part)), _held(parts) {}

void FrequenciesWriter::add(std::size_t part, std::string_view frequencies) {
  std::string& held = _held[part];
  _size -= held.size();
  append_short(held, frequencies.size());
  held.append(frequencies);
  _size += held.size();
}

void FrequenciesWriter::end_pair() {
  ++_pairs;
  if (_size >= _memory) _write_round();
}

void FrequenciesWriter::_write_round() {
  for (std::string& held : _held) {
    _file.add(held);
    held.clear();
  }
  _size = 0;
  append_fixed(_ends, _pairs);
}

FileMark FrequenciesWriter::finish() {
  if (_size > 0) _write_round();
  _file.add(_ends);
  return _file.finish();
}

FrequenciesReader::FrequenciesReader(std::string path, std::size_t parts, SegmentReader::Hold hold)
    : _file(std::move(path), kind, 0, hold), _parts(parts) {
  if (_file.segments() == 0) _file.refuse("is cut");
  const std::string_view ends = _file.read(_file.segments() - 1);
  const char* const end = ends.data() + ends.size();
  for (const char* from = ends.data(); from != end;)
    _ends.push_back(get_fixed<std::uint64_t>(from));
  if (_file.segments() != _ends.size() * parts + 1) _file.refuse("is of other parts");
}

void FrequenciesReader::load(std::size_t part, std::string& bytes, std::vector<std::size_t>& begins) {
  std::uint64_t pair = 0;
  for (std::size_t round = 0; round < _ends.size(); ++round) {
    const std::size_t base = bytes.size();
    bytes.append(_file.read(round * _parts + part));
    for (const char* from = bytes.data() + base; pair < _ends[round]; ++pair) {
      const std::uint64_t size = get_short(from);
      begins.push_back(static_cast<std::size_t>(from - bytes.data()));
      from += size;
    }
  }
}

}  // namespace colx::scale
