#include "import/treebank_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include <fmt/format.h>

#include "companion/descriptor.h"
#include "companion/errors.h"

namespace colx {

namespace {

constexpr std::size_t block_size = std::size_t{1} << 18;
constexpr std::size_t preview_size = std::size_t{1} << 18;

// A descriptor of a temporary file that holds the same bytes and disappears with it.
Descriptor _copy_of(const Descriptor& input, const std::string& name) {
  const char* const folder = std::getenv("TMPDIR");
  std::string path = std::string(folder == nullptr || *folder == '\0' ? "/tmp" : folder) + "/ngrex-import-XXXXXX";
  const std::string copy_name = fmt::format("{}, a copy of {} that is read twice", path, name);
  const int number = mkostemp(path.data(), O_CLOEXEC);
  if (number < 0) throw output_error(fmt::format("cannot make {}: {}", copy_name, system_reason()));
  Descriptor copy(number);
  unlink(path.c_str());
  std::string block(block_size, '\0');
  while (const std::size_t size = input.read_some(block.data(), block.size(), name))
    copy.write_fully({block.data(), size}, copy_name);
  if (lseek(copy.number(), 0, SEEK_SET) != 0)
    throw input_error(fmt::format("{}: cannot be read again: {}", name, system_reason()));
  return copy;
}

Descriptor _open(const std::string& path, bool rewindable) {
  Descriptor input = open_for_reading(path);
  if (rewindable && lseek(input.number(), 0, SEEK_CUR) != 0) return _copy_of(input, input_name(path));
  return input;
}

}  // namespace

TreebankSource::TreebankSource(const std::string& path, bool rewindable)
    : _path(path), _bytes(_open(path, rewindable), input_name(path)) {}

// Appends more text. Returns false when there is none.
bool TreebankSource::_fill() {
  if (_text_begin > 0) {
    _text.erase(0, _text_begin);
    _text_begin = 0;
  }
  const std::size_t old_size = _text.size();
  _text.resize(old_size + block_size);
  const std::size_t count = _bytes.read_some(_text.data() + old_size, block_size);
  _text.resize(old_size + count);
  return count > 0;
}

std::string_view TreebankSource::preview() {
  while (_text.size() < preview_size && _fill()) {
  }
  return std::string_view(_text).substr(_text_begin, preview_size);
}

bool TreebankSource::next_line(std::string_view& line) {
  std::size_t searched = 0;  // bytes of the line known to hold no line feed
  for (;;) {
    const std::size_t end = _text.find('\n', _text_begin + searched);
    if (end != std::string::npos) {
      line = std::string_view(_text).substr(_text_begin, end - _text_begin);
      _text_begin = end + 1;
      ++_line_number;
      return true;
    }
    searched = _text.size() - _text_begin;
    if (_fill()) continue;
    if (searched == 0) return false;
    line = std::string_view(_text).substr(_text_begin);
    _text_begin = _text.size();
    ++_line_number;
    return true;
  }
}

void TreebankSource::rewind() {
  _bytes.rewind();
  _line_number = 0;
  _text.clear();
  _text_begin = 0;
}

}  // namespace colx
