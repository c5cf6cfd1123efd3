#include "table/zip_stream.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <utility>

#include "companion/errors.h"

namespace colx::table {

namespace {

constexpr std::uint16_t version = 20;        // of the format: folders and deflate
constexpr std::uint16_t sizes_behind = 0x8;  // sizes and checksum follow the content
constexpr std::uint16_t deflate_method = 8;
constexpr std::uint16_t first_day = 0x21;  // 1980-01-01

void _put(std::string& bytes, std::uint64_t number, unsigned size) {
  for (unsigned i = 0; i < size; ++i)
    bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

// What the header before a file and the one in the list have in common.
std::string _common_header(std::uint32_t checksum, std::uint32_t compressed, std::uint32_t size, std::size_t name) {
  std::string bytes;
  for (const std::uint16_t field : {version, sizes_behind, deflate_method, std::uint16_t{0}, first_day})
    _put(bytes, field, 2);
  for (const std::uint32_t field : {checksum, compressed, size})
    _put(bytes, field, 4);
  _put(bytes, name, 2);
  _put(bytes, 0, 2);  // no further fields
  return bytes;
}

}  // namespace

void ZipStream::EndDeflate::operator()(z_stream* stream) const {
  deflateEnd(stream);
  delete stream;
}

std::uint32_t ZipStream::_checked(std::uint64_t size) {
  if (size >= std::numeric_limits<std::uint32_t>::max())
    throw output_error("the table takes more than 4 GiB, which an xlsx file cannot have; choose fewer columns or csv");
  return static_cast<std::uint32_t>(size);
}

void ZipStream::_emit(std::string_view bytes) {
  _output << bytes;
  _output.end_row();
  _written += bytes.size();
}

void ZipStream::begin(std::string name) {
  Entry& entry = _entries.emplace_back();
  entry.name = std::move(name);
  entry.offset = _written;
  entry.checksum = static_cast<std::uint32_t>(crc32(0, nullptr, 0));
  _emit("PK\x03\x04" + _common_header(0, 0, 0, entry.name.size()) + entry.name);
  auto* const stream = new z_stream{};
  constexpr int raw = -15;   // without the header of zlib
  constexpr int effort = 3;  // half the time of the default for an eighth more bytes
  if (deflateInit2(stream, effort, Z_DEFLATED, raw, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    delete stream;
    throw std::bad_alloc();
  }
  _stream.reset(stream);
}

void ZipStream::_compress(std::string_view text, int flush) {
  // The library reads through a pointer that is not const.
  _stream->next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text.data()));
  _stream->avail_in = static_cast<uInt>(text.size());
  std::array<char, 65536> room;
  do {
    _stream->next_out = reinterpret_cast<Bytef*>(room.data());
    _stream->avail_out = static_cast<uInt>(room.size());
    deflate(_stream.get(), flush);
    const std::size_t count = room.size() - _stream->avail_out;
    _entries.back().compressed += count;
    _emit({room.data(), count});
  } while (_stream->avail_out == 0);
}

void ZipStream::write(std::string_view text) {
  constexpr std::size_t piece = std::size_t{1} << 30;  // counts of the library have 32 bits
  for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
    const std::string_view part = text.substr(0, piece);
    Entry& entry = _entries.back();
    entry.size += part.size();
    static_cast<void>(_checked(entry.size));
    entry.checksum = static_cast<std::uint32_t>(
        crc32(entry.checksum, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size())));
    _compress(part, Z_NO_FLUSH);
  }
}

void ZipStream::end() {
  _compress({}, Z_FINISH);
  _stream.reset();
  const Entry& entry = _entries.back();
  std::string bytes = "PK\x07\x08";
  for (const std::uint32_t field : {entry.checksum, _checked(entry.compressed), _checked(entry.size)})
    _put(bytes, field, 4);
  _emit(bytes);
}

void ZipStream::add(std::string name, std::string_view text) {
  begin(std::move(name));
  write(text);
  end();
}

void ZipStream::finish() {
  const std::uint64_t begin = _written;
  for (const Entry& entry : _entries) {
    std::string bytes = "PK\x01\x02";
    _put(bytes, version, 2);
    bytes += _common_header(entry.checksum, _checked(entry.compressed), _checked(entry.size), entry.name.size());
    bytes.append(10, '\0');  // no comment, disk 0, no attributes
    _put(bytes, _checked(entry.offset), 4);
    _emit(bytes + entry.name);
  }
  std::string bytes = "PK\x05\x06";
  _put(bytes, 0, 4);  // disk 0
  _put(bytes, _entries.size(), 2);
  _put(bytes, _entries.size(), 2);
  _put(bytes, _checked(_written - begin), 4);
  _put(bytes, _checked(begin), 4);
  _put(bytes, 0, 2);  // no comment
  _emit(bytes);
}

}  // namespace colx::table
