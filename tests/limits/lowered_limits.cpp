#include "tests/limits/lowered_limits.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "base/limits.h"

namespace colx::test {

void lower_limits() {
  const std::map<std::string, std::uint32_t*> known = {{"frequency", &limits::frequency},
                                                       {"lemmas", &limits::lemmas},
                                                       {"records", &limits::records},
                                                       {"sightings", &limits::sightings}};
  const char* const text = std::getenv("NGREX_LOWERED_LIMITS");
  std::istringstream words(text == nullptr ? "" : text);
  for (std::string word; words >> word;) {
    const std::size_t sign = word.find('=');
    const auto limit = known.find(word.substr(0, sign));
    if (limit == known.end() || sign == std::string::npos) {
      std::cerr << "NGREX_LOWERED_LIMITS: there is no limit " << word << '\n';
      std::_Exit(EXIT_FAILURE);
    }
    *limit->second = static_cast<std::uint32_t>(std::stoul(word.substr(sign + 1)));
  }
}

}  // namespace colx::test
