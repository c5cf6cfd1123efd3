#include "report/packed_columns.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

#include "report/base64.h"

namespace colx::report {

namespace {

constexpr std::size_t alignment = 8;

std::size_t _aligned(std::size_t size) {
  return (size + alignment - 1) / alignment * alignment;
}

// One gzip member, written piece by piece.
class Deflater {
 public:
  explicit Deflater(Base64Writer& to) : _to(to) {
    constexpr int with_gzip_header = 15 + 16;
    constexpr int memory = 9;
    if (deflateInit2(&_stream, effort, Z_DEFLATED, with_gzip_header, memory, Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&_stream); }

  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  void write(std::string_view bytes) {
    constexpr std::size_t piece = std::size_t{1} << 30;  // counts of the library have 32 bits
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
      _compress(bytes.substr(0, piece), Z_NO_FLUSH);
  }

  void finish() { _compress({}, Z_FINISH); }

 private:
  static constexpr int effort = 4;  // a third of the time of the default for a fiftieth more bytes

  void _compress(std::string_view bytes, int flush) {
    // The library reads through a pointer that is not const.
    _stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
    _stream.avail_in = static_cast<uInt>(bytes.size());
    do {
      _stream.next_out = reinterpret_cast<Bytef*>(_room.data());
      _stream.avail_out = static_cast<uInt>(_room.size());
      deflate(&_stream, flush);
      _to.write({_room.data(), _room.size() - _stream.avail_out});
    } while (_stream.avail_out == 0);
  }

  Base64Writer& _to;
  z_stream _stream{};
  std::array<char, 65536> _room{};
};

}  // namespace

std::vector<std::size_t> offsets_of(std::span<const Column> columns) {
  std::vector<std::size_t> offsets;
  std::size_t end = 0;
  for (const Column& column : columns) {
    offsets.push_back(end);
    end = _aligned(end + bytes_of(column).size());
  }
  return offsets;
}

void write_packed(std::span<const Column> columns, Output& output) {
  Base64Writer text(output);
  Deflater deflater(text);
  constexpr std::string_view zeros("\0\0\0\0\0\0\0", alignment - 1);
  for (const Column& column : columns) {
    const std::string_view bytes = bytes_of(column);
    deflater.write(bytes);
    deflater.write(zeros.substr(0, _aligned(bytes.size()) - bytes.size()));
  }
  deflater.finish();
  text.finish();
}

}  // namespace colx::report
