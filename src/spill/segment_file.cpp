#include "spill/segment_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fmt/format.h>

#include "companion/errors.h"
#include "spill/damaged_file.h"
#include "spill/encoding.h"
#include "spill/temporary_name.h"
#include "util/hashing.h"

namespace colx {

namespace {

constexpr std::string_view magic = "ngrexseg";
constexpr std::string_view end_magic = "gesxergn";
constexpr std::uint32_t version = 2;
constexpr std::size_t header_size = 16;
constexpr std::size_t entry_size = 16;
constexpr std::size_t trailer_size = 24;
constexpr std::size_t write_buffer = std::size_t{256} << 10;
constexpr std::size_t most_open = 256;

void _read_fully(const Descriptor& file, const std::string& path, std::uint64_t place, char* to, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::pread(file.number(), to, size, static_cast<off_t>(place));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw input_error(fmt::format("cannot read {}: {}", path, system_reason()));
    if (count == 0) throw damaged_file(path, "has become shorter");
    place += static_cast<std::uint64_t>(count);
    to += count;
    size -= static_cast<std::size_t>(count);
  }
}

Descriptor _open(const std::string& path) {
  const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (number >= 0) return Descriptor(number);
  if (errno == ENOENT) throw damaged_file(path, "is missing");
  throw input_error(fmt::format("cannot open {} for reading: {}", path, system_reason()));
}

std::uint64_t _size_of(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) throw input_error(fmt::format("cannot read {}: {}", path, system_reason()));
  return static_cast<std::uint64_t>(status.st_size);
}

struct Trailer {
  std::uint64_t segments;
  std::uint64_t checksum;
};

Trailer _read_trailer(const Descriptor& file, const std::string& path, std::uint64_t size) {
  if (size < header_size + trailer_size) throw damaged_file(path, "is too short");
  char bytes[trailer_size];
  _read_fully(file, path, size - trailer_size, bytes, trailer_size);
  const char* from = bytes;
  const auto segments = get_fixed<std::uint64_t>(from);
  const auto sum = get_fixed<std::uint64_t>(from);
  if (std::string_view(from, end_magic.size()) != end_magic) throw damaged_file(path, "has no end");
  if (segments > (size - header_size - trailer_size) / entry_size) throw damaged_file(path, "is cut");
  return {segments, sum};
}

}  // namespace

std::uint64_t checksum(std::string_view bytes) {
  // A multiplication waits for the one before it, but not for those of the other lanes.
  constexpr std::size_t lanes = 4;
  constexpr std::size_t step = lanes * sizeof(std::uint64_t);
  std::array<std::uint64_t, lanes> sums{};
  const char* from = bytes.data();
  std::size_t left = bytes.size();
  for (; left >= step; left -= step) {
    for (std::size_t lane = 0; lane < lanes; ++lane)
      sums[lane] = mix(sums[lane] ^ get_fixed<std::uint64_t>(from), hash_keys[lane]);
  }
  std::uint64_t hash = hash_bytes(from, left) ^ bytes.size();
  for (const std::uint64_t sum : sums)
    hash = mix(hash ^ sum, hash_keys[4]);
  return hash;
}

SegmentWriter::SegmentWriter(std::string path, std::string_view kind)
    : _path(std::move(path)), _temporary(temporary_name(_path)), _header(magic) {
  const int number = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (number < 0) throw output_error(fmt::format("cannot open {} for writing: {}", _temporary, system_reason()));
  _file = Descriptor(number);
  append_fixed(_header, version);
  _header.append(kind);
  _buffer.reserve(write_buffer);
  _write(_header);
}

SegmentWriter::~SegmentWriter() {
  if (!_temporary.empty()) ::unlink(_temporary.c_str());
}

void SegmentWriter::_flush() {
  _file.write_fully(_buffer, _temporary);
  _buffer.clear();
}

void SegmentWriter::_write(std::string_view bytes) {
  _end += bytes.size();
  if (_buffer.size() + bytes.size() > write_buffer) _flush();
  if (bytes.size() > write_buffer) {
    _file.write_fully(bytes, _temporary);
  } else {
    _buffer.append(bytes);
  }
}

std::size_t SegmentWriter::add(std::string_view bytes) {
  _write(bytes);
  _index.emplace_back(_end, checksum(bytes));
  return _index.size() - 1;
}

