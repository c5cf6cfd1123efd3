#pragma once

// A ZIP archive, written from front to back as its files come. The same files give the same bytes: all are of 1980, the
// first year that the format knows.

#include <zlib.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "companion/output.h"

namespace colx::table {

// Takes files one after another: begin, write any number of times, end; finish after the last one.
class ZipStream {
 public:
  // The output must outlive the archive.
  explicit ZipStream(Output& output) : _output(output) {}

  // Names are of ASCII.
  void begin(std::string name);
  // Throws output_error when the file or the archive becomes larger than 4 GiB, which the plain format cannot have.
  void write(std::string_view text);
  void end();

  // A whole file.
  void add(std::string name, std::string_view text);

  // Writes the list of all files.
  void finish();

 private:
  struct Entry {
    std::string name;
    std::uint32_t checksum = 0;
    std::uint64_t compressed = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0;
  };
  struct EndDeflate {
    void operator()(z_stream* stream) const;
  };

  void _emit(std::string_view bytes);
  void _compress(std::string_view text, int flush);
  static std::uint32_t _checked(std::uint64_t size);

  Output& _output;
  std::uint64_t _written = 0;
  std::vector<Entry> _entries;
  std::unique_ptr<z_stream, EndDeflate> _stream;
};

}  // namespace colx::table
