#include "report/base64.h"

#include <algorithm>
#include <cstdint>

namespace colx::report {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

// Writes the characters of up to three bytes.
void Base64Writer::_put(std::string_view three) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 3; ++i)
    bits = bits << 8 | (i < three.size() ? static_cast<unsigned char>(three[i]) : 0U);
  for (std::size_t i = 0; i < 4; ++i)
    _output << (i <= three.size() ? alphabet[bits >> (18 - 6 * i) & 63] : '=');
}

void Base64Writer::write(std::string_view bytes) {
  while (_rest_size != 0 && _rest_size < 3 && !bytes.empty()) {
    _rest[_rest_size++] = bytes[0];
    bytes.remove_prefix(1);
  }
  if (_rest_size == 3) {
    _put({_rest.data(), 3});
    _rest_size = 0;
  }
  for (; bytes.size() >= 3; bytes.remove_prefix(3))
    _put(bytes.substr(0, 3));
  if (!bytes.empty()) {
    std::copy(bytes.begin(), bytes.end(), _rest.begin());
    _rest_size = bytes.size();
  }
  _output.end_row();
}

void Base64Writer::finish() {
  if (_rest_size != 0) _put({_rest.data(), _rest_size});
  _rest_size = 0;
  _output.end_row();
}

}  // namespace colx::report
