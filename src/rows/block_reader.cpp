#include "rows/block_reader.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/line_fields.h"

namespace colx::table {

namespace {

// Longer than any block can be: seven lemmas and tags of 65535 bytes are less than a megabyte.
constexpr std::size_t longest_block = std::size_t{4} << 20;

constexpr std::size_t member_fields = 5;

bool _is_digit(char c) {
  return c >= '0' && c <= '9';
}

const char* _skip_digits(const char* p, const char* end) {
  while (p != end && _is_digit(*p))
    ++p;
  return p;
}

bool _is_special(std::string_view text) {
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  return text == "inf" || text == "nan";
}

bool _is_measure(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  if (p != end && *p == '-') ++p;
  const char* const whole = p;
  p = _skip_digits(p, end);
  if (p == whole) return _is_special(text);
  if (*whole == '0' && p - whole > 1) return false;
  if (p != end && *p == '.') {
    const char* const fraction = ++p;
    p = _skip_digits(p, end);
    if (p == fraction) return false;
  }
  constexpr std::size_t surely_in_range = 300;
  if (p == end && text.size() < surely_in_range) return true;
  if (p != end) {
    if (*p != 'e') return false;
    ++p;
    if (p != end && (*p == '+' || *p == '-')) ++p;
    const char* const exponent = p;
    p = _skip_digits(p, end);
    if (p == exponent || p != end) return false;
  }
  double value = 0;
  return std::from_chars(text.data(), end, value).ec == std::errc();
}

// Whether every word reaches the one top word by its parents.
bool _is_tree(const Block& block) {
  for (std::size_t k = 0; k < block.n; ++k) {
    std::size_t word = k;
    std::size_t steps = 0;
    while (block.members[word].parent != 0 && steps < block.n) {
      word = block.members[word].parent - 1;
      ++steps;
    }
    if (steps == block.n) return false;
  }
  std::size_t tops = 0;
  for (std::size_t k = 0; k < block.n; ++k)
    if (block.members[k].parent == 0) ++tops;
  return tops == 1;
}

// Walks over the lines of one block and remembers what was wrong.
class LineWalk {
 public:
  LineWalk(std::string_view bytes, Fault& fault) : _rest(bytes), _fault(fault) {}

  // Takes a line without its LF; false when the bytes end before it does.
  bool take(std::string_view& line) {
    const void* const found = std::memchr(_rest.data(), '\n', _rest.size());
    if (found == nullptr) {
      _fault.line = _line;
      return false;
    }
    line = text_between(_rest.data(), static_cast<const char*>(found));
    _rest.remove_prefix(line.size() + 1);
    ++_line;
    return true;
  }

  std::string_view rest() const { return _rest; }

  ParseStatus malformed(std::string message) {
    _fault.line = _line - 1;
    _fault.message = std::move(message);
    return ParseStatus::malformed;
  }

  ParseStatus malformed_before(std::size_t lines, std::string message) {
    malformed(std::move(message));
    _fault.line -= lines;
    return ParseStatus::malformed;
  }

 private:
  std::string_view _rest;
  Fault& _fault;
  std::size_t _line = 0;
};

ParseStatus _parse_member(LineWalk& walk, const std::array<std::string_view, member_fields>& fields, Block& block) {
  const std::size_t position = block.n + 1;
  std::uint64_t number = 0;
  if (!parse_count(fields[0], number) || number != position)
    return walk.malformed(fmt::format("expected the position {}, found {}", position, shown_text(fields[0])));
  if (position > largest_n) return walk.malformed(fmt::format("an N-gram has at most {} words", largest_n));
  if (!parse_count(fields[3], number) || number > largest_n)
    return walk.malformed(
        fmt::format("expected the position of the parent or 0 as 4th field, found {}", shown_text(fields[3])));
  Member& member = block.members[block.n++];
  member.lemma = fields[1];
  member.tag = fields[2];
  member.parent = static_cast<std::uint32_t>(number);
  member.relation = fields[4];
  return ParseStatus::complete;
}

ParseStatus _parse_cells(LineWalk& walk, std::string_view line, Block& block) {
  std::array<std::string_view, most_cells> fields;
  const std::size_t count = split_fields(line, fields);
  if (count != block.cell_count())
    return walk.malformed(
        fmt::format("expected {} cells separated by TABs below an N-gram of {} words, or a further word (position, "
                    "lemma, tag, parent, relation); found {}",
                    block.cell_count(), block.n, shown_text(line)));
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!parse_count(fields[i], block.cells[i]))
      return walk.malformed(fmt::format("expected a whole number as cell {}, found {}", i, shown_text(fields[i])));
    if (block.cells[i] > largest_total || total + block.cells[i] > largest_total)
      return walk.malformed("the cells add up to more than 2^53");
    total += block.cells[i];
  }
  return ParseStatus::complete;
}

