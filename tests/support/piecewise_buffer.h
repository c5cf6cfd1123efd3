#pragma once

// Input that comes in small pieces, as from a pipe.

#include <algorithm>
#include <cstdint>
#include <ios>
#include <iterator>
#include <streambuf>
#include <string>
#include <utility>

#include "tests/support/random.h"

namespace colx::test {

// Hands a text out in pieces of random length, 1 to `longest` bytes; nothing but the end of the text ends it.
class PiecewiseBuffer : public std::streambuf {
 public:
  // The generator must outlive the buffer.
  PiecewiseBuffer(std::string text, std::uint32_t longest, Random& random)
      : _text(std::move(text)), _longest(longest), _random(random) {}

 protected:
  std::streamsize xsgetn(char* out, std::streamsize count) override {
    const std::streamsize piece = std::min<std::streamsize>(count, 1 + _random.below(_longest));
    const std::streamsize given = std::min<std::streamsize>(piece, std::ssize(_text) - _given);
    std::copy_n(_text.data() + _given, given, out);
    _given += given;
    return given;
  }

 private:
  std::string _text;
  std::uint32_t _longest;
  Random& _random;
  std::streamsize _given = 0;
};

}  // namespace colx::test
