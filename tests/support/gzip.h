#pragma once

// Compressed input for tests.

#include <zlib.h>

#include <stdexcept>
#include <string>

namespace colx::test {

// A text as one gzip member.
inline std::string gzip(std::string text) {
  z_stream deflater{};
  if (deflateInit2(&deflater, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::runtime_error("no deflater");
  std::string bytes(deflateBound(&deflater, text.size()), '\0');
  deflater.next_in = reinterpret_cast<Bytef*>(text.data());
  deflater.avail_in = static_cast<uInt>(text.size());
  deflater.next_out = reinterpret_cast<Bytef*>(bytes.data());
  deflater.avail_out = static_cast<uInt>(bytes.size());
  const int result = deflate(&deflater, Z_FINISH);
  bytes.resize(deflater.total_out);
  deflateEnd(&deflater);
  if (result != Z_STREAM_END) throw std::runtime_error("the text was not compressed");
  return bytes;
}

}  // namespace colx::test
