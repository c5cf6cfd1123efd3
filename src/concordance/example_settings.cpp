#include "concordance/example_settings.h"

namespace colx::concordance {

std::optional<std::uint64_t> examples_of(const GivenOption& given) {
  if (given.value == "all") return std::nullopt;
  if (given.value.empty() || given.value.find_first_not_of("0123456789") != std::string::npos)
    reject(given, "a whole number from 1 or all");
  return whole_number(given, 1);
}

}  // namespace colx::concordance