ParseStatus _parse_measures(LineWalk& walk, std::string_view line, Block& block) {
  const std::size_t count = split_fields(line, block.measures);
  if (count != block.measure_count())
    return walk.malformed(fmt::format("expected {} measures separated by TABs below the cells of {} words, found {}",
                                      block.measure_count(), block.n, shown_text(line)));
  for (std::size_t i = 0; i < count; ++i)
    if (!_is_measure(block.measures[i]))
      return walk.malformed(
          fmt::format("expected a number, inf or nan as measure {}, found {}", i + 1, shown_text(block.measures[i])));
  return ParseStatus::complete;
}

}  // namespace

ParseStatus parse_block(std::string_view bytes, Block& block, Fault& fault) {
  LineWalk walk(bytes, fault);
  std::string_view line;
  block.n = 0;
  for (;;) {
    if (!walk.take(line)) return ParseStatus::incomplete;
    std::array<std::string_view, member_fields> fields;
    if (split_fields(line, fields) != member_fields) break;
    // Below two words or more, a line that does not go on counting should have been the cells.
    if (block.n >= smallest_n && fields[0] != std::to_string(block.n + 1)) break;
    if (_parse_member(walk, fields, block) != ParseStatus::complete) return ParseStatus::malformed;
    block.members_size = bytes.size() - walk.rest().size();
  }
  if (block.n < smallest_n)
    return walk.malformed(fmt::format(
        "expected word {} of an N-gram (position, lemma, tag, parent, relation, separated by TABs), found {}",
        block.n + 1, shown_text(line)));
  for (std::size_t k = 0; k < block.n; ++k)
    if (block.members[k].parent > block.n)
      return walk.malformed_before(
          block.n - k, fmt::format("the parent {} is no word of an N-gram of {}", block.members[k].parent, block.n));
  if (!_is_tree(block))
    return walk.malformed_before(1, "the parents of the words up to here make no tree with one top word");
  if (_parse_cells(walk, line, block) != ParseStatus::complete) return ParseStatus::malformed;
  if (!walk.take(line)) return ParseStatus::incomplete;
  if (_parse_measures(walk, line, block) != ParseStatus::complete) return ParseStatus::malformed;
  if (!walk.take(line)) return ParseStatus::incomplete;
  if (!line.empty()) return walk.malformed("expected an empty line below the measures, found " + shown_text(line));
  block.text = bytes.substr(0, bytes.size() - walk.rest().size());
  if (block.text.find('\r') != std::string_view::npos)
    return walk.malformed_before(block.n + 2,
                                 "expected lines that end with LF, found a carriage return in this N-gram");
  return ParseStatus::complete;
}

double measure_value(std::string_view text) {
  if (_is_special(text)) {
    if (text.back() == 'n') return std::numeric_limits<double>::quiet_NaN();
    return text[0] == '-' ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
  }
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

BlockReader::BlockReader(const std::string& path, std::size_t buffer)
    : _bytes(path), _buffer(buffer == 0 ? 1 : buffer) {}

bool BlockReader::_refill() {
  std::memmove(_buffer.data(), _buffer.data() + _begin, _end - _begin);
  _end -= _begin;
  _begin = 0;
  if (_end == _buffer.size()) _buffer.resize(2 * _buffer.size());
  const std::size_t got = _bytes.read_some(_buffer.data() + _end, _buffer.size() - _end);
  _end += got;
  return got > 0;
}

bool BlockReader::next(Block& block) {
  for (;;) {
    const std::string_view bytes(_buffer.data() + _begin, _end - _begin);
    if (!bytes.empty() && bytes[0] == '\n') {
      if (bytes.size() > 1) _fail(_lines + 2, "expected the end of the file after the empty line that ends it");
      if (_at_end) return false;
      _at_end = !_refill();
      continue;
    }
    Fault fault;
    const ParseStatus status = bytes.empty() ? ParseStatus::incomplete : parse_block(bytes, block, fault);
    if (status == ParseStatus::malformed) _fail(_lines + fault.line + 1, fault.message);
    if (status == ParseStatus::complete) {
      if (_n == 0) _n = block.n;
      if (block.n != _n)
        _fail(_lines + 1, fmt::format("an N-gram of {} words in a file of N-grams of {} words", block.n, _n));
      _begin += block.text.size();
      _lines += block.n + 3;
      return true;
    }
    if (bytes.size() > longest_block) _fail(_lines + fault.line + 1, "an N-gram of more than 4 MiB");
    if (_at_end)
      _fail(_lines + fault.line + 1,
            "the file ends here, but an output datafile ends with the empty line of its last N-gram and one more");
    _at_end = !_refill();
  }
}

void BlockReader::_fail(std::uint64_t line, const std::string& message) const {
  throw input_error(fmt::format("{}: line {}: {}", _bytes.name(), line, message));
}

}  // namespace colx::table
