// Files of rules are read as their definition says: lines of N tag rules, each ended by a single space or the line's
// end, or any lines. The first byte is N.

#include <string>
#include <vector>

#include "filter/filter.h"
#include "tests/fuzz/memory_file.h"
#include "tests/fuzz/target.h"

namespace {

std::vector<std::string> _cut(const std::string& text, char separator) {
  std::vector<std::string> pieces(1);
  for (const char c : text) {
    if (c == separator)
      pieces.emplace_back();
    else
      pieces.back() += c;
  }
  return pieces;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace colx;
  using fuzz::promise;
  if (size == 0) return 0;
  const unsigned n = bytes[0] % 8;
  const std::string text(fuzz::text_of(bytes + 1, size - 1));
  const fuzz::MemoryFile file(text);
  MultiRulesFilter several;
  UniRulesFilter single;
  promise(several.read_rules(file.path().c_str(), n), "a file of rules can be opened");
  promise(single.read_rules(file.path().c_str()), "a file of single rules can be opened");

  std::vector<MultiRulesFilter::Rule> expected;
  bool any_line = false;
  for (const std::string& line : _cut(text, '\n')) {
    any_line = any_line || !line.empty();
    std::vector<std::string> tag_rules = _cut(line, ' ');
    if (tag_rules.back().empty())
      tag_rules.pop_back();  // a blank ends a tag rule, and no further one begins behind the last
    if (!line.empty() && (n == 0 || tag_rules.size() == n)) expected.push_back(tag_rules);
  }
  promise(several.rules() == expected, "the rules that were read");
  promise(several.is_on() == !expected.empty(), "whether the filter is on");
  promise(single.is_on() == any_line, "whether the single filter is on");
  for (std::size_t rule = 0; rule < expected.size() && rule < 20; ++rule)
    promise(several.first_match(expected[rule]) <= rule, "a rule admits itself");
  return 0;
}
