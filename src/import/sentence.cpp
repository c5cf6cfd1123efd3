#include "import/sentence.h"

#include <fmt/format.h>

#include <algorithm>

#include "companion/utf8.h"

namespace colx {

std::string in_quotes(std::string_view text) {
  constexpr std::size_t longest = 40;
  std::size_t size = std::min(text.size(), longest);
  // A character of several bytes is not cut in two.
  while (size < text.size() && size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80)
    --size;
  return fmt::format("\"{}{}\"", printable(text.substr(0, size)), size < text.size() ? "..." : "");
}

bool must_be_skipped(const std::vector<TreebankProblem>& problems) {
  return std::any_of(problems.begin(), problems.end(),
                     [](const TreebankProblem& p) { return costs_sentence(p.fault); });
}

}  // namespace colx
