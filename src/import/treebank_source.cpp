#include "import/treebank_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"

namespace colx {

namespace {

constexpr std::size_t block_size = std::size_t{1} << 17;
constexpr std::size_t preview_size = std::size_t{1} << 18;
constexpr int gzip_only = 15 + 16;  // largest window, gzip header and trailer

}  // namespace

TreebankSource::TreebankSource(const std::string& path, bool rewindable)
    : _path(path), _name(input_name(path)), _input(open_for_reading(path)), _raw(block_size) {
  try {
    if (rewindable && lseek(_input.number(), 0, SEEK_CUR) != 0) _spool();
    _start();
  } catch (...) {
    _release();
    throw;
  }
}

void TreebankSource::_release() {
  if (_inflater_made) inflateEnd(&_inflater);
}

void TreebankSource::_fail(const std::string& reason) const {
  throw input_error(_name + ": " + reason);
}

// Replaces the descriptor by one of a temporary file that holds the same bytes and disappears with it.
void TreebankSource::_spool() {
  const char* const folder = std::getenv("TMPDIR");
  std::string path = std::string(folder == nullptr || *folder == '\0' ? "/tmp" : folder) + "/ngrex-import-XXXXXX";
  const std::string copy_name = fmt::format("{}, a copy of {} that is read twice", path, _name);
  const int number = mkostemp(path.data(), O_CLOEXEC);
  if (number < 0) throw output_error(fmt::format("cannot make {}: {}", copy_name, system_reason()));
  Descriptor copy(number);
  unlink(path.c_str());
  while (const std::size_t size = _input.read_some(_raw.data(), _raw.size(), _name))
    copy.write_fully({reinterpret_cast<const char*>(_raw.data()), size}, copy_name);
  if (lseek(copy.number(), 0, SEEK_SET) != 0) _fail("cannot be read again: " + system_reason());
  _input = std::move(copy);
}

void TreebankSource::_start() {
  _raw_begin = 0;
  _raw_end = 0;
  _bytes_read = 0;
  _line_number = 0;
  _text_begin = 0;
  _text_end = 0;
  _at_end = false;
  // A pipe may give a single byte at first.
  while (_raw_end < 2) {
    const std::size_t count = _input.read_some(_raw.data() + _raw_end, _raw.size() - _raw_end, _name);
    if (count == 0) break;
    _raw_end += count;
  }
  _bytes_read = _raw_end;
  _compressed = _raw_end >= 2 && _raw[0] == 0x1F && _raw[1] == 0x8B;
  _inside_member = _compressed;
  if (_compressed) {
    if (!_inflater_made && inflateInit2(&_inflater, gzip_only) != Z_OK) _fail("no memory to decompress it");
    _inflater_made = true;
    inflateReset(&_inflater);
  }
}

// Makes room for more text behind what is there; what has been given away goes.
char* TreebankSource::_room(std::size_t size) {
  if (_text_begin > 0) {
    std::copy(_text.begin() + static_cast<std::ptrdiff_t>(_text_begin),
              _text.begin() + static_cast<std::ptrdiff_t>(_text_end), _text.begin());
    _text_end -= _text_begin;
    _text_begin = 0;
  }
  if (_text.size() - _text_end < size) _text.resize(std::max(_text_end + size, 2 * _text_end));
  return _text.data() + _text_end;
}

std::size_t TreebankSource::_read(void* to, std::size_t size) {
  const std::size_t count = _input.read_some(to, size, _name);
  _bytes_read += count;
  return count;
}

// Appends more text. Returns false, and notes the end, when there is none.
bool TreebankSource::_fill() {
  if (_at_end) return false;
  if (!_compressed) {
    char* const room = _room(block_size);
    std::size_t count = std::exchange(_raw_end, 0);  // what was looked at to see whether it is compressed
    if (count > 0)
      std::copy_n(_raw.data(), count, room);
    else
      count = _read(room, block_size);
    _text_end += count;
    _at_end = count == 0;
    return count > 0;
  }
  do {
    if (_raw_begin == _raw_end) {
      _raw_begin = 0;
      _raw_end = _read(_raw.data(), _raw.size());
      if (_raw_end == 0) {
        if (_inside_member) _fail("the compressed data end too early; the file is truncated");
        _at_end = true;
        return false;
      }
    }
  } while (!_inflate());
  return true;
}

// Decompresses what is in the raw buffer; returns whether that gave any text.
bool TreebankSource::_inflate() {
  if (!_inside_member) {
    // Zeros may pad a file behind its last member; anything else must be another member.
    while (_raw_begin < _raw_end && _raw[_raw_begin] == 0)
      ++_raw_begin;
    if (_raw_begin == _raw_end) return false;
    if (_raw[_raw_begin] != 0x1F) _fail("there are bytes behind the compressed data that are not compressed data");
    inflateReset(&_inflater);
    _inside_member = true;
  }
  constexpr std::size_t most = 4 * block_size;
  _inflater.next_in = _raw.data() + _raw_begin;
  _inflater.avail_in = static_cast<uInt>(_raw_end - _raw_begin);
  _inflater.next_out = reinterpret_cast<Bytef*>(_room(most));
  _inflater.avail_out = static_cast<uInt>(most);
  const int result = inflate(&_inflater, Z_NO_FLUSH);
  _raw_begin = _raw_end - _inflater.avail_in;
  const std::size_t count = most - _inflater.avail_out;
  _text_end += count;
  if (result == Z_STREAM_END) {
    _inside_member = false;
  } else if (result != Z_OK && result != Z_BUF_ERROR) {
    _fail(std::string("the compressed data are damaged") +
          (_inflater.msg == nullptr ? "" : std::string(": ") + _inflater.msg));
  }
  return count > 0;
}

std::string_view TreebankSource::preview() {
  while (_unread().size() < preview_size && _fill()) {
  }
  return _unread().substr(0, preview_size);
}

bool TreebankSource::next_line(std::string_view& line) {
  std::size_t searched = 0;  // bytes of the line known to hold no line feed
  for (;;) {
    const std::string_view text = _unread();
    const std::size_t end = text.find('\n', searched);
    if (end != std::string_view::npos) {
      line = text.substr(0, end);
      _text_begin += end + 1;
      ++_line_number;
      return true;
    }
    searched = text.size();
    if (_fill()) continue;
    if (searched == 0) return false;
    line = _unread();
    _text_begin = _text_end;
    ++_line_number;
    return true;
  }
}

void TreebankSource::rewind() {
  if (lseek(_input.number(), 0, SEEK_SET) != 0) _fail("cannot be read again: " + system_reason());
  _start();
}

}  // namespace colx
