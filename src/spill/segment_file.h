#pragma once

// Intermediate files: what one process leaves to another, on disk. A file is a row of segments, runs of bytes that are
// written and read as wholes, each with its checksum; an index at the end says where they are. A file stands under its
// name only when it is complete, and nobody takes a cut or damaged one for the whole.
//
//   header   8 bytes "ngrexseg", version (32 bits), kind (4 letters)
//   segments one after another
//   index    for each segment: where it ends in the file, its checksum (64 bits each)
//   trailer  number of segments, checksum of header and index (64 bits each), 8 bytes "gesxergn"
//
// All numbers are little-endian. Checksums find damage, not malice. Memory: one segment and a buffer, on either side,
// and the index.
//
// Nothing here waits for the disk: files that live shortly need never reach it. When the machine goes down, a file may
// stand under its name and be empty, cut, or hold zeros. That is found like any other damage, by whoever asks for the
// mark or reads the segment, and the file is made again.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "companion/descriptor.h"

namespace colx {

// What identifies a complete file beside its name.
struct FileMark {
  std::uint64_t size = 0;
  std::uint64_t checksum = 0;  // of header and index, and so of everything

  friend bool operator==(const FileMark&, const FileMark&) = default;
};

// Writes a file segment by segment. Throws output_error.
class SegmentWriter {
 public:
  // `kind` is four letters that tell files of different content apart. Nothing stands under the name before `finish`; a
  // writer that is not finished leaves nothing behind.
  SegmentWriter(std::string path, std::string_view kind);
  ~SegmentWriter();

  SegmentWriter(const SegmentWriter&) = delete;
  SegmentWriter& operator=(const SegmentWriter&) = delete;

  // Adds a segment, and returns its number, from 0.
  std::size_t add(std::string_view bytes);

  // How many segments there are.
  std::size_t segments() const { return _index.size(); }

  // Completes the file and gives it its name.
  FileMark finish();

 private:
  void _write(std::string_view bytes);
  void _flush();

  std::string _path;
  std::string _temporary;
  Descriptor _file;
  std::string _header;
  std::string _buffer;
  std::uint64_t _end = 0;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> _index;  // end and checksum
};

// Reads segments. Throws damaged_file for a file that is not there, cut, damaged or of another kind, and for a segment
// that it does not have, as when it was made for other counts; input_error when the system fails.
class SegmentReader {
 public:
  // Whether the file stays open between reads, or is opened for each of them: for whoever has very many.
  enum class Hold { open, closed };

  // The way to hold so many files at a time: open as long as they take no more than a quarter of what the process may
  // have open, and are no more than 256.
  static Hold hold_for(std::size_t files);

  // Reads ahead in pieces of `buffer` bytes, so that segments read in their order cost few calls.
  SegmentReader(std::string path, std::string_view kind, std::size_t buffer = std::size_t{64} << 10,
                Hold hold = Hold::open);

  std::size_t segments() const { return _segments; }

  // Bytes of all segments, and of one.
  std::uint64_t bytes() const { return _segments_end - _begin(0); }
  std::uint64_t size(std::size_t segment) const { return _end(segment) - _begin(segment); }

  // No segment from `end` on will be read soon, so that reading ahead need not go there.
  void stop_ahead_of(std::size_t end) { _ahead_end = _begin(end); }

  // The bytes of a segment, checked; valid until the next call.
  std::string_view read(std::size_t segment);

  // Gives back the memory that a large segment has taken; for whoever reads the segments of one number from many files.
  void shrink();

  const std::string& path() const { return _path; }
  FileMark mark() const { return _mark; }

  // Throws damaged_file for content that makes no sense although it is what was written.
  [[noreturn]] void refuse(const std::string& reason) const;

 private:
  std::uint64_t _begin(std::size_t segment) const;
  std::uint64_t _end(std::size_t segment) const;
  std::uint64_t _checksum(std::size_t segment) const;
  void _load(std::uint64_t begin, std::uint64_t end);

  std::string _path;
  Descriptor _file;
  Hold _hold;
  FileMark _mark;
  std::size_t _segments = 0;
  std::string _index;  // behind the header, as in the file
  std::size_t _ahead;
  std::uint64_t _segments_end = 0;  // in the file
  std::uint64_t _ahead_end = 0;     // in the file, how far to read ahead
  std::vector<char> _buffer;
  std::uint64_t _held_begin = 0;  // what of the file stands in the buffer
  std::uint64_t _held_end = 0;
};

// What identifies the file of that name, for somebody who only wants to know whether it is the one that was written:
// looks at its size and its end. Throws as SegmentReader does.
FileMark mark_of(const std::string& path);

// The checksum of a run of bytes.
std::uint64_t checksum(std::string_view bytes);

}  // namespace colx
