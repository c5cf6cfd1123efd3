#include "import/lemma_protection.h"

#include <algorithm>
#include <array>
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

std::string_view kept_lemma(std::string_view lemma) {
  static constexpr auto is_replaced = [] {
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
      table[byte] = !_look_alike(static_cast<char>(byte)).empty();
    return table;
  }();
  const auto end =
      std::find_if(lemma.begin(), lemma.end(), [](char c) { return is_replaced[static_cast<unsigned char>(c)]; });
  return lemma.substr(0, static_cast<std::size_t>(end - lemma.begin()));
}

}  // namespace colx