FileMark SegmentWriter::finish() {
  std::string summed = _header;
  for (const auto& [end, sum] : _index) {
    append_fixed(summed, end);
    append_fixed(summed, sum);
  }
  const std::uint64_t sum = checksum(summed);
  std::string rest = summed.substr(header_size);
  append_fixed(rest, std::uint64_t{_index.size()});
  append_fixed(rest, sum);
  rest.append(end_magic);
  _write(rest);
  _flush();
  _file.close(_temporary);
  if (::rename(_temporary.c_str(), _path.c_str()) != 0)
    throw output_error(fmt::format("cannot rename {} to {}: {}", _temporary, _path, system_reason()));
  _temporary.clear();
  return {_end, sum};
}

SegmentReader::Hold SegmentReader::hold_for(std::size_t files) {
  struct rlimit allowed {};
  const bool is_known = ::getrlimit(RLIMIT_NOFILE, &allowed) == 0;
  const rlim_t most = is_known ? std::min<rlim_t>(allowed.rlim_cur / 4, most_open) : most_open;
  return files <= most ? Hold::open : Hold::closed;
}

SegmentReader::SegmentReader(std::string path, std::string_view kind, std::size_t buffer, Hold hold)
    : _path(std::move(path)), _file(_open(_path)), _hold(hold), _ahead(buffer) {
  _mark.size = _size_of(_file, _path);
  const Trailer trailer = _read_trailer(_file, _path, _mark.size);
  _mark.checksum = trailer.checksum;
  _ahead_end = _segments_end = _mark.size - trailer_size - trailer.segments * entry_size;

  _segments = trailer.segments;
  _index.resize(header_size + trailer.segments * entry_size);
  _read_fully(_file, _path, 0, _index.data(), header_size);
  _read_fully(_file, _path, _segments_end, _index.data() + header_size, _index.size() - header_size);
  const char* from = _index.data() + magic.size();
  if (!_index.starts_with(magic)) refuse("is no intermediate file of ngrex-scale");
  if (get_fixed<std::uint32_t>(from) != version) refuse("is of another version");
  if (std::string_view(from, kind.size()) != kind) refuse("is of another kind");
  if (checksum(_index) != trailer.checksum) refuse("is damaged");
  if (_segments_end != (_segments == 0 ? header_size : _end(_segments - 1))) refuse("is cut");
  if (_hold == Hold::closed) _file = Descriptor();
}

std::uint64_t SegmentReader::_begin(std::size_t segment) const {
  return segment == 0 ? header_size : _end(segment - 1);
}

std::uint64_t SegmentReader::_end(std::size_t segment) const {
  if (segment >= _segments) refuse("has fewer segments than are asked for");
  const char* from = _index.data() + header_size + segment * entry_size;
  return get_fixed<std::uint64_t>(from);
}

std::uint64_t SegmentReader::_checksum(std::size_t segment) const {
  const char* from = _index.data() + header_size + segment * entry_size + sizeof(std::uint64_t);
  return get_fixed<std::uint64_t>(from);
}

void SegmentReader::refuse(const std::string& reason) const {
  throw damaged_file(_path, reason);
}

// Makes what lies between two places of the file stand in the buffer.
void SegmentReader::_load(std::uint64_t begin, std::uint64_t end) {
  if (begin >= _held_begin && end <= _held_end) return;
  const std::uint64_t wanted = std::max(end, std::min(begin + _ahead, _ahead_end));
  const auto size = static_cast<std::size_t>(wanted - begin);
  if (_buffer.size() < size) _buffer.resize(size);
  _held_begin = _held_end = 0;
  if (_hold == Hold::open) {
    _read_fully(_file, _path, begin, _buffer.data(), size);
  } else {
    _read_fully(_open(_path), _path, begin, _buffer.data(), size);
  }
  _held_begin = begin;
  _held_end = wanted;
}

std::string_view SegmentReader::read(std::size_t segment) {
  const std::uint64_t begin = _begin(segment);
  const auto length = static_cast<std::size_t>(size(segment));
  _load(begin, begin + length);
  const std::string_view bytes(_buffer.data() + (begin - _held_begin), length);
  if (checksum(bytes) != _checksum(segment)) refuse("is damaged");
  return bytes;
}

void SegmentReader::shrink() {
  if (_buffer.size() <= _ahead) return;
  std::vector<char>().swap(_buffer);
  _held_begin = _held_end = 0;
}

FileMark mark_of(const std::string& path) {
  const Descriptor file = _open(path);
  const std::uint64_t size = _size_of(file, path);
  return {size, _read_trailer(file, path, size).checksum};
}

}  // namespace colx
