#include "companion/byte_source.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "companion/errors.h"

namespace colx {

namespace {

constexpr std::size_t raw_size = std::size_t{1} << 17;
constexpr int gzip_only = 15 + 16;  // largest window, gzip header and trailer

}  // namespace

ByteSource::ByteSource(const std::string& path) : ByteSource(open_for_reading(path), input_name(path)) {}

ByteSource::ByteSource(Descriptor input, std::string name)
    : _name(std::move(name)), _input(std::move(input)), _raw(raw_size) {
  try {
    _start();
  } catch (...) {
    _release();
    throw;
  }
}

ByteSource::~ByteSource() {
  _release();
}

void ByteSource::_release() {
  if (_inflater_made) inflateEnd(&_inflater);
}

void ByteSource::_fail(const std::string& reason) const {
  throw input_error(_name + ": " + reason);
}

void ByteSource::_start() {
  _raw_begin = 0;
  _raw_end = 0;
  _at_end = false;
  _place = 0;
  // A pipe may give a single byte at first.
  while (_raw_end < 2) {
    const std::size_t count = _input.read_some(_raw.data() + _raw_end, _raw.size() - _raw_end, _name);
    if (count == 0) break;
    _raw_end += count;
  }
  _bytes_read = _raw_end;
  _compressed = _raw_end >= 2 && _raw[0] == 0x1F && _raw[1] == 0x8B;
  _inside_member = _compressed;
  if (!_compressed) return;
  if (!_inflater_made && inflateInit2(&_inflater, gzip_only) != Z_OK) _fail("no memory to decompress it");
  _inflater_made = true;
  inflateReset(&_inflater);
}

std::size_t ByteSource::read_some(char* to, std::size_t size) {
  const std::size_t count = _read_some(to, size);
  _place += count;
  return count;
}

std::size_t ByteSource::_read_some(char* to, std::size_t size) {
  if (!_compressed) return _read_plain(to, size);
  while (!_at_end) {
    if (_raw_begin == _raw_end) {
      _raw_begin = 0;
      _raw_end = _input.read_some(_raw.data(), _raw.size(), _name);
      _bytes_read += _raw_end;
      if (_raw_end == 0) {
        if (_inside_member) _fail("the compressed data end too early; the file is truncated");
        _at_end = true;
        break;
      }
    }
    if (!_begin_member()) continue;
    if (const std::size_t count = _inflate(to, size); count > 0) return count;
  }
  return 0;
}

// What was read to recognise the input comes first; the rest needs no detour.
std::size_t ByteSource::_read_plain(char* to, std::size_t size) {
  if (_raw_begin < _raw_end) {
    const std::size_t count = std::min(size, _raw_end - _raw_begin);
    std::memcpy(to, _raw.data() + _raw_begin, count);
    _raw_begin += count;
    return count;
  }
  if (_at_end) return 0;
  const std::size_t count = _input.read_some(to, size, _name);
  _bytes_read += count;
  _at_end = count == 0;
  return count;
}

// Whether the raw bytes are those of a member, perhaps of a new one.
bool ByteSource::_begin_member() {
  if (_inside_member) return true;
  while (_raw_begin < _raw_end && _raw[_raw_begin] == 0)
    ++_raw_begin;
  if (_raw_begin == _raw_end) return false;
  if (_raw[_raw_begin] != 0x1F) _fail("there are bytes behind the compressed data that are not compressed data");
  inflateReset(&_inflater);
  _inside_member = true;
  return true;
}

// Decompresses raw bytes and returns how much text that gave, possibly none.
std::size_t ByteSource::_inflate(char* to, std::size_t size) {
  const auto room = static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
  _inflater.next_in = _raw.data() + _raw_begin;
  _inflater.avail_in = static_cast<uInt>(_raw_end - _raw_begin);
  _inflater.next_out = reinterpret_cast<Bytef*>(to);
  _inflater.avail_out = room;
  const int result = inflate(&_inflater, Z_NO_FLUSH);
  const std::size_t count = room - _inflater.avail_out;
  _raw_begin = _raw_end - _inflater.avail_in;
  if (result == Z_STREAM_END) {
    _inside_member = false;
  } else if (result == Z_MEM_ERROR) {
    _fail("no memory to decompress it");
  } else if (result != Z_OK && result != Z_BUF_ERROR) {
    // Asked again, a damaged stream gives the same answer and no more text.
    if (count == 0)
      _fail(std::string("the compressed data are damaged") +
            (_inflater.msg == nullptr ? "" : std::string(": ") + _inflater.msg));
  }
  return count;
}

void ByteSource::rewind() {
  if (lseek(_input.number(), 0, SEEK_SET) != 0) _fail("cannot be read again: " + system_reason());
  _start();
}

void ByteSource::go_to(std::uint64_t place) {
  if (!_compressed) {
    if (::lseek(_input.number(), static_cast<off_t>(place), SEEK_SET) < 0)
      _fail("cannot be read again: " + system_reason());
    _raw_begin = _raw_end;
    _at_end = false;
    _place = place;
    return;
  }
  if (place < _place) rewind();
  std::array<char, 16384> passed;
  while (_place < place)
    if (read_some(passed.data(), std::min<std::uint64_t>(passed.size(), place - _place)) == 0) return;
}

}  // namespace colx
