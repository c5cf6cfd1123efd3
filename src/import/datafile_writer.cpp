#include "import/datafile_writer.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include "companion/errors.h"
#include "corpus/datafile_format.h"
#include "import/line_scan.h"

namespace colx {

namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 18;
constexpr std::string_view no_break_space = "\xC2\xA0";

// The size of the white-space character at the beginning of a text, as Unicode defines it, in UTF-8; 0 when there is
// none.
std::size_t _white_space_size(std::string_view text) {
  if (is_white_space(text[0])) return 1;
  const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  switch (byte(0)) {
    case 0xC2:  // U+0085; U+00A0 may stay
      return byte(1) == 0x85 ? 2 : 0;
    case 0xE1:  // U+1680
      return byte(1) == 0x9A && byte(2) == 0x80 ? 3 : 0;
    case 0xE2:  // U+2000 to U+200A, U+2028, U+2029, U+202F, U+205F
      if (byte(1) == 0x81) return byte(2) == 0x9F ? 3 : 0;
      if (byte(1) != 0x80) return 0;
      return (byte(2) >= 0x80 && byte(2) <= 0x8A) || byte(2) == 0xA8 || byte(2) == 0xA9 || byte(2) == 0xAF ? 3 : 0;
    case 0xE3:  // U+3000
      return byte(1) == 0x80 && byte(2) == 0x80 ? 3 : 0;
    default:
      return 0;
  }
}

// Whether a byte may begin a white-space character.
constexpr auto may_be_white_space = [] {
  std::array<bool, 256> table{};
  for (unsigned byte = 0; byte < 256; ++byte)
    table[byte] = is_white_space(static_cast<char>(byte)) || may_begin_wide_space(static_cast<unsigned char>(byte));
  return table;
}();

}  // namespace

bool is_datafile_field(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i)
    if (may_be_white_space[static_cast<unsigned char>(text[i])] && _white_space_size(text.substr(i)) > 0) return false;
  return !text.empty();
}

std::string datafile_field(std::string_view text) {
  if (text.empty()) return "_";
  std::string field;
  field.reserve(text.size());
  while (!text.empty()) {
    const std::size_t space = _white_space_size(text);
    field += space == 0 ? text.substr(0, 1) : no_break_space;
    text.remove_prefix(std::max<std::size_t>(space, 1));
  }
  return field;
}

std::string numbered_path(const std::string& path, std::uint64_t number) {
  std::filesystem::path numbered(path);
  const std::string extension = numbered.extension().string();
  const std::string stem = numbered.stem().string();
  numbered.replace_filename(fmt::format("{}-{:04}{}", stem, number, extension));
  return numbered.string();
}

DatafileWriter::DatafileWriter(std::string path, std::uint64_t split, std::vector<FileIdentity> kept)
    : _path(std::move(path)), _split(split), _kept(std::move(kept)) {
  _open();
}

void DatafileWriter::_refuse(const std::optional<RegularFile>& file) const {
  if (file.has_value() && std::find(_kept.begin(), _kept.end(), file->identity) != _kept.end())
    throw output_error(
        fmt::format("cannot write to {}: it is an input or another output, and would be overwritten", _name));
}

void DatafileWriter::_open() {
  _words = 0;
  _lines = 0;
  if (_path.empty()) {
    _name = "standard output";
    _output = Descriptor::standard_output();
    _refuse(regular_file(_output));
    return;
  }
  _name = _split == 0 ? _path : numbered_path(_path, _paths.size() + 1);
  _refuse(regular_file(_name));
  const int number = open(_name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", _name, system_reason()));
  _output = Descriptor(number);
  _paths.push_back(_name);
}

void DatafileWriter::_flush() {
  _output.write_fully(_buffer, _name);
  _buffer.clear();
}

void DatafileWriter::_close() {
  _flush();
  _output.close(_name);
}

std::uint64_t DatafileWriter::write(std::string_view sentence, std::uint64_t words) {
  if (_split != 0 && _words > 0 && _words + words > _split) {
    _close();
    _open();
  }
  _buffer += sentence;
  _buffer += '\n';
  _words += words;
  const std::uint64_t line = _lines + 1;
  _lines += words + 1;
  if (_buffer.size() >= buffer_size) _flush();
  return line;
}

void DatafileWriter::finish() {
  _close();
}

}  // namespace colx
