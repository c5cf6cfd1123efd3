#pragma once

// The bytes of a piece of a datafile, and where pieces begin.

#include <cstdint>
#include <optional>
#include <streambuf>
#include <string>

#include "companion/descriptor.h"

namespace colx::scale {

// Where a sentence may begin from `from` on: behind the first empty line of which the newline stands there or later,
// and before `limit`, as far as is looked; nothing when there is none. It does if a parser is in step there. Throws
// input_error.
std::optional<std::uint64_t> find_cut(const Descriptor& file, const std::string& name, std::uint64_t from,
                                      std::uint64_t limit);

// A file from some byte on, as a stream buffer. Reads in large pieces up to a place and in small ones from there on, as
// what comes then is seldom wanted. Reading that fails throws std::ios::failure.
class ShardText : public std::streambuf {
 public:
  // The file must outlive it.
  ShardText(const Descriptor& file, std::uint64_t begin, std::uint64_t soft_end)
      : _file(file), _place(begin), _soft_end(soft_end) {}

 protected:
  std::streamsize xsgetn(char* to, std::streamsize size) override;

 private:
  const Descriptor& _file;
  std::uint64_t _place;
  std::uint64_t _soft_end;
};

}  // namespace colx::scale
