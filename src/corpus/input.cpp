#include "corpus/input.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>

#include "corpus/datafile_format.h"

namespace colx {

namespace {

// With fewer bytes than this in the buffer it is filled up, so that a line is seldom cut by its end.
constexpr std::size_t low_water = std::size_t{4} << 10;

}  // namespace

Input::Input(std::istream& stream, std::size_t buffer) : _source(stream), _buffer(buffer) {}

// Moves what is left to the front of the buffer and reads as much as fits behind it. Returns whether anything came;
// fewer bytes than fit are not the end. A source that fails is not read again; the input is bad from where its bytes
// end.
bool Input::_refill() {
  std::memmove(_buffer.data(), _buffer.data() + _begin, _end - _begin);
  _read_before += static_cast<std::int64_t>(_begin);
  _end -= _begin;
  _begin = 0;
  std::streamsize read = 0;
  try {
    read = _source.rdbuf()->sgetn(_buffer.data() + _end, static_cast<std::streamsize>(_buffer.size() - _end));
  } catch (const std::exception&) {
    _source_failed = true;
    _source.setstate(std::ios::badbit);
  }
  _end += static_cast<std::size_t>(read);
  _source_dry = read == 0;
  return !_source_dry;
}

// A source that gave nothing is asked again only when the last byte is consumed, as a stream would do it.
std::string_view Input::buffered() {
  if (_end - _begin < low_water && good() && !_source_dry) _refill();
  return {_buffer.data() + _begin, _end - _begin};
}

// The next byte, not consumed, or end_of_input.
int Input::_current() {
  if (_begin == _end && (_source_failed || !_refill())) {
    _bad = _source_failed;
    return end_of_input;
  }
  return static_cast<unsigned char>(_buffer[_begin]);
}

int Input::peek() {
  if (!good()) {
    _fail = true;
    return end_of_input;
  }
  const int c = _current();
  if (c == end_of_input) _eof = !_bad;
  return c;
}

int Input::get() {
  const int c = peek();
  if (c == end_of_input) {
    _fail = true;
  } else {
    ++_begin;
  }
  return c;
}

void Input::ignore(std::size_t count, char delimiter) {
  if (!good()) {
    _fail = true;
    return;
  }
  while (count > 0) {
    if (_current() == end_of_input) {
      _eof = !_bad;
      return;
    }
    const char* const first = _buffer.data() + _begin;
    const std::size_t held = std::min(count, _end - _begin);
    const auto* const found = static_cast<const char*>(std::memchr(first, delimiter, held));
    if (found != nullptr) {
      _begin += static_cast<std::size_t>(found - first) + 1;
      return;
    }
    _begin += held;
    count -= held;
  }
}

// Moves to the next byte that is not white space. Returns false, with the input failed, when there is none.
bool Input::_skip_white_space() {
  if (!good()) {
    _fail = true;
    return false;
  }
  int c;
  while ((c = _current()) != end_of_input && is_white_space(static_cast<char>(c)))
    ++_begin;
  if (c != end_of_input) return true;
  _eof = !_bad;
  _fail = true;
  return false;
}

void Input::read(std::uint32_t& number) {
  if (!_skip_white_space()) return;
  int c = _current();
  const bool negative = c == '-';
  if (negative || c == '+') {
    ++_begin;
    c = _current();
  }
  bool digits = false;
  bool overflow = false;
  std::uint64_t value = 0;
  for (; c >= '0' && c <= '9'; c = _current()) {
    digits = true;
    value = value * 10 + static_cast<std::uint64_t>(c - '0');
    if (value > std::numeric_limits<std::uint32_t>::max()) {
      overflow = true;
      value = std::numeric_limits<std::uint32_t>::max();
    }
    ++_begin;
  }
  if (c == end_of_input) _eof = !_bad;
  if (!digits || overflow) _fail = true;
  const auto magnitude = static_cast<std::uint32_t>(value);
  number = negative && !overflow ? 0 - magnitude : magnitude;
}

void Input::read(std::string& word) {
  if (!_skip_white_space()) return;
  word.clear();
  int c;
  while ((c = _current()) != end_of_input && !is_white_space(static_cast<char>(c))) {
    word.push_back(static_cast<char>(c));
    ++_begin;
  }
  if (c == end_of_input) _eof = !_bad;
}

}  // namespace colx
