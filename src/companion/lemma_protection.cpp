#include "companion/lemma_protection.h"

#include <cstddef>

namespace colx {

namespace {

constexpr std::string_view _look_alike(char c) {
  switch (c) {
    case '\'':
      return "\xE2\x80\x99";
    case ':':
      return "\xEA\x9E\x89";
    case ';':
      return "\xE2\x81\x8F";
    case '^':
      return "\xCB\x86";
    case '_':
      return "\xCB\x8D";
    default:
      return "";
  }
}

}  // namespace

std::string protect_lemma(std::string_view lemma) {
  std::string result;
  result.reserve(lemma.size());
  for (const char c : lemma) {
    if (const std::string_view other = _look_alike(c); !other.empty()) {
      result += other;
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace colx
