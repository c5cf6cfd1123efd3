#include "import/function_names.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <unordered_map>

#include "corpus/dependencies.h"

namespace colx {

namespace {

struct OtherName {
  std::string_view name;
  std::string_view function;
};

// Names in other treebanks; both in small letters.
constexpr OtherName other_names[] = {{"sbj", "sb"},     {"subj", "sb"},    {"ocomp", "atv"},
                                     {"predc", "pred"}, {"prede", "pred"}, {"predp", "pred"}};

// The analytical functions by their names in small letters. "Head" is no function that a treebank gives.
const std::unordered_map<std::string, std::string_view>& _functions_by_small_name() {
  static const auto names = [] {
    std::unordered_map<std::string, std::string_view> result;
    for (unsigned code = 0; code < dependencies_count; ++code) {
      const std::string_view name = dependency2cstring(static_cast<std::uint8_t>(code));
      if (name != "Head") result.emplace(in_small_letters(name), name);
    }
    return result;
  }();
  return names;
}

}  // namespace

bool is_analytical_function(std::string_view name) {
  const std::uint8_t code = string2dependency(std::string(name));  // also sets the code of "Undef"
  return name == undefined_function || code != dependency::undef;
}

std::optional<std::string_view> function_in_other_spelling(std::string_view name) {
  const auto& functions = _functions_by_small_name();
  const std::string lower = in_small_letters(name);
  std::string base = lower.substr(0, lower.find('_'));
  std::string_view suffixes = std::string_view(lower).substr(base.size());
  const auto other = std::find_if(std::begin(other_names), std::end(other_names),
                                  [&](const OtherName& candidate) { return candidate.name == base; });
  if (other != std::end(other_names)) base = other->function;
  while (!suffixes.empty()) {
    const std::size_t last = suffixes.rfind('_');
    if (const auto found = functions.find(base + std::string(suffixes.substr(last))); found != functions.end())
      return found->second;
    suffixes = suffixes.substr(0, last);
  }
  const auto found = functions.find(base);
  if (found == functions.end()) return std::nullopt;
  return found->second;
}

std::string in_small_letters(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace colx
