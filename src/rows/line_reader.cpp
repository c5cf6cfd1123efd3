#include "rows/line_reader.h"

#include <cstring>

#include <fmt/format.h>

#include "companion/errors.h"
#include "rows/line_fields.h"

namespace colx::table {

namespace {

constexpr std::string_view too_long = "a line of more than 4 MiB";

}  // namespace

LineReader::LineReader(const std::string& path) : _bytes(path), _buffer(std::size_t{1} << 18) {}

bool LineReader::next(std::string_view& line) {
  std::size_t searched = 0;  // bytes of the line known to hold no LF
  for (;;) {
    const char* const begin = _buffer.data() + _begin;
    const void* const found = std::memchr(begin + searched, '\n', _end - _begin - searched);
    if (found != nullptr) {
      line = text_between(begin, static_cast<const char*>(found));
      _begin += line.size() + 1;
      ++_line;
      if (line.size() > longest_line) fail(too_long);
      return true;
    }
    searched = _end - _begin;
    std::memmove(_buffer.data(), begin, searched);
    _begin = 0;
    _end = searched;
    if (_end == _buffer.size()) {
      if (_end > longest_line) {
        ++_line;
        fail(too_long);
      }
      _buffer.resize(2 * _buffer.size());
    }
    const std::size_t count = _bytes.read_some(_buffer.data() + _end, _buffer.size() - _end);
    _end += count;
    if (count > 0) continue;
    if (searched == 0) return false;
    ++_line;
    fail("the file ends within this line");
  }
}

std::string_view LineReader::need(std::string_view expected) {
  std::string_view line;
  if (next(line)) return line;
  ++_line;
  fail(fmt::format("the file ends here, expected {}", expected));
}

void LineReader::fail(std::string_view message) const {
  throw input_error(fmt::format("{}: line {}: {}", _bytes.name(), _line, message));
}

}  // namespace colx::table
